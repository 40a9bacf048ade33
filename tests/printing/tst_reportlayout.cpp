#include "reporttestsupport.h"

#include <PanelKestrin/runtimeerror.h>

#include <QFontMetricsF>
#include <QImage>
#include <QPrinter>

using namespace ReportTest;

Q_DECLARE_METATYPE(PanelKestrin::ReportPageSetup)

namespace {

// The texts of a page in reading order (top to bottom, left to right).
QStringList pageTexts(const ReportDocument &doc, int pageIndex)
{
    QVector<ReportTextRun> runs = doc.pages.at(pageIndex).texts;
    std::stable_sort(runs.begin(), runs.end(), [](const ReportTextRun &a, const ReportTextRun &b) {
        return qFuzzyCompare(a.box.top(), b.box.top()) ? a.left() < b.left() : a.box.top() < b.box.top();
    });
    QStringList texts;
    for (const ReportTextRun &run : runs)
        texts << run.text;
    return texts;
}

const ReportTextRun &runWithText(const ReportDocument &doc, int pageIndex, const QString &text)
{
    for (const ReportTextRun &run : doc.pages.at(pageIndex).texts)
        if (run.text == text)
            return run;
    qFatal("page %d has no run \"%s\"", pageIndex + 1, qPrintable(text));
}

// The lines a reader follows from page to page: everything but the page headers and footers.
QStringList bodyStream(const ReportDocument &doc)
{
    QStringList stream;
    for (int i = 0; i < doc.pageCount(); ++i) {
        QStringList texts = pageTexts(doc, i);
        texts.removeLast();                   // "Page: n"
        texts.erase(texts.begin(), texts.begin() + (i == 0 ? 4 : 2)); // title, date, header
        stream += texts;
    }
    return stream;
}

ReportPageSetup setupOf(QPageSize::PageSizeId size, QPageLayout::Orientation orientation)
{
    ReportPageSetup setup;
    setup.pageSize = QPageSize(size);
    setup.orientation = orientation;
    return setup;
}

} // namespace

class tst_ReportLayout : public QObject
{
    Q_OBJECT

private slots:
    void headersAndFootersOnEveryPage_data();
    void headersAndFootersOnEveryPage();
    void detailLinesFillEachPageBeforeTheNext();
    void groupsStayWithTheirLines_data();
    void groupsStayWithTheirLines();
    void pageTokens_data();
    void pageTokens();
    void textIsMeasuredAsItIsDrawn_data();
    void textIsMeasuredAsItIsDrawn();
    void paperFromThePrinter_data();
    void paperFromThePrinter();
    void bandsTallerThanAPageAreSplit();
    void layoutsThatCannotFitAreErrors_data();
    void layoutsThatCannotFitAreErrors();
    void progressHandlerCancels();
    void pageRanges_data();
    void pageRanges();
};

void tst_ReportLayout::headersAndFootersOnEveryPage_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<ReportPageSetup>("setup");
    QTest::newRow("no lines: one page") << 0 << ReportPageSetup();
    QTest::newRow("one line") << 1 << ReportPageSetup();
    QTest::newRow("A4 portrait, 500 lines") << 500 << ReportPageSetup();
    QTest::newRow("A5 landscape, 300 lines") << 300 << setupOf(QPageSize::A5, QPageLayout::Landscape);
}

void tst_ReportLayout::headersAndFootersOnEveryPage()
{
    QFETCH(int, lines);
    QFETCH(ReportPageSetup, setup);
    const ReportDocument doc = sampleReport(lines, 0, setup);
    const int pages = doc.pageCount();
    QVERIFY(pages >= 1);
    if (lines >= 300)
        QVERIFY(pages > 3);
    for (int i = 0; i < pages; ++i) {
        const QStringList texts = pageTexts(doc, i);
        const int header = i == 0 ? 2 : 0;
        if (i == 0) {
            QCOMPARE(texts.at(0), QStringLiteral("STOCK LIST"));
            QCOMPARE(texts.at(1), QStringLiteral("Date:23/11/2026"));
        }
        QCOMPARE(texts.at(header), QStringLiteral("Page %1 of %2").arg(i + 1).arg(pages));
        QCOMPARE(texts.at(header + 1), QStringLiteral("CODE         DESCRIPTION                 PRICE"));
        QCOMPARE(texts.last(), QStringLiteral("Page: %1").arg(i + 1));
        QCOMPARE(doc.pages.at(i).rules.size(), 2);
        // The footer sits on the bottom margin; nothing strays outside the margins.
        const QRectF content = setup.contentRect();
        QCOMPARE(runWithText(doc, i, texts.last()).box.bottom(), content.bottom());
        for (const ReportTextRun &run : doc.pages.at(i).texts)
            QVERIFY2(content.contains(QRectF(run.left(), run.box.top(), run.width, run.box.height())),
                     qPrintable(run.text));
    }
    QStringList expected;
    for (int n = 1; n <= lines; ++n)
        expected << paddedLine(n);
    QCOMPARE(bodyStream(doc), expected);
}

