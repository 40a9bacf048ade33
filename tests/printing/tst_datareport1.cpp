// The generic data report over SQLite rows whose "prntxt" column holds ready-made, blank-padded
// lines: what a reader finds in the text export and the PDF of the preview's pages.

#include "printing/datareport1_p.h"
#include "printing/reportparameters.h"
#include "printing/reportpreview_p.h"
#include "printjobtestsupport.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/runtimeerror.h>

#include <QApplication>
#include <QDate>
#include <QPointer>
#include <QRegularExpression>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace PanelKestrin;

namespace {

constexpr int LineCount = 300; // pages enough on any paper for the ranges printed
const QString Heading = QStringLiteral("code         description                 price");

bool isRule(const QString &line)
{
    return line.size() > 20 && line.count(u'-') == line.size();
}

} // namespace

class tst_DataReport1 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void exportedText_data();
    void exportedText();
    void exportRefused_data();
    void exportRefused();
    void previewColumnsAligned();
    void modelessShowOutlivesItsReport();
    void printed();
    void missingLineField();

private:
    // The report's recordset: the padded lines in order, or a query of the caller's.
    std::unique_ptr<Recordset> open(const QString &sql = QStringLiteral("SELECT prntxt FROM lines ORDER BY n"));
    QStringList exportPages(DataReport1 &report, int range = 0, int from = 0, int to = 0);

    QTemporaryDir m_dir;
    Connection m_connection;
};

void tst_DataReport1::initTestCase()
{
    QVERIFY2(PrintJobTest::useTestPrintServer(), "the CUPS test server is not running; CTest starts it");
    QStandardPaths::setTestModeEnabled(true); // the registry store of the test, not the user's
    QVERIFY(m_dir.isValid());
    const QString db = m_dir.filePath(QStringLiteral("lines.sqlite"));
    QFile file(db);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    m_connection.Open(QStringLiteral("Provider=SQLite;Data Source=") + db);
    m_connection.Execute(QStringLiteral("CREATE TABLE lines (n INTEGER, prntxt TEXT)"));
    m_connection.Execute(QStringLiteral("BEGIN"));
    for (int n = 1; n <= LineCount; ++n)
        m_connection.Execute(QStringLiteral("INSERT INTO lines VALUES (?, ?)"), {n, ReportTest::paddedLine(n)});
    m_connection.Execute(QStringLiteral("COMMIT"));
}

void tst_DataReport1::init()
{
    const QString key = QString::fromLatin1(DataReportSettingsKey);
    SetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("Organisation"), QStringLiteral("KSTR"));
    SetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("Town"), QStringLiteral("Leeds"));
    reportParameters().rpttitle = QStringLiteral("stock list");
    reportParameters().rptheading = Heading;
}

void tst_DataReport1::cleanup()
{
    setModalRunner({});
}

std::unique_ptr<Recordset> tst_DataReport1::open(const QString &sql)
{
    auto recordset = std::make_unique<Recordset>();
    recordset->Open(sql, &m_connection);
    return recordset;
}

QStringList tst_DataReport1::exportPages(DataReport1 &report, int range, int from, int to)
{
    const QString fileName = m_dir.filePath(QStringLiteral("report.txt"));
    report.ExportReport(QStringLiteral("key_def_Text"), fileName, true, false, range, from, to);
    return ReportTest::textFilePages(fileName);
}

void tst_DataReport1::exportedText_data()
{
    QTest::addColumn<QString>("heading");
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("firstPage"); // the page the file starts with; 0: whole report expected

    QTest::newRow("every page") << Heading << 0 << 0 << 0 << 0;
    QTest::newRow("pages 2 to 3") << Heading << 1 << 2 << 3 << 2;
    QTest::newRow("range past the end") << Heading << 1 << 3 << 99 << 3;
    QTest::newRow("empty heading") << QString() << 0 << 0 << 0 << 0;
}

