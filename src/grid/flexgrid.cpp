// The grid view: shape, current cell, text, columns, geometry and painting settings. How it
// answers its view's user events is in flexgridevents.cpp.
#include <PanelKestrin/flexgrid.h>

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

FlexGrid::FlexGrid(QWidget *parent)
    : QWidget(parent), m_model(new FlexGridModel(2, 2, this)), m_view(new FlexGridView(this))
{
    m_view->setObjectName(QStringLiteral("flexview"));
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setTabKeyNavigation(false);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setSelectionBehavior(QAbstractItemView::SelectItems);
    m_view->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->setHorizontalScrollMode(QAbstractItemView::ScrollPerItem);
    m_view->setCornerButtonEnabled(false);
    m_view->setWordWrap(false);
    m_view->setItemDelegate(new SelectionDelegate([this] { return drawsSelection(); }, m_view));

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
    m_view->setModel(m_model);

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
            [this](const QModelIndex &current) { viewCurrentChanged(current); });
    connect(rowHeader, &QHeaderView::sectionPressed, this,
            [this](int section) { headerPressed(Qt::Vertical, section); });
    connect(colHeader, &QHeaderView::sectionPressed, this,
            [this](int section) { headerPressed(Qt::Horizontal, section); });
    for (QScrollBar *bar : {m_view->verticalScrollBar(), m_view->horizontalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, [this] { viewScrolled(); });

    syncView();
}

// The view goes first, while this object is whole, and reports nothing more on its way out.
FlexGrid::~FlexGrid()
{
    m_view->detach();
    const QObject *senders[] = {m_view->selectionModel(), m_view->verticalScrollBar(), m_view->horizontalScrollBar(),
                                m_view->verticalHeader(), m_view->horizontalHeader()};
    for (const QObject *sender : senders)
        disconnect(sender, nullptr, this, nullptr);
    delete m_view;
}

QTableView *FlexGrid::view() const
{
    return m_view;
}

template <typename F>
void FlexGrid::viewCall(F &&body)
{
    {
        QScopedValueRollback<int> depth(m_viewCallDepth, m_viewCallDepth + 1);
        std::forward<F>(body)();
    }
    if (m_viewCallDepth == 0 && m_handlerError)
        std::rethrow_exception(std::exchange(m_handlerError, nullptr));
}

// ---- shape and index checks -------------------------------------------------------------

void FlexGrid::checkRow(qint32 row) const
{
    if (row < 0 || row >= Rows())
        throw RuntimeError(ErrInvalidGridIndex, tr("Invalid Row value: %1 (0 To %2)").arg(row).arg(Rows() - 1),
                           source());
}

void FlexGrid::checkCol(qint32 col) const
{
    if (col < 0 || col >= Cols())
        throw RuntimeError(ErrInvalidGridIndex, tr("Invalid Col value: %1 (0 To %2)").arg(col).arg(Cols() - 1),
                           source());
}

qint32 FlexGrid::Rows() const
{
    return m_model->gridRows();
}

void FlexGrid::setRows(qint32 Rows)
{
    if (Rows < 1)
        throw RuntimeError(ErrInvalidGridIndex, tr("Invalid Rows value: %1 (1 or more)").arg(Rows), source());
    if (Rows == this->Rows())
        return;
    QScopedValueRollback<bool> syncing(m_syncing, true);
    viewCall([&] {
        m_model->setGridRows(Rows);
        m_row = qMin(m_row, Rows - 1);
        syncViewNow();
    });
}

qint32 FlexGrid::Cols() const
{
    return m_model->gridCols();
}

void FlexGrid::setCols(qint32 Cols)
{
    if (Cols < 1)
        throw RuntimeError(ErrInvalidGridIndex, tr("Invalid Cols value: %1 (1 or more)").arg(Cols), source());
    if (Cols == this->Cols())
        return;
    QScopedValueRollback<bool> syncing(m_syncing, true);
    viewCall([&] {
        m_model->setGridCols(Cols);
        m_col = qMin(m_col, Cols - 1);
        syncViewNow();
    });
}

