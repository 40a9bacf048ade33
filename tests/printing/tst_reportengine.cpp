// The report engine driven by name, as the print query form and the print options panel drive
// it: a report file with one group over SQLite order rows, run to text, PDF and the preview,
// read back the way a reader sees it and checked against the same questions asked in SQL.

#include "printing/reportdefinition_p.h"
#include <PanelKestrin/reportengine.h>
#include "printing/reportpreview_p.h"
#include "printjobtestsupport.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/hostform.h>
#include <PanelKestrin/modalrunner.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace PanelKestrin;

namespace {

const char *const customers[] = {"Acme", "Baker", "Cole", "Dunn", "Ellis", "Fox", "Grant", "Hale"};

// The report: one group per customer with subtotals of quantity and amount, grand totals, a
// page header numbering the pages.
const char *const reportFile = R"({
  "title": "Orders by customer",
  "source": { "table": "orders" },
  "reportHeader": [ { "text": "ORDERS BY CUSTOMER", "align": "center" } ],
  "pageHeader": [ { "text": "Page %p of %P", "align": "right" } ],
  "columns": [
    { "field": "id", "heading": "No.", "width": 6, "align": "right" },
    { "field": "odate", "heading": "Date", "width": 10, "format": "dd/mm/yyyy" },
    { "field": "region", "heading": "Region", "width": 6 },
    { "field": "qty", "heading": "Qty", "width": 6, "align": "right" },
    { "field": "amount", "heading": "Amount", "width": 12, "align": "right", "format": "#,##0.00" }
  ],
  "sort": [ "+id" ],
  "groups": [ { "field": "cust", "header": "Customer: {value}", "footer": "Total {value}",
                "subtotals": [ "qty", "amount" ] } ],
  "totals": { "label": "Grand total", "columns": [ "qty", "amount" ] }
})";

QString money(double value)
{
    return QLocale(QLocale::English).toString(value, 'f', 2);
}

// What a reader finds in a report's pages, read from the text of each page.
struct ReadReport
{
    QStringList pages;
    QList<int> ids;                              // detail lines, in order
    QMap<QString, QPair<int, QString>> subtotals; // customer -> qty, amount
    QPair<int, QString> total{-1, QString()};

    explicit ReadReport(const QStringList &pageTexts) : pages(pageTexts)
    {
        static const QRegularExpression detail(QStringLiteral(R"(^\s*(\d+)\s+\d\d/\d\d/\d{4}\s+[NS]\s+\d+\s+[\d,]+\.\d\d\s*$)"));
        static const QRegularExpression footer(QStringLiteral(R"(^\s*Total (\w+)\s+(\d+)\s+([\d,]+\.\d\d)\s*$)"));
        static const QRegularExpression grand(QStringLiteral(R"(^\s*Grand total\s+(\d+)\s+([\d,]+\.\d\d)\s*$)"));
        for (const QString &page : pages) {
            for (const QString &line : page.split(u'\n')) {
                if (const auto m = detail.match(line); m.hasMatch())
                    ids << m.captured(1).toInt();
                else if (const auto m = footer.match(line); m.hasMatch())
                    subtotals.insert(m.captured(1), {m.captured(2).toInt(), m.captured(3)});
                else if (const auto m = grand.match(line); m.hasMatch())
                    total = {m.captured(1).toInt(), m.captured(2)};
            }
        }
    }
};

} // namespace

class tst_ReportEngine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void fileOutput_data();
    void fileOutput();
    void selectionAndSort_data();
    void selectionAndSort();
    void preview();
    void printer();
    void previewPrinterAndPdfAgree();
    void fileNameAsked();
    void runErrors_data();
    void runErrors();
    void settingsRefused_data();
    void settingsRefused();

private:
    QString connectString() const { return QStringLiteral("Provider=SQLite;Data Source=") + m_dbFile; }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    // An engine set up by name for the report file, as a form would.
    void setUp(ReportEngine &engine, const QString &report = QStringLiteral("orders.rpt"));
    QStringList readPages(const QString &fileName, int fileType) const;
    // The orders report under another title (a print job is found by its title).
    bool writeTitledReport(const QString &fileName, const QString &title) const;
    QList<QVariantList> query(const QString &sql) const;

    QTemporaryDir m_dir;
    QString m_dbFile;
    ReportEngine m_sharedEngine;
};

