#include "reporttestsupport.h"

#include <PanelKestrin/runtimeerror.h>

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace ReportTest;

namespace {

QByteArray readFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

using Writer = void (*)(const ReportDocument &, const QString &, int, int);

} // namespace

Q_DECLARE_METATYPE(Writer)
Q_DECLARE_METATYPE(PanelKestrin::ReportCell)

class tst_ReportFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void textPagesBetweenFormFeeds_data();
    void textPagesBetweenFormFeeds();
    void textColumnsFollowPositions_data();
    void textColumnsFollowPositions();
    void pdfPagesShowTheModelsLines_data();
    void pdfPagesShowTheModelsLines();
    void tenThousandLinePdfStaysSmall();
    void rtfReadsBackLineByLine();
    void rtfCarriesFontsPaperAndPageBreaks();
    void unwritableFilesAreErrors_data();
    void unwritableFilesAreErrors();

private:
    QTemporaryDir m_dir;
    QString path(const QString &name) const { return m_dir.filePath(name); }
};

void tst_ReportFiles::initTestCase()
{
    QVERIFY(m_dir.isValid());
    for (const char *tool : {"pdftotext", "pdfinfo", "pdffonts", "unrtf"})
        QVERIFY2(!QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty(),
                 qPrintable(QStringLiteral("%1 is missing: run scripts/setup.sh test").arg(QLatin1String(tool))));
}

void tst_ReportFiles::textPagesBetweenFormFeeds_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("whole report") << 1 << ReportLastPage;
    QTest::newRow("pages 2 to 3") << 2 << 3;
    QTest::newRow("from page 3 past the end") << 3 << 50;
}

void tst_ReportFiles::textPagesBetweenFormFeeds()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const ReportDocument doc = sampleReport(300, 25);
    QVERIFY(doc.pageCount() >= 4);
    const QString file = path(QStringLiteral("report.txt"));
    writeReportText(doc, file, from, to);
    const QStringList pages = QString::fromUtf8(readFile(file)).split(u'\f');
    const int last = std::min(to, doc.pageCount());
    QCOMPARE(pages.size(), last - from + 1);
    for (int i = 0; i < pages.size(); ++i) {
        const QStringList lines = pages.at(i).split(u'\n');
        const int page = from + i;
        QCOMPARE(lines.mid(0, lines.size() - 1), reportPageTextLines(doc, page - 1));
        QCOMPARE(lines.last(), QString()); // every line ends in a line feed
        QVERIFY(lines.contains(QStringLiteral("Page: %1").arg(page)));
    }
    // The padded detail lines come out exactly as they went in, from the first column.
    const QString all = QString::fromUtf8(readFile(file));
    if (from == 1)
        QVERIFY(all.split(u'\n').contains(paddedLine(1)));
}

void tst_ReportFiles::textColumnsFollowPositions_data()
{
    QTest::addColumn<QVector<ReportCell>>("cells");
    QTest::addColumn<QString>("line");
    // x positions in character cells of the 10-point fixed-pitch font (6 points wide).
    QTest::newRow("left-aligned columns")
        << QVector<ReportCell>{{"A1", 0, 0, Qt::AlignLeft}, {"North", 6 * 10, 0, Qt::AlignLeft},
                               {"x", 6 * 30, 0, Qt::AlignLeft}}
        << QStringLiteral("A1%1North%2x").arg(QString(8, u' '), QString(15, u' '));
    QTest::newRow("right-aligned amount ends on its column")
        << QVector<ReportCell>{{"Total", 0, 0, Qt::AlignLeft}, {"1,234.50", 0, 6 * 20, Qt::AlignRight}}
        << QStringLiteral("Total") + QString(7, u' ') + QStringLiteral("1,234.50");
    QTest::newRow("centred") << QVector<ReportCell>{{"mid", 0, 6 * 11, Qt::AlignHCenter}}
                             << QStringLiteral("    mid");
    QTest::newRow("overlapping runs keep a blank between them")
        << QVector<ReportCell>{{"LONGWORD", 0, 0, Qt::AlignLeft}, {"next", 6 * 3, 0, Qt::AlignLeft}}
        << QStringLiteral("LONGWORD next");
}

void tst_ReportFiles::textColumnsFollowPositions()
{
    QFETCH(QVector<ReportCell>, cells);
    QFETCH(QString, line);
    const QFont fixed = fixedPitchReportFont(10);
    ReportPaginator paginator;
    paginator.setTextFont(fixed);
    paginator.addDetail(ReportBand().addLine(fixed, cells));
    paginator.addDetail(ReportBand().addSpace(30).addText(fixed, QStringLiteral("after a gap")));
    const ReportDocument doc = paginator.finish();
    QVERIFY(qAbs(doc.textCell.width() - 6) < 0.1); // Courier's and its look-alikes' cell
    const QStringList lines = reportPageTextLines(doc, 0);
    QCOMPARE(lines.first(), line);
    // The gap of 30 points stays as the blank rows of the fixed-pitch cell nearest to it.
    const qreal row = doc.textCell.height();
    QCOMPARE(lines.size(), qRound((row + 30) / row) + 1);
    QCOMPARE(lines.last(), QStringLiteral("after a gap"));
}

void tst_ReportFiles::pdfPagesShowTheModelsLines_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("whole report") << 1 << ReportLastPage;
    QTest::newRow("pages 2 to 3") << 2 << 3;
}

