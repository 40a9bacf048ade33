// The printer output against a real print server: the cups fixture's scheduler with a PDF
// queue. Each job is read back from the PDF file the queue writes, page by page with pdftotext.

#include "printing/reportdocument_p.h"
#include "printing/reportprinter_p.h"

#include "printjobtestsupport.h"

#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/runtimeerror.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace PanelKestrin;

namespace {

constexpr int reportPages = 5;

// A report of five pages; page p carries "Page p of 5" and the lines "Item p.1" to "Item p.3".
ReportDocument fivePageReport()
{
    ReportDocument document;
    document.title = QStringLiteral("Stock list");
    const int font = document.addFont(QFont(QStringLiteral("DejaVu Sans"), 11));
    const QRectF content = document.setup.contentRect();
    for (int p = 1; p <= reportPages; ++p) {
        ReportPage page;
        QStringList lines{QStringLiteral("Page %1 of %2").arg(p).arg(reportPages)};
        for (int item = 1; item <= 3; ++item)
            lines << QStringLiteral("Item %1.%2").arg(p).arg(item);
        qreal top = content.top();
        for (const QString &line : lines) {
            ReportTextRun run;
            run.box = QRectF(content.left(), top, content.width(), 16);
            run.font = font;
            run.text = line;
            run.baseline = top + 12;
            page.texts << run;
            top += 20;
        }
        document.pages << page;
    }
    return document;
}

// The page numbers printed, in order, as read from each page's "Page p of 5" line; -1 for a
// page without one or whose items do not belong to it.
QList<int> pageNumbersRead(const QStringList &pages)
{
    static const QRegularExpression header(QStringLiteral("Page (\\d+) of %1").arg(reportPages));
    QList<int> numbers;
    for (const QString &text : pages) {
        const QRegularExpressionMatch match = header.match(text);
        int number = match.hasMatch() ? match.captured(1).toInt() : -1;
        for (int item = 1; item <= 3 && number > 0; ++item) {
            if (!text.contains(QStringLiteral("Item %1.%2").arg(number).arg(item)))
                number = -1;
        }
        numbers << number;
    }
    return numbers;
}

// The text of each page of a PDF file.
QStringList pdfPages(const QString &file)
{
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")});
    if (!pdftotext.waitForFinished(60000) || pdftotext.exitCode() != 0)
        return {QStringLiteral("pdftotext failed on %1: %2").arg(file, pdftotext.readAllStandardError())};
    QStringList pages = QString::fromUtf8(pdftotext.readAllStandardOutput()).split(QLatin1Char('\f'));
    if (!pages.isEmpty() && pages.constLast().trimmed().isEmpty())
        pages.removeLast();
    return pages;
}

} // namespace

class TestReportPrinter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void printsPageRangeOnDefaultQueue_data();
    void printsPageRangeOnDefaultQueue();
    void copies_data();
    void copies();
    void refusesInvalidRangeAndCopies_data();
    void refusesInvalidRangeAndCopies();
    void unknownPrinterIsAClearError();
    void noPrinterInstalledIsAClearError_data();
    void noPrinterInstalledIsAClearError();
    void printerSetupChoosesForEveryReport_data();
    void printerSetupChoosesForEveryReport();

private:
    QString newJobTitle();
    // Waits for the queue to finish the job titled title and reads its PDF back.
    void readJob(const QString &title, QStringList *pages, int *sheets);

    QString m_queue;
    QString m_pdfDir;
    QString m_pageLog;
    int m_jobs = 0;
};

// The fixture's server reaches libcups through CUPS_SERVER, which libcups reads once, on the
// first printer query: nothing in this test may touch a printer before this runs.
void TestReportPrinter::initTestCase()
{
    if (!PrintJobTest::useTestPrintServer())
        QFAIL(qPrintable(QStringLiteral("the CUPS test server is not running (no %1); CTest starts it "
                                        "with scripts/cups-for-tests.sh")
                             .arg(qEnvironmentVariable("PK_TEST_CUPS_ENV_FILE"))));
    m_queue = qEnvironmentVariable("PK_CUPS_QUEUE");
    m_pdfDir = qEnvironmentVariable("PK_CUPS_PDF_DIR");
    m_pageLog = qEnvironmentVariable("PK_CUPS_PAGE_LOG");
    QVERIFY(!m_queue.isEmpty() && QDir(m_pdfDir).exists());
}

// Titles unique to this process, so that a rerun against a server still holding earlier
// files finds its own. The queue names each file after the job's title.
QString TestReportPrinter::newJobTitle()
{
    return QStringLiteral("pk%1x%2report").arg(QCoreApplication::applicationPid()).arg(++m_jobs);
}

