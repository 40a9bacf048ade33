#pragma once

#include <PanelKestrin/panelkestrin_export.h>

class QPainter;

namespace PanelKestrin {

class ReportDocument;

// Draws page pageIndex (0-based) of document at its real size on the painter's device: one
// point of the page model becomes 1/72 inch at the device's logical resolution, and the page's
// top-left corner goes to the painter's current origin. A transform the caller has set (the
// preview's zoom and scroll) applies on top.
//
// The preview, the PDF file and the printer all draw pages through this one function. A
// printer's painter must start at the paper's corner (QPrinter::setFullPage(true)), since the
// page model carries its own margins. The painter's state is left as it was found.
PANELKESTRIN_EXPORT void paintReportPage(QPainter &painter, const ReportDocument &document,
                                         int pageIndex);

} // namespace PanelKestrin