// The letterhead, title and date open the report; every page has the heading between its two
// rules and its number at the foot; the lines come out as the query padded them, in order.
void tst_DataReport1::exportedText()
{
    QFETCH(QString, heading);
    QFETCH(int, range);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, firstPage);
    reportParameters().rptheading = heading;
    const auto recordset = open();
    DataReport1 report(recordset.get());

    const QStringList whole = exportPages(report);
    QVERIFY(whole.size() >= 3);
    const QStringList pages = firstPage ? exportPages(report, range, from, to) : whole;
    const int first = firstPage ? firstPage : 1;
    QCOMPARE(pages.size(), qMin(int(whole.size()), to ? to : int(whole.size())) - first + 1);

    QStringList details;
    for (int i = 0; i < pages.size(); ++i) {
        QStringList lines = pages.at(i).split(u'\n');
        while (!lines.isEmpty() && lines.first().isEmpty() && i > 0)
            lines.removeFirst();
        const int rule = int(lines.indexOf(QRegularExpression(QStringLiteral("^-+$"))));
        QVERIFY2(rule >= 0 && rule + 2 < lines.size(), qPrintable(pages.at(i)));
        QCOMPARE(lines.at(rule + 1), heading.toUpper());
        QVERIFY(isRule(lines.at(rule + 2)));
        if (first + i == 1) {
            QCOMPARE(lines.mid(0, 6), QStringList({QStringLiteral("KSTR"), QString(), QString(), QStringLiteral("Leeds"),
                                                   QStringLiteral("STOCK LIST"),
                                                   QStringLiteral("Date:") + QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy"))}));
        } else {
            QVERIFY2(!pages.at(i).contains(QLatin1String("STOCK LIST")), qPrintable(pages.at(i)));
        }
        while (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        QCOMPARE(lines.last(), QStringLiteral("Page: %1").arg(first + i));
        for (const QString &line : lines)
            if (line.startsWith(QLatin1String("Item ")))
                details << line;
    }
    if (firstPage == 0) {
        QCOMPARE(details.size(), LineCount);
        for (int n = 1; n <= LineCount; ++n)
            QCOMPARE(details.at(n - 1), ReportTest::paddedLine(n).trimmed());
    } else {
        QVERIFY(!details.isEmpty());
        QVERIFY(details.first() != ReportTest::paddedLine(1).trimmed());
    }
}

void tst_DataReport1::exportRefused_data()
{
    QTest::addColumn<QString>("formatKey");
    QTest::addColumn<bool>("overwrite");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("number");

    QTest::newRow("existing file, no overwrite") << "key_def_Text" << false << 1 << 1 << 58;
    QTest::newRow("unknown format") << "key_def_HTML" << true << 1 << 1 << int(ErrInvalidProcedureCall);
    QTest::newRow("page 0") << "key_def_Text" << true << 0 << 2 << int(ErrInvalidProcedureCall);
    QTest::newRow("from after to") << "key_def_Text" << true << 3 << 2 << int(ErrInvalidProcedureCall);
    QTest::newRow("from past the end") << "key_def_Text" << true << 50 << 60 << int(ErrInvalidProcedureCall);
}

// Refused exports leave the file that was there as it was.
void tst_DataReport1::exportRefused()
{
    QFETCH(QString, formatKey);
    QFETCH(bool, overwrite);
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(int, number);
    const QString fileName = m_dir.filePath(QStringLiteral("existing.txt"));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("keep me");
    file.close();

    const auto recordset = open();
    DataReport1 report(recordset.get());
    try {
        report.ExportReport(formatKey, fileName, overwrite, false, DataReport1::RangeFromTo, from, to);
        QFAIL("the export was made");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), number);
    }
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("keep me"));
}