void TestReportPrinter::readJob(const QString &title, QStringList *pages, int *sheets)
{
    // The page log gets a "total" line for the job once its PDF is written.
    const QRegularExpression finished(
        QStringLiteral("\\] total (\\d+) \\S+ \\S+ %1 ").arg(QRegularExpression::escape(title)));
    QRegularExpressionMatch match;
    auto jobDone = [&] {
        QFile log(m_pageLog);
        if (log.open(QIODevice::ReadOnly))
            match = finished.match(QString::fromUtf8(log.readAll()));
        return match.hasMatch();
    };
    QTRY_VERIFY_WITH_TIMEOUT(jobDone(), 60000);
    *sheets = match.captured(1).toInt();
    const QStringList files = QDir(m_pdfDir).entryList({title + QLatin1String("*.pdf")}, QDir::Files);
    QCOMPARE(files.size(), 1);
    *pages = pdfPages(QDir(m_pdfDir).filePath(files.constFirst()));
}

void TestReportPrinter::printsPageRangeOnDefaultQueue_data()
{
    QTest::addColumn<int>("fromPage");
    QTest::addColumn<int>("toPage");
    QTest::addColumn<QList<int>>("printed");

    QTest::newRow("whole report") << 1 << 5 << QList<int>{1, 2, 3, 4, 5};
    QTest::newRow("middle pages") << 2 << 3 << QList<int>{2, 3};
    QTest::newRow("range past the last page") << 4 << 99 << QList<int>{4, 5};
    QTest::newRow("last page alone") << 5 << 5 << QList<int>{5};
}

void TestReportPrinter::printsPageRangeOnDefaultQueue()
{
    QFETCH(int, fromPage);
    QFETCH(int, toPage);
    QFETCH(QList<int>, printed);

    ReportDocument document = fivePageReport();
    document.title = newJobTitle();
    QPrinter printer;
    selectReportPrinter(printer);
    QCOMPARE(printer.printerName(), m_queue);
    printReport(document, printer, fromPage, toPage);

    QStringList pages;
    int sheets = 0;
    readJob(document.title, &pages, &sheets);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(pageNumbersRead(pages), printed);
    QCOMPARE(sheets, printed.size());
}

// A print queue makes the copies itself: it gets the count and, with the printer's default
// collation, the scheduler's PDF filter lays the copies out as whole sets, which is what the
// PDF queue then writes: one file holding the range once per copy. A PDF file printer cannot
// make copies, so the pages are drawn once per copy. Either way the reader sees whole copies.
void TestReportPrinter::copies_data()
{
    QTest::addColumn<bool>("toQueue");
    QTest::addColumn<int>("fromPage");
    QTest::addColumn<int>("toPage");
    QTest::addColumn<int>("copies");
    QTest::addColumn<QList<int>>("printed");

    QTest::newRow("queue, two copies of pages 2-3") << true << 2 << 3 << 2 << QList<int>{2, 3, 2, 3};
    QTest::newRow("queue, three copies of the last page") << true << 5 << 5 << 3 << QList<int>{5, 5, 5};
    QTest::newRow("PDF file, two copies of pages 2-3") << false << 2 << 3 << 2 << QList<int>{2, 3, 2, 3};
}

void TestReportPrinter::copies()
{
    QFETCH(bool, toQueue);
    QFETCH(int, fromPage);
    QFETCH(int, toPage);
    QFETCH(int, copies);
    QFETCH(QList<int>, printed);

    ReportDocument document = fivePageReport();
    document.title = newJobTitle();
    QPrinter printer;
    QTemporaryDir folder;
    if (toQueue) {
        selectReportPrinter(printer, m_queue);
    } else {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath(QStringLiteral("report.pdf")));
    }
    printReport(document, printer, fromPage, toPage, copies);

    QStringList pages;
    int sheets = 0;
    if (toQueue) {
        readJob(document.title, &pages, &sheets);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(sheets, printed.size());
    } else {
        pages = pdfPages(printer.outputFileName());
    }
    QCOMPARE(pageNumbersRead(pages), printed);
}

void TestReportPrinter::refusesInvalidRangeAndCopies_data()
{
    QTest::addColumn<int>("fromPage");
    QTest::addColumn<int>("toPage");
    QTest::addColumn<int>("copies");
    QTest::addColumn<QString>("saying");

    QTest::newRow("first page 0") << 0 << 3 << 1 << QStringLiteral("Invalid page range 0 to 3");
    QTest::newRow("last page 0") << 2 << 0 << 1 << QStringLiteral("Invalid page range 2 to 0");
    QTest::newRow("first after last") << 3 << 2 << 1 << QStringLiteral("Invalid page range 3 to 2");
    QTest::newRow("first page past the end") << 6 << 9 << 1 << QStringLiteral("Page 6 is past the end");
    QTest::newRow("no copies") << 1 << 2 << 0 << QStringLiteral("Invalid number of copies 0");
    QTest::newRow("negative copies") << 1 << 2 << -1 << QStringLiteral("Invalid number of copies -1");
}

