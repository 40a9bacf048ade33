#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QVariant>
#include <QVector>

namespace PanelKestrin {

// A two-dimensional array of variants with explicit lower and upper bounds per dimension,
// stored column-major with the first index (the field) varying fastest, so that growing the
// second dimension (the rows) keeps every element where it was. An unassigned matrix has no
// bounds: any use of it raises run-time error 9, as does any index outside the bounds.
// A dimension may be empty (upper bound = lower bound - 1). Bounds whose elements cannot be
// allocated, or that a dimension's or the whole matrix's int count could not hold, raise
// run-time error 7 (out of memory) and leave the matrix as it was.
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
    const void *storageId() const { return m_data.constData(); }

    bool operator==(const VariantMatrix &other) const;
    bool operator!=(const VariantMatrix &other) const { return !(*this == other); }

private:
    void checkAssigned() const;
    int offset(int i, int j) const;

    bool m_assigned = false;
    int m_lower1 = 0, m_upper1 = -1, m_lower2 = 0, m_upper2 = -1;
    QVector<QVariant> m_data;
};

} // namespace PanelKestrin

Q_DECLARE_METATYPE(PanelKestrin::VariantMatrix)
