// How a FlexGrid answers its view: user moves, header clicks, scrolling, keys, mouse buttons
// and focus loss. Every notification raised here runs inside guardEvent, so nothing a handler
// throws reaches Qt's event loop.
#include <PanelKestrin/flexgrid.h>

#include "grid/flexgridmodel_p.h"
#include "grid/flexgrid_p.h"
#include "grid/flexgridview_p.h"

#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/twips.h>

#include <QItemSelectionModel>
#include <QScopedValueRollback>

namespace PanelKestrin {

// The view's current index moved by a click, a key or the focus arriving: the same move as
// from code, then the view is brought back to the grid's cell whatever the handlers did.
void FlexGridPrivate::viewCurrentChanged(const QModelIndex &current)
{
    if (m_syncing)
        return;
    if (current.isValid() && (current.row() + 1 != m_row || current.column() + 1 != m_col))
        guardEvent(QStringLiteral("FlexGrid"), [&] { moveTo(current.row() + 1, current.column() + 1); });
    guardEvent(QStringLiteral("FlexGrid"), [this] { syncView(); });
}

// With AllowBigSelection a header click moves to that row (column) and selects all of it.
void FlexGridPrivate::headerPressed(Qt::Orientation orientation, int section)
{
    if (!m_allowBigSelection || m_model->rowCount() == 0 || m_model->columnCount() == 0)
        return;
    const bool wholeRow = orientation == Qt::Vertical;
    const qint32 row = wholeRow ? section + 1 : qMax(m_row, 1);
    const qint32 col = wholeRow ? qMax(m_col, 1) : section + 1;
    guardEvent(QStringLiteral("FlexGrid"), [&] {
        if (row != m_row || col != m_col)
            moveTo(row, col);
    });
    guardEvent(QStringLiteral("FlexGrid"), [this] { syncView(); });
    if (wholeRow ? m_row != row : m_col != col)
        return;
    QScopedValueRollback<bool> syncing(m_syncing, true);
    const QModelIndex first = m_model->index(wholeRow ? row - 1 : 0, wholeRow ? 0 : col - 1);
    const QModelIndex last = wholeRow ? m_model->index(row - 1, m_model->columnCount() - 1)
                                      : m_model->index(m_model->rowCount() - 1, col - 1);
    m_view->selectionModel()->select(QItemSelection(first, last), QItemSelectionModel::ClearAndSelect);
}

void FlexGridPrivate::viewScrolled()
{
    if (m_viewCallDepth == 0) {
        guardEvent(QStringLiteral("FlexGrid.Scroll"), [this] { emit q->Scroll(); });
        return;
    }
    // Scrolled by a call from code: the first failure goes to that caller once Qt has returned.
    try {
        emit q->Scroll();
    } catch (...) {
        if (!m_handlerError)
            m_handlerError = std::current_exception();
    }
}

// Returns whether the view may handle the key.
bool FlexGridPrivate::viewKeyDown(QKeyEvent *event)
{
    qint16 KeyCode = KeyCodeFromEvent(event);
    if (KeyCode == 0)
        return true;
    qint16 Shift = ShiftFromEvent(event);
    const bool completed = guardEvent(QStringLiteral("FlexGrid.KeyDown"), [&] { emit q->KeyDown(KeyCode, Shift); });
    return completed && KeyCode != 0;
}

void FlexGridPrivate::viewMouse(QMouseEvent *event, bool press)
{
    qint16 Button;
    switch (event->button()) {
    case Qt::LeftButton: Button = 1; break;
    case Qt::RightButton: Button = 2; break;
    case Qt::MiddleButton: Button = 4; break;
    default: return;
    }
    qint16 Shift = ShiftFromModifiers(event->modifiers());
    const QPoint at = m_view->viewport()->mapTo(q, event->position().toPoint());
    float X = float(at.x() * TwipsPerPixelX(q));
    float Y = float(at.y() * TwipsPerPixelY(q));
    if (press)
        guardEvent(QStringLiteral("FlexGrid.MouseDown"), [&] { emit q->MouseDown(Button, Shift, X, Y); });
    else
        guardEvent(QStringLiteral("FlexGrid.MouseUp"), [&] { emit q->MouseUp(Button, Shift, X, Y); });
}

void FlexGridPrivate::viewClick()
{
    guardEvent(QStringLiteral("FlexGrid.Click"), [this] { emit q->Click(); });
}

void FlexGridPrivate::viewLostFocus()
{
    guardEvent(QStringLiteral("FlexGrid.LostFocus"), [this] { emit q->LostFocus(); });
}

} // namespace PanelKestrin
