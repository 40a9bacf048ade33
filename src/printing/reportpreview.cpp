#include "printing/reportpreview_p.h"

#include "printing/reportfiles_p.h"
#include "printing/reportlayout_p.h"
#include "printing/reportpageview_p.h"

#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/waitcursor.h>

#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

namespace PanelKestrin {

namespace {

const int zoomSteps[] = {50, 75, 100, 150, 200};
constexpr int sliceMilliseconds = 30; // layout work between two looks at the event queue

QString where()
{
    return QStringLiteral("Report preview");
}

} // namespace

ReportPreview::ReportPreview(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("ReportPreview"));
    setWindowTitle(tr("Report Preview"));
    setWindowFlags(windowFlags() | Qt::WindowMinMaxButtonsHint);
    createControls();
    createShortcuts();
    resize(900, 700);
    updateControls();
}

ReportPreview::~ReportPreview() = default;

void ReportPreview::createControls()
{
    auto button = [this](const char *name, const QString &text) {
        auto *b = new QPushButton(text, this);
        b->setObjectName(QLatin1String(name));
        b->setAutoDefault(false);
        return b;
    };
    cmdFirst = button("cmdFirst", tr("|<"));
    cmdPrevious = button("cmdPrevious", tr("<"));
    cmdNext = button("cmdNext", tr(">"));
    cmdLast = button("cmdLast", tr(">|"));
    cmdFirst->setToolTip(tr("First page (Home)"));
    cmdPrevious->setToolTip(tr("Previous page (PgUp)"));
    cmdNext->setToolTip(tr("Next page (PgDn)"));
    cmdLast->setToolTip(tr("Last page (End)"));
    lblPage = new QLabel(this);
    lblPage->setObjectName(QStringLiteral("lblPage"));
    cmbZoom = new QComboBox(this);
    cmbZoom->setObjectName(QStringLiteral("cmbZoom"));
    cmbZoom->addItem(tr("Fit Width"), int(FitWidth));
    cmbZoom->addItem(tr("Fit Page"), int(FitPage));
    for (int percent : zoomSteps)
        cmbZoom->addItem(tr("%1%").arg(percent), percent);
    cmbZoom->setAccessibleName(tr("Zoom"));
    cmdPrint = button("cmdPrint", tr("&Print..."));
    cmdExport = button("cmdExport", tr("&Export..."));
    cmdClose = button("cmdClose", tr("&Close"));

    prgLayout = new QProgressBar(this);
    prgLayout->setObjectName(QStringLiteral("prgLayout"));
    prgLayout->setRange(0, 0); // the number of pages is known only at the end
    lblLayout = new QLabel(this);
    lblLayout->setObjectName(QStringLiteral("lblLayout"));
    cmdCancel = button("cmdCancel", tr("Cancel"));

    pageView = new ReportPageView;
    pageView->setObjectName(QStringLiteral("pageView"));
    pageView->setDocument(&m_document);
    scrollArea = new QScrollArea(this);
    scrollArea->setObjectName(QStringLiteral("scrollArea"));
    scrollArea->setWidget(pageView);
    scrollArea->setWidgetResizable(true);
    scrollArea->viewport()->installEventFilter(this);

    auto *bar = new QHBoxLayout;
    for (QWidget *w : {static_cast<QWidget *>(cmdFirst), static_cast<QWidget *>(cmdPrevious),
                       static_cast<QWidget *>(lblPage), static_cast<QWidget *>(cmdNext),
                       static_cast<QWidget *>(cmdLast), static_cast<QWidget *>(cmbZoom)})
        bar->addWidget(w);
    bar->addStretch();
    bar->addWidget(cmdPrint);
    bar->addWidget(cmdExport);
    bar->addWidget(cmdClose);
    auto *progress = new QHBoxLayout;
    progress->addWidget(lblLayout);
    progress->addWidget(prgLayout, 1);
    progress->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addLayout(progress);
    layout->addWidget(scrollArea, 1);

    connect(cmdFirst, &QPushButton::clicked, this, [this] { setCurrentPage(1); });
    connect(cmdPrevious, &QPushButton::clicked, this, [this] { setCurrentPage(currentPage() - 1); });
    connect(cmdNext, &QPushButton::clicked, this, [this] { setCurrentPage(currentPage() + 1); });
    connect(cmdLast, &QPushButton::clicked, this, [this] { setCurrentPage(pageCount()); });
    connect(cmbZoom, &QComboBox::currentIndexChanged, this, [this] { applyZoom(); });
    connect(cmdPrint, &QPushButton::clicked, this, &ReportPreview::print);
    connect(cmdExport, &QPushButton::clicked, this, &ReportPreview::exportReport);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdCancel, &QPushButton::clicked, this, &ReportPreview::cancelLayout);
    cmbZoom->setCurrentIndex(cmbZoom->findData(int(FitWidth)));
}

