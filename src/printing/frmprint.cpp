#include "printing/frmprint_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/hostform.h>
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
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>

namespace PanelKestrin {

namespace {

// Sizes of the form as it loads, in twips.
constexpr int kFormWidth = 6000;
constexpr int kFormHeight = 4100;
constexpr int kFrame2Top = 1380;
constexpr int kFrame2Height = 1110;
constexpr int kFrame2Width = 5760;

const QString kDateFormat = QStringLiteral("dd/MM/yyyy");

// Places a control the way the form is designed: left, top, width and height in twips.
void place(QWidget *w, int left, int top, int width, int height)
{
    w->setGeometry(TwipsToPixelsX(left, w), TwipsToPixelsY(top, w), TwipsToPixelsX(width, w),
                   TwipsToPixelsY(height, w));
}

template <typename W>
W *named(W *w, const char *name)
{
    w->setObjectName(QLatin1String(name));
    return w;
}

QLabel *label(QWidget *parent, const char *name, const QString &caption, int left, int top, int width)
{
    QLabel *l = named(new QLabel(caption, parent), name);
    place(l, left, top + 30, width, 255);
    return l;
}

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
    createControls();
    resize(TwipsToPixelsX(kFormWidth, this), TwipsToPixelsY(kFormHeight, this));
}

void frmprint::createControls()
{
    Label6 = label(this, "Label6", tr("Criteria For"), 120, 120, 1300);
    CmbCriteria = named(new QComboBox(this), "CmbCriteria");
    place(CmbCriteria, 1500, 120, 4380, 315);

    Label7 = label(this, "Label7", tr("Group On"), 120, 540, 1300);
    cmbfield = named(new QComboBox(this), "cmbfield");
    place(cmbfield, 1500, 540, 4380, 315);
    connect(cmbfield, &QComboBox::activated, this, [this] {
        guardEvent(QStringLiteral("frmprint.cmbfield_Click"), [this] { cmbfield_Click(); });
    });

    Label8 = label(this, "Label8", tr("From Range"), 120, 960, 1300);
    txtfrom = named(new QLineEdit(this), "txtfrom");
    place(txtfrom, 1500, 960, 1800, 315);
    DTPicker1 = datePicker(this, "DTPicker1");
    place(DTPicker1, 1500, 960, 1800, 315);
    Label9 = label(this, "Label9", tr("To Range"), 3420, 960, 800);
    txtto = named(new QLineEdit(this), "txtto");
    place(txtto, 4080, 960, 1800, 315);
    DTPicker2 = datePicker(this, "DTPicker2");
    place(DTPicker2, 4080, 960, 1800, 315);

    // Output options. The form opens with the screen layout: page boxes shown, copies, file
    // and printer set-up hidden.
    Frame2 = named(new QFrame(this), "Frame2");
    Frame2->setFrameShape(QFrame::StyledPanel);
    const char *const optionCaptions[] = {QT_TR_NOOP("Screen"), QT_TR_NOOP("Printer"), QT_TR_NOOP("File")};
    for (int i = 0; i < 3; ++i) {
        optoutput[i] = new QRadioButton(tr(optionCaptions[i]), Frame2);
        optoutput[i]->setObjectName(QStringLiteral("optoutput_%1").arg(i));
        place(optoutput[i], 120 + i * 1140, 180, 1080, 300);
    }
    optoutput[0]->setChecked(true);
    cmdprintsetup = named(new QPushButton(tr("Printer &Setup..."), Frame2), "cmdprintsetup");
    place(cmdprintsetup, 3660, 150, 1920, 360);
    cmdprintsetup->hide();

    Label2 = label(Frame2, "Label2", tr("From Page"), 120, 630, 900);
    txtfrompage = named(new QLineEdit(Frame2), "txtfrompage");
    place(txtfrompage, 1050, 630, 600, 315);
    Label3 = label(Frame2, "Label3", tr("To Page"), 1800, 630, 750);
    txttopage = named(new QLineEdit(Frame2), "txttopage");
    place(txttopage, 2580, 630, 600, 315);
    Label1 = label(Frame2, "Label1", tr("No. Of Copies"), 3330, 630, 1200);
    txtnocopies = named(new QLineEdit(QStringLiteral("1"), Frame2), "txtnocopies");
    place(txtnocopies, 4560, 630, 600, 315);
    UpDown1 = named(new QScrollBar(Qt::Vertical, Frame2), "UpDown1");
    place(UpDown1, 5160, 630, 255, 315);
    // The spinner counts the copies in its buddy box; its up arrow counts up.
    UpDown1->setRange(1, 999);
    UpDown1->setInvertedAppearance(true);
    UpDown1->setInvertedControls(true);
    connect(UpDown1, &QScrollBar::valueChanged, txtnocopies,
            [this](int value) { txtnocopies->setText(QString::number(value)); });

    Label5 = label(Frame2, "Label5", tr("File Type"), 120, 1110, 900);
    cmbfiletype = named(new QComboBox(Frame2), "cmbfiletype");
    place(cmbfiletype, 1050, 1110, 1800, 315);
    Label4 = label(Frame2, "Label4", tr("File Name"), 120, 1560, 900);
    txtfilename = named(new QLineEdit(Frame2), "txtfilename");
    place(txtfilename, 1050, 1560, 4050, 315);
    cmdfilehelp = named(new QPushButton(QStringLiteral("..."), Frame2), "cmdfilehelp");
    place(cmdfilehelp, 5160, 1560, 420, 315);
    for (QWidget *w : {static_cast<QWidget *>(Label1), static_cast<QWidget *>(txtnocopies),
                       static_cast<QWidget *>(UpDown1), static_cast<QWidget *>(Label5),
                       static_cast<QWidget *>(cmbfiletype), static_cast<QWidget *>(Label4),
                       static_cast<QWidget *>(txtfilename), static_cast<QWidget *>(cmdfilehelp)})
        w->hide();

    cmdOK = named(new QPushButton(tr("&OK"), this), "cmdOK");
    cmdcancel = named(new QPushButton(tr("&CANCEL"), this), "cmdcancel");
    cmdOK->setAutoDefault(false);
    cmdcancel->setAutoDefault(false);
    connect(cmdcancel, &QPushButton::clicked, this, [this] {
        guardEvent(QStringLiteral("frmprint.cmdcancel_Click"), [this] { cmdcancel_Click(); });
    });
    setFrame2Height(kFrame2Height);
}

// Frame2's height changes with the destination; the command buttons stay below it.
void frmprint::setFrame2Height(int twips)
{
    place(Frame2, 120, kFrame2Top, kFrame2Width, twips);
    place(cmdOK, 1500, kFrame2Top + twips + 180, 1260, 420);
    place(cmdcancel, 3240, kFrame2Top + twips + 180, 1260, 420);
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

void frmprint::Form_Load()
{
    const ReportParameters &block = reportParameters();

    cmbfiletype->clear();
    cmbfiletype->addItem(tr("Text File"));
    cmbfiletype->addItem(tr(" Doc File"));
    cmbfiletype->setCurrentIndex(0);

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

    setFrame2Height(kFrame2Height);
    CallByName(this, QStringLiteral("Height"), VbLet, {kFormHeight});
}

// A date field is ranged with the two date pickers, any other with the two text boxes.
void frmprint::cmbfield_Click()
{
    grpfield = fieldAt(cmbfield->currentIndex());
    Recordset *rs = reportParameters().srset;
    if (!rs)
        throw RuntimeError(ErrObjectNotSet, RuntimeError::standardDescription(ErrObjectNotSet)
                                                + QStringLiteral(": srset"),
                           QStringLiteral("frmprint"));
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

// Unloading forgets what the form showed; the next Print loads it from the block again.
void frmprint::Form_Unload()
{
    m_loaded = false;
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
