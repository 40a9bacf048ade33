// A toolbar's Print on a host form, the print query form filled by clicks and keys, OK, and the
// report read back: the data report over the SQL statement for each database kind and the
// report engine over a report file, on SQLite and on the PostgreSQL test server, to the
// preview, a file and the test print server's queue.
#include "printformtestsupport.h"
#include "printjobtestsupport.h"

using namespace PrintFormTest;

namespace {

// Item codes from first to last, counting down when last is the smaller.
QStringList codes(int first, int last)
{
    QStringList list;
    for (int n = first;; n += first <= last ? 1 : -1) {
        list << QStringLiteral("I%1").arg(n, 3, 10, QLatin1Char('0'));
        if (n == last)
            return list;
    }
}

// The engine's report file for the items table: code, name and quantity, titled title.
void writeReportFile(const QString &fileName, const QString &title)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral(R"({
  "title": "%1",
  "source": { "table": "%2" },
  "pageHeader": [ { "text": "Page %p of %P", "align": "right" } ],
  "columns": [
    { "field": "code", "heading": "Code", "width": 6 },
    { "field": "name", "heading": "Item", "width": 12 },
    { "field": "qty", "heading": "Qty", "width": 8, "align": "right", "format": "0" }
  ],
  "sort": [ "+code" ]
})").arg(title, ItemsTable).toUtf8());
}

QString uniqueTitle(const QString &what)
{
    static int n = 0;
    return QStringLiteral("pk%1frmprint%2%3").arg(QCoreApplication::applicationPid()).arg(what).arg(++n);
}

} // namespace

class tst_frmprint_run : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void dataReport_data();
    void dataReport();
    void engineReport_data();
    void engineReport();
    void rangeRefused_data();
    void rangeRefused();
    void emptyPageBoxStopsTheRun();
};

void tst_frmprint_run::initTestCase()
{
    ToolbarTest::failOnUnscriptedModals();
    QVERIFY2(PrintJobTest::useTestPrintServer(), "the CUPS test server is not running; CTest starts it");
}

// Output: "screen", "file" or "printer" (pages 2 to 3 of the queue's job, by their footers).
void tst_frmprint_run::dataReport_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("selquery");
    QTest::addColumn<QStringList>("criteria");
    QTest::addColumn<int>("groupOn");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("expected");
    const QString joined = QStringLiteral("SELECT code || ' ' || name AS prntxt FROM ") + ItemsTable;
    const QString plus = QStringLiteral("SELECT code + ' ' + name AS prntxt FROM ") + ItemsTable;
    FOR_EACH_ENGINE("kind 2: a code range to the preview")
        << 2 << joined << QStringList() << 0 << "I010" << "I012" << "screen" << codes(10, 12);
    FOR_EACH_ENGINE("kind 1: a name range to a text file, ordered by name")
        << 1 << joined << QStringList() << 1 << "Name 005" << "name 007" << "file" << codes(146, 144);
    FOR_EACH_ENGINE("kind 1: ordered by the key, no order term")
        << 1 << joined << QStringList() << 0 << "" << "I002" << "file" << codes(1, 2);
    FOR_EACH_ENGINE("kind 3: + joins become ||, pages 2 to 3 printed")
        << 3 << plus << QStringList() << 0 << "" << "" << "printer" << QStringList{"Page: 2", "Page: 3"};
    // The date texts are month first, which PostgreSQL reads in its default date style.
    QTest::newRow("postgres: a date range") << "postgres" << 2 << joined << QStringList() << 3 << "2024-01-11"
                                            << "2024-01-13" << "screen" << codes(10, 12);
    FOR_EACH_ENGINE("criteria: the value chosen filters and orders")
        << 2 << joined << QStringList{"1", "Quantity one", "2", "Quantity two"} << 0 << "" << "" << "screen"
        << codes(1, 1);
}