void ReportPreview::createShortcuts()
{
    auto shortcut = [this](const QKeySequence &keys, auto slot) {
        auto *action = new QAction(this);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WindowShortcut);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
    };
    shortcut(QKeySequence(Qt::Key_PageUp), [this] { setCurrentPage(currentPage() - 1); });
    shortcut(QKeySequence(Qt::Key_PageDown), [this] { setCurrentPage(currentPage() + 1); });
    shortcut(QKeySequence(Qt::Key_Home), [this] { setCurrentPage(1); });
    shortcut(QKeySequence(Qt::Key_End), [this] { setCurrentPage(pageCount()); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_P), [this] { print(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Plus), [this] { zoomIn(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Equal), [this] { zoomIn(); });
    shortcut(QKeySequence(Qt::CTRL | Qt::Key_Minus), [this] { zoomOut(); });
}

void ReportPreview::setDocument(ReportDocument document)
{
    stopLayout();
    showDocument(std::move(document));
    emit documentReady();
}

void ReportPreview::showDocument(ReportDocument document)
{
    m_document = std::move(document);
    m_page = 0;
    if (!m_document.title.isEmpty())
        setWindowTitle(m_document.title);
    pageView->setDocument(&m_document);
    applyZoom();
    showPage();
}

void ReportPreview::startLayout(std::unique_ptr<ReportPaginator> paginator, ReportFeed feed)
{
    m_paginator = std::move(paginator);
    m_feed = std::move(feed);
    m_cancelled = false;
    if (!m_paginator || !m_feed) {
        m_paginator.reset();
        m_feed = nullptr;
        return;
    }
    m_wait = std::make_unique<WaitCursor>();
    showDocument(ReportDocument());
    lblLayout->setText(tr("Laying out the report..."));
    updateControls();
    QTimer::singleShot(0, this, &ReportPreview::layoutStep);
}

void ReportPreview::layoutStep()
{
    if (!m_feed)
        return; // cancelled in the meantime
    bool more = true;
    const bool ran = guardEvent(where(), [&] {
        QElapsedTimer slice;
        slice.start();
        while (more && slice.elapsed() < sliceMilliseconds)
            more = m_feed(*m_paginator);
        if (!more)
            endLayout(false);
    });
    if (!ran) {
        reject();
        return;
    }
    if (more) {
        lblLayout->setText(tr("Laying out page %1...").arg(m_paginator->pageCount()));
        QTimer::singleShot(0, this, &ReportPreview::layoutStep);
    }
}

void ReportPreview::cancelLayout()
{
    if (!m_feed)
        return;
    guardEvent(where(), [&] { endLayout(true); });
}

void ReportPreview::stopLayout()
{
    m_feed = nullptr;
    m_paginator.reset();
    m_wait.reset();
    updateControls();
}

void ReportPreview::done(int result)
{
    stopLayout();
    QDialog::done(result);
}

void ReportPreview::endLayout(bool cancelled)
{
    m_feed = nullptr;
    m_cancelled = cancelled;
    const std::unique_ptr<ReportPaginator> paginator = std::move(m_paginator);
    m_wait.reset();
    ReportDocument document = paginator->finish();
    const int pages = document.pageCount();
    showDocument(std::move(document));
    emit documentReady();
    lblLayout->setText(cancelled ? tr("Cancelled: %1 page(s) laid out.").arg(pages) : QString());
    updateControls();
}

void ReportPreview::setCurrentPage(int page)
{
    m_page = std::clamp(page, 1, std::max(1, pageCount())) - 1;
    showPage();
}

void ReportPreview::showPage()
{
    pageView->setPageIndex(m_page);
    scrollArea->verticalScrollBar()->setValue(0);
    updateControls();
}

void ReportPreview::updateControls()
{
    const bool busy = isLayingOut();
    const bool ready = !busy && pageCount() > 0;
    lblPage->setText(ready ? tr("Page %1 of %2").arg(currentPage()).arg(pageCount()) : QString());
    cmdFirst->setEnabled(ready && m_page > 0);
    cmdPrevious->setEnabled(ready && m_page > 0);
    cmdNext->setEnabled(ready && m_page + 1 < pageCount());
    cmdLast->setEnabled(ready && m_page + 1 < pageCount());
    cmdPrint->setEnabled(ready && bool(m_print));
    cmdExport->setEnabled(ready);
    prgLayout->setVisible(busy);
    cmdCancel->setVisible(busy);
    lblLayout->setVisible(busy || m_cancelled);
}

void ReportPreview::setZoom(int percentOrMode)
{
    int index = cmbZoom->findData(percentOrMode);
    if (index < 0) {
        cmbZoom->addItem(tr("%1%").arg(percentOrMode), percentOrMode);
        index = cmbZoom->count() - 1;
    }
    cmbZoom->setCurrentIndex(index);
    applyZoom();
}

int ReportPreview::zoomSetting() const
{
    return cmbZoom->currentData().toInt();
}

qreal ReportPreview::zoomFactor() const
{
    const int setting = zoomSetting();
    if (setting > 0)
        return setting / 100.0;
    // The room the window gives the page: the viewport without scroll bars, less the desk
    // around the page, less the vertical scroll bar that a long page needs when it fits across.
    const QSizeF page = pageView->pageSizeAtRealSize();
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, scrollArea);
    const QSize room = scrollArea->maximumViewportSize()
                       - QSize(2 * ReportPageView::deskMargin + 1, 2 * ReportPageView::deskMargin + 1)
                       - QSize(setting == FitWidth ? scrollBar + 1 : 0, 0);
    const qreal width = room.width() / page.width();
    const qreal height = room.height() / page.height();
    return std::max<qreal>(0.05, setting == FitWidth ? width : std::min(width, height));
}

