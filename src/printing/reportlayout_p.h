#pragma once

#include "printing/reportdocument_p.h"

#include <PanelKestrin/panelkestrin_export.h>

#include <functional>
#include <memory>

namespace PanelKestrin {

// One text piece of a band line: text in an alignment box that starts x points right of the
// left margin and is width points wide (0: up to the right margin).
struct ReportCell
{
    QString text;
    qreal x = 0;
    qreal width = 0;
    Qt::Alignment alignment = Qt::AlignLeft;
};

// A section of a report as the report's author describes it: text lines, rules and blank
// space, one under the other, across the page between the margins. The paginator never cuts
// a band between pages unless it is taller than a whole page (see ReportPaginator).
class PANELKESTRIN_EXPORT ReportBand
{
public:
    struct Element
    {
        enum Kind { Text, Rule, Space };
        Kind kind = Text;
        QFont font;                // Text
        QVector<ReportCell> cells; // Text
        qreal size = 0;            // Rule: the space above and below the line; Space: its height
        qreal thickness = 0.5;     // Rule
    };

    // A line of text across the page; a text with line breaks makes one line per part.
    ReportBand &addText(const QFont &font, const QString &text,
                        Qt::Alignment alignment = Qt::AlignLeft);
    // A line made of positioned cells (columns) in one font.
    ReportBand &addLine(const QFont &font, QVector<ReportCell> cells);
    // A horizontal rule across the page with spaceAround points above and below it.
    ReportBand &addRule(qreal spaceAround = 2, qreal thickness = 0.5);
    ReportBand &addSpace(qreal points);
    // Draws a box around the band.
    ReportBand &setFramed(bool framed);

    bool isEmpty() const { return m_elements.isEmpty(); }
    bool framed() const { return m_framed; }
    const QVector<Element> &elements() const { return m_elements; }

private:
    QVector<Element> m_elements;
    bool m_framed = false;
};

// "Courier New" when it is installed, else the system's fixed-pitch font: the font in which
// lines padded with blanks keep their columns.
PANELKESTRIN_EXPORT QFont fixedPitchReportFont(qreal pointSize = 10);

// Lays a report out into pages. The engine and the data report feed it bands in reading
// order: group headers, detail lines, group footers, and at the end the report footer; the
// report header, page header and page footer are set before the first band.
//
// - The report header opens the first page; the page header opens every page (below the report
//   header on the first); the page footer closes every page at the bottom margin.
// - A band stays whole on one page: when it does not fit in what is left of the page, a new
//   page begins. A group header also stays with the band that follows it, so a page never
//   ends in a lone group header.
// - A band taller than the room a fresh page offers is split between its lines, rules and
//   spaces; one line taller than that room is an error (RuntimeError 5), as is a page header
//   and footer that leave no room at all.
// - In the report header, page header, page footer and report footer, "%p" becomes the page
//   number, "%P" the number of pages and "%%" a percent sign ("Page %p of %P"). Detail and
//   group bands carry data and are printed as they are.
//
// Text is measured with the fonts' real metrics at the given resolution (dots per inch; the
// default is the PDF writer's), and everything is placed in points.
class PANELKESTRIN_EXPORT ReportPaginator
{
public:
    explicit ReportPaginator(const ReportPageSetup &setup = ReportPageSetup(),
                             int resolution = 1200);
    ~ReportPaginator();
    ReportPaginator(const ReportPaginator &) = delete;
    ReportPaginator &operator=(const ReportPaginator &) = delete;

    void setTitle(const QString &title);
    // The fixed-pitch font whose character cell the text output uses as its grid.
    void setTextFont(const QFont &font);
    void setReportHeader(const ReportBand &band);
    void setPageHeader(const ReportBand &band);
    void setPageFooter(const ReportBand &band);

    void addGroupHeader(const ReportBand &band);
    void addDetail(const ReportBand &band);
    void addGroupFooter(const ReportBand &band);
    void addReportFooter(const ReportBand &band);

    // Called each time a page is complete with the number of pages so far; returning false
    // cancels the run: the call that completed the page raises RuntimeError 18.
    void setProgressHandler(std::function<bool(int pages)> handler);

    // Pages begun so far.
    int pageCount() const;
    // Ends the last page, puts the page numbers and the page count in, and hands over the
    // document. A report without any band still has its one page of headers and footers.
    ReportDocument finish();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace PanelKestrin
