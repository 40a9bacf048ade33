#include "printing/reportpainter_p.h"

#include "printing/reportdocument_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QPaintDevice>
#include <QPainter>
#include <QPen>

namespace PanelKestrin {

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
    QVector<QFont> fonts;
    fonts.reserve(document.fonts.size());
    for (QFont font : document.fonts) {
        font.setPointSizeF(font.pointSizeF() * 72 / dpiY);
        fonts.append(font);
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
        if (run.font != current && run.font >= 0 && run.font < fonts.size()) {
            current = run.font;
            painter.setFont(fonts.at(current));
        }
        painter.drawText(QPointF(run.left(), run.baseline), run.text);
    }
    painter.restore();
}

} // namespace PanelKestrin