void ReportPreview::applyZoom()
{
    pageView->setZoom(zoomFactor());
}

void ReportPreview::zoomIn()
{
    const qreal now = zoomFactor() * 100;
    for (int percent : zoomSteps) {
        if (percent > now + 0.5) {
            setZoom(percent);
            return;
        }
    }
}

void ReportPreview::zoomOut()
{
    const qreal now = zoomFactor() * 100;
    for (auto it = std::rbegin(zoomSteps); it != std::rend(zoomSteps); ++it) {
        if (*it < now - 0.5) {
            setZoom(*it);
            return;
        }
    }
}

bool ReportPreview::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == scrollArea->viewport() && event->type() == QEvent::Resize && zoomSetting() < 0)
        applyZoom();
    return QDialog::eventFilter(watched, event);
}

void ReportPreview::setPrintHandler(ReportPreviewAction handler)
{
    m_print = std::move(handler);
    updateControls();
}

void ReportPreview::print()
{
    if (!cmdPrint->isEnabled())
        return;
    guardEvent(where(), [&] { m_print(m_document, this); });
}

void ReportPreview::exportReport()
{
    if (!cmdExport->isEnabled())
        return;
    guardEvent(where(), [&] { exportByFileName(m_document, this); });
}

void ReportPreview::exportByFileName(const ReportDocument &document, QWidget *preview)
{
    QString fileName = GetSaveFileName(preview, tr("Export Report"),
                                       tr("PDF file (*.pdf);;Text file (*.txt);;Document file (*.rtf *.doc)"));
    if (fileName.isEmpty())
        return;
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("txt"))
        writeReportText(document, fileName);
    else if (suffix == QLatin1String("rtf") || suffix == QLatin1String("doc"))
        writeReportRtf(document, fileName);
    else
        writeReportPdf(document, suffix.isEmpty() ? fileName + QLatin1String(".pdf") : fileName);
}

int ReportPreview::showReport(int windowState, bool modal)
{
    setWindowState(windowState == 2   ? Qt::WindowMaximized
                   : windowState == 1 ? Qt::WindowMinimized
                                      : Qt::WindowNoState);
    if (modal)
        return ShowModal(this);
    show();
    return 0;
}

} // namespace PanelKestrin
