#include "grid/flexgridmodel_p.h"

#include <PanelKestrin/flexgrid.h>

#include <QTableView>

#include <exception>

namespace PanelKestrin {

FlexGridModel::FlexGridModel(qint32 rows, qint32 cols, QObject *parent)
    : QAbstractTableModel(parent),
      m_gridRows(rows),
      m_alignments(cols, FlexGrid::flexAlignGeneral),
      m_rows(rows),
      m_cols(cols)
{
}

FlexGridModel *FlexGridModel::of(const FlexGrid &grid)
{
    return static_cast<FlexGridModel *>(grid.view()->model());
}

void FlexGridModel::setGridRows(qint32 rows)
{
    if (rows > m_rows) {
        beginInsertRows(QModelIndex(), m_rows - 1, rows - 2);
        // One block of the exact size for a large jump, doubling for rows added one by one.
        if (rows > m_gridRows.capacity())
            m_gridRows.reserve(qMax(qsizetype(rows), 2 * m_gridRows.capacity()));
        m_gridRows.resize(rows);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows(QModelIndex(), rows - 1, m_rows - 2);
        m_gridRows.resize(rows);
        if (rows == 1) { // no row shows a value any more
            m_values = VariantMatrix();
            m_valueCols = 0;
        }
        if (m_gridRows.size() < m_gridRows.capacity() / 2)
            m_gridRows.squeeze();
        m_rows = rows;
        endRemoveRows();
    }
}

void FlexGridModel::setGridCols(qint32 cols)
{
    if (cols == m_cols)
        return;
    if (cols > m_cols) {
        beginInsertColumns(QModelIndex(), m_cols - 1, cols - 2);
    } else {
        beginRemoveColumns(QModelIndex(), cols - 1, m_cols - 2);
        // Dropped columns come back empty: their texts and values go.
        for (GridRow &row : m_gridRows) {
            if (row.texts.size() > cols)
                row.texts.resize(cols);
        }
        m_valueCols = qMin(m_valueCols, cols - 1);
    }
    const qint32 old = m_cols;
    m_alignments.resize(cols, FlexGrid::flexAlignGeneral);
    m_cols = cols;
    if (cols > old)
        endInsertColumns();
    else
        endRemoveColumns();
}

void FlexGridModel::removeGridRow(qint32 row)
{
    beginRemoveRows(QModelIndex(), row - 1, row - 1);
    m_gridRows.remove(row);
    --m_rows;
    endRemoveRows();
}

QString FlexGridModel::valueText(qint32 field, qint32 valueRow) const
{
    // The loader hands over only values whose text can be made; a view must never see a throw.
    try {
        return m_valueText(m_values(field, valueRow));
    } catch (const std::exception &) {
        return QString();
    }
}

void FlexGridModel::keepShownTexts(GridRow &row) const
{
    QList<QString> texts(m_valueCols + 1);
    for (qint32 c = 1; c <= m_valueCols; ++c)
        texts[c] = valueText(c - 1, row.valueRow);
    row.texts.swap(texts);
    row.valueRow = -1;
}

QString FlexGridModel::text(qint32 row, qint32 col) const
{
    const GridRow &gridRow = m_gridRows.at(row);
    if (gridRow.valueRow >= 0)
        return col >= 1 && col <= m_valueCols ? valueText(col - 1, gridRow.valueRow) : QString();
    return col < gridRow.texts.size() ? gridRow.texts.at(col) : QString();
}

void FlexGridModel::setText(qint32 row, qint32 col, const QString &text)
{
    GridRow &gridRow = m_gridRows[row];
    // An empty text in a cell that shows no value changes nothing (the find box clears the row
    // marker of every row it leaves).
    const bool showsValue = gridRow.valueRow >= 0 && col >= 1 && col <= m_valueCols;
    if (gridRow.valueRow >= 0 && (showsValue || !text.isNull()))
        keepShownTexts(gridRow);
    if (col < gridRow.texts.size()) {
        gridRow.texts[col] = text;
    } else if (!text.isNull()) {
        gridRow.texts.resize(m_cols);
        gridRow.texts[col] = text;
    }
    if (!m_notify)
        return;
    if (row >= 1 && col >= 1) {
        const QModelIndex cell = index(row - 1, col - 1);
        emit dataChanged(cell, cell, {Qt::DisplayRole});
    } else if (row == 0 && col >= 1) {
        emit headerDataChanged(Qt::Horizontal, col - 1, col - 1);
    } else if (col == 0 && row >= 1) {
        emit headerDataChanged(Qt::Vertical, row - 1, row - 1);
    }
}

void FlexGridModel::showValues(const VariantMatrix &values, ValueText text)
{
    const qint32 fields = values.count(1);
    const qint32 rows = values.count(2);
    const auto inside = [rows](qint32 r) { return r >= 1 && r <= rows; };
    // Value rows that keep a text the new table does not give (outside its rows, or in columns
    // beyond its fields) hold on to what they show now.
    for (qint32 r = 1; r < m_rows; ++r) {
        GridRow &gridRow = m_gridRows[r];
        if (gridRow.valueRow >= 0 && (!inside(r) || m_valueCols > fields))
            keepShownTexts(gridRow);
    }
    m_values = values;
    m_valueText = text;
    m_valueCols = fields;
    for (qint32 r = 1; r <= rows; ++r) {
        GridRow &gridRow = m_gridRows[r];
        if (gridRow.valueRow < 0) {
            // A text row with text outside the table's columns stays a text row.
            QList<QString> &texts = gridRow.texts;
            bool ownText = !texts.isEmpty() && !texts.at(0).isNull();
            for (qsizetype c = fields + 1; c < texts.size() && !ownText; ++c)
                ownText = !texts.at(c).isNull();
            if (ownText) {
                if (texts.size() <= fields)
                    texts.resize(fields + 1);
                for (qint32 c = 1; c <= fields; ++c)
                    texts[c] = valueText(c - 1, r - 1);
                continue;
            }
            texts = QList<QString>();
        }
        gridRow.valueRow = r - 1;
    }
    if (m_notify && rows > 0 && fields > 0)
        emit dataChanged(index(0, 0), index(rows - 1, fields - 1));
}

void FlexGridModel::setAlignment(qint32 col, qint32 code)
{
    m_alignments[col] = code;
    if (!m_notify)
        return;
    if (col == 0) {
        if (m_rows > 1)
            emit headerDataChanged(Qt::Vertical, 0, m_rows - 2);
    } else if (m_rows > 1) {
        emit dataChanged(index(0, col - 1), index(m_rows - 2, col - 1), {Qt::TextAlignmentRole});
    }
}

void FlexGridModel::refreshAll()
{
    if (m_rows > 1 && m_cols > 1)
        emit dataChanged(index(0, 0), index(m_rows - 2, m_cols - 2));
    if (m_cols > 1)
        emit headerDataChanged(Qt::Horizontal, 0, m_cols - 2);
    if (m_rows > 1)
        emit headerDataChanged(Qt::Vertical, 0, m_rows - 2);
}

int FlexGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows - 1;
}

int FlexGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_cols - 1;
}

// Codes 0-8 combine left/centre/right (code / 3) with top/centre/bottom (code % 3); general
// (9) puts numbers on the right and any other text on the left, vertically centred.
QVariant FlexGridModel::alignmentData(qint32 row, qint32 col) const
{
    const qint32 code = m_alignments.at(col);
    if (code == FlexGrid::flexAlignGeneral) {
        bool number = false;
        text(row, col).toDouble(&number);
        return int(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    }
    static constexpr Qt::Alignment horizontal[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    static constexpr Qt::Alignment vertical[] = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
    return int(horizontal[code / 3] | vertical[code % 3]);
}

QVariant FlexGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const qint32 row = index.row() + 1;
    const qint32 col = index.column() + 1;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::AccessibleTextRole:
        return text(row, col);
    case Qt::TextAlignmentRole:
        return alignmentData(row, col);
    default:
        return QVariant();
    }
}

QVariant FlexGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool horizontal = orientation == Qt::Horizontal;
    if (section < 0 || section >= (horizontal ? m_cols : m_rows) - 1)
        return QVariant();
    const qint32 row = horizontal ? 0 : section + 1;
    const qint32 col = horizontal ? section + 1 : 0;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return text(row, col);
    case Qt::TextAlignmentRole:
        // The fixed column's cells follow ColAlignment(0); the fixed row keeps the header's own.
        return horizontal ? QVariant() : alignmentData(row, 0);
    default:
        return QVariant();
    }
}

Qt::ItemFlags FlexGridModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace PanelKestrin
