#include "printing/reportengine_p.h"

#include "printing/reportdefinition_p.h"
#include "printing/reportenginelayout_p.h"
#include "printing/reportengineoutput_p.h"
#include "printing/reportenginerows_p.h"
#include "printing/reportfiles_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportprinter_p.h"
#include "printing/selectionformula_p.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/waitcursor.h>

#include <QPrinter>

namespace PanelKestrin {

namespace {

QString fileFilter(int fileType)
{
    switch (fileType) {
    case ReportEngine::FileRtf:
        return QStringLiteral("Documents (*.rtf *.doc)");
    case ReportEngine::FilePdf:
        return QStringLiteral("PDF files (*.pdf)");
    default:
        return QStringLiteral("Text files (*.txt)");
    }
}

} // namespace

void ReportEngine::run()
{
    d->recordsSelected = 0;
    int selected = 0;
    std::shared_ptr<ReportEngineLayout> layout;
    std::optional<ReportPageSetup> page;
    {
        WaitCursor wait;
        ReportDefinition definition = ReportDefinition::read(d->reportFileName);
        const PanelKestrin::SelectionFormula formula = SelectionFormula::parse(d->selectionFormula);
        Connection connection;
        connection.Open(d->connect + QStringLiteral(";Mode=Read"));
        ReportRows rows = loadReportRows(connection, definition, formula);
        sortReportRows(rows, reportRunSortKeys(definition, d->sortFields), definition.fileName);
        selected = int(rows.rows.size());
        page = definition.page;
        layout = std::make_shared<ReportEngineLayout>(std::move(definition), std::move(rows));
    }
    const ReportFeed feed = [layout](ReportPaginator &paginator) { return layout->feed(paginator); };

    if (d->destination == ToWindow) {
        previewReport(layout->createPaginator(page.value_or(defaultReportPageSetup())), feed, d->windowState);
    } else if (d->destination == ToPrinter) {
        WaitCursor wait;
        QPrinter printer(QPrinter::HighResolution);
        selectReportPrinter(printer, d->printerName);
        const ReportDocument document =
            layOutReport(layout->createPaginator(page.value_or(ReportPageSetup::fromPrinter(&printer))), feed);
        const bool everyPage = d->startPage == 0 && d->stopPage == 0;
        printReport(document, printer, everyPage ? 1 : d->startPage, everyPage ? ReportLastPage : d->stopPage, d->copies);
    } else {
        QString fileName = d->printFileName;
        if (fileName.trimmed().isEmpty())
            fileName = GetSaveFileName(nullptr, QStringLiteral("Save Report As"), fileFilter(d->printFileType));
        if (fileName.trimmed().isEmpty()) {
            d->recordsSelected = selected;
            return;
        }
        WaitCursor wait;
        const ReportDocument document =
            layOutReport(layout->createPaginator(page.value_or(defaultReportPageSetup())), feed);
        if (d->printFileType == FileRtf)
            writeReportRtf(document, fileName);
        else if (d->printFileType == FilePdf)
            writeReportPdf(document, fileName);
        else
            writeReportText(document, fileName);
    }
    d->recordsSelected = selected;
}

} // namespace PanelKestrin