void FlexGrid::RemoveItem(qint32 Row)
{
    if (Row < 1 || Row >= Rows())
        throw RuntimeError(ErrInvalidGridIndex,
                           tr("Invalid Row value: %1 (1 To %2)").arg(Row).arg(Rows() - 1), source());
    QScopedValueRollback<bool> syncing(m_syncing, true);
    viewCall([&] {
        m_model->removeGridRow(Row);
        m_row = qMin(m_row, this->Rows() - 1);
        syncViewNow();
    });
}

// ---- current cell -----------------------------------------------------------------------

qint32 FlexGrid::Row() const
{
    return m_row;
}

void FlexGrid::setRow(qint32 Row)
{
    checkRow(Row);
    if (Row != m_row)
        moveTo(Row, m_col);
}

qint32 FlexGrid::Col() const
{
    return m_col;
}

void FlexGrid::setCol(qint32 Col)
{
    checkCol(Col);
    if (Col != m_col)
        moveTo(m_row, Col);
}

void FlexGrid::moveTo(qint32 row, qint32 col)
{
    emit LeaveCell();
    // A LeaveCell handler may have reshaped the grid.
    m_row = qMin(row, Rows() - 1);
    m_col = qMin(col, Cols() - 1);
    syncView();
    emit EnterCell();
}

QModelIndex FlexGrid::currentModelIndex() const
{
    if (m_row < 1 || m_col < 1)
        return QModelIndex();
    return m_model->index(m_row - 1, m_col - 1);
}

void FlexGrid::syncView()
{
    QScopedValueRollback<bool> syncing(m_syncing, true);
    viewCall([this] { syncViewNow(); });
}

void FlexGrid::syncViewNow()
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

void FlexGrid::syncSelection()
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
    m_view->flushLayout();
    return m_view->verticalScrollBar()->value() + 1;
}

void FlexGrid::setTopRow(qint32 TopRow)
{
    viewCall([&] {
        m_view->flushLayout();
        m_view->verticalScrollBar()->setValue(qMax(TopRow, 1) - 1);
    });
}

// ---- text -------------------------------------------------------------------------------

QString FlexGrid::Text() const
{
    return m_model->text(m_row, m_col);
}

void FlexGrid::setText(const QString &Text)
{
    m_model->setText(m_row, m_col, Text);
}

QString FlexGrid::TextMatrix(qint32 Row, qint32 Col) const
{
    checkRow(Row);
    checkCol(Col);
    return m_model->text(Row, Col);
}

void FlexGrid::setTextMatrix(qint32 Row, qint32 Col, const QString &Text)
{
    checkRow(Row);
    checkCol(Col);
    m_model->setText(Row, Col, Text);
}

// ---- columns ----------------------------------------------------------------------------

qint32 FlexGrid::ColWidth(qint32 Col) const
{
    checkCol(Col);
    const int pixels = Col == 0 ? m_view->verticalHeader()->minimumWidth()
                                : m_view->horizontalHeader()->sectionSize(Col - 1);
    return PixelsToTwipsX(pixels, this);
}

// -1 restores the default width.
void FlexGrid::setColWidth(qint32 Col, qint32 Width)
{
    checkCol(Col);
    if (Width < -1)
        throw RuntimeError(ErrInvalidPropertyValue, tr("Invalid ColWidth value: %1").arg(Width), source());
    if (Width == -1)
        Width = Col == 0 ? DefaultFixedColWidth : DefaultColWidth;
    const int pixels = TwipsToPixelsX(Width, this);
    viewCall([&] {
        if (Col == 0) {
            m_view->verticalHeader()->setFixedWidth(pixels);
            m_view->relayout();
        } else {
            m_view->setColumnWidth(Col - 1, pixels);
        }
    });
}

