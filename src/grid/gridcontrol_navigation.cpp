// The grid view's own notifications outside the editor (click, keys, mouse, scrolling), the
// control gaining and losing the focus, and the pop-up menu.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/twips.h>

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QTableView>

namespace PanelKestrin {

namespace {
constexpr qint16 kLeftButton = 1;
constexpr qint16 kRightButton = 2;
} // namespace

bool gridcontrol::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != d->TxtAdjust)
        return QWidget::eventFilter(watched, event);
    bool used = false;
    if (event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        guardEvent(QStringLiteral("gridcontrol.TxtAdjust_KeyDown"), [&] { used = d->editorKeyEvent(key); });
    } else if (event->type() == QEvent::InputMethod) {
        // Committed text is filtered like typed keys; the composition goes on to the editor.
        auto *input = static_cast<QInputMethodEvent *>(event);
        guardEvent(QStringLiteral("gridcontrol.TxtAdjust_KeyPress"), [&] { d->editorInputMethodEvent(input); });
    } else if (event->type() == QEvent::MouseButtonPress
               && static_cast<QMouseEvent *>(event)->button() == Qt::RightButton) {
        // TxtAdjust_MouseDown: the right button opens the pop-up menu at the pointer.
        const QPoint at = static_cast<QMouseEvent *>(event)->globalPosition().toPoint();
        guardEvent(QStringLiteral("gridcontrol.TxtAdjust_MouseDown"), [&] { d->showPopup(at); });
        used = true;
    }
    return used;
}

void gridcontrolPrivate::showPopup(const QPoint &globalPos)
{
    popup->popup(globalPos);
}

void gridcontrolPrivate::flexgrid_Click()
{
    if (bDeletingRow)
        return;
    qint16 iCol = qint16(flexgrid->Col());
    qint16 iRow = qint16(flexgrid->Row());
    emit q->ColClick(iCol);
    iCol = qint16(flexgrid->Col());
    emit q->GridClick(iCol, iRow);

    const int col = flexgrid->Col();
    if (q->gColToFix > 0 && col == q->gColToFix) {
        // The mark column: the view shows q->gValue or nothing, the store holds "X" or a blank.
        const QString mark = CStr(q->gValue);
        const bool marking = flexgrid->Text() != mark;
        attachDataRow(flexgrid->Row()); // a mark on the blank row left by the save trim
        flexgrid->setText(marking ? mark : QString());
        TxtAdjust->setText(marking ? mark : QString());
        mDataArray(col - 1, flexgrid->Row() - 1) = marking ? QStringLiteral("X") : QStringLiteral(" ");
    }
    const GridStruct &rule = GridStructArray.value(flexgrid->Col());
    TxtAdjust->setVisible(rule.ColEnable && !rule.HelpInvoked);
}

void gridcontrolPrivate::flexgrid_KeyDown(qint16 &KeyCode, qint16 &Shift)
{
    if (q->NoAddRow)
        return;
    const qint32 row = flexgrid->Row();
    const qint32 col = flexgrid->Col();
    if (KeyCode == vbKeyF1) {
        qint16 helpCol = qint16(col - 1);
        QVariant value = GetEditValue(helpCol);
        bool Cancel = false;
        emit q->InvokeHelp(helpCol, value, Cancel);
        KeyCode = 0;
    } else if (KeyCode == vbKeyReturn) {
        KeyCode = 0; // the grid view has no Enter of its own to run afterwards
        if (Shift != vbShiftMask) {
            // Disabled columns are not skipped here.
            if (col != flexgrid->Cols() - 1) {
                flexgrid->setCol(col + 1);
            } else if (row == flexgrid->Rows() - 1) {
                q->pop_Click(0);
            } else {
                flexgrid->setRow(row + 1);
                flexgrid->setCol(1);
            }
        } else if (col > 1) {
            flexgrid->setCol(col - 1);
        } else if (row != 1) {
            flexgrid->setRow(row - 1);
            flexgrid->setCol(flexgrid->Cols() - 1);
        }
    }
}

void gridcontrolPrivate::flexgrid_MouseDown(qint16 &Button, qint16 &, float &X, float &Y)
{
    if (Button == kRightButton && q->bShowMenu)
        showPopup(flexgrid->mapToGlobal(QPoint(TwipsToPixelsX(X, q), TwipsToPixelsY(Y, q))));
}

void gridcontrolPrivate::flexgrid_MouseUp(qint16 &Button, qint16 &, float &, float &)
{
    if (Button != kLeftButton)
        return;
    // A mandatory cell left blank holds the cell.
    const int col = flexgrid->Col() - 1;
    bHoldCell = TxtAdjust->text().isEmpty() && col >= 0 && col < RecStructArray.size()
                && !RecStructArray.at(col).Null;
}

void gridcontrolPrivate::focusChanged(QWidget *old, QWidget *now)
{
    const bool wasInside = old && q->isAncestorOf(old);
    const bool isInside = now && q->isAncestorOf(now);
    if (isInside && !wasInside)
        guardEvent(QStringLiteral("gridcontrol.UserControl_EnterFocus"), [this] { UserControl_EnterFocus(); });
    else if (wasInside && !isInside)
        guardEvent(QStringLiteral("gridcontrol.UserControl_ExitFocus"), [this] { UserControl_ExitFocus(); });
}

void gridcontrolPrivate::UserControl_EnterFocus()
{
    if (q->NoAddRow) {
        for (QPushButton *button : {CmdGridAdd, CmdGridDelete, CmdGridFind})
            button->setVisible(false);
    } else if (q->bShowMenu) {
        for (QPushButton *button : {CmdGridAdd, CmdGridDelete, CmdGridFind})
            button->setVisible(true);
    }
}

void gridcontrolPrivate::UserControl_ExitFocus()
{
    TxtAdjust->setVisible(false);
    for (QPushButton *button : {CmdGridAdd, CmdGridDelete, CmdGridFind})
        button->setVisible(false);
}

} // namespace PanelKestrin
