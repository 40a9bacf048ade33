#include "printing/reportdocument_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QPrinter>
#include <algorithm>

namespace PanelKestrin {

ReportPageSetup ReportPageSetup::fromPrinter(const QPrinter *printer)
{
    ReportPageSetup setup;
    if (!printer)
        return setup;
    QPageLayout layout = printer->pageLayout();
    layout.setUnits(QPageLayout::Point);
    setup.pageSize = layout.pageSize();
    setup.orientation = layout.orientation();
    const QMarginsF chosen = layout.margins();
    const QMarginsF least = layout.minimumMargins();
    setup.margins = QMarginsF(std::max(chosen.left(), least.left()), std::max(chosen.top(), least.top()),
                              std::max(chosen.right(), least.right()),
                              std::max(chosen.bottom(), least.bottom()));
    return setup;
}

QSizeF ReportPageSetup::pageSizePoints() const
{
    // From millimetres, which keep the paper's exact size (A4 is 595.28 points wide), where
    // the size in points is rounded to whole points.
    const QSizeF size = pageSize.size(QPageSize::Millimeter) * (72 / 25.4);
    return orientation == QPageLayout::Landscape ? size.transposed() : size;
}

QRectF ReportPageSetup::contentRect() const
{
    return QRectF(QPointF(0, 0), pageSizePoints()).marginsRemoved(margins);
}

QPageLayout ReportPageSetup::fullPageLayout() const
{
    return QPageLayout(pageSize, orientation, QMarginsF(0, 0, 0, 0), QPageLayout::Point);
}

qreal ReportTextRun::left() const
{
    if (alignment & Qt::AlignRight)
        return box.right() - width;
    if (alignment & Qt::AlignHCenter)
        return box.center().x() - width / 2;
    return box.left();
}

int ReportDocument::addFont(const QFont &font)
{
    const int found = int(fonts.indexOf(font));
    if (found >= 0)
        return found;
    fonts.append(font);
    return int(fonts.size()) - 1;
}

std::pair<int, int> ReportDocument::pageIndexRange(int fromPage, int toPage) const
{
    const QString source = QStringLiteral("Report");
    if (fromPage < 1 || toPage < 1 || fromPage > toPage)
        throw RuntimeError(ErrInvalidProcedureCall,
                           QStringLiteral("Invalid page range %1 to %2: pages are counted from 1 "
                                          "and the first page may not come after the last.")
                               .arg(fromPage)
                               .arg(toPage),
                           source);
    if (fromPage > pageCount())
        throw RuntimeError(ErrInvalidProcedureCall,
                           QStringLiteral("Page %1 is past the end of the report, which has %2 "
                                          "page(s).")
                               .arg(fromPage)
                               .arg(pageCount()),
                           source);
    return {fromPage - 1, std::min(toPage, pageCount()) - 1};
}

} // namespace PanelKestrin
