#include "reporttestsupport.h"

#include "printing/reportpageview_p.h"
#include "printing/reportpreview_p.h"

#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/runtimeerror.h>

#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace ReportTest;

namespace {

QString pageLabel(const ReportPreview &preview)
{
    return preview.findChild<QLabel *>(QStringLiteral("lblPage"))->text();
}

QPushButton *button(const ReportPreview &preview, const char *name)
{
    auto *b = preview.findChild<QPushButton *>(QLatin1String(name));
    if (!b)
        qFatal("the preview has no %s", name);
    return b;
}

bool waitCursorShown()
{
    return QGuiApplication::overrideCursor()
           && QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor;
}

QTestEventList keys(std::initializer_list<Qt::Key> list, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTestEventList events;
    for (Qt::Key key : list)
        events.addKeyClick(key, modifiers);
    return events;
}

// Feeds the sample report's lines one at a time, as the engine feeds rows.
ReportFeed sampleFeed(int lines, int *fed = nullptr)
{
    auto next = std::make_shared<int>(0);
    return [=](ReportPaginator &paginator) {
        addSampleLine(paginator, ++*next, lines, 0);
        if (fed)
            *fed = *next;
        return *next < lines;
    };
}

} // namespace

class tst_ReportPreview : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void keysPageThroughTheReport_data();
    void keysPageThroughTheReport();
    void keysAndComboZoom_data();
    void keysAndComboZoom();
    void windowStateAndModality_data();
    void windowStateAndModality();
    void printGoesToTheHandler();
    void exportWritesTheChosenFile_data();
    void exportWritesTheChosenFile();
    void longLayoutShowsProgressAndEnds();
    void longLayoutCanBeCancelled();
    void closingStopsTheLayout();
    void failingLayoutIsReportedAndCloses();
};

void tst_ReportPreview::cleanup()
{
    setModalRunner({});
    setSaveFileNameHandler({});
    setErrorReporter({});
}

void tst_ReportPreview::keysPageThroughTheReport_data()
{
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<QString>("label");
    QTest::addColumn<int>("pageIndex");
    const int last = sampleReport(400).pageCount();
    const QString first = QStringLiteral("Page 1 of %1").arg(last);
    const QString final = QStringLiteral("Page %1 of %1").arg(last);
    QTest::newRow("opens on page 1") << keys({}) << first << 0;
    QTest::newRow("PgDn") << keys({Qt::Key_PageDown}) << QStringLiteral("Page 2 of %1").arg(last) << 1;
    QTest::newRow("PgDn PgDn PgUp") << keys({Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_PageUp})
                                    << QStringLiteral("Page 2 of %1").arg(last) << 1;
    QTest::newRow("End") << keys({Qt::Key_End}) << final << last - 1;
    QTest::newRow("PgDn past the end") << keys({Qt::Key_End, Qt::Key_PageDown}) << final << last - 1;
    QTest::newRow("End Home") << keys({Qt::Key_End, Qt::Key_Home}) << first << 0;
    QTest::newRow("PgUp on the first page") << keys({Qt::Key_PageUp}) << first << 0;
}

void tst_ReportPreview::keysPageThroughTheReport()
{
    QFETCH(QTestEventList, keys);
    QFETCH(QString, label);
    QFETCH(int, pageIndex);
    ReportPreview preview;
    preview.setDocument(sampleReport(400));
    preview.show();
    QVERIFY(QTest::qWaitForWindowExposed(&preview));
    // The keys work wherever the focus is in the window, the zoom box included.
    preview.findChild<QComboBox *>(QStringLiteral("cmbZoom"))->setFocus();
    keys.simulate(&preview);
    QCOMPARE(pageLabel(preview), label);
    QCOMPARE(preview.currentPage(), pageIndex + 1);
    QCOMPARE(button(preview, "cmdPrevious")->isEnabled(), pageIndex > 0);
    QCOMPARE(button(preview, "cmdNext")->isEnabled(), pageIndex + 1 < preview.pageCount());
}

