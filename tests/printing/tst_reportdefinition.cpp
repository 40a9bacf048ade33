// Report definition files: the documented example reads as documented, and files that are not
// report definitions are refused with the file, the line and what was expected there.

#include "printing/reportdefinition_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace PanelKestrin;

class tst_ReportDefinition : public QObject
{
    Q_OBJECT

private slots:
    void documentedExample();
    void sortKeys_data();
    void sortKeys();
    void malformed_data();
    void malformed();
    void missingFile();
};

// The example of docs/report-files.md, so the documentation cannot drift from the reader.
void tst_ReportDefinition::documentedExample()
{
    QFile doc(QStringLiteral(PK_SOURCE_DIR "/docs/report-files.md"));
    QVERIFY(doc.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(doc.readAll());
    const QRegularExpressionMatch block = QRegularExpression(QStringLiteral("```json\n(.*?)```"),
                                                             QRegularExpression::DotMatchesEverythingOption)
                                              .match(text);
    QVERIFY(block.hasMatch());

    const ReportDefinition def = ReportDefinition::parse(block.captured(1).toUtf8(), QStringLiteral("example.rpt"));
    QCOMPARE(def.table, QStringLiteral("orders"));
    QVERIFY(def.query.isEmpty());
    QVERIFY(def.page.has_value());
    QCOMPARE(def.columns.size(), 5);
    QCOMPARE(def.columns.at(0).alignment, Qt::AlignRight);
    QCOMPARE(def.columns.at(1).format, QStringLiteral("dd/mm/yyyy"));
    QVERIFY(def.columns.at(4).widthInPoints);
    QCOMPARE(def.columns.at(4).width, 80.0);
    QCOMPARE(def.sort.size(), 2);
    QVERIFY(def.sort.at(0).descending);
    QCOMPARE(def.groups.size(), 1);
    QCOMPARE(def.groups.at(0).subtotals, QStringList({QStringLiteral("qty"), QStringLiteral("amount")}));
    QCOMPARE(def.totals, QStringList({QStringLiteral("qty"), QStringLiteral("amount")}));
    QCOMPARE(def.pageHeader.at(0).alignment, Qt::AlignRight);
    QCOMPARE(def.reportHeader.size(), 2);
}

void tst_ReportDefinition::sortKeys_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("field"); // empty: refused
    QTest::addColumn<bool>("descending");

    QTest::newRow("form's sort field") << "+{ORDERS.CUST}" << "CUST" << false;
    QTest::newRow("descending") << "-{orders.odate}" << "odate" << true;
    QTest::newRow("bare name") << "qty" << "qty" << false;
    QTest::newRow("blanks") << " - amount " << "amount" << true;
    QTest::newRow("field only in braces") << "+{cust}" << "cust" << false;
    QTest::newRow("empty") << "" << "" << false;
    QTest::newRow("sign only") << "+" << "" << false;
    QTest::newRow("two fields") << "+cust odate" << "" << false;
    QTest::newRow("unclosed brace") << "+{orders.cust" << "" << false;
}

void tst_ReportDefinition::sortKeys()
{
    QFETCH(QString, text);
    QFETCH(QString, field);
    QFETCH(bool, descending);
    const auto key = ReportSortKey::parse(text);
    QCOMPARE(key.has_value(), !field.isEmpty());
    if (key) {
        QCOMPARE(key->field, field);
        QCOMPARE(key->descending, descending);
    }
}

