#pragma once

#include <QWidget>

namespace PanelKestrin {

class ReportDocument;

// The preview's sheet: one page of a laid-out report on a grey desk, drawn by
// paintReportPage at a zoom factor (1 is the page's real size at the screen's resolution).
// It sizes itself to the zoomed page so that a scroll area around it scrolls over the page.
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

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const ReportDocument *m_document = nullptr;
    int m_pageIndex = 0;
    qreal m_zoom = 1;
};

} // namespace PanelKestrin