void tst_ReportLayout::detailLinesFillEachPageBeforeTheNext()
{
    const ReportDocument doc = sampleReport(400);
    for (int i = 0; i + 1 < doc.pageCount(); ++i) {
        const QStringList texts = pageTexts(doc, i);
        const ReportTextRun &lastLine = runWithText(doc, i, texts.at(texts.size() - 2));
        const ReportTextRun &footer = runWithText(doc, i, texts.last());
        // Another line would have run into the footer's space (4 points above its text).
        QVERIFY2(lastLine.box.bottom() + lastLine.box.height() > footer.box.top() - 4 + 0.01,
                 qPrintable(QStringLiteral("page %1 ends early").arg(i + 1)));
        QVERIFY(lastLine.box.bottom() <= footer.box.top() - 4 + 0.01);
    }
}

void tst_ReportLayout::groupsStayWithTheirLines_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("groupEvery");
    // Group sizes around a page's capacity put headers and footers at every place on a page.
    for (int every : {1, 3, 7, 29, 61})
        QTest::newRow(qPrintable(QStringLiteral("groups of %1").arg(every))) << 400 << every;
}

void tst_ReportLayout::groupsStayWithTheirLines()
{
    QFETCH(int, lines);
    QFETCH(int, groupEvery);
    const ReportDocument doc = sampleReport(lines, groupEvery);

    QStringList expected;
    for (int n = 1, group = 0; n <= lines; ++n) {
        const int inGroup = (n - 1) % groupEvery + 1;
        if (inGroup == 1)
            expected << QStringLiteral("Group %1").arg(++group);
        expected << paddedLine(n);
        if (inGroup == groupEvery || n == lines)
            expected << QStringLiteral("Total group %1: %2").arg(group).arg(inGroup);
    }
    QCOMPARE(bodyStream(doc), expected);

    for (int i = 0; i < doc.pageCount(); ++i) {
        const QStringList texts = pageTexts(doc, i);
        QVERIFY2(!texts.at(texts.size() - 2).startsWith(QLatin1String("Group ")),
                 qPrintable(QStringLiteral("page %1 ends in a lone group header").arg(i + 1)));
    }
}

void tst_ReportLayout::pageTokens_data()
{
    QTest::addColumn<QString>("footer");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("lastFooter");
    QTest::addColumn<QString>("lastDetail");
    QTest::newRow("page of pages") << "Page %p of %P" << "x" << "Page 3 of 3" << "x";
    QTest::newRow("percent signs") << "%p/%P 100%% %q %" << "x" << "3/3 100% %q %" << "x";
    QTest::newRow("data keeps its tokens") << "%p" << "50%p %P" << "3" << "50%p %P";
}

void tst_ReportLayout::textIsMeasuredAsItIsDrawn_data()
{
    QTest::addColumn<QFont>("font");
    QTest::addColumn<QString>("text");
    const QFont fixed = fixedPitchReportFont(10);
    const QFont proportional = proportionalFont(10, false);
    QTest::newRow("padded columns") << fixed << QStringLiteral("  1042  Widget, large      1,234.50  yes");
    QTest::newRow("accented Latin") << fixed << QStringLiteral("Cr\u00e8me br\u00fbl\u00e9e \u00c5ngstr\u00f6m \u00df");
    QTest::newRow("combining mark") << fixed << QStringLiteral("e\u0301te\u0301");
    QTest::newRow("Greek and CJK") << fixed << QStringLiteral("\u03b1\u03b2\u03b3 \u65e5\u672c");
    QTest::newRow("tab and DEL") << fixed << QStringLiteral("a\tb\u007fc");
    QTest::newRow("blank line") << fixed << QStringLiteral("   ");
    QTest::newRow("proportional font") << proportional << QStringLiteral("AVA Wave Total: 1,234.50");
}

