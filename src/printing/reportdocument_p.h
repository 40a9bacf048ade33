#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QFont>
#include <QLineF>
#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QRectF>
#include <QString>
#include <QVector>
#include <utility>

class QPrinter;

namespace PanelKestrin {

// The paper a report is laid out on: size, orientation and margins, all in points (1/72 inch).
// Every output of a report uses the setup it was laid out with, so the preview, the printer
// and the files agree on where each line falls.
struct PANELKESTRIN_EXPORT ReportPageSetup
{
    QPageSize pageSize = QPageSize(QPageSize::A4);
    QPageLayout::Orientation orientation = QPageLayout::Portrait;
    QMarginsF margins = QMarginsF(36, 36, 36, 36); // half an inch all round

    // The chosen printer's paper, orientation and margins (at least the printer's own
    // unprintable margins); A4 portrait with half-inch margins when printer is null.
    static ReportPageSetup fromPrinter(const QPrinter *printer);

    // The page as seen by the reader (width and height swapped in landscape), in points.
    QSizeF pageSizePoints() const;
    // The part of the page inside the margins, in points from the page's top-left corner.
    QRectF contentRect() const;
    // The same paper for a QPdfWriter or a full-page QPrinter: margins zero, because the page
    // model places everything itself from the page's corner.
    QPageLayout fullPageLayout() const;
};

// A piece of text on a page. box is the alignment box the layout gave it (its height is the
// line's height); the text itself starts at left() and sits on baseline.
struct PANELKESTRIN_EXPORT ReportTextRun
{
    QRectF box;
    Qt::Alignment alignment = Qt::AlignLeft;
    int font = 0;          // index into ReportDocument::fonts
    QString text;
    qreal baseline = 0;    // y of the baseline, points from the page's top
    qreal width = 0;       // the text's advance, measured with the font's real metrics

    // Where the text begins horizontally: the box's left edge, or right edge minus width, or
    // centred, following alignment.
    qreal left() const;
};

// A straight line, e.g. the rules above and below a column heading.
struct PANELKESTRIN_EXPORT ReportRule
{
    QLineF line;
    qreal thickness = 0.5;
};

// A rectangle outline around a band.
struct PANELKESTRIN_EXPORT ReportBox
{
    QRectF rect;
    qreal thickness = 0.5;
};

// One laid-out page: everything on it positioned in points from the page's top-left corner.
struct PANELKESTRIN_EXPORT ReportPage
{
    QVector<ReportTextRun> texts;
    QVector<ReportRule> rules;
    QVector<ReportBox> boxes;
};

// A laid-out report: the one model that the preview, the printer, PDF, text and RTF outputs
// all draw from. Nothing downstream lays the report out again.
class PANELKESTRIN_EXPORT ReportDocument
{
public:
    ReportPageSetup setup;
    QVector<QFont> fonts;      // the fonts the runs use (point sizes), each once
    QVector<ReportPage> pages;
    QString title;             // the PDF's title and the RTF's \title
    // One character cell of the report's fixed-pitch font in points: the text output places
    // runs on a grid of these cells.
    QSizeF textCell = QSizeF(6, 12);

    int pageCount() const { return int(pages.size()); }

    // The index of font in fonts, adding it when it is new.
    int addFont(const QFont &font);

    // Checks a 1-based inclusive page range as a host gives it and returns the 0-based first
    // and last page indexes to output. A range reaching past the last page is cut to the pages
    // that exist. Raises RuntimeError 5 when a page number is below 1, when the first page
    // comes after the last, or when the first page is past the end of the report.
    std::pair<int, int> pageIndexRange(int fromPage, int toPage) const;
};

} // namespace PanelKestrin