qint32 FlexGrid::ColAlignment(qint32 Col) const
{
    checkCol(Col);
    return m_model->alignment(Col);
}

void FlexGrid::setColAlignment(qint32 Col, qint32 Alignment)
{
    checkCol(Col);
    if (Alignment < flexAlignLeftTop || Alignment > flexAlignGeneral)
        throw RuntimeError(ErrInvalidPropertyValue, tr("Invalid ColAlignment value: %1 (0 To 9)").arg(Alignment),
                           source());
    m_model->setAlignment(Col, Alignment);
}

// ---- cell geometry ----------------------------------------------------------------------

// The current cell in pixels relative to the grid: columns from the horizontal header (or the
// vertical header for column 0), rows from the vertical header (or the horizontal one for row
// 0). For a data cell this is the view's visualRect with the grid line included.
QRect FlexGrid::cellRect() const
{
    m_view->flushLayout();
    const QHeaderView *rowHeader = m_view->verticalHeader();
    const QHeaderView *colHeader = m_view->horizontalHeader();
    int x, width, y, height;
    if (m_col == 0) {
        x = rowHeader->mapTo(this, QPoint()).x();
        width = rowHeader->width();
    } else {
        x = colHeader->viewport()->mapTo(this, QPoint(colHeader->sectionViewportPosition(m_col - 1), 0)).x();
        width = colHeader->sectionSize(m_col - 1);
    }
    if (m_row == 0) {
        y = colHeader->mapTo(this, QPoint()).y();
        height = colHeader->height();
    } else {
        y = rowHeader->viewport()->mapTo(this, QPoint(0, rowHeader->sectionViewportPosition(m_row - 1))).y();
        height = rowHeader->sectionSize(m_row - 1);
    }
    return QRect(x, y, width, height);
}

qint32 FlexGrid::CellLeft() const
{
    return PixelsToTwipsX(cellRect().x(), this);
}

qint32 FlexGrid::CellTop() const
{
    return PixelsToTwipsY(cellRect().y(), this);
}

qint32 FlexGrid::CellWidth() const
{
    return PixelsToTwipsX(cellRect().width(), this);
}

qint32 FlexGrid::CellHeight() const
{
    return PixelsToTwipsY(cellRect().height(), this);
}

// ---- painting and selection -------------------------------------------------------------

bool FlexGrid::Redraw() const
{
    return m_redraw;
}

void FlexGrid::setRedraw(bool Redraw)
{
    if (Redraw == m_redraw)
        return;
    m_redraw = Redraw;
    m_model->setNotifies(Redraw);
    if (Redraw)
        m_model->refreshAll();
    m_view->setUpdatesEnabled(Redraw);
}

QColor FlexGrid::BackColorSel() const
{
    return m_view->palette().color(QPalette::Active, QPalette::Highlight);
}

void FlexGrid::setBackColorSel(const QColor &color)
{
    QPalette palette = m_view->palette();
    palette.setColor(QPalette::Active, QPalette::Highlight, color);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, color);
    m_view->setPalette(palette);
}

bool FlexGrid::AllowBigSelection() const
{
    return m_allowBigSelection;
}

void FlexGrid::setAllowBigSelection(bool allow)
{
    m_allowBigSelection = allow;
}

qint32 FlexGrid::HighLight() const
{
    return m_highLight;
}

void FlexGrid::setHighLight(qint32 mode)
{
    if (mode < flexHighlightNever || mode > flexHighlightWithFocus)
        throw RuntimeError(ErrInvalidPropertyValue, tr("Invalid HighLight value: %1 (0 To 2)").arg(mode), source());
    m_highLight = mode;
    m_view->viewport()->update();
}

bool FlexGrid::drawsSelection() const
{
    return m_highLight == flexHighlightAlways || (m_highLight == flexHighlightWithFocus && m_view->hasFocus());
}

} // namespace PanelKestrin
