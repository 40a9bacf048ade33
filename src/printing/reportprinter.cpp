#include "printing/reportprinter_p.h"

#include "printing/reportdocument_p.h"
#include "printing/reportpainter_p.h"

#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/runtimeerror.h>

#include <QDialog>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStringList>

#include <optional>

namespace PanelKestrin {

namespace {

// What the user confirmed in the printer setup: the printer and its paper.
struct PrinterChoice
{
    QString name;
    QPageLayout layout;
};

std::optional<PrinterChoice> &printerChoice()
{
    static std::optional<PrinterChoice> choice;
    return choice;
}

// Points printer at the printer the reports go to without a name: the printer setup's choice
// with its paper, else the system's default queue. False, leaving printer alone, when neither
// is installed.
bool pointAtDefaultPrinter(QPrinter &printer, const QStringList &installed)
{
    const std::optional<PrinterChoice> &choice = printerChoice();
    const bool chosen = choice && installed.contains(choice->name);
    const QString name = chosen ? choice->name : QPrinterInfo::defaultPrinterName();
    if (name.isEmpty() || !installed.contains(name))
        return false;
    printer.setOutputFormat(QPrinter::NativeFormat);
    printer.setPrinterName(name);
    if (chosen)
        printer.setPageLayout(choice->layout);
    return true;
}

QString errorSource()
{
    return QStringLiteral("Report");
}

RuntimeError noPrinterInstalled()
{
    return RuntimeError(ErrReportPrinter,
                        QStringLiteral("No printer is installed. Add a printer to the system "
                                       "before printing, or send the report to a file."),
                        errorSource());
}

RuntimeError printerNotInstalled(const QString &name, const QStringList &installed)
{
    return RuntimeError(ErrReportPrinter,
                        QStringLiteral("The printer \"%1\" is not installed. Installed printers: %2.")
                            .arg(name, installed.join(QStringLiteral(", "))),
                        errorSource());
}

// Refuses a printer that cannot take the job before anything is sent: a system queue that is
// not installed, or the PDF fallback Qt picks on a system without printers, which has no file.
void checkPrinterInstalled(const QPrinter &printer)
{
    if (printer.outputFormat() == QPrinter::PdfFormat) {
        if (printer.outputFileName().isEmpty())
            throw noPrinterInstalled();
        return;
    }
    const QStringList installed = QPrinterInfo::availablePrinterNames();
    if (installed.isEmpty() || printer.printerName().isEmpty())
        throw noPrinterInstalled();
    if (!installed.contains(printer.printerName()))
        throw printerNotInstalled(printer.printerName(), installed);
}

RuntimeError jobFailed(const QPrinter &printer, const QString &what)
{
    const QString target = printer.outputFormat() == QPrinter::PdfFormat
        ? QStringLiteral("the file \"%1\"").arg(printer.outputFileName())
        : QStringLiteral("the printer \"%1\"").arg(printer.printerName());
    return RuntimeError(ErrReportPrinter,
                        QStringLiteral("The print job on %1 could not %2.").arg(target, what),
                        errorSource());
}

} // namespace

void selectReportPrinter(QPrinter &printer, const QString &printerName)
{
    const QStringList installed = QPrinterInfo::availablePrinterNames();
    if (installed.isEmpty())
        throw noPrinterInstalled();
    if (printerName.isEmpty()) {
        // Sending a report to whichever printer happens to come first could put it in the
        // wrong hands; without a default the user has to choose.
        if (!pointAtDefaultPrinter(printer, installed))
            throw RuntimeError(ErrReportPrinter,
                               QStringLiteral("No default printer is set. Choose one of the "
                                              "installed printers: %1.")
                                   .arg(installed.join(QStringLiteral(", "))),
                               errorSource());
        return;
    }
    if (!installed.contains(printerName))
        throw printerNotInstalled(printerName, installed);
    printer.setOutputFormat(QPrinter::NativeFormat);
    printer.setPrinterName(printerName);
}

ReportPageSetup defaultReportPageSetup()
{
    QPrinter printer(QPrinter::HighResolution);
    return ReportPageSetup::fromPrinter(
        pointAtDefaultPrinter(printer, QPrinterInfo::availablePrinterNames()) ? &printer : nullptr);
}

bool runReportPrinterSetup(QWidget *parent)
{
    QPrinter printer(QPrinter::HighResolution);
    const QStringList installed = QPrinterInfo::availablePrinterNames();
    pointAtDefaultPrinter(printer, installed);
    if (RunPrinterDialog(&printer, parent) != QDialog::Accepted)
        return false;
    if (printer.outputFormat() == QPrinter::NativeFormat && installed.contains(printer.printerName()))
        printerChoice() = PrinterChoice{printer.printerName(), printer.pageLayout()};
    return true;
}

void resetReportPrinterSetup()
{
    printerChoice().reset();
}

void printReport(const ReportDocument &document, QPrinter &printer, int fromPage, int toPage,
                 int copies)
{
    const auto [first, last] = document.pageIndexRange(fromPage, toPage);
    if (copies < 1)
        throw RuntimeError(ErrInvalidProcedureCall,
                           QStringLiteral("Invalid number of copies %1: at least one copy is "
                                          "printed.")
                               .arg(copies),
                           errorSource());
    checkPrinterInstalled(printer);

    printer.setFullPage(true);
    printer.setPageLayout(document.setup.fullPageLayout());
    printer.setDocName(document.title.isEmpty() ? QStringLiteral("Report") : document.title);
    const bool printerMakesCopies = printer.supportsMultipleCopies();
    printer.setCopyCount(printerMakesCopies ? copies : 1);
    const int passes = printerMakesCopies ? 1 : copies;

    QPainter painter;
    if (!painter.begin(&printer))
        throw jobFailed(printer, QStringLiteral("be started"));
    bool firstPage = true;
    for (int pass = 0; pass < passes; ++pass) {
        for (int page = first; page <= last; ++page) {
            if (!firstPage && !printer.newPage()) {
                painter.end();
                throw jobFailed(printer, QStringLiteral("begin page %1").arg(page + 1));
            }
            firstPage = false;
            paintReportPage(painter, document, page);
        }
    }
    if (!painter.end() || printer.printerState() == QPrinter::Error)
        throw jobFailed(printer, QStringLiteral("be finished"));
}

} // namespace PanelKestrin
