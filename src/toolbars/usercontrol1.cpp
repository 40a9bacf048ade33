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

// A click's steps and what the toolbar remembers between clicks.
class UserControl1Private
{
public:
    explicit UserControl1Private(UserControl1 *toolbar) : q(toolbar) {}

    // How a command's own step ended: go on to the closing step, stopped by the host (report
    // what is pending), or ended with nothing more to do.
    enum class Outcome { Continue, Stopped, Ended };
    Outcome runCommand(qint16 Index, int &answer);
    void closingStep(qint16 Index, int answer);
    void reportPendingError();
    int confirmUndo() const;
    static bool atEitherEnd(Recordset *rs);

    UserControl1 *const q;
    // Save ends an Add rather than an Edit.
    bool m_addMode = false;
    // The host form's answer to "Validatefields".
    bool m_saveValid = false;
    // srset's bookmark after the last command, or the whole number 0 at either end.
    QVariant m_savedPosition = 0;
};

UserControl1::UserControl1(QWidget *parent)
    : ToolbarBase(PK_CONTEXT, kButtons, int(std::size(kButtons)), btnundo, btnsave, parent),
      d(std::make_unique<UserControl1Private>(this))
{
    for (int i = 0; i <= lastIndex(); ++i) {
        QFont font = Command1(i)->font();
        font.setFamily(i == btnundo ? QStringLiteral("Verdana") : QStringLiteral("Arial"));
        Command1(i)->setFont(font);
    }
    fitButtons();
}

UserControl1::~UserControl1() = default;

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

bool UserControl1Private::atEitherEnd(Recordset *rs)
{
    return rs->BOF() || rs->adoEOF();
}

int UserControl1Private::confirmUndo() const
{
    if (!q->gFormIsDirty)
        return vbYes;
    return MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are you Sure...All Changes will be Lost"),
                  vbYesNo + vbQuestion, QCoreApplication::translate(PK_CONTEXT, "Confirm Undo"));
}

void UserControl1::Command1_Click(qint16 Index)
{
    gErrorInClick = false;
    try {
        int answer = 0;
        switch (d->runCommand(Index, answer)) {
        case UserControl1Private::Outcome::Ended:
            return;
        case UserControl1Private::Outcome::Stopped:
            d->reportPendingError();
            return;
        case UserControl1Private::Outcome::Continue:
            break;
        }
        d->closingStep(Index, answer);
    } catch (const RuntimeError &error) {
        Err().setFrom(error);
        d->reportPendingError();
    }
}

UserControl1Private::Outcome UserControl1Private::runCommand(qint16 Index, int &answer)
{
    const auto stopped = [this] { return q->gErrorInClick; };
    switch (Index) {
    case UserControl1::btntop:
        q->recordset()->MoveFirst();
        if (stopped())
            return Outcome::Stopped;
        q->SetButtonStates(false, kAtFirst);
        break;
    case UserControl1::btnprev: {
        Recordset *rs = q->recordset();
        if (!rs->BOF())
            rs->MovePrevious();
        if (stopped())
            return Outcome::Stopped;
        if (rs->BOF()) {
            rs->MoveFirst();
            q->SetButtonStates(false, kAtFirst);
        } else {
            q->SetButtonStates(false, kSaveUndo);
        }
        break;
    }
    case UserControl1::btnnext: {
        Recordset *rs = q->recordset();
        if (!rs->adoEOF())
            rs->MoveNext();
        if (stopped())
            return Outcome::Stopped;
        if (rs->adoEOF()) {
            rs->MoveLast();
            q->SetButtonStates(false, kAtLast);
        } else {
            q->SetButtonStates(false, kSaveUndo);
        }
        break;
    }
    case UserControl1::btnlast:
        q->recordset()->MoveLast();
        if (stopped())
            return Outcome::Stopped;
        q->SetButtonStates(false, kAtLast);
        break;
    case UserControl1::btnadd:
        q->SetButtonStates(true, kSaveUndo);
        m_addMode = true;
        emit q->addclick();
        break;
    case UserControl1::btnedit:
        q->SetButtonStates(true, kSaveUndo);
        m_addMode = false;
        m_savedPosition = q->recordset()->Bookmark();
        emit q->editclick();
        break;
    case UserControl1::btndel: {
        answer = MsgBox(QCoreApplication::translate(PK_CONTEXT, "Are You Sure ?"), vbYesNo);
        Recordset *rs = q->recordset();
        if (answer == vbYes) {
            emit q->Deleteclick();
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
            q->SetButtonStates(true, kAddQuit);
        else
            q->SetButtonStates(false, kSaveUndo);
        break;
    }
    case UserControl1::btnsave: {
        m_saveValid = CBool(q->callHost(QStringLiteral("Validatefields")));
        if (!m_saveValid)
            return Outcome::Ended;
        Recordset *rs = q->recordset();
        if (!m_addMode)
            rs->setBookmark(m_savedPosition);
        emit q->saveclick();
        if (stopped())
            return Outcome::Stopped;
        if (m_addMode) {
            rs->MoveLast();
            m_addMode = false;
        }
        q->SetButtonStates(false, kSaveUndo);
        break;
    }
    case UserControl1::btnfind:
        emit q->findclick();
        break;
    case UserControl1::btnprint:
        emit q->printclick();
        if (reportParameters().ReportToPrint == QLatin1String("O"))
            return Outcome::Ended; // the host printed by itself
        if (stopped())
            return Outcome::Stopped;
        q->showPrintForm();
        break;
    case UserControl1::btnquit:
        q->unloadHostForm();
        break;
    case UserControl1::btnundo: {
        answer = confirmUndo();
        if (answer != vbYes)
            break;
        if (q->buttonEnabled(UserControl1::btnquit)) {
            // Not editing: undo means leaving the form.
            q->unloadHostForm();
            return Outcome::Ended;
        }
        Recordset *rs = q->recordset();
        if (m_addMode) {
            if (!(rs->BOF() && rs->adoEOF()))
                rs->MoveLast();
        } else {
            rs->setBookmark(m_savedPosition);
        }
        if (atEitherEnd(rs))
            q->SetButtonStates(true, kAddQuit);
        else
            q->SetButtonStates(false, kSaveUndo);
        break;
    }
    case UserControl1::QueryUnloadCommand:
        answer = confirmUndo();
        if (answer == vbNo && q->gFormQueryUnloadFired) {
            q->gUnloadFomForQueryUnload = true; // the host keeps its form open
            return Outcome::Ended;
        }
        q->gUnloadFomForQueryUnload = false;
        break;
    default:
        break; // 12 to 14 and any other index: the closing step only
    }
    return Outcome::Continue;
}

void UserControl1Private::closingStep(qint16 Index, int answer)
{
    if (Index >= UserControl1::btntop && Index <= UserControl1::btnlast) {
        // A move refreshes the form only when it reached another record.
        Recordset *rs = q->recordset();
        if (!atEitherEnd(rs) && CDbl(rs->Bookmark()) != CDbl(m_savedPosition))
            q->callHost(QStringLiteral("refresh1"));
    } else if ((Index == UserControl1::btnundo && answer == vbYes) || Index == UserControl1::btnfind || (Index == UserControl1::btndel && answer == vbYes)) {
        q->callHost(QStringLiteral("refresh1"));
    }
    Recordset *rs = q->recordset();
    m_savedPosition = atEitherEnd(rs) ? QVariant(0) : rs->Bookmark();
    q->gErrorInClick = false;
}

void UserControl1Private::reportPendingError()
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