void tst_ReportPreview::keysAndComboZoom_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<int>("zoom");
    const QTestEventList in = keys({Qt::Key_Plus}, Qt::ControlModifier);
    const QTestEventList out = keys({Qt::Key_Minus}, Qt::ControlModifier);
    const QTestEventList comboDown = keys({Qt::Key_Down});
    QTest::newRow("Ctrl++ from 100%") << 100 << in << 150;
    QTest::newRow("Ctrl++ twice from 100%") << 100 << keys({Qt::Key_Plus, Qt::Key_Plus}, Qt::ControlModifier) << 200;
    QTest::newRow("Ctrl++ at 200% stays") << 200 << in << 200;
    QTest::newRow("Ctrl+- from 100%") << 100 << out << 75;
    QTest::newRow("Ctrl+- at 50% stays") << 50 << out << 50;
    QTest::newRow("Down in the zoom box: fit width to fit page")
        << int(ReportPreview::FitWidth) << comboDown << int(ReportPreview::FitPage);
    QTest::newRow("Down in the zoom box: fit page to 50%") << int(ReportPreview::FitPage) << comboDown << 50;
}

void tst_ReportPreview::keysAndComboZoom()
{
    QFETCH(int, start);
    QFETCH(QTestEventList, keys);
    QFETCH(int, zoom);
    ReportPreview preview;
    preview.setDocument(sampleReport(100));
    preview.resize(800, 600);
    preview.show();
    QVERIFY(QTest::qWaitForWindowExposed(&preview));
    preview.setZoom(start);
    auto *combo = preview.findChild<QComboBox *>(QStringLiteral("cmbZoom"));
    combo->setFocus();
    keys.simulate(combo);
    QCOMPARE(preview.zoomSetting(), zoom);
    QCOMPARE(combo->currentData().toInt(), zoom);

    // The page on screen has the zoomed size: percentages of its real size, or the width or
    // the whole page in the window without scrolling across (or at all).
    const auto *view = qobject_cast<ReportPageView *>(preview.findChild<QWidget *>(QStringLiteral("pageView")));
    const auto *area = preview.findChild<QScrollArea *>(QStringLiteral("scrollArea"));
    QVERIFY(view && area);
    // Scroll bars come and go with the layout request the new size posts.
    if (zoom < 0)
        QTRY_VERIFY(!area->horizontalScrollBar()->isVisible());
    if (zoom == ReportPreview::FitPage)
        QTRY_VERIFY(!area->verticalScrollBar()->isVisible());
    const QRectF page = view->pageRect();
    const QSizeF paper = ReportPageSetup().pageSizePoints();
    const qreal realWidth = paper.width() * view->logicalDpiX() / 72;
    const qreal realHeight = paper.height() * view->logicalDpiY() / 72;
    QVERIFY(qAbs(page.width() / realWidth - page.height() / realHeight) < 0.001);
    const QSize room = area->viewport()->size();
    if (zoom > 0) {
        QVERIFY(qAbs(page.width() - realWidth * zoom / 100) < 0.5);
    } else {
        const int desk = 2 * ReportPageView::deskMargin + 4;
        QVERIFY(page.right() <= room.width());
        if (zoom == ReportPreview::FitWidth) {
            QVERIFY(page.width() > room.width() - desk);
        } else {
            QVERIFY(page.bottom() <= room.height());
            QVERIFY(page.width() > room.width() - desk || page.height() > room.height() - desk);
        }
    }
}

void tst_ReportPreview::windowStateAndModality_data()
{
    QTest::addColumn<int>("windowState");
    QTest::addColumn<bool>("modal");
    QTest::addColumn<bool>("maximised");
    QTest::newRow("state 2, modal") << 2 << true << true;
    QTest::newRow("state 0, modal") << 0 << true << false;
    QTest::newRow("state 2, modeless") << 2 << false << true;
}

