#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QVariant>
#include <QVector>

namespace PanelKestrin {

// A two-dimensional array of variants with explicit lower and upper bounds per dimension. An
// unassigned matrix has no bounds: any use of it raises run-time error 9, as does any index
// outside the bounds. A dimension may be empty (upper bound = lower bound - 1). Bounds whose
// elements cannot be allocated, or that a dimension's or the whole matrix's int count could not
// hold, raise run-time error 7 (out of memory) and leave the matrix as it was.
//
// The elements are kept in blocks of rows (the second dimension), each column-major with the
// first index (the field) varying fastest, so a row's fields lie side by side in one block and
// growing the rows keeps every element in its block. Copies share the blocks; writing to a copy
// copies the block table and the one block written, so a large matrix shared between a
// recordset, a grid and its snapshots costs a block, not the whole array, for each block written.
class PANELKESTRIN_EXPORT VariantMatrix
{
public:
    VariantMatrix() = default;
    VariantMatrix(int lower1, int upper1, int lower2, int upper2);

    bool isAssigned() const { return m_assigned; }
    int LBound(int dimension = 1) const;
    int UBound(int dimension = 1) const;
    // Elements along a dimension (0 for an unassigned matrix).
    int count(int dimension) const;

    const QVariant &operator()(int i, int j) const;
    // A writable element. Any use of this access, even only a read, parts the matrix from the
    // copies it shares its storage with (see storageId); read through a const matrix otherwise.
    QVariant &operator()(int i, int j);
    QVariant value(int i, int j) const { return (*this)(i, j); }
    // Writes one element. Writing the value an element already holds (same type, equal) leaves
    // the storage alone, so copies that share it (a recordset's rows, a grid's loaded texts)
    // stay shared.
    void setValue(int i, int j, const QVariant &v);

    // Fresh bounds, every element Empty.
    void redim(int lower1, int upper1, int lower2, int upper2);
    // New upper bound of the last dimension, contents kept; new elements are Empty.
    void redimPreserve(int upper2);
    // Back to the unassigned state.
    void erase();

    // Identifies the element storage: copies share it until one of them is written, so a
    // changed identity tells a reader holding a copy that the matrix may have changed.
    const void *storageId() const { return m_blocks.constData(); }

    bool operator==(const VariantMatrix &other) const;
    bool operator!=(const VariantMatrix &other) const { return !(*this == other); }

private:
    using Block = QVector<QVariant>;

    void checkAssigned() const;
    void checkIndex(int i, int j) const;
    void growRows(int fields, int oldRows, int rows);
    void shrinkRows(int fields, int rows);

    bool m_assigned = false;
    int m_lower1 = 0, m_upper1 = -1, m_lower2 = 0, m_upper2 = -1;
    // Blocks of a fixed number of rows, the last one holding the rows left over; no blocks
    // when either dimension is empty.
    QVector<Block> m_blocks;
};

} // namespace PanelKestrin

Q_DECLARE_METATYPE(PanelKestrin::VariantMatrix)