// The test print server's settings (CUPS_SERVER, its queue, its PDF folder and page log) go
// into the environment before anything asks for a printer: libcups reads them once.
void tst_ReportEngine::initTestCase()
{
    QVERIFY2(PrintJobTest::useTestPrintServer(), "the CUPS test server is not running; CTest starts it");
    QVERIFY(m_dir.isValid());
    m_dbFile = path(QStringLiteral("orders.sqlite"));
    QFile db(m_dbFile);
    QVERIFY(db.open(QIODevice::WriteOnly)); // an empty file is an empty SQLite database
    db.close();
    Connection connection;
    connection.Open(connectString());
    connection.Execute(QStringLiteral(
        "CREATE TABLE orders (id INTEGER PRIMARY KEY, cust TEXT, region TEXT, odate DATE, qty INTEGER, amount NUMERIC)"));
    connection.Execute(QStringLiteral("BEGIN"));
    for (int id = 1; id <= 150; ++id) {
        const QDate date = QDate(2005, 12, 1).addDays((id * 7) % 45);
        connection.Execute(QStringLiteral("INSERT INTO orders VALUES (?, ?, ?, ?, ?, ?)"),
                           {id, QString::fromLatin1(customers[(id * 5) % 8]), id % 3 ? QStringLiteral("N") : QStringLiteral("S"),
                            date.toString(Qt::ISODate), (id * 13) % 40 + 1, ((id * 7919) % 20000) / 4.0});
    }
    connection.Execute(QStringLiteral("COMMIT"));

    for (const auto &[name, text] : {std::pair{"orders.rpt", reportFile}}) {
        QFile file(path(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
}

void tst_ReportEngine::cleanup()
{
    setModalRunner({});
    setSaveFileNameHandler({});
}

void tst_ReportEngine::setUp(ReportEngine &engine, const QString &report)
{
    CallByName(&engine, QStringLiteral("Reset"), VbMethod);
    CallByName(&engine, QStringLiteral("WindowState"), VbLet, {2});
    CallByName(&engine, QStringLiteral("Connect"), VbLet, {connectString()});
    CallByName(&engine, QStringLiteral("ReportFileName"), VbLet, {path(report)});
}

QList<QVariantList> tst_ReportEngine::query(const QString &sql) const
{
    Connection connection;
    connection.Open(connectString());
    Recordset recordset;
    recordset.Open(sql, &connection);
    QList<QVariantList> rows;
    if (recordset.RecordCount() == 0)
        return rows;
    const VariantMatrix data = recordset.GetRows();
    for (int r = 0; r <= data.UBound(2); ++r) {
        QVariantList row;
        for (int f = 0; f <= data.UBound(1); ++f)
            row << data.value(f, r);
        rows << row;
    }
    return rows;
}

QStringList tst_ReportEngine::readPages(const QString &fileName, int fileType) const
{
    if (fileType == ReportEngine::FilePdf) {
        QStringList pages;
        const int count = ReportTest::pdfPageCount(fileName);
        for (int page = 1; page <= count; ++page)
            pages << ReportTest::pdfPageText(fileName, page);
        return pages;
    }
    return ReportTest::textFilePages(fileName);
}

bool tst_ReportEngine::writeTitledReport(const QString &fileName, const QString &title) const
{
    QFile file(path(fileName));
    return file.open(QIODevice::WriteOnly)
        && file.write(QByteArray(reportFile).replace("Orders by customer", title.toUtf8())) > 0;
}

void tst_ReportEngine::fileOutput_data()
{
    QTest::addColumn<int>("fileType");
    QTest::newRow("text") << int(ReportEngine::FileText);
    QTest::newRow("PDF") << int(ReportEngine::FilePdf);
}

// Every page carries its header, each customer's footer holds the SQL sums of its rows, the
// grand total those of the table, and every row appears once.
void tst_ReportEngine::fileOutput()
{
    QFETCH(int, fileType);
    ReportEngine engine;
    setUp(engine);
    const QString output = path(QStringLiteral("orders-%1.out").arg(fileType));
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileType"), VbLet, {fileType});
    CallByName(&engine, QStringLiteral("PrintFileName"), VbLet, {output});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    QCOMPARE(CallByName(&engine, QStringLiteral("RecordsSelected"), VbGet).toInt(), 150);

    const ReadReport report(readPages(output, fileType));
    const int pages = int(report.pages.size());
    QVERIFY2(pages >= 3, qPrintable(QString::number(pages)));
    for (int page = 1; page <= pages; ++page) {
        const QString &text = report.pages.at(page - 1);
        QVERIFY2(text.contains(QStringLiteral("Page %1 of %2").arg(page).arg(pages)), qPrintable(text));
        QVERIFY(QRegularExpression(QStringLiteral(R"(No\.\s+Date\s+Region\s+Qty\s+Amount)")).match(text).hasMatch());
    }
    QVERIFY(report.pages.first().contains(QLatin1String("ORDERS BY CUSTOMER")));
    QCOMPARE(report.pages.at(1).count(QLatin1String("ORDERS BY CUSTOMER")), 0);

    QList<int> ids = report.ids;
    std::sort(ids.begin(), ids.end());
    QCOMPARE(ids.size(), 150);
    QCOMPARE(QSet<int>(ids.begin(), ids.end()).size(), 150);

    const auto sums = query(QStringLiteral("SELECT cust, SUM(qty), SUM(amount) FROM orders GROUP BY cust"));
    QCOMPARE(report.subtotals.size(), sums.size());
    for (const QVariantList &row : sums)
        QCOMPARE(report.subtotals.value(row.at(0).toString()),
                 qMakePair(row.at(1).toInt(), money(row.at(2).toDouble())));
    const QVariantList total = query(QStringLiteral("SELECT SUM(qty), SUM(amount) FROM orders")).first();
    QCOMPARE(report.total, qMakePair(total.at(0).toInt(), money(total.at(1).toDouble())));
}

void tst_ReportEngine::selectionAndSort_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("sortField");
    QTest::addColumn<QString>("where");   // the same selection in SQL
    QTest::addColumn<QString>("orderBy"); // the order the report must show

    QTest::newRow("region, as the form writes it") << " {orders.region} = 'N'" << "" << "region = 'N'" << "cust, id";
    QTest::newRow("date range, amount descending")
        << "{orders.odate} >= '12/25/2005' and {orders.odate} <= '12/31/2005'" << "-{ORDERS.AMOUNT}"
        << "odate BETWEEN '2005-12-25' AND '2005-12-31'" << "cust, amount DESC, id";
    QTest::newRow("like, case ignored, date descending")
        << "uppercase({orders.cust}) like uppercase('c*') or uppercase({orders.cust}) like uppercase('?ALE')"
        << "-{orders.odate}" << "upper(cust) LIKE 'C%' OR upper(cust) LIKE '_ALE'" << "cust, odate DESC, id";
    QTest::newRow("group field descending") << "not ({orders.qty} > 10)" << "-{ORDERS.CUST}" << "NOT (qty > 10)"
                                            << "cust DESC, id";
    QTest::newRow("nothing selected") << "{orders.qty} > 1000" << "" << "qty > 1000" << "id";
    // Last, on the engine the rows above used: Reset forgets their formula and sort fields.
    QTest::newRow("every row after a reset") << "" << "" << "1" << "cust, id";
}

void tst_ReportEngine::selectionAndSort()
{
    QFETCH(QString, formula);
    QFETCH(QString, sortField);
    QFETCH(QString, where);
    QFETCH(QString, orderBy);

    ReportEngine &engine = m_sharedEngine; // one engine for every row, as a form keeps one
    setUp(engine);
    const QString output = path(QStringLiteral("selection.txt"));
    if (!formula.trimmed().isEmpty())
        CallByName(&engine, QStringLiteral("SelectionFormula"), VbLet, {formula});
    if (!sortField.isEmpty())
        CallByName(&engine, QStringLiteral("SortFields"), VbLet, {0, sortField});
    QCOMPARE(CallByName(&engine, QStringLiteral("SortFields"), VbGet, {0}).toString(), sortField);
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileType"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileName"), VbLet, {output});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});

    QList<int> expected;
    for (const QVariantList &row : query(QStringLiteral("SELECT id FROM orders WHERE %1 ORDER BY %2").arg(where, orderBy)))
        expected << row.at(0).toInt();
    QCOMPARE(CallByName(&engine, QStringLiteral("RecordsSelected"), VbGet).toInt(), expected.size());
    QCOMPARE(ReadReport(readPages(output, ReportEngine::FileText)).ids, expected);
}

