#include <PanelKestrin/usercontrol1.h>

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/runtimeerror.h>

#include "toolbars/toolbarbutton_p.h"

#include <QAbstractButton>
#include <QCoreApplication>

namespace PanelKestrin {

namespace {

#define PK_CONTEXT "PanelKestrin::UserControl1"
// The image list holds the pictures in button order: item i + 1 is button i's.
const ToolbarButton kButtons[] = {
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&First"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Move to First Record"), "first"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Prev"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Move to Previous Record"), "prev"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Next"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Move to Next Record"), "next"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Last"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Move to Last Record"), "last"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Add"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Add  a Record"), "add"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Edit"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Update  a Record"), "edit"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Del"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Delete a Record"), "delete"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Save"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Save a Record"), "save"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "F&ind"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Find a Record..."), "find"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "P&rint"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Print to Screen/Printer..."), "print"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Quit"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Quit and Unload the Form"), "quit"},
    {QT_TRANSLATE_NOOP(PK_CONTEXT, "&Undo"), QT_TRANSLATE_NOOP(PK_CONTEXT, "Cancel the Current Mode..."), "undo"},
};

using Btn = UserControl1::Formdeckbtn;
const QVariantList kAtFirst = {Btn::btntop, Btn::btnprev, Btn::btnsave, Btn::btnundo};
const QVariantList kAtLast = {Btn::btnnext, Btn::btnlast, Btn::btnsave, Btn::btnundo};
const QVariantList kSaveUndo = {Btn::btnsave, Btn::btnundo};
const QVariantList kAddQuit = {Btn::btnadd, Btn::btnquit};

} // namespace

UserControl1::UserControl1(QWidget *parent)
    : ToolbarBase(PK_CONTEXT, kButtons, int(std::size(kButtons)), btnundo, btnsave, parent)
{
    for (int i = 0; i <= lastIndex(); ++i) {
        QFont font = Command1(i)->font();
        font.setFamily(i == btnundo ? QStringLiteral("Verdana") : QStringLiteral("Arial"));
        Command1(i)->setFont(font);
    }
    fitButtons();
}

void UserControl1::setReportToPrint(const QString &ReportToPrint)
{
    storeReportToPrint(ReportToPrint);
}

bool UserControl1::gatedState(int Index, bool plain, bool listed) const
{
    // The senses, and Prev and Next answering to each other's flag, are the published
    // behaviour hosts are written against.
    switch (Index) {
    case btntop: return plain && !gAllowMoveFirst;
    case btnprev: return plain && !gAllowMoveNext;
    case btnnext: return plain && !gAllowMovePrevious;
    case btnlast: return plain && !gAllowMoveLast;
    case btnadd: return plain && gAllowAdd;
    case btnedit: return plain && gAllowEdit;
    case btndel: return plain && gAllowDelete;
    case btnfind: return listed ? buttonEnabled(btnfind) : plain && !gAllowFind;
    default: return plain;
    }
}

bool UserControl1::atEitherEnd(Recordset *rs) const
{
    return rs->BOF() || rs->adoEOF();
}

int UserControl1::confirmUndo() const
{
    if (!gFormIsDirty)
        return vbYes;
    return MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are you Sure...All Changes will be Lost"),
                  vbYesNo + vbQuestion, QCoreApplication::translate(PK_CONTEXT, "Confirm Undo"));
}

void UserControl1::Command1_Click(qint16 Index)
{
    gErrorInClick = false;
    try {
        int answer = 0;
        switch (runCommand(Index, answer)) {
        case Outcome::Ended:
            return;
        case Outcome::Stopped:
            reportPendingError();
            return;
        case Outcome::Continue:
            break;
        }
        closingStep(Index, answer);
    } catch (const RuntimeError &error) {
        Err().setFrom(error);
        reportPendingError();
    }
}