// Show 1 opens the preview modally; its pages, printed to PDF, keep the padded columns: on each
// page every price's decimal point stands in one column of what pdftotext reads.
void tst_DataReport1::previewColumnsAligned()
{
    const auto recordset = open();
    DataReport1 report(recordset.get());
    const QString pdf = m_dir.filePath(QStringLiteral("preview.pdf"));
    const auto shown = ReportTest::checkPreviews([&](ReportPreview *preview) {
        QVERIFY(preview->pageCount() >= 3);
        writeReportPdf(preview->document(), pdf);
    });
    report.Show(1);
    QCOMPARE(*shown, 1);

    // pdftotext spaces each page on its own, so the columns are compared within a page.
    int lines = 0;
    for (int page = 1; page <= ReportTest::pdfPageCount(pdf); ++page) {
        QSet<int> pointColumns;
        QSet<int> nameColumns;
        for (const QString &line : ReportTest::pdfPageText(pdf, page).split(u'\n')) {
            if (!line.contains(QLatin1String("Widget number")))
                continue;
            ++lines;
            pointColumns << int(line.lastIndexOf(u'.'));
            nameColumns << int(line.indexOf(QLatin1String("Widget")));
        }
        QCOMPARE(pointColumns.size(), 1);
        QCOMPARE(nameColumns.size(), 1);
    }
    QCOMPARE(lines, LineCount);
}

// Show 0 opens the preview beside the host's forms and returns at once: no modal run, the
// layout goes on while the host works, the window outlives the report object and the
// recordset it came from, and closing it frees it.
void tst_DataReport1::modelessShowOutlivesItsReport()
{
    int modalRuns = 0;
    setModalRunner([&](QDialog *) { return ++modalRuns, 0; });
    QPointer<ReportPreview> preview;
    {
        auto recordset = open();
        DataReport1 report(recordset.get());
        report.Show(0);
        for (QWidget *window : QApplication::topLevelWidgets())
            if (auto *candidate = qobject_cast<ReportPreview *>(window); candidate && candidate->isVisible())
                preview = candidate;
    }
    QVERIFY(preview);
    QCOMPARE(modalRuns, 0);
    QVERIFY(!preview->isModal());
    QTRY_VERIFY(!preview->isLayingOut());
    QVERIFY(preview->pageCount() >= 3);
    QVERIFY(reportPageTextLines(preview->document(), 0).join(u'\n').contains(QLatin1String("STOCK LIST")));
    QTest::keyClick(preview, Qt::Key_Escape);
    QTRY_VERIFY(!preview);
}

// PrintReport without its dialog prints the range asked for on the default queue, each page
// with the heading and its number.
void tst_DataReport1::printed()
{
    const QString title = QStringLiteral("pk%1data").arg(QCoreApplication::applicationPid());
    reportParameters().rpttitle = title;
    const auto recordset = open();
    DataReport1 report(recordset.get());
    report.PrintReport(false, DataReport1::RangeFromTo, 2, 3);

    const QStringList pages = PrintJobTest::jobPages(title);
    QCOMPARE(PrintJobTest::foundOnPages(pages, QStringLiteral("Page: \\d+")),
             QStringList({QStringLiteral("Page: 2"), QStringLiteral("Page: 3")}));
    const QString heading = QStringLiteral("CODE\\s+DESCRIPTION\\s+PRICE");
    QVERIFY(!PrintJobTest::foundOnPages(pages, heading).contains(QString()));
    QVERIFY(!pages.first().contains(title.toUpper()));
}

// A query without "prntxt" cannot be shown: a clear error, and no window.
void tst_DataReport1::missingLineField()
{
    const auto recordset = open(QStringLiteral("SELECT n, prntxt AS line FROM lines"));
    DataReport1 report(recordset.get());
    int shown = 0;
    setModalRunner([&](QDialog *) {
        ++shown;
        return 0;
    });
    try {
        report.Show(1);
        QFAIL("a report without prntxt was shown");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), int(ErrItemNotFound));
        QVERIFY2(error.Description().contains(QLatin1String("\"prntxt\"")), qPrintable(error.Description()));
    }
    QCOMPARE(shown, 0);
}

QTEST_MAIN(tst_DataReport1)
#include "tst_datareport1.moc"
