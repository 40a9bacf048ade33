#pragma once

#include <QAbstractTableModel>
#include <QList>
#include <QString>

namespace PanelKestrin {

// The text of a FlexGrid, counted as the grid counts: gridRows() x gridCols() cells including the
// fixed row 0 and the fixed column 0. Towards a view the fixed row is the horizontal header, the
// fixed column the vertical header, and grid cell (r, c), r, c >= 1, is model index (r - 1, c - 1).
//
// The cells are one flat list, row after row, so adding rows appends and never moves the text
// already there. A cell is one QString: 24 bytes in the list, plus for a non-empty text a heap
// block (shared by cells holding copies of one text) of a 16-byte header and 2 bytes per
// character and terminator, rounded up by the allocator: 48 bytes for up to 8 characters.
//
// Callers check indexes; the model does not.
class FlexGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit FlexGridModel(qint32 rows, qint32 cols, QObject *parent = nullptr);

    qint32 gridRows() const { return m_rows; }
    qint32 gridCols() const { return m_cols; }
    // Whole blocks: one insert or remove notification for all rows or columns added or dropped.
    void setGridRows(qint32 rows);
    void setGridCols(qint32 cols);
    void removeGridRow(qint32 row);

    const QString &text(qint32 row, qint32 col) const { return m_cells.at(offset(row, col)); }
    void setText(qint32 row, qint32 col, const QString &text);

    // Alignment code (FlexGrid::AlignmentSettings) of the cells of grid column col.
    qint32 alignment(qint32 col) const { return m_alignments.at(col); }
    void setAlignment(qint32 col, qint32 code);

    // While notifications are off, changing text tells no view; refreshAll() then announces
    // every cell and both headers at once.
    bool notifies() const { return m_notify; }
    void setNotifies(bool notify) { m_notify = notify; }
    void refreshAll();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    qsizetype offset(qint32 row, qint32 col) const { return qsizetype(row) * m_cols + col; }
    QVariant alignmentData(qint32 col, const QString &text) const;

    QList<QString> m_cells;
    QList<qint32> m_alignments;
    qint32 m_rows;
    qint32 m_cols;
    bool m_notify = true;
};

} // namespace PanelKestrin