void tst_ReportDefinition::malformed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("expected"); // part of the description

    const QString columns = QStringLiteral("\"columns\": [ { \"field\": \"id\" } ]");
    QTest::newRow("not JSON") << "{\n \"title\": \"x\",\n \"source\" { }\n}" << 3 << "expected a colon";
    QTest::newRow("trailing comma") << "{\n \"source\": { \"table\": \"t\" },\n}" << 3 << "expected";
    QTest::newRow("text after the object") << "{ \"source\": { \"table\": \"t\" } }\n\n}" << 3 << "end of the file";
    QTest::newRow("not an object") << "[ 1, 2 ]" << 1 << "one JSON object";
    QTest::newRow("empty file") << "" << 1 << "line 1";
    QTest::newRow("unknown key") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"colums\": []\n}" << 4
                                 << "colums: unknown key";
    QTest::newRow("no source") << "{\n " + columns + "\n}" << 1 << "source: missing";
    QTest::newRow("table and query") << "{\n \"source\": {\n  \"table\": \"t\", \"query\": \"select 1\" },\n " + columns + "\n}"
                                     << 2 << "not both";
    QTest::newRow("source key misspelt") << "{\n \"source\": {\n  \"tabel\": \"t\" },\n " + columns + "\n}" << 3
                                         << "source.tabel: unknown key";
    QTest::newRow("no columns") << "{\n \"source\": { \"table\": \"t\" }\n}" << 1 << "at least one column";
    QTest::newRow("column not object") << "{\n \"source\": { \"table\": \"t\" },\n \"columns\": [\n  \"id\"\n ]\n}" << 4
                                       << "columns[0]: expected an object";
    QTest::newRow("width wrong kind")
        << "{\n \"source\": { \"table\": \"t\" },\n \"columns\": [\n  { \"field\": \"id\" },\n  { \"field\": \"x\",\n    \"width\": \"wide\" }\n ]\n}"
        << 6 << "columns[1].width: expected a number of characters";
    QTest::newRow("width zero") << "{\n \"source\": { \"table\": \"t\" },\n \"columns\": [ { \"field\": \"id\", \"width\": 0 } ]\n}"
                                << 3 << "columns[0].width";
    QTest::newRow("bad align") << "{\n \"source\": { \"table\": \"t\" },\n \"columns\": [ { \"field\": \"id\",\n \"align\": \"middle\" } ]\n}"
                               << 4 << "\"left\", \"right\" or \"center\"";
    QTest::newRow("heading a number") << "{\n \"source\": { \"table\": \"t\" },\n \"columns\": [ { \"field\": \"id\",\n  \"heading\": 5 } ]\n}"
                                      << 4 << "columns[0].heading: expected a text";
    QTest::newRow("bad sort key") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"sort\": [ \"+id\",\n \"by id\" ]\n}"
                                  << 5 << "sort[1]: expected a sort field";
    QTest::newRow("subtotal not a column")
        << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"groups\": [ { \"field\": \"c\",\n  \"subtotals\": [ \"amount\" ] } ]\n}"
        << 5 << "groups[0].subtotals[0]: expected the field of one of the report's columns";
    QTest::newRow("group without field") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"groups\": [\n { \"header\": \"x\" } ]\n}"
                                         << 5 << "groups[0].field: missing";
    QTest::newRow("totals a list") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"totals\": [ \"id\" ]\n}" << 4
                                   << "totals: expected an object";
    QTest::newRow("page size") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"page\": {\n  \"size\": \"B7\" }\n}"
                               << 5 << "page.size";
    QTest::newRow("orientation") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"page\": { \"orientation\": \"sideways\" }\n}"
                                 << 4 << "page.orientation";
    QTest::newRow("font size") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"fontSize\": 0\n}" << 4
                               << "fontSize: expected a number from 4 to 72";
    QTest::newRow("header line kind") << "{\n \"source\": { \"table\": \"t\" },\n " + columns + ",\n \"pageHeader\": [ \"a\",\n  7 ]\n}"
                                      << 5 << "pageHeader[1]";
    QTest::newRow("escaped key before") << "{\n \"title\": \"a \\\"quoted\\\" {title}\",\n \"source\": { \"table\": \"t\" },\n " + columns
                                               + ",\n \"fontSize\": \"big\"\n}"
                                        << 5 << "fontSize";
}

void tst_ReportDefinition::malformed()
{
    QFETCH(QString, text);
    QFETCH(int, line);
    QFETCH(QString, expected);
    try {
        ReportDefinition::parse(text.toUtf8(), QStringLiteral("orders.rpt"));
        QFAIL("a malformed report file was read");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), ErrReportFileFormat);
        const QString prefix = QStringLiteral("Report file orders.rpt, line %1: ").arg(line);
        QVERIFY2(error.Description().startsWith(prefix), qPrintable(error.Description()));
        QVERIFY2(error.Description().contains(expected), qPrintable(error.Description()));
    }
}

void tst_ReportDefinition::missingFile()
{
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("nothing.rpt"));
    try {
        ReportDefinition::read(name);
        QFAIL("a missing report file was read");
    } catch (const RuntimeError &error) {
        QCOMPARE(error.Number(), ErrReportFileNotFound);
        QVERIFY(error.Description().contains(name));
    }
}

QTEST_GUILESS_MAIN(tst_ReportDefinition)
#include "tst_reportdefinition.moc"
