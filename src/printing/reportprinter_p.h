#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>

class QPrinter;
class QWidget;

namespace PanelKestrin {

class ReportDocument;
struct ReportPageSetup;

// The classic "Printer error" number: raised when there is no printer to print on, when the
// chosen one is not installed, or when the system refuses the print job.
inline constexpr int ErrReportPrinter = 482;

// Points printer at the print queue named printerName, or when printerName is empty at the
// printer chosen in the printer setup (with its paper) or else the system's default queue. Raises RuntimeError ErrReportPrinter when no printer is installed or
// when no installed printer has that name.
PANELKESTRIN_EXPORT void selectReportPrinter(QPrinter &printer,
                                             const QString &printerName = QString());

// The paper a report is laid out on when it names none: the default printer's, so that what the
// preview and the files show is what that printer prints, page for page; A4 portrait with
// half-inch margins when no printer is installed or none is the default.
PANELKESTRIN_EXPORT ReportPageSetup defaultReportPageSetup();

// "Printer Setup...": runs the printer dialog on the printer reports go to, and when the user
// confirms a printer (not a file), keeps it with the paper, orientation and margins chosen as
// the default printer of this program's reports from then on: selectReportPrinter without a
// name and defaultReportPageSetup answer with it while it stays installed. Returns whether the
// user confirmed.
PANELKESTRIN_EXPORT bool runReportPrinterSetup(QWidget *parent);
// Forgets what the printer setup chose: the system's default printer again.
PANELKESTRIN_EXPORT void resetReportPrinterSetup();

// Prints pages fromPage to toPage (counted from 1, both included) of document on printer,
// copies times, as one print job titled with the document's title. A range that reaches past
// the last page prints the pages that exist.
//
// The printer takes the paper and orientation the document was laid out on and prints from
// the paper's corner, since the pages carry their own margins. When the printer makes copies
// itself (a system print queue) it gets the count and keeps its own collation setting;
// otherwise (a PDF file) the pages are drawn once per copy, each copy whole.
//
// Raises RuntimeError 5 when a page number is below 1, the first page comes after the last or
// lies past the end, or copies is below 1; RuntimeError ErrReportPrinter when no printer is
// installed, the printer is not, or the job cannot be started or finished. Nothing is sent to
// the printer when the arguments are refused.
PANELKESTRIN_EXPORT void printReport(const ReportDocument &document, QPrinter &printer,
                                     int fromPage, int toPage, int copies = 1);

} // namespace PanelKestrin
