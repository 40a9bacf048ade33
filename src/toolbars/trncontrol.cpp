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

// The toolbar's three modes and what a click remembers for the next one.
class TrnControlPrivate
{
public:
    explicit TrnControlPrivate(TrnControl *toolbar) : q(toolbar) {}

    void setEditMode() { q->SetButtonStates(true, {TrnControl::btnsave, TrnControl::btnundo}); }
    void setBrowseMode() { q->SetButtonStates(false, {TrnControl::btnsave, TrnControl::btnundo}); }
    void setEmptyMode() { q->SetButtonStates(true, {TrnControl::btnadd, TrnControl::btnquit}); }

    TrnControl *const q;
    // Save ends an Add rather than an Edit.
    bool m_addMode = false;
    // The host's answer to DeleteAllowed.
    bool m_deleteCancel = false;
    // The host form's answer to "Validatefields".
    bool m_saveValid = false;
};

TrnControl::TrnControl(QWidget *parent)
    : ToolbarBase(PK_CONTEXT, kButtons, int(std::size(kButtons)), btnundo, btnsave, parent),
      d(std::make_unique<TrnControlPrivate>(this))
{
}

TrnControl::~TrnControl() = default;

void TrnControl::setReportToPrint(const QString &ReportToPrint)
{
    storeReportToPrint(ReportToPrint);
}

void TrnControl::Command1_Click(qint16 Index)
{
    if (Index < btnadd || Index > btnundo)
        return;
    int answer = 0;
    switch (Index) {
    case btnadd:
        d->setEditMode();
        d->m_addMode = true;
        emit addclick();
        break;
    case btnedit:
        d->setEditMode();
        d->m_addMode = false;
        emit editclick();
        break;
    case btndel: {
        d->m_deleteCancel = false;
        emit DeleteAllowed(d->m_deleteCancel);
        if (!d->m_deleteCancel) {
            answer = MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are You Sure ?"), vbYesNo + vbQuestion,
                            QCoreApplication::translate(PK_CONTEXT, "Confirm Delete"));
            if (answer == vbYes)
                emit Deleteclick();
        }
        // Refused or not, the mode follows what is left: empty only when both ends meet.
        Recordset *rs = recordset();
        if (rs->BOF() && rs->adoEOF())
            d->setEmptyMode();
        else
            d->setBrowseMode();
        break;
    }
    case btnsave:
        d->m_saveValid = CBool(callHost(QStringLiteral("Validatefields")));
        if (!d->m_saveValid)
            return;
        emit saveclick();
        d->setBrowseMode();
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
        if (d->m_addMode && !(rs->BOF() && rs->adoEOF()))
            rs->MoveLast(); // the record being added is abandoned; the last one becomes current
        // Either end suffices here (Delete wants both): a recordset standing at EOF with
        // records present still leaves the toolbar empty.
        if (rs->adoEOF() || rs->BOF())
            d->setEmptyMode();
        else
            d->setBrowseMode();
        break;
    }
    default:
        break;
    }

    if ((Index == btnundo && answer == vbYes) || (Index == btndel && answer == vbYes) || Index == btnfind)
        callHost(QStringLiteral("refresh1"));
}

} // namespace PanelKestrin
