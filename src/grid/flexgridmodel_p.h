#pragma once

#include <PanelKestrin/variantmatrix.h>

#include <QAbstractTableModel>
#include <QList>
#include <QString>

namespace PanelKestrin {

class FlexGrid;

// The text of a FlexGrid, counted as the grid counts: gridRows() x gridCols() cells including the
// fixed row 0 and the fixed column 0. Towards a view the fixed row is the horizontal header, the
// fixed column the vertical header, and grid cell (r, c), r, c >= 1, is model index (r - 1, c - 1).
//
// A grid loaded from a table of values keeps no text for the cells that show them: showValues()
// takes a shared copy of the table, and each such cell's text is made from its value when it is
// drawn or read. Only rows written since keep texts of their own. A grid row is therefore one of
// two kinds:
//  - a value row: cells 1..valueCols show their value of one row of the table, the others are
//    empty;
//  - a text row: a list of its own texts by column, shorter than the grid when the rest are
//    empty (a new row has an empty list and costs no text at all).
// Writing a text into a value row first turns it into a text row holding the texts it showed
// (an empty text written to a cell that shows no value changes nothing).
// Rows are kept in one list, so adding rows appends and never moves the ones already there.
//
// Callers check indexes; the model does not.
class FlexGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    // The text a cell shows for a value of the table; must not throw for the values it is given.
    using ValueText = QString (*)(const QVariant &value);

    explicit FlexGridModel(qint32 rows, qint32 cols, QObject *parent = nullptr);

    // The model underneath grid.
    static FlexGridModel *of(const FlexGrid &grid);

    qint32 gridRows() const { return m_rows; }
    qint32 gridCols() const { return m_cols; }
    // Whole blocks: one insert or remove notification for all rows or columns added or dropped.
    void setGridRows(qint32 rows);
    void setGridCols(qint32 cols);
    void removeGridRow(qint32 row);

    QString text(qint32 row, qint32 col) const;
    void setText(qint32 row, qint32 col, const QString &text);

    // From now on grid cell (r + 1, c + 1) shows text(values(c, r)) for every element of values
    // (both lower bounds 0); what was written to those cells before is gone, every other cell
    // keeps its text. The grid must have those rows and columns.
    void showValues(const VariantMatrix &values, ValueText text);

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
    struct GridRow {
        QList<QString> texts; // a text row's own texts by column
        qint32 valueRow = -1; // a value row's row of m_values, else -1
    };

    QString valueText(qint32 field, qint32 valueRow) const;
    // Turns a value row into a text row holding what it shows.
    void keepShownTexts(GridRow &row) const;
    QVariant alignmentData(qint32 row, qint32 col) const;

    QList<GridRow> m_gridRows;
    VariantMatrix m_values;
    ValueText m_valueText = nullptr;
    qint32 m_valueCols = 0; // grid columns 1..m_valueCols of value rows show values
    QList<qint32> m_alignments;
    qint32 m_rows;
    qint32 m_cols;
    bool m_notify = true;
};

} // namespace PanelKestrin
