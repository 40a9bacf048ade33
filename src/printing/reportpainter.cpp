#include "printing/reportpainter_p.h"

#include "printing/reportdocument_p.h"
#include "printing/reportglyphs_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>

namespace PanelKestrin {

namespace {

// A font as the painter's device resolves it, the glyphs that draw its simple runs on PDF, and
// those of the page gathered to be drawn as one glyph run.
struct PageFont
{
    QFont font;
    ReportGlyphs glyphs;
    ReportGlyphs::Batch batch;
};

} // namespace

void paintReportPage(QPainter &painter, const ReportDocument &document, int pageIndex)
{
    if (pageIndex < 0 || pageIndex >= document.pageCount())
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("The report has no page %1; it has %2 page(s).")
                               .arg(pageIndex + 1)
                               .arg(document.pageCount()),
                           QStringLiteral("Report"));
    const QPaintDevice *device = painter.device();
    const qreal dpiX = device ? device->logicalDpiX() : 72;
    const qreal dpiY = device ? device->logicalDpiY() : 72;

    painter.save();
    painter.scale(dpiX / 72, dpiY / 72);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    // Font sizes are points, which the device would turn into pixels at its own resolution;
    // the scale above already does that, so each font is shrunk by the same factor once.
    //
    // On PDF (the PDF file and the printer) the simple runs of a fixed-pitch font are drawn as one
    // glyph run per font and page (see ReportGlyphs): the same glyphs in the same places, without
    // shaping each run again or writing each as a text object of its own. The preview's raster
    // keeps the text path.
    const bool glyphRuns = device && painter.paintEngine() && painter.paintEngine()->type() == QPaintEngine::Pdf;
    QVector<PageFont> fonts;
    fonts.reserve(document.fonts.size());
    for (QFont font : document.fonts) {
        font.setPointSizeF(font.pointSizeF() * 72 / dpiY);
        fonts.append({font, glyphRuns ? ReportGlyphs(QFont(font, device)) : ReportGlyphs(), {}});
    }

    const ReportPage &page = document.pages.at(pageIndex);
    painter.setBrush(Qt::NoBrush);
    for (const ReportBox &box : page.boxes) {
        painter.setPen(QPen(Qt::black, box.thickness));
        painter.drawRect(box.rect);
    }
    for (const ReportRule &rule : page.rules) {
        painter.setPen(QPen(Qt::black, rule.thickness, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(rule.line);
    }
    painter.setPen(Qt::black);
    int current = -1;
    for (const ReportTextRun &run : page.texts) {
        const bool known = run.font >= 0 && run.font < fonts.size();
        if (known) {
            PageFont &font = fonts[run.font];
            if (font.glyphs.add(run.text, QPointF(run.left(), run.baseline), font.batch))
                continue;
        }
        if (run.font != current && known) {
            current = run.font;
            painter.setFont(fonts.at(current).font);
        }
        painter.drawText(QPointF(run.left(), run.baseline), run.text);
    }
    for (const PageFont &font : std::as_const(fonts))
        if (!font.batch.glyphs.isEmpty())
            painter.drawGlyphRun(QPointF(0, 0), font.glyphs.glyphRun(font.batch));
    painter.restore();
}

} // namespace PanelKestrin
