// The grid view: shape, current cell, text, columns, geometry and painting settings. How it
// answers its view's user events is in flexgridevents.cpp.
#include <PanelKestrin/flexgrid.h>

#include "grid/flexgrid_p.h"
#include "grid/flexgridmodel_p.h"
#include "grid/flexgridview_p.h"

#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/twips.h>

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <functional>
#include <utility>

namespace PanelKestrin {

namespace {

constexpr qint32 DefaultColWidth = 1200;      // twips, data columns
constexpr qint32 DefaultFixedColWidth = 300;  // twips, the marker column

QString source()
{
    return QStringLiteral("FlexGrid");
}

// Paints selected cells as unselected while the grid's HighLight setting hides the selection.
class SelectionDelegate : public QStyledItemDelegate
{
public:
    SelectionDelegate(std::function<bool()> drawsSelection, QObject *parent)
        : QStyledItemDelegate(parent), m_drawsSelection(std::move(drawsSelection))
    {
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        if (!(option.state & QStyle::State_Selected) || m_drawsSelection()) {
            QStyledItemDelegate::paint(painter, option, index);
            return;
        }
        QStyleOptionViewItem plain(option);
        plain.state &= ~QStyle::State_Selected;
        QStyledItemDelegate::paint(painter, plain, index);
    }

private:
    std::function<bool()> m_drawsSelection;
};

} // namespace

FlexGrid::FlexGrid(QWidget *parent) : QWidget(parent), d(std::make_unique<FlexGridPrivate>(this))
{
    FlexGridPrivate *const p = d.get();
    p->m_model = new FlexGridModel(2, 2, this);
    p->m_view = new FlexGridView(this, p);
    FlexGridView *const m_view = p->m_view;
    m_view->setObjectName(QStringLiteral("flexview"));
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setTabKeyNavigation(false);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setSelectionBehavior(QAbstractItemView::SelectItems);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->setHorizontalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->setCornerButtonEnabled(false);
    m_view->setWordWrap(false);
    m_view->setItemDelegate(new SelectionDelegate([p] { return p->drawsSelection(); }, m_view));

    // Every row has the same fixed height, so positions are arithmetic and nothing measures text.
    const int rowHeight = TwipsToPixelsY(DefaultRowHeight, m_view);
    QHeaderView *rowHeader = new FlexGridRowHeader(m_view);
    m_view->setVerticalHeader(rowHeader);
    rowHeader->setSectionsClickable(true);
    rowHeader->setHighlightSections(true);
    rowHeader->setSectionResizeMode(QHeaderView::Fixed);
    rowHeader->setMinimumSectionSize(1);
    rowHeader->setDefaultSectionSize(rowHeight);
    rowHeader->setFixedWidth(TwipsToPixelsX(DefaultFixedColWidth, m_view));
    QHeaderView *colHeader = m_view->horizontalHeader();
    colHeader->setSectionResizeMode(QHeaderView::Interactive);
    colHeader->setMinimumSectionSize(1);
    colHeader->setDefaultSectionSize(TwipsToPixelsX(DefaultColWidth, m_view));
    colHeader->setFixedHeight(rowHeight);
    m_view->setModel(p->m_model);

    // The selection looks the same with and without the focus; HighLight decides whether it shows.
    QPalette palette = m_view->palette();
    for (QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        palette.setColor(QPalette::Inactive, role, palette.color(QPalette::Active, role));
    m_view->setPalette(palette);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    setFocusProxy(m_view);

    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [p](const QModelIndex &current) { p->viewCurrentChanged(current); });
    connect(rowHeader, &QHeaderView::sectionPressed, this,
            [p](int section) { p->headerPressed(Qt::Vertical, section); });
    connect(colHeader, &QHeaderView::sectionPressed, this,
            [p](int section) { p->headerPressed(Qt::Horizontal, section); });
    for (QScrollBar *bar : {m_view->verticalScrollBar(), m_view->horizontalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, [p] { p->viewScrolled(); });

    p->syncView();
}

// The view goes first, while this object is whole, and reports nothing more on its way out.
FlexGrid::~FlexGrid()
{
    FlexGridView *const view = d->m_view;
    view->detach();
    const QObject *senders[] = {view->selectionModel(), view->verticalScrollBar(), view->horizontalScrollBar(),
                                view->verticalHeader(), view->horizontalHeader()};
    for (const QObject *sender : senders)
        disconnect(sender, nullptr, this, nullptr);
    delete view;
}

QTableView *FlexGrid::view() const
{
    return d->m_view;
}


// ---- shape and index checks -------------------------------------------------------------

void FlexGridPrivate::checkRow(qint32 row) const
{
    if (row < 0 || row >= q->Rows())
        throw RuntimeError(ErrInvalidGridIndex, FlexGrid::tr("Invalid Row value: %1 (0 To %2)").arg(row).arg(q->Rows() - 1),
                           source());
}

void FlexGridPrivate::checkCol(qint32 col) const
{
    if (col < 0 || col >= q->Cols())
        throw RuntimeError(ErrInvalidGridIndex, FlexGrid::tr("Invalid Col value: %1 (0 To %2)").arg(col).arg(q->Cols() - 1),
                           source());
}

qint32 FlexGrid::Rows() const
{
    return d->m_model->gridRows();
}

void FlexGrid::setRows(qint32 Rows)
{
    if (Rows < 1)
        throw RuntimeError(ErrInvalidGridIndex, tr("Invalid Rows value: %1 (1 or more)").arg(Rows), source());
    if (Rows == this->Rows())
        return;
    QScopedValueRollback<bool> syncing(d->m_syncing, true);
    d->viewCall([&] {
        d->m_model->setGridRows(Rows);
        d->m_row = qMin(d->m_row, Rows - 1);
        d->syncViewNow();
    });
}

qint32 FlexGrid::Cols() const
{
    return d->m_model->gridCols();
}

void FlexGrid::setCols(qint32 Cols)
{
    if (Cols < 1)
        throw RuntimeError(ErrInvalidGridIndex, tr("Invalid Cols value: %1 (1 or more)").arg(Cols), source());
    if (Cols == this->Cols())
        return;
    QScopedValueRollback<bool> syncing(d->m_syncing, true);
    d->viewCall([&] {
        d->m_model->setGridCols(Cols);
        d->m_col = qMin(d->m_col, Cols - 1);
        d->syncViewNow();
    });
}

void FlexGrid::RemoveItem(qint32 Row)
{
    if (Row < 1 || Row >= Rows())
        throw RuntimeError(ErrInvalidGridIndex,
                           tr("Invalid Row value: %1 (1 To %2)").arg(Row).arg(Rows() - 1), source());
    QScopedValueRollback<bool> syncing(d->m_syncing, true);
    d->viewCall([&] {
        d->m_model->removeGridRow(Row);
        d->m_row = qMin(d->m_row, this->Rows() - 1);
        d->syncViewNow();
    });
}

// ---- current cell -----------------------------------------------------------------------

qint32 FlexGrid::Row() const
{
    return d->m_row;
}

void FlexGrid::setRow(qint32 Row)
{
    d->checkRow(Row);
    if (Row != d->m_row)
        d->moveTo(Row, d->m_col);
}

qint32 FlexGrid::Col() const
{
    return d->m_col;
}

void FlexGrid::setCol(qint32 Col)
{
    d->checkCol(Col);
    if (Col != d->m_col)
        d->moveTo(d->m_row, Col);
}

void FlexGridPrivate::moveTo(qint32 row, qint32 col)
{
    emit q->LeaveCell();
    // A LeaveCell handler may have reshaped the grid.
    m_row = qMin(row, q->Rows() - 1);
    m_col = qMin(col, q->Cols() - 1);
    syncView();
    emit q->EnterCell();
}

QModelIndex FlexGridPrivate::currentModelIndex() const
{
    if (m_row < 1 || m_col < 1)
        return QModelIndex();
    return m_model->index(m_row - 1, m_col - 1);
}

void FlexGridPrivate::syncView()
{
    QScopedValueRollback<bool> syncing(m_syncing, true);
    viewCall([this] { syncViewNow(); });
}

void FlexGridPrivate::syncViewNow()
{
    m_view->flushLayout();
    const QModelIndex cell = currentModelIndex();
    if (m_view->currentIndex() != cell)
        m_view->setCurrentIndex(cell);
    syncSelection();
    // A fixed cell keeps the other direction's scroll position: the row or column at the
    // view's edge is fully shown already.
    const int row = m_row >= 1 ? m_row - 1 : m_view->rowAt(0);
    const int col = m_col >= 1 ? m_col - 1 : m_view->columnAt(0);
    if (row >= 0 && col >= 0)
        m_view->scrollTo(m_model->index(row, col));
}

void FlexGridPrivate::syncSelection()
{
    QScopedValueRollback<bool> syncing(m_syncing, true);
    QItemSelectionModel *selection = m_view->selectionModel();
    const QModelIndex cell = currentModelIndex();
    if (cell.isValid())
        selection->select(cell, QItemSelectionModel::ClearAndSelect);
    else
        selection->clearSelection();
}

// ---- scrolling --------------------------------------------------------------------------

// Rows scroll one whole row at a time, so the scroll bar's value is the index of the first
// shown row; its range reaches the last row.
qint32 FlexGrid::TopRow() const
{
    d->m_view->flushLayout();
    return d->m_view->verticalScrollBar()->value() + 1;
}

void FlexGrid::setTopRow(qint32 TopRow)
{
    d->viewCall([&] {
        d->m_view->flushLayout();
        d->m_view->verticalScrollBar()->setValue(qMax(TopRow, 1) - 1);
    });
}

// ---- text -------------------------------------------------------------------------------

QString FlexGrid::Text() const
{
    return d->m_model->text(d->m_row, d->m_col);
}

void FlexGrid::setText(const QString &Text)
{
    d->m_model->setText(d->m_row, d->m_col, Text);
}

QString FlexGrid::TextMatrix(qint32 Row, qint32 Col) const
{
    d->checkRow(Row);
    d->checkCol(Col);
    return d->m_model->text(Row, Col);
}

void FlexGrid::setTextMatrix(qint32 Row, qint32 Col, const QString &Text)
{
    d->checkRow(Row);
    d->checkCol(Col);
    d->m_model->setText(Row, Col, Text);
}

// ---- columns ----------------------------------------------------------------------------

qint32 FlexGrid::ColWidth(qint32 Col) const
{
    d->checkCol(Col);
    const int pixels = Col == 0 ? d->m_view->verticalHeader()->minimumWidth()
                                : d->m_view->horizontalHeader()->sectionSize(Col - 1);
    return PixelsToTwipsX(pixels, this);
}

// -1 restores the default width.
void FlexGrid::setColWidth(qint32 Col, qint32 Width)
{
    d->checkCol(Col);
    if (Width < -1)
        throw RuntimeError(ErrInvalidPropertyValue, tr("Invalid ColWidth value: %1").arg(Width), source());
    if (Width == -1)
        Width = Col == 0 ? DefaultFixedColWidth : DefaultColWidth;
    const int pixels = TwipsToPixelsX(Width, this);
    d->viewCall([&] {
        if (Col == 0) {
            d->m_view->verticalHeader()->setFixedWidth(pixels);
            d->m_view->relayout();
        } else {
            d->m_view->setColumnWidth(Col - 1, pixels);
        }
    });
}

qint32 FlexGrid::ColAlignment(qint32 Col) const
{
    d->checkCol(Col);
    return d->m_model->alignment(Col);
}

void FlexGrid::setColAlignment(qint32 Col, qint32 Alignment)
{
    d->checkCol(Col);
    if (Alignment < flexAlignLeftTop || Alignment > flexAlignGeneral)
        throw RuntimeError(ErrInvalidPropertyValue, tr("Invalid ColAlignment value: %1 (0 To 9)").arg(Alignment),
                           source());
    d->m_model->setAlignment(Col, Alignment);
}

// ---- cell geometry ----------------------------------------------------------------------

// The current cell in pixels relative to the grid: columns from the horizontal header (or the
// vertical header for column 0), rows from the vertical header (or the horizontal one for row
// 0). For a data cell this is the view's visualRect with the grid line included.
QRect FlexGridPrivate::cellRect() const
{
    m_view->flushLayout();
    const QHeaderView *rowHeader = m_view->verticalHeader();
    const QHeaderView *colHeader = m_view->horizontalHeader();
    int x, width, y, height;
    if (m_col == 0) {
        x = rowHeader->mapTo(q, QPoint()).x();
        width = rowHeader->width();
    } else {
        x = colHeader->viewport()->mapTo(q, QPoint(colHeader->sectionViewportPosition(m_col - 1), 0)).x();
        width = colHeader->sectionSize(m_col - 1);
    }
    if (m_row == 0) {
        y = colHeader->mapTo(q, QPoint()).y();
        height = colHeader->height();
    } else {
        y = rowHeader->viewport()->mapTo(q, QPoint(0, rowHeader->sectionViewportPosition(m_row - 1))).y();
        height = rowHeader->sectionSize(m_row - 1);
    }
    return QRect(x, y, width, height);
}

qint32 FlexGrid::CellLeft() const
{
    return PixelsToTwipsX(d->cellRect().x(), this);
}

qint32 FlexGrid::CellTop() const
{
    return PixelsToTwipsY(d->cellRect().y(), this);
}

qint32 FlexGrid::CellWidth() const
{
    return PixelsToTwipsX(d->cellRect().width(), this);
}

qint32 FlexGrid::CellHeight() const
{
    return PixelsToTwipsY(d->cellRect().height(), this);
}

// ---- painting and selection -------------------------------------------------------------

bool FlexGrid::Redraw() const
{
    return d->m_redraw;
}

void FlexGrid::setRedraw(bool Redraw)
{
    if (Redraw == d->m_redraw)
        return;
    d->m_redraw = Redraw;
    d->m_model->setNotifies(Redraw);
    if (Redraw)
        d->m_model->refreshAll();
    d->m_view->setUpdatesEnabled(Redraw);
}

QColor FlexGrid::BackColorSel() const
{
    return d->m_view->palette().color(QPalette::Active, QPalette::Highlight);
}

void FlexGrid::setBackColorSel(const QColor &color)
{
    QPalette palette = d->m_view->palette();
    palette.setColor(QPalette::Active, QPalette::Highlight, color);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, color);
    d->m_view->setPalette(palette);
}

bool FlexGrid::AllowBigSelection() const
{
    return d->m_allowBigSelection;
}

void FlexGrid::setAllowBigSelection(bool allow)
{
    d->m_allowBigSelection = allow;
}

qint32 FlexGrid::HighLight() const
{
    return d->m_highLight;
}

void FlexGrid::setHighLight(qint32 mode)
{
    if (mode < flexHighlightNever || mode > flexHighlightWithFocus)
        throw RuntimeError(ErrInvalidPropertyValue, tr("Invalid HighLight value: %1 (0 To 2)").arg(mode), source());
    d->m_highLight = mode;
    d->m_view->viewport()->update();
}

bool FlexGridPrivate::drawsSelection() const
{
    return m_highLight == FlexGrid::flexHighlightAlways || (m_highLight == FlexGrid::flexHighlightWithFocus && m_view->hasFocus());
}

} // namespace PanelKestrin