void tst_frmprint_run::dataReport()
{
    QFETCH(QString, engine);
    QFETCH(int, kind);
    QFETCH(QString, selquery);
    QFETCH(QStringList, criteria);
    QFETCH(int, groupOn);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, output);
    QFETCH(QStringList, expected);

    Items items;
    const QString why = items.open(engine);
    QVERIFY2(why.isEmpty(), qPrintable(why));
    ConnectionSettings::instance().setDatabaseKind(qint16(kind));
    Report report;
    report.selquery = selquery;
    report.rpttitle = uniqueTitle(engine);
    report.criteria = criteria;
    report.criteriaField = QStringLiteral("qty");
    PrintingHost host(items, report);

    const QString fileName = items.dir.filePath(QStringLiteral("report.txt"));
    FormInput input{groupOn, from, to, output == QLatin1String("screen") ? 0 : output == QLatin1String("printer") ? 1 : 2,
                    QStringLiteral("2"), QStringLiteral("3"), 0, fileName};
    if (output == QLatin1String("file"))
        input.fromPage = QStringLiteral("1");
    bool stillOpen = false;
    Run run;
    run.user = [&](QDialog *form) {
        fill(form, input);
        stillOpen = submit(form);
    };
    host.print();

    QCOMPARE(run.errors, QStringList());
    QCOMPARE(run.boxes, QStringList());
    QCOMPARE(stillOpen, output == QLatin1String("screen"));
    if (output == QLatin1String("screen")) {
        QCOMPARE(run.previews, 1);
        QCOMPARE(itemCodes(run.previewLines), expected);
    } else if (output == QLatin1String("file")) {
        QCOMPARE(itemCodes(ReportTest::textFilePages(fileName)), expected);
    } else {
        const QStringList pages = PrintJobTest::jobPages(report.rpttitle);
        QCOMPARE(PrintJobTest::foundOnPages(pages, QStringLiteral("Page: \\d+")), expected);
        QVERIFY(pages.first().contains(QLatin1String("I0")));
    }
}

void tst_frmprint_run::engineReport_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<int>("groupOn");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("output"); // screen, text, doc, printer
    QTest::addColumn<QStringList>("expected");
    FOR_EACH_ENGINE("a name range to the maximised preview, sorted on the field")
        << 1 << "Name 010" << "name 012" << "screen" << codes(141, 139);
    FOR_EACH_ENGINE("a lone from value is a prefix, to a text file") << 0 << "I14" << "" << "text" << codes(140, 149);
    FOR_EACH_ENGINE("a quantity range to a document file") << 2 << "20" << "22" << "doc" << codes(20, 22);
    FOR_EACH_ENGINE("pages 2 to 3 on the printer") << 0 << "" << "" << "printer"
                                                    << QStringList{"Page 2 of 3", "Page 3 of 3"};
    FOR_EACH_ENGINE("nothing selected") << 0 << "X" << "" << "none" << QStringList();
    FOR_EACH_ENGINE("a date range, both days included") << 3 << "2024-01-11" << "2024-01-13" << "text" << codes(10, 12);
}

void tst_frmprint_run::engineReport()
{
    QFETCH(QString, engine);
    QFETCH(int, groupOn);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, output);
    QFETCH(QStringList, expected);

    Items items;
    const QString why = items.open(engine);
    QVERIFY2(why.isEmpty(), qPrintable(why));
    Report report;
    report.kind = QStringLiteral("C");
    report.rpttitle = items.dir.filePath(QStringLiteral("RPT") + ItemsTable);
    const QString title = uniqueTitle(QStringLiteral("engine"));
    writeReportFile(report.rpttitle + QStringLiteral(".rpt"), title);
    PrintingHost host(items, report);

    const int destination = output == QLatin1String("screen") || output == QLatin1String("none") ? 0
                            : output == QLatin1String("printer")                                 ? 1
                                                                                                 : 2;
    FormInput input{groupOn, from, to, destination, QStringLiteral("2"), QStringLiteral("3"),
                    output == QLatin1String("doc") ? 1 : 0, QString()};
    bool stillOpen = false;
    Run run;
    run.saveAs = items.dir.filePath(QStringLiteral("engine-out"));
    run.user = [&](QDialog *form) {
        fill(form, input);
        stillOpen = submit(form);
    };
    host.print();

    QCOMPARE(run.errors, QStringList());
    QCOMPARE(stillOpen, output == QLatin1String("screen"));
    if (output == QLatin1String("none")) {
        QCOMPARE(run.boxes, QStringList{"64|Report|No Records Found...."});
        return;
    }
    QCOMPARE(run.boxes, QStringList());
    if (output == QLatin1String("screen")) {
        QCOMPARE(run.previews, 1);
        QVERIFY(run.previewMaximized);
        QCOMPARE(itemCodes(run.previewLines), expected);
    } else if (output == QLatin1String("printer")) {
        QCOMPARE(PrintJobTest::foundOnPages(PrintJobTest::jobPages(title), QStringLiteral("Page \\d+ of \\d+")),
                 expected);
    } else {
        QCOMPARE(run.dialogs.size(), 1); // the engine asks for the file itself
        QString text = output == QLatin1String("doc")
                           ? ReportTest::run(QStringLiteral("unrtf"), {QStringLiteral("--text"), run.saveAs})
                           : ReportTest::textFilePages(run.saveAs).join(u'\n');
        QCOMPARE(itemCodes({text}), expected);
    }
}

