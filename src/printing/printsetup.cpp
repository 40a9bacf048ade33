#include <PanelKestrin/printsetup.h>

#include "printing/formcontrols_p.h"
#include "printing/outputoptions_p.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/conversions.h>

#include <QApplication>
#include <QPointer>
#include <QResizeEvent>

namespace PanelKestrin {

namespace {

// The panel's own size in twips, and what the file option adds to its container.
constexpr int kWidth = 4935;
constexpr int kCompactHeight = 1700;
constexpr int kFileHeight = 2300;
constexpr int kContainerGrowth = 600;
constexpr int kFrameMargin = 60;

} // namespace

class PrintSetupPrivate
{
public:
    explicit PrintSetupPrivate(PrintSetup *q);

    void UserControl_EnterFocus();
    void UserControl_ExitFocus();
    void UserControl_Resize();
    void optoutput_Click(int Index);
    void focusChanged(QWidget *old, QWidget *now);
    void setReportMember(const char *name, int value);

    PrintSetup *const q;
    OutputOptions *Frame2;
    QPointer<QObject> CrystalReportObj;
    // The container's "Height" when the focus last came in, in twips.
    double containerHeight = 0;
    // Whether the container holds the file option's extra height.
    bool containerGrown = false;
};

PrintSetupPrivate::PrintSetupPrivate(PrintSetup *q) : q(q)
{
    Frame2 = new OutputOptions(false, kWidth - 2 * kFrameMargin, q);
    Frame2->move(TwipsToPixelsX(kFrameMargin, q), TwipsToPixelsY(kFrameMargin, q));
    QObject::connect(Frame2, &OutputOptions::destinationChosen, q, [this](int Index) { optoutput_Click(Index); });
    QObject::connect(qApp, &QApplication::focusChanged, q, [this](QWidget *old, QWidget *now) { focusChanged(old, now); });
}

// Only a move between the panel and another control of the same form enters or leaves it: a
// message box or another window taking the focus does not.
void PrintSetupPrivate::focusChanged(QWidget *old, QWidget *now)
{
    if (!old || !now || now->window() != q->window() || old->window() != q->window())
        return;
    const bool wasInside = q->isAncestorOf(old);
    const bool isInside = q->isAncestorOf(now);
    if (!wasInside && isInside)
        guardEvent(QStringLiteral("PrintSetup.UserControl_EnterFocus"), [this] { UserControl_EnterFocus(); });
    else if (wasInside && !isInside)
        guardEvent(QStringLiteral("PrintSetup.UserControl_ExitFocus"), [this] { UserControl_ExitFocus(); });
}

void PrintSetupPrivate::UserControl_EnterFocus()
{
    if (QWidget *container = q->parentWidget())
        containerHeight = CDbl(CallByName(container, QStringLiteral("Height"), VbGet));
}

void PrintSetupPrivate::setReportMember(const char *name, int value)
{
    CallByName(CrystalReportObj.data(), QLatin1String(name), VbLet, {value});
}

// The chosen output goes into the report object, member by member; nothing else is set.
void PrintSetupPrivate::UserControl_ExitFocus()
{
    const qint16 fromPage = Frame2->fromPage();
    const qint16 toPage = Frame2->toPage();
    CallByName(CrystalReportObj.data(), QStringLiteral("Connect"), VbLet,
               {ConnectionSettings::instance().ConnectString()});
    switch (Frame2->destination()) {
    case OutputOptions::Screen:
        setReportMember("Destination", 0);
        break;
    case OutputOptions::Printer:
        setReportMember("Destination", 1);
        setReportMember("PrinterStartPage", fromPage);
        setReportMember("PrinterStopPage", toPage);
        break;
    default:
        setReportMember("Destination", 2);
        setReportMember("PrintFileType", Frame2->printFileType());
        break;
    }
}

// The panel keeps its size whatever the container asks: compact, or taller with the file option.
void PrintSetupPrivate::UserControl_Resize()
{
    const int height = Frame2->destination() == OutputOptions::File ? kFileHeight : kCompactHeight;
    const QSize wanted(TwipsToPixelsX(kWidth, q), TwipsToPixelsY(height, q));
    if (q->size() != wanted)
        q->setFixedSize(wanted);
}

// The file option makes the panel taller and its container 600 twips taller too; choosing
// another option gives the container that height back.
void PrintSetupPrivate::optoutput_Click(int Index)
{
    UserControl_Resize();
    QWidget *container = q->parentWidget();
    const bool file = Index == OutputOptions::File;
    if (!container || file == containerGrown)
        return;
    const double height = CDbl(CallByName(container, QStringLiteral("Height"), VbGet));
    CallByName(container, QStringLiteral("Height"), VbLet, {height + (file ? kContainerGrowth : -kContainerGrowth)});
    containerGrown = file;
}

PrintSetup::PrintSetup(QWidget *parent) : QWidget(parent), d(std::make_unique<PrintSetupPrivate>(this))
{
    setObjectName(QStringLiteral("PrintSetup"));
    // The output options open with their file types and the screen layout: the compact size.
    d->UserControl_Resize();
}

PrintSetup::~PrintSetup() = default;

void PrintSetup::setCrystalReportObj(QObject *CrystalReportObj)
{
    d->CrystalReportObj = CrystalReportObj;
}

void PrintSetup::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->UserControl_Resize();
}

} // namespace PanelKestrin
