#include <PanelKestrin/toolbarbase.h>

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/propertybag.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/strings.h>

#include "printing/frmprint_p.h"
#include "toolbars/toolbarbase_p.h"
#include "toolbars/toolbarbutton_p.h"

#include <QCoreApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QIcon>
#include <QShortcut>
#include <QToolButton>

namespace PanelKestrin {

namespace {

// Property-bag names and the defaults every toolbar saves with (eleven characters whatever the
// button count).
const QString kBagCmdenable = QStringLiteral("cmdenable");
const QString kBagCancel = QStringLiteral("Cancel");
const QString kBagDefault = QStringLiteral("Default");
const QString kDefaultCmdenable = QStringLiteral("00000000000");

constexpr qint16 kKeyEscape = 27;
constexpr qint16 kKeyLowerW = 119;
constexpr int kPrintFormOffsetTwips = 350;

} // namespace

ToolbarBasePrivate::ToolbarBasePrivate(ToolbarBase *toolbar, const char *context, qint16 undoIndex, qint16 saveIndex)
    : q(toolbar),
      m_source(QString::fromLatin1(context).replace(QLatin1String("::"), QLatin1String("."))),
      m_undoIndex(undoIndex),
      m_saveIndex(saveIndex)
{
}

ToolbarBase::ToolbarBase(const char *context, const ToolbarButton *buttons, int count, qint16 undoIndex,
                         qint16 saveIndex, QWidget *parent)
    : QWidget(parent), d(std::make_unique<ToolbarBasePrivate>(this, context, undoIndex, saveIndex))
{
    auto *frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    frame->setFrameShape(QFrame::StyledPanel);
    auto *row = new QHBoxLayout(frame);
    row->setContentsMargins(2, 2, 2, 2);
    row->setSpacing(1);
    auto *outer = new QHBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(frame);
    outer->addStretch(1);

    d->m_buttons.reserve(count);
    for (int i = 0; i < count; ++i) {
        auto *button = new QToolButton(frame);
        button->setObjectName(QStringLiteral("Command1_%1").arg(i));
        button->setText(QCoreApplication::translate(context, buttons[i].caption));
        button->setToolTip(QCoreApplication::translate(context, buttons[i].toolTip));
        button->setAccessibleDescription(button->toolTip()); // what a screen reader says of it
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setFocusPolicy(Qt::StrongFocus);
        button->setIconSize(QSize(16, 16));
        row->addWidget(button);
        connect(button, &QAbstractButton::clicked, this, [this, i] { runGuarded(qint16(i)); });
        d->m_buttons.append(button);
    }

    // Start-up: button i shows image-list item i + 1 (the list holds the pictures in button
    // order), then the shared report parameters are reset for every toolbar of the process.
    const auto imageListItem = [&](int item) {
        return QIcon(QStringLiteral(":/panelkestrin/toolbars/%1.xpm").arg(QLatin1String(buttons[item - 1].picture)));
    };
    for (int i = 0; i < count; ++i)
        d->m_buttons.at(i)->setIcon(imageListItem(i + 1));
    reportParameters().resetForToolbarStart();

    d->createAccessKeys();
    fitButtons();
}

ToolbarBase::~ToolbarBase() = default;

qint16 ToolbarBase::lastIndex() const
{
    return qint16(d->m_buttons.size() - 1);
}

QString ToolbarBase::errorSource() const
{
    return d->m_source;
}

void ToolbarBasePrivate::createAccessKeys()
{
    // Esc belongs to the toolbar only while its Undo button is the form's cancel button and is
    // enabled, so that two toolbars on one form do not compete for it and a dialog host keeps
    // Esc otherwise. Alt+W is the toolbar's own key; with two toolbars it alternates.
    const auto accessKey = [this](QKeySequence key, qint16 KeyAscii) {
        auto *shortcut = new QShortcut(key, q);
        shortcut->setContext(Qt::WindowShortcut);
        const auto press = [this, KeyAscii] {
            guardEvent(m_source + QStringLiteral(".AccessKeyPress"), [&] { q->AccessKeyPress(KeyAscii); });
        };
        QObject::connect(shortcut, &QShortcut::activated, q, press);
        QObject::connect(shortcut, &QShortcut::activatedAmbiguously, q, press);
        return shortcut;
    };
    m_escape = accessKey(QKeySequence(Qt::Key_Escape), kKeyEscape);
    accessKey(QKeySequence(Qt::ALT | Qt::Key_W), kKeyLowerW);
    m_buttons.at(m_undoIndex)->installEventFilter(q);
    updateEscapeKey();
}

void ToolbarBasePrivate::updateEscapeKey()
{
    m_escape->setEnabled(m_undoCancel && m_buttons.at(m_undoIndex)->isEnabled());
}

bool ToolbarBase::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::EnabledChange && watched == d->m_buttons.at(d->m_undoIndex))
        d->updateEscapeKey();
    return QWidget::eventFilter(watched, event);
}