// A range whose to text sorts before its from text, compared as texts, or a from date after the
// to date: the message, the form stays open with the trimmed texts, nothing runs.
void tst_frmprint_run::rangeRefused_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("groupOn");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("box");
    QTest::newRow("9 to 10 on the engine path") << "C" << 2 << " 9" << "10 " << "16||To Range cannot be smaller than from range";
    QTest::newRow("9 to 10 on the data report path") << "D" << 2 << "9" << "10" << "48||To Range cannot be smaller than from range";
    QTest::newRow("text range backwards") << "D" << 1 << "b" << "a" << "48||To Range cannot be smaller than from range";
    QTest::newRow("from date after to date") << "D" << 3 << "+" << "" << "48||To Date cannot be smaller than from date";
}

void tst_frmprint_run::rangeRefused()
{
    QFETCH(QString, kind);
    QFETCH(int, groupOn);
    QFETCH(QString, from);
    QFETCH(QString, to);
    Items items;
    const QString why = items.open(QStringLiteral("sqlite"));
    QVERIFY2(why.isEmpty(), qPrintable(why));
    Report report;
    report.kind = kind;
    report.rpttitle = items.dir.filePath(QStringLiteral("RPTmissing"));
    report.selquery = QStringLiteral("SELECT name AS prntxt FROM ") + ItemsTable;
    PrintingHost host(items, report);
    Run run;
    QStringList after;
    run.user = [&](QDialog *form) {
        if (from == QLatin1String("+")) { // dates: the from picker a day after the to picker
            auto *group = control<QComboBox>(form, "cmbfield");
            group->setFocus();
            for (int i = 0; i < groupOn; ++i)
                QTest::keyClick(group, Qt::Key_Down);
            control<QDateEdit>(form, "DTPicker1")->setDate(QDate(2024, 5, 2));
            control<QDateEdit>(form, "DTPicker2")->setDate(QDate(2024, 5, 1));
        } else {
            FormInput input;
            input.groupOn = groupOn;
            input.from = from;
            input.to = to;
            fill(form, input);
        }
        pressOK(form);
        after << control<QLineEdit>(form, "txtfrom")->text() << control<QLineEdit>(form, "txtto")->text();
        QVERIFY(form->isVisible());
        cancel(form);
    };
    host.print();
    QTEST(run.boxes.join(u';'), "box");
    QCOMPARE(run.previews, 0);
    QCOMPARE(run.errors, QStringList());
    if (from != QLatin1String("+"))
        QCOMPARE(after, (QStringList{from.trimmed(), to.trimmed()}));
}

// Printer output with an empty "From Page": the conversion error is reported, nothing prints and
// the form stays open.
void tst_frmprint_run::emptyPageBoxStopsTheRun()
{
    for (const QString kind : {QStringLiteral("D"), QStringLiteral("C")}) {
        Items items;
        const QString why = items.open(QStringLiteral("sqlite"));
        QVERIFY2(why.isEmpty(), qPrintable(why));
        Report report;
        report.kind = kind;
        report.rpttitle = items.dir.filePath(QStringLiteral("RPT") + ItemsTable);
        writeReportFile(report.rpttitle + QStringLiteral(".rpt"), uniqueTitle(QStringLiteral("empty")));
        report.selquery = QStringLiteral("SELECT name AS prntxt FROM ") + ItemsTable;
        PrintingHost host(items, report);
        Run run;
        bool stillOpen = false;
        run.user = [&](QDialog *form) {
            fill(form, FormInput{0, QString(), QString(), 1, QString(), QStringLiteral("3"), 0, QString()});
            pressOK(form);
            stillOpen = form->isVisible();
            cancel(form);
        };
        host.print();
        QCOMPARE(run.errors.size(), 1);
        QVERIFY2(run.errors.first().startsWith(QLatin1String("13:")), qPrintable(run.errors.first()));
        QVERIFY(stillOpen);
    }
}

QTEST_MAIN(tst_frmprint_run)
#include "tst_frmprint_run.moc"