// The preview and the printer draw the same model through the same painter, so a reader of the
// PDF must find on each page exactly the lines the model has there.
void tst_ReportFiles::pdfPagesShowTheModelsLines()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const ReportDocument doc = sampleReport(200, 9);
    const QString file = path(QStringLiteral("report.pdf"));
    writeReportPdf(doc, file, from, to);
    const int last = std::min(to, doc.pageCount());
    QCOMPARE(pdfPageCount(file), last - from + 1);
    for (int page = from; page <= last; ++page)
        QCOMPARE(wordLines(pdfPageText(file, page - from + 1)), modelWordLines(doc, page - 1));
}

void tst_ReportFiles::tenThousandLinePdfStaysSmall()
{
    QElapsedTimer timer;
    timer.start();
    const ReportDocument doc = sampleReport(10000);
    const qint64 layoutMs = timer.restart();
    const QString file = path(QStringLiteral("10k.pdf"));
    writeReportPdf(doc, file);
    const qint64 pdfMs = timer.restart();
    writeReportText(doc, path(QStringLiteral("10k.txt")));
    const qint64 textMs = timer.elapsed();
    const qint64 size = QFileInfo(file).size();
    qInfo("10,000 lines, %d pages: layout %lld ms, PDF %lld ms (%lld bytes), text %lld ms",
          doc.pageCount(), layoutMs, pdfMs, size, textMs);
    QVERIFY2(size < 1024 * 1024, qPrintable(QString::number(size)));
    QCOMPARE(pdfPageCount(file), doc.pageCount());
    // Each font embedded, once. (Qt embeds only the glyphs used but does not tag the subset's
    // name, so pdffonts reports "sub no"; the size above is what shows it.)
    const QStringList fonts = run(QStringLiteral("pdffonts"), {file}).split(u'\n').mid(2);
    QStringList used;
    for (const QString &row : fonts) {
        if (row.trimmed().isEmpty())
            continue;
        const QStringList cols = row.simplified().split(u' ');
        QCOMPARE(cols.value(cols.size() - 5), QStringLiteral("yes")); // emb
        used << cols.first();
    }
    QCOMPARE(used.size(), doc.fonts.size());
    QCOMPARE(QSet<QString>(used.begin(), used.end()).size(), used.size());
    QCOMPARE(wordLines(pdfPageText(file, doc.pageCount())), modelWordLines(doc, doc.pageCount() - 1));
}

void tst_ReportFiles::rtfReadsBackLineByLine()
{
    const ReportDocument doc = sampleReport(150, 20);
    const QString file = path(QStringLiteral("report.rtf"));
    writeReportRtf(doc, file);
    QStringList expected;
    for (int i = 0; i < doc.pageCount(); ++i)
        expected += modelWordLines(doc, i);
    QStringList read = wordLines(run(QStringLiteral("unrtf"), {QStringLiteral("--text"), file}));
    read.erase(std::remove_if(read.begin(), read.end(), [](const QString &l) {
                   return l.startsWith(u'#') || l.count(u'-') == l.size()
                          || l == QLatin1String("TITLE: Sample report");
               }),
               read.end()); // unrtf's comments and title, and the rules' empty paragraphs
    QCOMPARE(read, expected);
}

void tst_ReportFiles::rtfCarriesFontsPaperAndPageBreaks()
{
    ReportPageSetup setup;
    setup.pageSize = QPageSize(QPageSize::Letter);
    setup.orientation = QPageLayout::Landscape;
    setup.margins = QMarginsF(36, 18, 36, 18);
    const ReportDocument doc = sampleReport(120, 0, setup);
    const QString file = path(QStringLiteral("landscape.rtf"));
    writeReportRtf(doc, file);
    const QByteArray rtf = readFile(file);
    QVERIFY(rtf.startsWith("{\\rtf1"));
    QVERIFY(rtf.contains("\\paperw15840\\paperh12240\\margl720\\margr720\\margt360\\margb360\\landscape"));
    QCOMPARE(rtf.count("\\page\n"), doc.pageCount() - 1);
    const QFontInfo fixed(fixedPitchReportFont(10));
    QVERIFY(rtf.contains("\\fmodern\\fprq1\\fcharset0 " + fixed.family().toLatin1() + ";"));
    QVERIFY(rtf.contains("\\fs20"));  // 10 points
    QVERIFY(rtf.contains("\\tqr\\tx")); // the right-aligned "Page n of N"
}

void tst_ReportFiles::unwritableFilesAreErrors_data()
{
    QTest::addColumn<Writer>("writer");
    QTest::newRow("PDF") << Writer(&writeReportPdf);
    QTest::newRow("text") << Writer(&writeReportText);
    QTest::newRow("RTF") << Writer(&writeReportRtf);
}

void tst_ReportFiles::unwritableFilesAreErrors()
{
    QFETCH(Writer, writer);
    const ReportDocument doc = sampleReport(5);
    for (const QString &name : {path(QStringLiteral("no/such/folder/out")), QString()}) {
        try {
            writer(doc, name, 1, ReportLastPage);
            QFAIL("the file was accepted");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.Number(), 75);
            QVERIFY2(e.Description().contains(name), qPrintable(e.Description()));
        }
    }
}

QTEST_MAIN(tst_ReportFiles)
#include "tst_reportfiles.moc"
