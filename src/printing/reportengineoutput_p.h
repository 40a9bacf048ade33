#pragma once

#include "printing/reportpreview_p.h"

#include <memory>

namespace PanelKestrin {

class ReportPaginator;

// What the report engine and the data report do alike with a report they lay out.

// Feeds the paginator to the end and hands over the pages.
ReportDocument layOutReport(std::unique_ptr<ReportPaginator> paginator, const ReportFeed &feed);

// Opens the preview window modally (through the modal runner) in windowState, laying the
// report out while it shows; its Print button asks for a printer with the printer dialog
// runner and prints the pages chosen there. Returns when the window is closed.
void previewReport(std::unique_ptr<ReportPaginator> paginator, ReportFeed feed, int windowState);

} // namespace PanelKestrin