UserControl1::Outcome UserControl1::runCommand(qint16 Index, int &answer)
{
    const auto stopped = [this] { return gErrorInClick; };
    switch (Index) {
    case btntop:
        recordset()->MoveFirst();
        if (stopped())
            return Outcome::Stopped;
        SetButtonStates(false, kAtFirst);
        break;
    case btnprev: {
        Recordset *rs = recordset();
        if (!rs->BOF())
            rs->MovePrevious();
        if (stopped())
            return Outcome::Stopped;
        if (rs->BOF()) {
            rs->MoveFirst();
            SetButtonStates(false, kAtFirst);
        } else {
            SetButtonStates(false, kSaveUndo);
        }
        break;
    }
    case btnnext: {
        Recordset *rs = recordset();
        if (!rs->adoEOF())
            rs->MoveNext();
        if (stopped())
            return Outcome::Stopped;
        if (rs->adoEOF()) {
            rs->MoveLast();
            SetButtonStates(false, kAtLast);
        } else {
            SetButtonStates(false, kSaveUndo);
        }
        break;
    }
    case btnlast:
        recordset()->MoveLast();
        if (stopped())
            return Outcome::Stopped;
        SetButtonStates(false, kAtLast);
        break;
    case btnadd:
        SetButtonStates(true, kSaveUndo);
        m_addMode = true;
        emit addclick();
        break;
    case btnedit:
        SetButtonStates(true, kSaveUndo);
        m_addMode = false;
        m_savedPosition = recordset()->Bookmark();
        emit editclick();
        break;
    case btndel: {
        answer = MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are You Sure ?"), vbYesNo);
        Recordset *rs = recordset();
        if (answer == vbYes) {
            emit Deleteclick();
            if (stopped())
                return Outcome::Stopped;
            // Onto the record after the deleted one, or back to the last when it was the last.
            // A recordset the host left empty has no record to move to.
            if (!(rs->adoEOF() && rs->BOF())) {
                rs->MoveNext();
                if (rs->adoEOF())
                    rs->MovePrevious();
            }
        }
        if (rs->BOF() && rs->adoEOF())
            SetButtonStates(true, kAddQuit);
        else
            SetButtonStates(false, kSaveUndo);
        break;
    }
    case btnsave: {
        m_saveValid = CBool(callHost(QStringLiteral("Validatefields")));
        if (!m_saveValid)
            return Outcome::Ended;
        Recordset *rs = recordset();
        if (!m_addMode)
            rs->setBookmark(m_savedPosition);
        emit saveclick();
        if (stopped())
            return Outcome::Stopped;
        if (m_addMode) {
            rs->MoveLast();
            m_addMode = false;
        }
        SetButtonStates(false, kSaveUndo);
        break;
    }
    case btnfind:
        emit findclick();
        break;
    case btnprint:
        emit printclick();
        if (reportParameters().ReportToPrint == QLatin1String("O"))
            return Outcome::Ended; // the host printed by itself
        if (stopped())
            return Outcome::Stopped;
        showPrintForm();
        break;
    case btnquit:
        unloadHostForm();
        break;
    case btnundo: {
        answer = confirmUndo();
        if (answer != vbYes)
            break;
        if (buttonEnabled(btnquit)) {
            // Not editing: undo means leaving the form.
            unloadHostForm();
            return Outcome::Ended;
        }
        Recordset *rs = recordset();
        if (m_addMode) {
            if (!(rs->BOF() && rs->adoEOF()))
                rs->MoveLast();
        } else {
            rs->setBookmark(m_savedPosition);
        }
        if (atEitherEnd(rs))
            SetButtonStates(true, kAddQuit);
        else
            SetButtonStates(false, kSaveUndo);
        break;
    }
    case QueryUnloadCommand:
        answer = confirmUndo();
        if (answer == vbNo && gFormQueryUnloadFired) {
            gUnloadFomForQueryUnload = true; // the host keeps its form open
            return Outcome::Ended;
        }
        gUnloadFomForQueryUnload = false;
        break;
    default:
        break; // 12 to 14 and any other index: the closing step only
    }
    return Outcome::Continue;
}

void UserControl1::closingStep(qint16 Index, int answer)
{
    if (Index >= btntop && Index <= btnlast) {
        // A move refreshes the form only when it reached another record.
        Recordset *rs = recordset();
        if (!atEitherEnd(rs) && CDbl(rs->Bookmark()) != CDbl(m_savedPosition))
            callHost(QStringLiteral("refresh1"));
    } else if ((Index == btnundo && answer == vbYes) || Index == btnfind || (Index == btndel && answer == vbYes)) {
        callHost(QStringLiteral("refresh1"));
    }
    Recordset *rs = recordset();
    m_savedPosition = atEitherEnd(rs) ? QVariant(0) : rs->Bookmark();
    gErrorInClick = false;
}

void UserControl1::reportPendingError()
{
    ErrObject &err = Err();
    if (err.Number == 0)
        return;
    const QString prompt = QStringList{err.Description, QStringLiteral(" Source=") + err.Source,
                                       QStringLiteral("; Number=") + QString::number(err.Number)}
                               .join(QLatin1Char(' '));
    err.Clear(); // reported once; the next click starts without it
    MsgBox(prompt, vbCritical, QCoreApplication::translate(PK_CONTEXT, "Force Formdeck"));
}

} // namespace PanelKestrin