void ToolbarBase::fitButtons()
{
    QSize size;
    for (QAbstractButton *button : qAsConst(d->m_buttons))
        size = size.expandedTo(button->sizeHint());
    for (QAbstractButton *button : qAsConst(d->m_buttons))
        button->setFixedSize(size);
}

void ToolbarBase::runGuarded(qint16 Index)
{
    guardEvent(d->m_source + QStringLiteral(".Command1_Click"), [&] { Command1_Click(Index); });
}

QAbstractButton *ToolbarBase::Command1(int Index) const
{
    if (Index < 0 || Index >= d->m_buttons.size())
        throw RuntimeError(ErrInvalidPropertyValue, QStringLiteral("Command1(%1)").arg(Index), d->m_source);
    return d->m_buttons.at(Index);
}

bool ToolbarBase::buttonEnabled(int Index) const
{
    return Command1(Index)->isEnabled();
}

// --- Enabling ------------------------------------------------------------------------------------

QString ToolbarBase::cmdenable() const
{
    return d->m_cmdenableText;
}

void ToolbarBase::setcmdenable(const QString &cmdenable)
{
    d->m_cmdenableText = cmdenable;
    for (int i = 0; i <= lastIndex(); ++i)
        d->m_buttons.at(i)->setEnabled(Mid(cmdenable, i + 1, 1) != QLatin1String("0"));
    emit PropertyChanged(QStringLiteral("cmdenable"));
}

void ToolbarBase::setCmdenable(const QString &cmdenable)
{
    d->m_cmdenableText = cmdenable;
}

void ToolbarBase::SetButtonStates(bool Enable, const QVariantList &Buttons)
{
    for (int i = 0; i <= lastIndex(); ++i) {
        bool listed = false;
        for (const QVariant &element : Buttons) {
            bool isNumber = false;
            const double value = element.toDouble(&isNumber);
            if (isNumber && value == i) {
                listed = true;
                break;
            }
        }
        const bool plain = listed ? Enable : !Enable;
        d->m_buttons.at(i)->setEnabled(gatedState(i, plain, listed));
    }
}

bool ToolbarBase::gatedState(int, bool plain, bool) const
{
    return plain;
}

void ToolbarBase::AccessKeyPress(qint16 KeyAscii)
{
    switch (KeyAscii) {
    case kKeyEscape:
        if (buttonEnabled(d->m_undoIndex))
            Command1_Click(d->m_undoIndex);
        break;
    case kKeyLowerW:
        Command1(d->m_saveIndex)->setFocus(Qt::ShortcutFocusReason);
        break;
    default:
        break;
    }
}

// --- Persistence ---------------------------------------------------------------------------------

void ToolbarBase::InitProperties()
{
    d->m_cmdenableText = cmdenable();
    d->m_Default = false;
}

void ToolbarBase::ReadProperties(const PropertyBag &PropBag)
{
    d->m_cmdenableText = PropBag.ReadProperty(kBagCmdenable, kDefaultCmdenable).toString();
    d->m_undoCancel = CBool(PropBag.ReadProperty(kBagCancel, false));
    d->updateEscapeKey();
    d->m_Default = CBool(PropBag.ReadProperty(kBagDefault, false));
}