void tst_ReportPreview::windowStateAndModality()
{
    QFETCH(int, windowState);
    QFETCH(bool, modal);
    QFETCH(bool, maximised);
    ReportPreview preview;
    preview.setDocument(sampleReport(10));
    QDialog *shown = nullptr;
    bool maximisedWhenShown = false;
    setModalRunner([&](QDialog *form) {
        shown = form;
        maximisedWhenShown = form->windowState() & Qt::WindowMaximized;
        return int(QDialog::Rejected);
    });
    QCOMPARE(preview.showReport(windowState, modal), 0);
    QCOMPARE(shown, modal ? &preview : nullptr);
    if (modal)
        QCOMPARE(maximisedWhenShown, maximised);
    else
        QVERIFY(preview.isVisible());
    QCOMPARE(bool(preview.windowState() & Qt::WindowMaximized), maximised);
}

void tst_ReportPreview::printGoesToTheHandler()
{
    ReportPreview preview;
    preview.setDocument(sampleReport(300));
    preview.show();
    QVERIFY(QTest::qWaitForWindowExposed(&preview));
    QCOMPARE(button(preview, "cmdPrint")->isEnabled(), false);
    QTest::keyClick(&preview, Qt::Key_P, Qt::ControlModifier); // nothing to print with: nothing

    int printed = 0;
    int pages = 0;
    preview.setPrintHandler([&](const ReportDocument &doc, QWidget *parent) {
        ++printed;
        pages = doc.pageCount();
        QCOMPARE(parent, &preview);
    });
    QVERIFY(button(preview, "cmdPrint")->isEnabled());
    QTest::keyClick(&preview, Qt::Key_P, Qt::ControlModifier);
    QTest::mouseClick(button(preview, "cmdPrint"), Qt::LeftButton);
    QCOMPARE(printed, 2);
    QCOMPARE(pages, preview.pageCount());

    // A failing printer is reported, and the window stays.
    QList<int> reported;
    setErrorReporter([&](const RuntimeError &e) { reported << e.Number(); });
    preview.setPrintHandler([](const ReportDocument &, QWidget *) {
        throw RuntimeError(482, QStringLiteral("Printer error"));
    });
    QTest::keyClick(&preview, Qt::Key_P, Qt::ControlModifier);
    QCOMPARE(reported, QList<int>{482});
    QVERIFY(preview.isVisible());
}

void tst_ReportPreview::exportWritesTheChosenFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("text") << "out.txt" << QByteArray("STOCK LIST");
    QTest::newRow("document") << "out.doc" << QByteArray("{\\rtf1");
    QTest::newRow("PDF") << "out.pdf" << QByteArray("%PDF");
    QTest::newRow("no suffix: PDF") << "out" << QByteArray("%PDF");
}

void tst_ReportPreview::exportWritesTheChosenFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, start);
    QTemporaryDir dir;
    ReportPreview preview;
    preview.setDocument(sampleReport(80));
    preview.show();
    QString filter;
    setSaveFileNameHandler([&](QWidget *, const QString &, const QString &f, const QString &) {
        filter = f;
        return dir.filePath(name);
    });
    QTest::mouseClick(button(preview, "cmdExport"), Qt::LeftButton);
    QVERIFY(filter.contains(QLatin1String("*.pdf")) && filter.contains(QLatin1String("*.txt")));
    QFile file(dir.filePath(name.contains(u'.') ? name : name + QLatin1String(".pdf")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().trimmed().startsWith(start));
}

