#pragma once

#include <PanelKestrin/flexgrid.h>

#include <QFocusEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTableView>

namespace PanelKestrin {

// The marker column's header. Its width is always the fixed one the grid sets, so its size hint
// says so instead of measuring row texts, which every move of the ">" marker would otherwise
// make the view do again.
class FlexGridRowHeader : public QHeaderView
{
public:
    explicit FlexGridRowHeader(QWidget *parent) : QHeaderView(Qt::Vertical, parent) {}
    QSize sizeHint() const override { return QSize(minimumWidth(), 0); }
};

// The view under the grid. It hands keys, mouse buttons and focus loss to the grid first, never
// changes the selection on its own (the grid selects its current cell after every key and
// click), does not search as the user types and does not drag-select. Only the left button
// moves the current cell; the others just raise MouseDown and MouseUp.
class FlexGridView : public QTableView
{
public:
    FlexGridView(FlexGrid *grid, FlexGridPrivate *reactions) : QTableView(grid), m_grid(reactions) {}

    // The grid is going away: stop calling it.
    void detach() { m_grid = nullptr; }
    // Lays out rows and scroll ranges now if a change is still waiting for it.
    void flushLayout() { executeDelayedItemsLayout(); }
    void relayout() { updateGeometries(); }

    void keyboardSearch(const QString &) override {}

protected:
    // Any row may be scrolled to the top, the last one included (the rows below it are then
    // empty space), so that a page move can bring its row to the top wherever it is.
    void updateGeometries() override
    {
        QTableView::updateGeometries();
        if (model() && verticalScrollMode() == ScrollPerItem)
            verticalScrollBar()->setRange(0, qMax(0, model()->rowCount() - 1));
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (m_grid && !m_grid->viewKeyDown(event)) {
            event->accept();
            return;
        }
        QTableView::keyPressEvent(event);
        if (m_grid)
            m_grid->syncSelection();
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        if (m_grid)
            m_grid->viewMouse(event, true);
        if (event->button() != Qt::LeftButton)
            return;
        QTableView::mousePressEvent(event);
        if (m_grid)
            m_grid->syncSelection();
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (event->buttons() == Qt::NoButton)
            QTableView::mouseMoveEvent(event);
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        if (m_grid)
            m_grid->viewMouse(event, false);
        if (event->button() != Qt::LeftButton)
            return;
        QTableView::mouseReleaseEvent(event);
        if (!m_grid)
            return;
        m_grid->syncSelection();
        if (indexAt(event->position().toPoint()).isValid())
            m_grid->viewClick();
    }

    void focusOutEvent(QFocusEvent *event) override
    {
        QTableView::focusOutEvent(event);
        if (m_grid)
            m_grid->viewLostFocus();
    }

private:
    FlexGridPrivate *m_grid;
};

} // namespace PanelKestrin
