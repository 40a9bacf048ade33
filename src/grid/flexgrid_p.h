#pragma once

#include <PanelKestrin/flexgrid.h>

#include <QModelIndex>
#include <QRect>
#include <QScopedValueRollback>

#include <exception>
#include <utility>

class QKeyEvent;
class QMouseEvent;

namespace PanelKestrin {

class FlexGridModel;
class FlexGridView;

// The grid view's state behind its published surface: its text model, the table view that shows
// it, the current cell and the settings, and the reactions to the view's user events. The view
// (flexgridview_p.h) calls the reactions; the editable grid reaches the model through
// FlexGridModel::of.
class FlexGridPrivate
{
public:
    explicit FlexGridPrivate(FlexGrid *grid) : q(grid) {}

    // Runs body (calls into the view) so that an exception thrown by a Scroll handler raised
    // inside Qt waits until Qt has returned and then reaches this grid's caller.
    template <typename F>
    void viewCall(F &&body)
    {
        {
            QScopedValueRollback<int> depth(m_viewCallDepth, m_viewCallDepth + 1);
            std::forward<F>(body)();
        }
        if (m_viewCallDepth == 0 && m_handlerError)
            std::rethrow_exception(std::exchange(m_handlerError, nullptr));
    }
    // Moves the current cell with LeaveCell before and EnterCell after; handlers' exceptions
    // reach the caller.
    void moveTo(qint32 row, qint32 col);
    // Makes the view show the grid's current cell: current index, selection, scroll position.
    void syncView();
    void syncViewNow();
    void syncSelection();
    QModelIndex currentModelIndex() const;
    QRect cellRect() const;
    bool drawsSelection() const;
    void checkRow(qint32 row) const;
    void checkCol(qint32 col) const;

    // Reactions to the user, each raising its notifications inside guardEvent.
    void viewCurrentChanged(const QModelIndex &current);
    void headerPressed(Qt::Orientation orientation, int section);
    void viewScrolled();
    bool viewKeyDown(QKeyEvent *event);
    void viewMouse(QMouseEvent *event, bool press);
    void viewClick();
    void viewLostFocus();

    FlexGrid *const q;
    FlexGridModel *m_model = nullptr;
    FlexGridView *m_view = nullptr;
    qint32 m_row = 1;
    qint32 m_col = 1;
    qint32 m_highLight = FlexGrid::flexHighlightAlways;
    bool m_redraw = true;
    bool m_allowBigSelection = true;
    // Set while the grid itself changes the view, whose own notifications are then no user moves.
    bool m_syncing = false;
    int m_viewCallDepth = 0;
    std::exception_ptr m_handlerError;
};

} // namespace PanelKestrin
