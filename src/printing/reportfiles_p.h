#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <QStringList>
#include <limits>

namespace PanelKestrin {

class ReportDocument;

// The file outputs of a laid-out report. Each writes pages fromPage to toPage (1-based,
// inclusive; a range past the last page stops at the last page; see
// ReportDocument::pageIndexRange for the ranges refused), replacing an existing file. A file
// that cannot be written raises RuntimeError 75 naming it.

constexpr int ReportLastPage = std::numeric_limits<int>::max();

// PDF through QPdfWriter: every page drawn by paintReportPage with one painter, so each font
// is embedded once, as a subset.
PANELKESTRIN_EXPORT void writeReportPdf(const ReportDocument &document, const QString &fileName,
                                        int fromPage = 1, int toPage = ReportLastPage);

// Plain text (file type 2): the lines of each page, top to bottom, a form feed between pages.
PANELKESTRIN_EXPORT void writeReportText(const ReportDocument &document, const QString &fileName,
                                         int fromPage = 1, int toPage = ReportLastPage);

// The lines of page pageIndex (0-based) as the text output writes them: text on the grid of
// the document's fixed-pitch character cell, each run starting at the column nearest its x
// position (a blank at least between runs); a line of "-" for a rule; blank lines where the
// page has vertical room between lines. Trailing blanks are dropped.
PANELKESTRIN_EXPORT QStringList reportPageTextLines(const ReportDocument &document, int pageIndex);

// A word-processor document (file type 17) in RTF: the document's fonts, its paper and
// margins, a page break between pages, and each line as a paragraph whose tab stops put the
// runs at their positions (right-aligned runs on right tab stops), at the model's own line
// spacing, so columns stay aligned.
PANELKESTRIN_EXPORT void writeReportRtf(const ReportDocument &document, const QString &fileName,
                                        int fromPage = 1, int toPage = ReportLastPage);

} // namespace PanelKestrin