void TestReportPrinter::refusesInvalidRangeAndCopies()
{
    QFETCH(int, fromPage);
    QFETCH(int, toPage);
    QFETCH(int, copies);
    QFETCH(QString, saying);

    QPrinter printer;
    selectReportPrinter(printer, m_queue);
    try {
        printReport(fivePageReport(), printer, fromPage, toPage, copies);
        QFAIL("the print was accepted");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), int(ErrInvalidProcedureCall));
        QVERIFY2(error.Description().contains(saying), qPrintable(error.Description()));
    }
}

void TestReportPrinter::unknownPrinterIsAClearError()
{
    QPrinter printer;
    try {
        selectReportPrinter(printer, QStringLiteral("no-such-queue"));
        QFAIL("an unknown printer was chosen");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), ErrReportPrinter);
        QCOMPARE(error.Description(), QStringLiteral("The printer \"no-such-queue\" is not installed. "
                                                     "Installed printers: %1.")
                                          .arg(m_queue));
    }
}

// A machine without printers, seen from a process of its own (libcups settles on its server
// once per process): the child points CUPS_SERVER at a socket nobody listens on, prints, and
// reports the error it got. It must get the clear error and must not crash.
void TestReportPrinter::noPrinterInstalledIsAClearError_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("default printer chosen") << QStringLiteral("select");
    QTest::newRow("printer left as constructed") << QStringLiteral("print");
}

void TestReportPrinter::noPrinterInstalledIsAClearError()
{
    QFETCH(QString, mode);

    QTemporaryDir folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CUPS_SERVER"), folder.filePath(QStringLiteral("nobody.sock")));
    environment.insert(QStringLiteral("PK_TEST_PRINT_CHILD"), mode);
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(child.waitForFinished(60000));
    const QString said = QString::fromUtf8(child.readAllStandardOutput()).trimmed();
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QVERIFY2(child.exitCode() == 0, qPrintable(said + child.readAllStandardError()));
    QCOMPARE(said, QStringLiteral("482: No printer is installed. Add a printer to the system before "
                                  "printing, or send the report to a file."));
}

// The child's side of noPrinterInstalledIsAClearError: prints page 1 and writes the error.
static int printAsChild(const QString &mode)
{
    QPrinter printer;
    QTextStream out(stdout);
    try {
        if (mode == QLatin1String("select"))
            selectReportPrinter(printer);
        printReport(fivePageReport(), printer, 1, 1);
    } catch (const RuntimeError &error) {
        out << error.Number() << ": " << error.Description() << Qt::endl;
        return 0;
    }
    out << "printed without a printer" << Qt::endl;
    return 1;
}

void TestReportPrinter::printerSetupChoosesForEveryReport_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("toFile");
    QTest::addColumn<int>("expected");
    QTest::newRow("landscape confirmed") << int(QDialog::Accepted) << false << int(QPageLayout::Landscape);
    QTest::newRow("cancelled") << int(QDialog::Rejected) << false << int(QPageLayout::Portrait);
    QTest::newRow("a PDF file confirmed") << int(QDialog::Accepted) << true << int(QPageLayout::Portrait);
}

// What the user confirms in the printer setup is where every later report goes: the printer a
// report is sent to without a name, the paper of the preview and the files, and where the next
// setup starts. Cancelling it, or choosing a file instead of a printer, keeps what was there.
void TestReportPrinter::printerSetupChoosesForEveryReport()
{
    QFETCH(int, answer);
    QFETCH(bool, toFile);
    QFETCH(int, expected);
    resetReportPrinterSetup();
    QTemporaryDir folder;
    QList<QPageLayout::Orientation> offered;
    QStringList offeredPrinters;
    const PrinterDialogHandler previous = setPrinterDialogHandler([&](QPrinter *printer, QWidget *) {
        offered << printer->pageLayout().orientation();
        offeredPrinters << printer->printerName();
        printer->setPageOrientation(QPageLayout::Landscape);
        if (toFile) {
            printer->setOutputFormat(QPrinter::PdfFormat);
            printer->setOutputFileName(folder.filePath(QStringLiteral("setup.pdf")));
        }
        return answer;
    });
    QCOMPARE(runReportPrinterSetup(nullptr), answer == QDialog::Accepted);
    QCOMPARE(int(defaultReportPageSetup().orientation), expected);
    QPrinter printer(QPrinter::HighResolution);
    selectReportPrinter(printer);
    QCOMPARE(printer.printerName(), m_queue);
    QCOMPARE(int(printer.pageLayout().orientation()), expected);
    runReportPrinterSetup(nullptr);
    setPrinterDialogHandler(previous);
    resetReportPrinterSetup();
    QCOMPARE(offeredPrinters, QStringList({m_queue, m_queue}));
    QCOMPARE(int(offered.last()), expected);
    QCOMPARE(int(defaultReportPageSetup().orientation), int(QPageLayout::Portrait));
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString childMode = qEnvironmentVariable("PK_TEST_PRINT_CHILD");
    if (!childMode.isEmpty())
        return printAsChild(childMode);
    TestReportPrinter test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_reportprinter.moc"