// The screen: the preview opens modally and maximised with the pages the text file has.
void tst_ReportEngine::preview()
{
    ReportEngine engine;
    setUp(engine);
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileName"), VbLet, {path(QStringLiteral("preview.txt"))});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    const QStringList textPages = readPages(path(QStringLiteral("preview.txt")), ReportEngine::FileText);

    const auto shown = ReportTest::checkPreviews([&](ReportPreview *preview) {
        QVERIFY(preview->windowState() & Qt::WindowMaximized);
        QCOMPARE(preview->pageCount(), textPages.size());
        QVERIFY(ReportTest::modelWordLines(preview->document(), 0).contains(QLatin1String("ORDERS BY CUSTOMER")));
    });
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {0});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    QCOMPARE(*shown, 1);
    QCOMPARE(engine.RecordsSelected(), 150);
}

// The printer: pages 2 to 3, two copies, on the test server's default queue, read back from
// the PDF file the queue writes.
void tst_ReportEngine::printer()
{
    const QString title = QStringLiteral("pk%1engine").arg(QCoreApplication::applicationPid());
    QVERIFY(writeTitledReport(QStringLiteral("printer.rpt"), title));

    ReportEngine engine;
    setUp(engine, QStringLiteral("printer.rpt"));
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {1});
    CallByName(&engine, QStringLiteral("PrinterStartPage"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrinterStopPage"), VbLet, {3});
    CallByName(&engine, QStringLiteral("CopiesToPrinter"), VbLet, {2});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    QCOMPARE(engine.RecordsSelected(), 150);

    QCOMPARE(PrintJobTest::foundOnPages(PrintJobTest::jobPages(title), QStringLiteral("Page \\d+ of \\d+")),
             QStringList({QStringLiteral("Page 2 of 3"), QStringLiteral("Page 3 of 3"), QStringLiteral("Page 2 of 3"),
                          QStringLiteral("Page 3 of 3")}));
}

// One report, three outputs: the preview, the default printer (its queue's PDF read back) and
// a PDF file show the same lines on the same pages, the report naming no paper of its own.
void tst_ReportEngine::previewPrinterAndPdfAgree()
{
    const QString title = QStringLiteral("pk%1agree").arg(QCoreApplication::applicationPid());
    QVERIFY(writeTitledReport(QStringLiteral("agree.rpt"), title));
    ReportEngine engine;
    setUp(engine, QStringLiteral("agree.rpt"));

    QList<QStringList> previewPages;
    const auto shown = ReportTest::checkPreviews([&](ReportPreview *preview) {
        for (int page = 0; page < preview->pageCount(); ++page)
            previewPages << ReportTest::modelWordLines(preview->document(), page);
    });
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {0});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    QCOMPARE(*shown, 1);

    const QString pdf = path(QStringLiteral("agree.pdf"));
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileType"), VbLet, {int(ReportEngine::FilePdf)});
    CallByName(&engine, QStringLiteral("PrintFileName"), VbLet, {pdf});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});

    CallByName(&engine, QStringLiteral("Destination"), VbLet, {1});
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    const QStringList printed = PrintJobTest::jobPages(title);

    const QStringList written = readPages(pdf, ReportEngine::FilePdf);
    QVERIFY(previewPages.size() >= 2);
    QCOMPARE(written.size(), previewPages.size());
    QCOMPARE(printed.size(), previewPages.size());
    for (int page = 0; page < previewPages.size(); ++page) {
        QCOMPARE(ReportTest::wordLines(written.at(page)), previewPages.at(page));
        QCOMPARE(ReportTest::wordLines(printed.at(page)), previewPages.at(page));
    }
}