// Every run's width is what the font's own shaping gives at the layout's resolution, whichever
// way the paginator got there, so right-aligned and centred text lands where it is drawn.
void tst_ReportLayout::textIsMeasuredAsItIsDrawn()
{
    QFETCH(QFont, font);
    QFETCH(QString, text);
    constexpr int resolution = 1200;
    ReportPaginator paginator(ReportPageSetup(), resolution);
    // The same line twice: the second is measured from what the first one taught.
    paginator.addDetail(ReportBand().addText(font, text).addText(font, text));
    const ReportDocument doc = paginator.finish();
    QImage device(1, 1, QImage::Format_ARGB32);
    device.setDotsPerMeterX(qRound(resolution / 0.0254));
    device.setDotsPerMeterY(qRound(resolution / 0.0254));
    const qreal expected = QFontMetricsF(font, &device).horizontalAdvance(text) * 72.0 / resolution;
    const QVector<ReportTextRun> &runs = doc.pages.at(0).texts;
    QCOMPARE(runs.size(), 2);
    for (const ReportTextRun &run : runs)
        QVERIFY2(qAbs(run.width - expected) < 1e-6,
                 qPrintable(QStringLiteral("%1 points, shaped %2").arg(run.width).arg(expected)));
}

void tst_ReportLayout::pageTokens()
{
    QFETCH(QString, footer);
    QFETCH(QString, detail);
    QFETCH(QString, lastFooter);
    QFETCH(QString, lastDetail);
    const QFont font = fixedPitchReportFont(10);
    ReportPaginator paginator;
    paginator.setPageFooter(ReportBand().addLine(font, {ReportCell{footer, 0, 0, Qt::AlignRight}}));
    for (int n = 0; n < 150; ++n)
        paginator.addDetail(ReportBand().addText(font, detail));
    const ReportDocument doc = paginator.finish();
    QCOMPARE(doc.pageCount(), 3);
    const QStringList texts = pageTexts(doc, 2);
    QCOMPARE(texts.last(), lastFooter);
    QCOMPARE(texts.first(), lastDetail);
    // The resolved text is measured again, so a right-aligned footer still ends on the margin.
    const ReportTextRun &run = runWithText(doc, 2, lastFooter);
    QCOMPARE(run.left() + run.width, doc.setup.contentRect().right());
}

void tst_ReportLayout::paperFromThePrinter_data()
{
    QTest::addColumn<bool>("havePrinter");
    QTest::addColumn<QSizeF>("pagePoints");
    QTest::addColumn<QMarginsF>("margins");
    QTest::newRow("no printer: A4 portrait") << false << QSizeF(595, 842) << QMarginsF(36, 36, 36, 36);
    QTest::newRow("printer: Letter landscape") << true << QSizeF(792, 612) << QMarginsF(72, 36, 72, 36);
}

void tst_ReportLayout::paperFromThePrinter()
{
    QFETCH(bool, havePrinter);
    QFETCH(QSizeF, pagePoints);
    QFETCH(QMarginsF, margins);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Landscape,
                                      QMarginsF(72, 36, 72, 36), QPageLayout::Point));
    const ReportPageSetup setup = ReportPageSetup::fromPrinter(havePrinter ? &printer : nullptr);
    QCOMPARE(setup.pageSizePoints().toSize(), pagePoints.toSize());
    QCOMPARE(setup.margins, margins);

    const ReportDocument doc = sampleReport(200, 0, setup);
    const QRectF content = setup.contentRect();
    for (const ReportPage &page : doc.pages)
        for (const ReportRule &rule : page.rules)
            QCOMPARE(rule.line, QLineF(content.left(), rule.line.y1(), content.right(), rule.line.y1()));
}

