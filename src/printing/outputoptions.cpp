#include "printing/outputoptions_p.h"

#include "printing/formcontrols_p.h"
#include "printing/keypressrule_p.h"
#include "printing/reportprinter_p.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/modalrunner.h>

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>

namespace PanelKestrin {

namespace {

// Rows of the frame, in twips from its top.
constexpr int kOptionRow = 180;
constexpr int kPageRow = 630;
constexpr int kFileTypeRow = 1110;
constexpr int kFileNameRow = 1560;

} // namespace

OutputOptions::OutputOptions(bool withFileName, int width, QWidget *parent)
    : QFrame(parent), m_withFileName(withFileName), m_width(width)
{
    setObjectName(QStringLiteral("Frame2"));
    setFrameShape(QFrame::StyledPanel);
    // The captions fit their places in the small dialog font.
    QFont small = font();
    small.setPointSize(8);
    setFont(small);

    const char *const captions[] = {QT_TR_NOOP("Screen"), QT_TR_NOOP("Printer"), QT_TR_NOOP("File")};
    for (int i = 0; i < 3; ++i) {
        optoutput[i] = new QRadioButton(tr(captions[i]), this);
        optoutput[i]->setObjectName(QStringLiteral("optoutput_%1").arg(i));
        placeInTwips(optoutput[i], 120 + i * 960, kOptionRow, 930, 300);
        connect(optoutput[i], &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                guardEvent(QStringLiteral("optoutput_Click"), [this, i] { optoutput_Click(i); });
        });
    }
    cmdprintsetup = named(new QPushButton(tr("Printer &Setup..."), this), "cmdprintsetup");
    placeInTwips(cmdprintsetup, 3000, kOptionRow - 30, 1620, 360);
    connect(cmdprintsetup, &QPushButton::clicked, this,
            [this] { guardEvent(QStringLiteral("cmdprintsetup_Click"), [this] { cmdprintsetup_Click(); }); });

    Label2 = captionLabel(this, "Label2", tr("From Page"), 120, kPageRow, 900);
    txtfrompage = named(new QLineEdit(this), "txtfrompage");
    placeInTwips(txtfrompage, 1020, kPageRow, 420, 315);
    Label3 = captionLabel(this, "Label3", tr("To Page"), 1530, kPageRow, 750);
    txttopage = named(new QLineEdit(this), "txttopage");
    placeInTwips(txttopage, 2280, kPageRow, 420, 315);
    Label1 = captionLabel(this, "Label1", tr("No. Of Copies"), 2790, kPageRow, 1170);
    txtnocopies = named(new QLineEdit(QStringLiteral("1"), this), "txtnocopies");
    placeInTwips(txtnocopies, 3960, kPageRow, 420, 315);
    UpDown1 = named(new QScrollBar(Qt::Vertical, this), "UpDown1");
    placeInTwips(UpDown1, 4380, kPageRow, 240, 315);
    // The spinner counts the copies in its buddy box, on from what the user typed there. A
    // vertical scroll bar's top arrow, Up key and wheel lower its value, so it holds the count
    // negated: up counts up.
    UpDown1->setRange(-999, -1);
    UpDown1->setValue(-1);
    connect(UpDown1, &QScrollBar::valueChanged, txtnocopies,
            [this](int value) { txtnocopies->setText(QString::number(-value)); });
    connect(txtnocopies, &QLineEdit::textEdited, UpDown1, [this](const QString &text) {
        bool ok = false;
        const int count = text.toInt(&ok);
        if (ok) {
            const QSignalBlocker keepText(UpDown1);
            UpDown1->setValue(-count);
        }
    });

    // Digits only; "To Page" alone also takes Backspace.
    setKeyPressRule(txtfrompage, QStringLiteral("txtfrompage_KeyPress"), isDigitKey);
    setKeyPressRule(txtnocopies, QStringLiteral("txtnocopies_KeyPress"), isDigitKey);
    setKeyPressRule(txttopage, QStringLiteral("txttopage_KeyPress"),
                    [](qint16 KeyAscii) { return isDigitKey(KeyAscii) || KeyAscii == vbKeyBack; });