// File output without a name asks with the save-file dialog; cancelling it writes nothing.
void tst_ReportEngine::fileNameAsked()
{
    ReportEngine engine;
    setUp(engine);
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileType"), VbLet, {17});
    QString answer = path(QStringLiteral("asked.rtf"));
    QStringList asked;
    setSaveFileNameHandler([&](QWidget *, const QString &title, const QString &filter, const QString &) {
        asked << title + QLatin1Char('|') + filter;
        return answer;
    });
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    QCOMPARE(asked.size(), 1);
    QVERIFY2(asked.first().startsWith(QLatin1String("Save Report As|")) && asked.first().contains(QLatin1String("*.rtf")),
             qPrintable(asked.first()));
    QFile rtf(answer);
    QVERIFY(rtf.open(QIODevice::ReadOnly));
    QVERIFY(rtf.readAll().startsWith("{\\rtf1"));

    answer.clear();
    QFile::remove(path(QStringLiteral("asked.rtf")));
    CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
    QCOMPARE(asked.size(), 2);
    QVERIFY(!QFile::exists(path(QStringLiteral("asked.rtf"))));
}

void tst_ReportEngine::runErrors_data()
{
    QTest::addColumn<QString>("reportText"); // empty: orders.rpt
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("connect");    // empty: the test database
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("mentions");

    QTest::newRow("formula field the data lacks") << "" << "{orders.colour} = 'red'" << "" << int(ErrItemNotFound)
                                                  << "{orders.colour}";
    QTest::newRow("formula of another table") << "" << "{customers.region} = 'N'" << "" << int(ErrItemNotFound)
                                              << "{customers.region}";
    QTest::newRow("malformed formula") << "" << "{orders.qty} > " << "" << int(ErrInvalidProcedureCall) << "position";
    QTest::newRow("column the data lacks")
        << R"({ "source": { "table": "orders" }, "columns": [ { "field": "colour" } ] })" << "" << "" << int(ErrItemNotFound)
        << "\"colour\"";
    QTest::newRow("group the data lacks")
        << R"({ "source": { "table": "orders" }, "columns": [ { "field": "id" } ], "groups": [ { "field": "town" } ] })"
        << "" << "" << int(ErrItemNotFound) << "\"town\"";
    QTest::newRow("malformed report file") << "{ \"source\": { \"table\": \"orders\" },\n \"colums\": [] }" << "" << ""
                                           << int(ErrReportFileFormat) << "line 2";
    QTest::newRow("missing database") << "" << "" << "Provider=SQLite;Data Source=/nonexistent/none.sqlite"
                                      << int(ErrOpenFailed) << "none.sqlite";
    QTest::newRow("query that changes data")
        << R"({ "source": { "query": "DELETE FROM orders" }, "columns": [ { "field": "id" } ] })" << "" << ""
        << int(ErrCommandFailed) << "";
}

