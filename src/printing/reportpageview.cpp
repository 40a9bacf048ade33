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
    setMinimumSize(sizeHint());
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
    setMinimumSize(sizeHint());
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

QRectF ReportPageView::pageRect() const
{
    const QSizeF page = pageSizeAtRealSize() * m_zoom;
    return QRectF(QPointF(std::max<qreal>(deskMargin, (width() - page.width()) / 2), deskMargin), page);
}

void ReportPageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0x80, 0x80, 0x80));
    if (!m_document || m_pageIndex < 0 || m_pageIndex >= m_document->pageCount())
        return;
    const QRectF page = pageRect();
    painter.fillRect(page.translated(3, 3), QColor(0x50, 0x50, 0x50));
    painter.fillRect(page, Qt::white);
    painter.translate(page.topLeft());
    painter.scale(m_zoom, m_zoom);
    guardEvent(QStringLiteral("Report preview"),
               [&] { paintReportPage(painter, *m_document, m_pageIndex); });
}

} // namespace PanelKestrin
