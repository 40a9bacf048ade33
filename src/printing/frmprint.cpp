#include "printing/frmprint_p.h"

#include "printing/formcontrols_p.h"
#include "printing/keypressrule_p.h"
#include "printing/outputoptions_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/reportengine.h>
#include <PanelKestrin/sendkeys.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/reportparameters.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/twips.h>
#include <PanelKestrin/variant.h>

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDateEdit>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace PanelKestrin {

namespace {

// Sizes of the form as it loads, in twips, and with the file option's taller frame.
constexpr int kFormWidth = 6000;
constexpr int kFormHeight = 4100;
constexpr int kFormHeightForFile = 5100;
constexpr int kFrame2Top = 1380;
constexpr int kFrame2Width = 5760;

const QString kDateFormat = QStringLiteral("dd/MM/yyyy");

QDateEdit *datePicker(QWidget *parent, const char *name)
{
    QDateEdit *picker = named(new QDateEdit(QDate::currentDate(), parent), name);
    picker->setCalendarPopup(true);
    picker->setDisplayFormat(kDateFormat);
    picker->hide();
    return picker;
}

} // namespace

frmprint *frmprint::instance()
{
    static QPointer<frmprint> form;
    if (!form) {
        form = new frmprint;
        // The form outlives every host form; it goes when the application's loop ends.
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [] { delete form.data(); });
    }
    return form;
}

frmprint::frmprint(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmprint"));
    setWindowTitle(tr("Print Query Form"));
    setModal(true);
    QFont small = font();
    small.setPointSize(8);
    setFont(small);
    CrystalReport1 = new ReportEngine(this);
    CrystalReport1->setObjectName(QStringLiteral("CrystalReport1"));
    createControls();
    resize(TwipsToPixelsX(kFormWidth, this), TwipsToPixelsY(kFormHeight, this));
    // Key preview: the form sees every key before the control with the focus. Installed last,
    // so it runs before the boxes' own key filters.
    for (QWidget *w : findChildren<QWidget *>())
        w->installEventFilter(this);
}

frmprint::~frmprint() = default;

void frmprint::createControls()
{
    Label6 = captionLabel(this, "Label6", tr("Criteria For"), 120, 120, 1300);
    CmbCriteria = named(new QComboBox(this), "CmbCriteria");
    placeInTwips(CmbCriteria, 1500, 120, 4380, 315);

    Label7 = captionLabel(this, "Label7", tr("Group On"), 120, 540, 1300);
    cmbfield = named(new QComboBox(this), "cmbfield");
    placeInTwips(cmbfield, 1500, 540, 4380, 315);
    connect(cmbfield, &QComboBox::activated, this, [this] {
        guardEvent(QStringLiteral("frmprint.cmbfield_Click"), [this] { cmbfield_Click(); });
    });

    Label8 = captionLabel(this, "Label8", tr("From Range"), 120, 960, 1300);
    txtfrom = named(new QLineEdit(this), "txtfrom");
    placeInTwips(txtfrom, 1500, 960, 1800, 315);
    DTPicker1 = datePicker(this, "DTPicker1");
    placeInTwips(DTPicker1, 1500, 960, 1800, 315);
    Label9 = captionLabel(this, "Label9", tr("To Range"), 3420, 960, 780);
    txtto = named(new QLineEdit(this), "txtto");
    placeInTwips(txtto, 4200, 960, 1680, 315);
    DTPicker2 = datePicker(this, "DTPicker2");
    placeInTwips(DTPicker2, 4200, 960, 1680, 315);
    // The range boxes take digits only while the "Group On" field holds a number.
    const KeyPressRule rangeRule = [this](qint16 KeyAscii) { return !rangeTakesDigitsOnly() || isDigitKey(KeyAscii); };
    setKeyPressRule(txtfrom, QStringLiteral("frmprint.txtfrom_KeyPress"), rangeRule);
    setKeyPressRule(txtto, QStringLiteral("frmprint.txtto_KeyPress"), rangeRule);

    // Output options; the form opens with the screen layout.
    Frame2 = new OutputOptions(true, kFrame2Width, this);
    connect(Frame2, &OutputOptions::destinationChosen, this, [this](int Index) {
        guardEvent(QStringLiteral("frmprint.optoutput_Click"), [this, Index] { optoutput_Click(Index); });
    });

    cmdOK = named(new QPushButton(tr("&OK"), this), "cmdOK");
    cmdcancel = named(new QPushButton(tr("&CANCEL"), this), "cmdcancel");
    cmdOK->setAutoDefault(false);
    cmdcancel->setAutoDefault(false);
    connect(cmdOK, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("frmprint.cmdOK_Click"), [this] { cmdOK_Click(); }); });
    connect(cmdcancel, &QPushButton::clicked, this, [this] {
        guardEvent(QStringLiteral("frmprint.cmdcancel_Click"), [this] { cmdcancel_Click(); });
    });
    setFrame2Height(OutputOptions::kCompactHeight);
}

// Frame2's height changes with the destination; the command buttons stay below it.
void frmprint::setFrame2Height(int twips)
{
    Frame2->move(TwipsToPixelsX(120, this), TwipsToPixelsY(kFrame2Top, this));
    placeInTwips(cmdOK, 1500, kFrame2Top + twips + 180, 1260, 420);
    placeInTwips(cmdcancel, 3240, kFrame2Top + twips + 180, 1260, 420);
}