void tst_ReportEngine::runErrors()
{
    QFETCH(QString, reportText);
    QFETCH(QString, formula);
    QFETCH(QString, connect);
    QFETCH(int, number);
    QFETCH(QString, mentions);

    QString report = QStringLiteral("orders.rpt");
    if (!reportText.isEmpty()) {
        report = QStringLiteral("broken.rpt");
        QFile file(path(report));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(reportText.toUtf8());
    }
    ReportEngine engine;
    setUp(engine, report);
    CallByName(&engine, QStringLiteral("SelectionFormula"), VbLet, {formula});
    if (!connect.isEmpty())
        CallByName(&engine, QStringLiteral("Connect"), VbLet, {connect});
    CallByName(&engine, QStringLiteral("Destination"), VbLet, {2});
    CallByName(&engine, QStringLiteral("PrintFileName"), VbLet, {path(QStringLiteral("error.txt"))});
    try {
        CallByName(&engine, QStringLiteral("Action"), VbLet, {1});
        QFAIL("the run succeeded");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), number);
        QVERIFY2(error.Description().contains(mentions), qPrintable(error.Description()));
    }
    QCOMPARE(engine.RecordsSelected(), 0);
    QCOMPARE(query(QStringLiteral("SELECT COUNT(*) FROM orders")).first().first().toInt(), 150);
}

void tst_ReportEngine::settingsRefused_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("args");
    QTest::addColumn<int>("number");

    QTest::newRow("destination 3") << "Destination" << QVariantList{3} << int(ErrInvalidPropertyValue);
    QTest::newRow("file type 5") << "PrintFileType" << QVariantList{5} << int(ErrInvalidPropertyValue);
    QTest::newRow("window state 4") << "WindowState" << QVariantList{4} << int(ErrInvalidPropertyValue);
    QTest::newRow("no copies") << "CopiesToPrinter" << QVariantList{0} << int(ErrInvalidPropertyValue);
    QTest::newRow("action 2") << "Action" << QVariantList{2} << int(ErrInvalidPropertyValue);
    QTest::newRow("records selected") << "RecordsSelected" << QVariantList{5} << int(ErrReadOnlyProperty);
    QTest::newRow("sort index") << "SortFields" << QVariantList{-1, QStringLiteral("+{a.b}")} << int(ErrSubscriptOutOfRange);
    QTest::newRow("sort text") << "SortFields" << QVariantList{0, QStringLiteral("+{a.b} c")} << int(ErrInvalidPropertyValue);
}

void tst_ReportEngine::settingsRefused()
{
    QFETCH(QString, member);
    QFETCH(QVariantList, args);
    QFETCH(int, number);
    ReportEngine engine;
    try {
        CallByName(&engine, member, VbLet, args);
        QFAIL("the setting was taken");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), number);
    }
}

QTEST_MAIN(tst_ReportEngine)
#include "tst_reportengine.moc"