    Label5 = captionLabel(this, "Label5", tr("File Type"), 120, kFileTypeRow, 900);
    cmbfiletype = named(new QComboBox(this), "cmbfiletype");
    placeInTwips(cmbfiletype, 1020, kFileTypeRow, 1680, 315);
    if (m_withFileName) {
        Label4 = captionLabel(this, "Label4", tr("File Name"), 120, kFileNameRow, 900);
        txtfilename = named(new QLineEdit(this), "txtfilename");
        placeInTwips(txtfilename, 1020, kFileNameRow, m_width - 1680, 315);
        cmdfilehelp = named(new QPushButton(QStringLiteral("..."), this), "cmdfilehelp");
        placeInTwips(cmdfilehelp, m_width - 600, kFileNameRow, 420, 315);
        connect(cmdfilehelp, &QPushButton::clicked, this,
                [this] { guardEvent(QStringLiteral("cmdfilehelp_Click"), [this] { cmdfilehelp_Click(); }); });
    }
    fillFileTypes();
    optoutput[Screen]->setChecked(true);
    optoutput_Click(Screen);
}

OutputOptions::~OutputOptions() = default;

int OutputOptions::destination() const
{
    return optoutput[Printer]->isChecked() ? Printer : optoutput[File]->isChecked() ? File : Screen;
}

void OutputOptions::resetLayout()
{
    if (destination() == Screen)
        optoutput_Click(Screen);
    else
        optoutput[Screen]->setChecked(true); // its click lays the frame out
}

void OutputOptions::clear()
{
    txtfrompage->clear();
    txttopage->clear();
    UpDown1->setValue(-1);
    txtnocopies->setText(QStringLiteral("1"));
    if (txtfilename)
        txtfilename->clear();
    fillFileTypes();
    resetLayout();
}

void OutputOptions::fillFileTypes()
{
    cmbfiletype->clear();
    cmbfiletype->addItem(tr("Text File"));
    cmbfiletype->addItem(tr(" Doc File"));
    cmbfiletype->setCurrentIndex(0);
}

qint16 OutputOptions::fromPage() const { return CInt(txtfrompage->text()); }
qint16 OutputOptions::toPage() const { return CInt(txttopage->text()); }
int OutputOptions::fileTypeIndex() const { return cmbfiletype->currentIndex(); }
int OutputOptions::printFileType() const { return fileTypeIndex() == 0 ? 2 : 17; }
QString OutputOptions::fileName() const { return txtfilename ? txtfilename->text() : QString(); }

void OutputOptions::setHeightInTwips(int twips)
{
    const QPoint at = pos();
    placeInTwips(this, 0, 0, m_width, twips);
    move(at);
}

// What each destination takes: the page range always; copies and printer set-up for the
// printer; copies, file type and file name for a file.
void OutputOptions::optoutput_Click(int Index)
{
    const bool printer = Index == Printer;
    const bool file = Index == File;
    txtfrompage->show();
    txttopage->show();
    for (QWidget *w : {static_cast<QWidget *>(txtnocopies), static_cast<QWidget *>(UpDown1),
                       static_cast<QWidget *>(Label1)})
        w->setVisible(printer || file);
    cmdprintsetup->setVisible(printer);
    cmbfiletype->setVisible(file);
    Label5->setVisible(file);
    if (m_withFileName) {
        txtfilename->setVisible(file);
        cmdfilehelp->setVisible(file);
        Label4->setVisible(file);
    }
    setHeightInTwips(file ? (m_withFileName ? kFileHeightWithName : kFileHeightWithoutName) : kCompactHeight);
    emit destinationChosen(Index);
}

// "Save Report As": text files or documents as the file type says; the dialog asks before an
// existing file is replaced (the dialog matches "*.Doc" in any case, so .doc files show). A
// cancelled dialog leaves the name as it was.
void OutputOptions::cmdfilehelp_Click()
{
    const QString filter = fileTypeIndex() == 0 ? QStringLiteral("Text (*.txt)") : QStringLiteral("Doc (*.Doc)");
    const QString chosen = GetSaveFileName(window(), tr("Save Report As"), filter, txtfilename->text());
    if (!chosen.isEmpty())
        txtfilename->setText(chosen);
}

// The printer dialog; the printer and paper the user confirms there are where this program's
// reports go from then on.
void OutputOptions::cmdprintsetup_Click()
{
    runReportPrinterSetup(window());
}

} // namespace PanelKestrin
