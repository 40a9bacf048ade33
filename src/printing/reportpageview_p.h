#pragma once

#include <QWidget>

namespace PanelKestrin {

class ReportDocument;

// The preview's sheet: one page of a laid-out report on a grey desk, drawn by
// paintReportPage at a zoom factor (1 is the page's real size at the screen's resolution).
// Its minimum size is the zoomed page and the desk around it, so that a resizable scroll area
// around it fills the window with desk and scrolls once the page is larger than the window.
class ReportPageView : public QWidget
{
    Q_OBJECT

public:
    explicit ReportPageView(QWidget *parent = nullptr);

    // document is not owned and must outlive the view (or be replaced first); null shows an
    // empty desk.
    void setDocument(const ReportDocument *document);
    void setPageIndex(int pageIndex);
    void setZoom(qreal zoom);
    qreal zoom() const { return m_zoom; }

    // The page's size on screen at zoom 1, in pixels, and the desk around it.
    QSizeF pageSizeAtRealSize() const;
    static constexpr int deskMargin = 12;
    // Where the page is drawn in the view: centred across, a desk margin from the top.
    QRectF pageRect() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const ReportDocument *m_document = nullptr;
    int m_pageIndex = 0;
    qreal m_zoom = 1;
};

} // namespace PanelKestrin
