#include "printing/reportpageview_p.h"

#include "printing/reportdocument_p.h"
#include "printing/reportpainter_p.h"

#include <PanelKestrin/errorreporter.h>

#include <QPainter>

namespace PanelKestrin {

ReportPageView::ReportPageView(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void ReportPageView::setDocument(const ReportDocument *document)
{
    m_document = document;
    m_pageIndex = 0;
    resize(sizeHint());
    update();
}

void ReportPageView::setPageIndex(int pageIndex)
{
    m_pageIndex = pageIndex;
    update();
}

void ReportPageView::setZoom(qreal zoom)
{
    m_zoom = zoom;
    resize(sizeHint());
    update();
}

QSizeF ReportPageView::pageSizeAtRealSize() const
{
    const QSizeF points = m_document ? m_document->setup.pageSizePoints()
                                     : ReportPageSetup().pageSizePoints();
    return QSizeF(points.width() * logicalDpiX() / 72, points.height() * logicalDpiY() / 72);
}

QSize ReportPageView::sizeHint() const
{
    const QSizeF page = pageSizeAtRealSize() * m_zoom;
    return QSize(qCeil(page.width()) + 2 * deskMargin, qCeil(page.height()) + 2 * deskMargin);
}

void ReportPageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0x80, 0x80, 0x80));
    if (!m_document || m_pageIndex < 0 || m_pageIndex >= m_document->pageCount())
        return;
    const QSizeF page = pageSizeAtRealSize() * m_zoom;
    const QPointF corner(std::max<qreal>(deskMargin, (width() - page.width()) / 2), deskMargin);
    painter.fillRect(QRectF(corner + QPointF(3, 3), page), QColor(0x50, 0x50, 0x50));
    painter.fillRect(QRectF(corner, page), Qt::white);
    painter.translate(corner);
    painter.scale(m_zoom, m_zoom);
    guardEvent(QStringLiteral("Report preview"),
               [&] { paintReportPage(painter, *m_document, m_pageIndex); });
}

} // namespace PanelKestrin