void tst_ReportLayout::bandsTallerThanAPageAreSplit()
{
    const QFont font = fixedPitchReportFont(10);
    ReportPageSetup setup;
    setup.pageSize = QPageSize(QPageSize::A6);
    ReportPaginator paginator(setup);
    paginator.setPageHeader(ReportBand().addText(font, QStringLiteral("HEADER")));
    paginator.addDetail(ReportBand().addText(font, QStringLiteral("before")));
    ReportBand tall;
    for (int n = 1; n <= 60; ++n)
        tall.addText(font, QStringLiteral("tall %1").arg(n));
    tall.setFramed(true);
    paginator.addDetail(tall);
    ReportBand small = ReportBand().addText(font, QStringLiteral("kept 1")).addText(font, QStringLiteral("kept 2"));
    paginator.addDetail(small);
    const ReportDocument doc = paginator.finish();

    // A band taller than a page starts on a fresh page and continues over the next ones, in
    // order, with a box around its part on each page.
    QCOMPARE(pageTexts(doc, 0), (QStringList{"HEADER", "before"}));
    QStringList tallLines;
    for (int i = 1; i < doc.pageCount(); ++i) {
        const QStringList texts = pageTexts(doc, i);
        QCOMPARE(texts.first(), QStringLiteral("HEADER"));
        const auto tallOnPage = std::count_if(texts.begin(), texts.end(), [](const QString &t) {
            return t.startsWith(QLatin1String("tall"));
        });
        for (const QString &t : texts)
            if (t.startsWith(QLatin1String("tall")))
                tallLines << t;
        QCOMPARE(doc.pages.at(i).boxes.size(), tallOnPage > 0 ? 1 : 0);
    }
    QCOMPARE(tallLines.size(), 60);
    QCOMPARE(tallLines.last(), QStringLiteral("tall 60"));
    // A band that fits a page is never cut: both its lines are on one page.
    const QStringList last = pageTexts(doc, doc.pageCount() - 1);
    QVERIFY(last.contains(QStringLiteral("kept 1")) && last.contains(QStringLiteral("kept 2")));
}

void tst_ReportLayout::layoutsThatCannotFitAreErrors_data()
{
    QTest::addColumn<int>("headerLines");
    QTest::addColumn<qreal>("detailPoints");
    QTest::newRow("a line taller than the page") << 1 << qreal(400);
    QTest::newRow("header and footer fill the page") << 40 << qreal(10);
}

void tst_ReportLayout::layoutsThatCannotFitAreErrors()
{
    QFETCH(int, headerLines);
    QFETCH(qreal, detailPoints);
    ReportPageSetup setup;
    setup.pageSize = QPageSize(QPageSize::A6);
    ReportPaginator paginator(setup);
    ReportBand header;
    for (int n = 0; n < headerLines; ++n)
        header.addText(fixedPitchReportFont(10), QStringLiteral("header"));
    paginator.setPageHeader(header);
    paginator.setPageFooter(header);
    try {
        paginator.addDetail(ReportBand().addText(fixedPitchReportFont(detailPoints), QStringLiteral("X")));
        paginator.finish();
        QFAIL("the layout was accepted");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), 5);
        QVERIFY2(e.Description().contains(QLatin1String("room")), qPrintable(e.Description()));
    }
}

void tst_ReportLayout::progressHandlerCancels()
{
    auto paginator = samplePaginator();
    QList<int> seen;
    paginator->setProgressHandler([&](int pages) {
        seen << pages;
        return pages < 2;
    });
    try {
        for (int n = 1; n <= 1000; ++n)
            addSampleLine(*paginator, n, 1000, 0);
        QFAIL("the run went on after the cancel");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), 18);
    }
    QCOMPARE(seen, (QList<int>{1, 2}));
}

void tst_ReportLayout::pageRanges_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::newRow("all") << 1 << ReportLastPage << 0 << 4;
    QTest::newRow("middle") << 2 << 3 << 1 << 2;
    QTest::newRow("one page") << 5 << 5 << 4 << 4;
    QTest::newRow("past the end: what exists") << 4 << 99 << 3 << 4;
    QTest::newRow("from 0") << 0 << 3 << -1 << -1;
    QTest::newRow("from after to") << 3 << 2 << -1 << -1;
    QTest::newRow("to 0") << 1 << 0 << -1 << -1;
    QTest::newRow("first page past the end") << 6 << 9 << -1 << -1;
}

void tst_ReportLayout::pageRanges()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, first);
    QFETCH(int, last);
    ReportDocument doc;
    doc.pages.resize(5);
    try {
        const auto range = doc.pageIndexRange(from, to);
        QCOMPARE(range.first, first);
        QCOMPARE(range.second, last);
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), 5);
        QCOMPARE(first, -1);
        QVERIFY(e.Description().contains(QString::number(from)));
    }
}

QTEST_MAIN(tst_ReportLayout)
#include "tst_reportlayout.moc"
