#include "printing/reportfiles_p.h"

#include "printing/reportdocument_p.h"
#include "printing/reportoutputsupport_p.h"
#include "printing/reportpainter_p.h"

#include <PanelKestrin/waitcursor.h>

#include <QPainter>
#include <QPdfWriter>

namespace PanelKestrin {

void writeReportPdf(const ReportDocument &document, const QString &fileName, int fromPage, int toPage)
{
    const auto [first, last] = document.pageIndexRange(fromPage, toPage);
    if (fileName.trimmed().isEmpty())
        throwReportFileError(fileName, QStringLiteral("no file name was given"));
    WaitCursor wait;
    QPdfWriter writer(fileName);
    writer.setCreator(QStringLiteral("PanelKestrin"));
    writer.setTitle(document.title);
    // The page model carries its own margins: the painter starts at the paper's corner.
    writer.setPageLayout(document.setup.fullPageLayout());
    QPainter painter;
    if (!painter.begin(&writer))
        throwReportFileError(fileName, QStringLiteral("the file cannot be opened for writing"));
    for (int page = first; page <= last; ++page) {
        if (page > first)
            writer.newPage();
        paintReportPage(painter, document, page);
    }
    if (!painter.end())
        throwReportFileError(fileName, QStringLiteral("the file could not be completed"));
}

} // namespace PanelKestrin
