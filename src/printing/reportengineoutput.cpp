#include "printing/reportengineoutput_p.h"

#include "printing/reportfiles_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportprinter_p.h"

#include <PanelKestrin/modalrunner.h>

#include <QPrinter>

namespace PanelKestrin {

ReportDocument layOutReport(std::unique_ptr<ReportPaginator> paginator, const ReportFeed &feed)
{
    while (feed(*paginator)) {
    }
    return paginator->finish();
}

void previewReport(std::unique_ptr<ReportPaginator> paginator, ReportFeed feed, int windowState)
{
    ReportPreview preview;
    preview.setPrintHandler([](const ReportDocument &document, QWidget *window) {
        QPrinter printer(QPrinter::HighResolution);
        selectReportPrinter(printer);
        if (RunPrinterDialog(&printer, window) != QDialog::Accepted)
            return;
        const bool range = printer.printRange() == QPrinter::PageRange;
        printReport(document, printer, range ? printer.fromPage() : 1, range ? printer.toPage() : ReportLastPage,
                    qMax(1, printer.copyCount()));
    });
    preview.startLayout(std::move(paginator), std::move(feed));
    preview.showReport(windowState, true);
}

} // namespace PanelKestrin