void ToolbarBase::WriteProperties(PropertyBag &PropBag) const
{
    PropBag.WriteProperty(kBagCmdenable, d->m_cmdenableText, kDefaultCmdenable);
    PropBag.WriteProperty(kBagCancel, d->m_undoCancel, false);
    PropBag.WriteProperty(kBagDefault, d->m_Default, false);
}

// --- Report properties ---------------------------------------------------------------------------

Recordset *ToolbarBase::srset() const { return reportParameters().srset; }
void ToolbarBase::setsrset(Recordset *srset)
{
    reportParameters().srset = srset;
    emit PropertyChanged(QStringLiteral("srset"));
}

QString ToolbarBase::sortcaptions() const { return reportParameters().sortcaptions; }
void ToolbarBase::setsortcaptions(const QString &sortcaptions)
{
    reportParameters().sortcaptions = sortcaptions;
    emit PropertyChanged(QStringLiteral("sortcaptions"));
}

QString ToolbarBase::sortfields() const { return reportParameters().sortfields; }
void ToolbarBase::setsortfields(const QString &sortfields)
{
    reportParameters().sortfields = sortfields;
    emit PropertyChanged(QStringLiteral("sortfields"));
}

QString ToolbarBase::selquery() const { return reportParameters().selquery; }
void ToolbarBase::setselquery(const QString &selquery)
{
    reportParameters().selquery = selquery;
    emit PropertyChanged(QStringLiteral("selquery"));
}

QString ToolbarBase::rptheading() const { return reportParameters().rptheading; }
void ToolbarBase::setrptheading(const QString &rptheading)
{
    reportParameters().rptheading = rptheading;
}

QString ToolbarBase::rpttitle() const { return reportParameters().rpttitle; }
void ToolbarBase::setrpttitle(const QString &rpttitle)
{
    reportParameters().rpttitle = rpttitle;
    emit PropertyChanged(QStringLiteral("rpttitle"));
}

VariantMatrix ToolbarBase::SelectionCriteria() const { return reportParameters().SelectionCriteria; }
void ToolbarBase::setSelectionCriteria(const VariantMatrix &SelectionCriteria)
{
    reportParameters().SelectionCriteria = SelectionCriteria;
    emit PropertyChanged(QStringLiteral("SelectionCriteria"));
}

QString ToolbarBase::SelectionField() const { return reportParameters().SelectionField; }
void ToolbarBase::setSelectionField(const QString &SelectionField)
{
    reportParameters().SelectionField = SelectionField;
}

VariantMatrix ToolbarBase::RptParameter() const { return reportParameters().RptParameter; }
void ToolbarBase::setRptParameter(const VariantMatrix &RptParameter)
{
    reportParameters().RptParameter = RptParameter;
    // The formula parameters announce themselves under the criteria's name; hosts rely on it.
    emit PropertyChanged(QStringLiteral("SelectionCriteria"));
}

void ToolbarBase::storeReportToPrint(const QString &ReportToPrint)
{
    reportParameters().ReportToPrint = ReportToPrint;
}

// --- Host form and print hand-off ------------------------------------------------------------------

QWidget *ToolbarBase::hostForm() const
{
    return HostForm(this);
}

QVariant ToolbarBase::callHost(const QString &member) const
{
    return CallByName(hostForm(), member, VbMethod);
}

void ToolbarBase::unloadHostForm() const
{
    UnloadForm(hostForm());
}

Recordset *ToolbarBase::recordset() const
{
    Recordset *rs = reportParameters().srset;
    if (!rs)
        throw RuntimeError(ErrObjectNotSet, RuntimeError::standardDescription(ErrObjectNotSet)
                                                + QStringLiteral(": srset"),
                           d->m_source);
    return rs;
}

void ToolbarBase::showPrintForm()
{
    frmprint *form = frmprint::instance();
    form->Load();
    QWidget *host = hostForm();
    const double top = CDbl(CallByName(host, QStringLiteral("Top"), VbGet));
    const QVariant left = CallByName(host, QStringLiteral("Left"), VbGet);
    CallByName(form, QStringLiteral("Top"), VbLet, {top + kPrintFormOffsetTwips});
    CallByName(form, QStringLiteral("Left"), VbLet, {left});
    ShowModal(form);
}

} // namespace PanelKestrin
