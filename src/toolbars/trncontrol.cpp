#include <PanelKestrin/trncontrol.h>

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>

#include "toolbars/toolbarbutton_p.h"

#include <QCoreApplication>

namespace PanelKestrin {

namespace {

#define PK_CONTEXT "PanelKestrin::TrnControl"
// The image list holds the pictures in button order: item i + 1 is button i's.
const ToolbarButton kButtons[] = {
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Add"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Add a Record"), "add"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Edit"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Update  a Record"), "edit"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Delete"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Delete  a Record"), "delete"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Save"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Save  a Record"), "save"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "F&ind"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Find  a Record..."), "find"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "P&rint"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Print to Screen/Printer..."), "print"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Quit"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Quit and Unload the Form"), "quit"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Undo"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Cancel the Current Mode"), "undo"},
};

} // namespace

TrnControl::TrnControl(QWidget *parent)
    : ToolbarBase(PK_CONTEXT, kButtons, int(std::size(kButtons)), btnundo, btnsave, parent)
{
}

void TrnControl::setReportToPrint(const QString &ReportToPrint)
{
    storeReportToPrint(ReportToPrint);
}

void TrnControl::setEditMode() { SetButtonStates(true, {btnsave, btnundo}); }
void TrnControl::setBrowseMode() { SetButtonStates(false, {btnsave, btnundo}); }
void TrnControl::setEmptyMode() { SetButtonStates(true, {btnadd, btnquit}); }

void TrnControl::Command1_Click(qint16 Index)
{
    if (Index < btnadd || Index > btnundo)
        return;
    int answer = 0;
    switch (Index) {
    case btnadd:
        setEditMode();
        m_addMode = true;
        emit addclick();
        break;
    case btnedit:
        setEditMode();
        m_addMode = false;
        emit editclick();
        break;
    case btndel: {
        m_deleteCancel = false;
        emit DeleteAllowed(m_deleteCancel);
        if (!m_deleteCancel) {
            answer = MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are You Sure ?"), vbYesNo + vbQuestion,
                            QCoreApplication::translate(PK_CONTEXT, "Confirm Delete"));
            if (answer == vbYes)
                emit Deleteclick();
        }
        // Refused or not, the mode follows what is left: empty only when both ends meet.
        Recordset *rs = recordset();
        if (rs->BOF() && rs->adoEOF())
            setEmptyMode();
        else
            setBrowseMode();
        break;
    }
    case btnsave:
        m_saveValid = CBool(callHost(QStringLiteral("Validatefields")));
        if (!m_saveValid)
            return;
        emit saveclick();
        setBrowseMode();
        break;
    case btnfind:
        emit findclick();
        break;
    case btnprint:
        emit printclick();
        showPrintForm();
        break;
    case btnquit:
        unloadHostForm();
        break;
    case btnundo: {
        answer = MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are you Sure...All Changes will be Lost"),
                        vbYesNo + vbQuestion, QCoreApplication::translate(PK_CONTEXT, "Confirm Undo"));
        if (answer != vbYes)
            return;
        Recordset *rs = recordset();
        if (m_addMode && !(rs->BOF() && rs->adoEOF()))
            rs->MoveLast(); // the record being added is abandoned; the last one becomes current
        // Either end suffices here (Delete wants both): a recordset standing at EOF with
        // records present still leaves the toolbar empty.
        if (rs->adoEOF() || rs->BOF())
            setEmptyMode();
        else
            setBrowseMode();
        break;
    }
    default:
        break;
    }

    if ((Index == btnundo && answer == vbYes) || (Index == btndel && answer == vbYes) || Index == btnfind)
        callHost(QStringLiteral("refresh1"));
}

} // namespace PanelKestrin
