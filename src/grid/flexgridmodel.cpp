#include "grid/flexgridmodel_p.h"

#include <PanelKestrin/flexgrid.h>

#include <utility>

namespace PanelKestrin {

FlexGridModel::FlexGridModel(qint32 rows, qint32 cols, QObject *parent)
    : QAbstractTableModel(parent),
      m_cells(qsizetype(rows) * cols),
      m_alignments(cols, FlexGrid::flexAlignGeneral),
      m_rows(rows),
      m_cols(cols)
{
}

void FlexGridModel::setGridRows(qint32 rows)
{
    if (rows > m_rows) {
        beginInsertRows(QModelIndex(), m_rows - 1, rows - 2);
        // One block of the exact size for a large jump, doubling for rows added one by one.
        const qsizetype cells = offset(rows, 0);
        if (cells > m_cells.capacity())
            m_cells.reserve(qMax(cells, 2 * m_cells.capacity()));
        m_cells.resize(cells);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows(QModelIndex(), rows - 1, m_rows - 2);
        m_cells.resize(offset(rows, 0));
        if (m_cells.size() < m_cells.capacity() / 2)
            m_cells.squeeze();
        m_rows = rows;
        endRemoveRows();
    }
}

void FlexGridModel::setGridCols(qint32 cols)
{
    if (cols == m_cols)
        return;
    if (cols > m_cols)
        beginInsertColumns(QModelIndex(), m_cols - 1, cols - 2);
    else
        beginRemoveColumns(QModelIndex(), cols - 1, m_cols - 2);
    // Each row's stride changes, so the text moves into a list of the new shape.
    QList<QString> cells(qsizetype(m_rows) * cols);
    const qint32 kept = qMin(cols, m_cols);
    for (qint32 r = 0; r < m_rows; ++r) {
        for (qint32 c = 0; c < kept; ++c)
            cells[qsizetype(r) * cols + c] = std::move(m_cells[offset(r, c)]);
    }
    m_cells.swap(cells);
    m_alignments.resize(cols, FlexGrid::flexAlignGeneral);
    m_cols = cols;
    if (cols > kept)
        endInsertColumns();
    else
        endRemoveColumns();
}

void FlexGridModel::removeGridRow(qint32 row)
{
    beginRemoveRows(QModelIndex(), row - 1, row - 1);
    m_cells.remove(offset(row, 0), m_cols);
    --m_rows;
    endRemoveRows();
}

void FlexGridModel::setText(qint32 row, qint32 col, const QString &text)
{
    m_cells[offset(row, col)] = text;
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
QVariant FlexGridModel::alignmentData(qint32 col, const QString &text) const
{
    const qint32 code = m_alignments.at(col);
    if (code == FlexGrid::flexAlignGeneral) {
        bool number = false;
        text.toDouble(&number);
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
        return alignmentData(col, text(row, col));
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
        return horizontal ? QVariant() : alignmentData(0, text(row, col));
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