// The file option needs the taller frame and form; screen and printer the compact ones.
void frmprint::optoutput_Click(int Index)
{
    const bool file = Index == OutputOptions::File;
    setFrame2Height(file ? OutputOptions::kFileHeightWithName : OutputOptions::kCompactHeight);
    CallByName(this, QStringLiteral("Height"), VbLet, {file ? kFormHeightForFile : kFormHeight});
}

void frmprint::Load()
{
    if (m_loaded)
        return;
    Form_Load();
    m_loaded = true;
}

QString frmprint::fieldAt(int index) const
{
    if (index < 0 || index >= fieldlist.size())
        throw RuntimeError(ErrSubscriptOutOfRange,
                           RuntimeError::standardDescription(ErrSubscriptOutOfRange)
                               + QStringLiteral(": fieldlist(%1)").arg(index),
                           QStringLiteral("frmprint"));
    return fieldlist.at(index);
}

Recordset *frmprint::reportRecordset()
{
    Recordset *rs = reportParameters().srset;
    if (!rs)
        throw RuntimeError(ErrObjectNotSet, RuntimeError::standardDescription(ErrObjectNotSet)
                                                + QStringLiteral(": srset"),
                           QStringLiteral("frmprint"));
    return rs;
}

void frmprint::Form_Load()
{
    const ReportParameters &block = reportParameters();

    // Every load starts from an empty form, as the last unload left none of it.
    txtfrom->clear();
    txtto->clear();
    DTPicker1->setDate(QDate::currentDate());
    DTPicker2->setDate(QDate::currentDate());
    Frame2->clear();

    // "Group On": one item per caption; item i stands for field i of sortfields.
    fieldlist = Split(block.sortfields, QStringLiteral(","));
    grpfield.clear();
    cmbfield->clear();
    for (const QString &caption : Split(block.sortcaptions, QStringLiteral(",")))
        cmbfield->addItem(caption);
    if (cmbfield->count() > 0) {
        cmbfield->setCurrentIndex(0);
        cmbfield_Click();
    }
    cmbfield->update();
    if (cmbfield->count() > 0)
        grpfield = fieldAt(cmbfield->currentIndex());

    // "Criteria For": the captions in column 1, offered only when (0, 0) holds a value.
    CmbCriteria->clear();
    const VariantMatrix criteria = block.SelectionCriteria;
    const QVariant first = criteria(0, 0);
    if (!isNull(first) && !CStr(first).isEmpty()) {
        CmbCriteria->setEnabled(true);
        for (int i = 0; i <= criteria.UBound(1); ++i)
            CmbCriteria->addItem(CStr(criteria(i, 1)));
        CmbCriteria->setCurrentIndex(0);
        CmbCriteria->update();
    } else {
        CmbCriteria->setEnabled(false);
    }

    setFrame2Height(OutputOptions::kCompactHeight);
    CallByName(this, QStringLiteral("Height"), VbLet, {kFormHeight});
}

// The form's height counts its window frame, which is known once the window is shown.
void frmprint::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    const bool file = Frame2->destination() == OutputOptions::File;
    CallByName(this, QStringLiteral("Height"), VbLet, {file ? kFormHeightForFile : kFormHeight});
}

// A date field is ranged with the two date pickers, any other with the two text boxes.
void frmprint::cmbfield_Click()
{
    grpfield = fieldAt(cmbfield->currentIndex());
    Recordset *rs = reportRecordset();
    const bool isDate = rs->Fields().Item(grpfield).Type() == FieldTypeDate;
    txtfrom->setVisible(!isDate);
    txtto->setVisible(!isDate);
    DTPicker1->setVisible(isDate);
    DTPicker2->setVisible(isDate);
    if (isDate) {
        DTPicker1->setDisplayFormat(kDateFormat);
        DTPicker2->setDisplayFormat(kDateFormat);
    }
}

void frmprint::cmdcancel_Click()
{
    // Closing a window that is not on screen may skip the close event; the form unloads anyway.
    if (UnloadForm(this))
        Form_Unload();
}

// Unloading forgets what the form showed and releases the report's recordset and connection;
// the next Print loads it from the block again.
void frmprint::Form_Unload()
{
    m_loaded = false;
    m_reportRecordset.reset();
    m_connection.reset();
}

bool frmprint::rangeTakesDigitsOnly() const
{
    Recordset *rs = reportRecordset();
    // Without a current record there is no value to go by.
    if (rs->BOF() || rs->adoEOF())
        return false;
    const QVariant value = rs->Fields().Item(grpfield).Value();
    return !isNull(value) && IsNumeric(value);
}

// Down and Enter go to the next control, Up to the previous one; the key itself still reaches
// the control.
void frmprint::Form_KeyDown(qint16 KeyCode, qint16 Shift)
{
    Q_UNUSED(Shift)
    if (KeyCode == vbKeyDown || KeyCode == vbKeyReturn)
        SendKeys(QStringLiteral("{tab}"));
    else if (KeyCode == vbKeyUp)
        SendKeys(QStringLiteral("+{tab}"));
}

bool frmprint::eventFilter(QObject *watched, QEvent *event)
{
    // A key a control leaves unhandled travels on to its parents; it counts once, where it began.
    if (event->type() == QEvent::KeyPress && watched == QApplication::focusWidget()) {
        auto *key = static_cast<QKeyEvent *>(event);
        guardEvent(QStringLiteral("frmprint.Form_KeyDown"),
                   [&] { Form_KeyDown(KeyCodeFromEvent(key), ShiftFromEvent(key)); });
    }
    return QDialog::eventFilter(watched, event);
}

void frmprint::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    QDialog::closeEvent(event);
}

void frmprint::done(int result)
{
    Form_Unload();
    QDialog::done(result);
}

} // namespace PanelKestrin