void tst_ReportPreview::longLayoutShowsProgressAndEnds()
{
    const int lines = 6000;
    ReportPreview preview;
    preview.show();
    int fed = 0;
    QSignalSpy ready(&preview, &ReportPreview::documentReady);
    // What the progress line said while the lines went in: the window is repainted between
    // slices of the layout, so it tells how far the layout got.
    QSet<QString> progress;
    const auto *label = preview.findChild<QLabel *>(QStringLiteral("lblLayout"));
    ReportFeed feed = sampleFeed(lines, &fed);
    // Layout is fast: the feed holds back after every 500 lines until the preview has shown how
    // far it got, so that the run takes several slices whatever the machine's speed.
    QString shown;
    preview.startLayout(samplePaginator(), [&](ReportPaginator &paginator) {
        progress << label->text();
        if (fed > 0 && fed % 500 == 0 && label->text() == shown)
            return true;
        shown = label->text();
        return feed(paginator);
    });
    QVERIFY(preview.isLayingOut());
    QVERIFY(waitCursorShown());
    QVERIFY(preview.findChild<QWidget *>(QStringLiteral("prgLayout"))->isVisible());
    QVERIFY(!button(preview, "cmdExport")->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!preview.isLayingOut(), 60000);
    QCOMPARE(fed, lines);
    QVERIFY2(std::any_of(progress.begin(), progress.end(),
                         [](const QString &t) { return t.startsWith(QLatin1String("Laying out page ")); }),
             qPrintable(QStringList(progress.values()).join(u'|')));
    QVERIFY(!waitCursorShown());
    QVERIFY(!preview.findChild<QWidget *>(QStringLiteral("prgLayout"))->isVisible());
    QVERIFY(!preview.layoutCancelled());
    const ReportDocument whole = sampleReport(lines);
    QCOMPARE(preview.pageCount(), whole.pageCount());
    QCOMPARE(pageLabel(preview), QStringLiteral("Page 1 of %1").arg(whole.pageCount()));
    QCOMPARE(reportPageTextLines(preview.document(), whole.pageCount() - 1),
             reportPageTextLines(whole, whole.pageCount() - 1));
    QCOMPARE(ready.size(), 1);
}

void tst_ReportPreview::longLayoutCanBeCancelled()
{
    ReportPreview preview;
    preview.show();
    int fed = 0;
    preview.startLayout(samplePaginator(), sampleFeed(1000000, &fed));
    QTRY_VERIFY(fed > 500);
    QTest::mouseClick(button(preview, "cmdCancel"), Qt::LeftButton);
    QVERIFY(!preview.isLayingOut());
    QVERIFY(preview.layoutCancelled());
    QVERIFY(!waitCursorShown());
    const int pages = preview.pageCount();
    QVERIFY(pages >= 1);
    QVERIFY(pages < 1000000 / 60);
    QCOMPARE(pageLabel(preview), QStringLiteral("Page 1 of %1").arg(pages));
    QVERIFY(preview.findChild<QLabel *>(QStringLiteral("lblLayout"))->text().startsWith(QLatin1String("Cancelled")));
    const int stoppedAt = fed;
    QCoreApplication::processEvents();
    QCOMPARE(fed, stoppedAt);
    // The pages laid out so far can be viewed and exported.
    QTest::keyClick(&preview, Qt::Key_End);
    QCOMPARE(preview.currentPage(), pages);
    QVERIFY(button(preview, "cmdExport")->isEnabled());
}

void tst_ReportPreview::closingStopsTheLayout()
{
    ReportPreview preview;
    preview.show();
    int fed = 0;
    preview.startLayout(samplePaginator(), sampleFeed(1000000, &fed));
    QTRY_VERIFY(fed > 100);
    QTest::keyClick(&preview, Qt::Key_Escape);
    QVERIFY(!preview.isVisible());
    QVERIFY(!preview.isLayingOut());
    QVERIFY(!waitCursorShown());
    const int stoppedAt = fed;
    QCoreApplication::processEvents();
    QCOMPARE(fed, stoppedAt);
}

void tst_ReportPreview::failingLayoutIsReportedAndCloses()
{
    QList<RuntimeError> reported;
    setErrorReporter([&](const RuntimeError &e) { reported << e; });
    ReportPreview preview;
    preview.show();
    int calls = 0;
    preview.startLayout(samplePaginator(), [&](ReportPaginator &paginator) {
        if (++calls == 50)
            throw RuntimeError(94, QStringLiteral("Invalid use of Null"));
        addSampleLine(paginator, calls, 100, 0);
        return true;
    });
    QTRY_VERIFY(!preview.isVisible());
    QCOMPARE(reported.size(), 1);
    QCOMPARE(reported.first().Number(), 94);
    QVERIFY(!preview.isLayingOut());
    QVERIFY(!waitCursorShown());
}

QTEST_MAIN(tst_ReportPreview)
#include "tst_reportpreview.moc"
