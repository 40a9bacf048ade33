#include "datatestsupport.h"
#include "regionaltestsupport.h"

#include <PanelKestrin/conversions.h>

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/variant.h>

#include <QRegularExpression>
#include <QSqlDatabase>

using namespace PanelKestrin;
using DataTest::capture;

Q_DECLARE_METATYPE(RegionalTest::Settings)

class tst_Connection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void connectionStrings_data();
    void connectionStrings();
    void missingFileIsNotCreated();
    void postgresLogin();
    void writes_data();
    void writes();
    void parametersAreBoundInOrder_data();
    void parametersAreBoundInOrder();
    void statementText_data();
    void statementText();
    void parametersCarryNoSecondStatement_data();
    void parametersCarryNoSecondStatement();
    void primaryKeySchema_data();
    void primaryKeySchema();
    void closedConnection();
    void postgresReadsDatesAsTheUserWritesThem_data();
    void postgresReadsDatesAsTheUserWritesThem();

private:
    QString sqliteFile(const QString &name)
    {
        const QString path = m_dir.filePath(name);
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        return path;
    }
    QTemporaryDir m_dir;
};

void tst_Connection::connectionStrings_data()
{
    QTest::addColumn<QString>("text"); // %1 is replaced by an existing database file
    QTest::addColumn<int>("error");
    QTest::newRow("any case, blanks, trailing ;") << "  provider = sqlite ; DATA SOURCE = %1 ;" << 0;
    QTest::newRow("single-quoted value with ;") << "Provider=SQLite;Data Source='%1;x'" << 0;
    QTest::newRow("segment without =") << "Provider=SQLite;Data Source" << int(ErrBadArguments);
    QTest::newRow("missing keyword") << "Provider=SQLite;=%1" << int(ErrBadArguments);
    QTest::newRow("unclosed quote") << "Provider=SQLite;Data Source=\"%1" << int(ErrBadArguments);
    QTest::newRow("empty") << "" << int(ErrBadArguments);
    QTest::newRow("no data source") << "Provider=SQLite" << int(ErrBadArguments);
    QTest::newRow("unknown provider") << "Provider=Paradox;Data Source=%1" << int(ErrProviderNotFound);
    QTest::newRow("bad port") << "Provider=PostgreSQL;Host=127.0.0.1;Port=x" << int(ErrBadArguments);
}

void tst_Connection::connectionStrings()
{
    QFETCH(QString, text);
    QFETCH(int, error);
    const QString file = sqliteFile(QStringLiteral("strings.db"));
    sqliteFile(QStringLiteral("strings.db;x"));
    Connection cn;
    const int connectionsBefore = QSqlDatabase::connectionNames().size();
    QCOMPARE(capture([&] { cn.Open(text.contains(QLatin1String("%1")) ? text.arg(file) : text); }).number, error);
    QCOMPARE(cn.State(), error ? 0 : 1);
    if (!error) {
        QCOMPARE(cn.Provider(), QStringLiteral("SQLite"));
        QCOMPARE(cn.Execute(QStringLiteral("CREATE TABLE IF NOT EXISTS t (a INTEGER)")), 0);
        cn.Close();
    }
    QCOMPARE(QSqlDatabase::connectionNames().size(), connectionsBefore); // nothing left behind
}

void tst_Connection::missingFileIsNotCreated()
{
    const QString path = m_dir.filePath(QStringLiteral("absent.db"));
    Connection cn;
    for (const char *mode : {"", ";Mode=Read"}) {
        const auto error = capture([&] { cn.Open(QStringLiteral("Provider=SQLite;Data Source=") + path + QLatin1String(mode)); });
        QCOMPARE(error.number, int(ErrOpenFailed));
        QVERIFY2(error.description.contains(path), qPrintable(error.description));
        QVERIFY(!QFile::exists(path));
    }
}

void tst_Connection::postgresLogin()
{
    QString text = DataTest::postgresConnectString();
    QVERIFY2(!text.isEmpty(), "no PostgreSQL test server");
    const QString port = QRegularExpression(QStringLiteral("Port=(\\d+)")).match(text).captured(1);
    text.replace(QLatin1String("User ID=pktest"), QLatin1String("User ID=nobody_here"));
    Connection cn;
    // A refused login names the server and the user.
    const auto error = capture([&] { cn.Open(text); });
    QCOMPARE(error.number, int(ErrOpenFailed));
    QVERIFY2(error.description.contains(QLatin1String("127.0.0.1:") + port), qPrintable(error.description));
    QVERIFY2(error.description.contains(QLatin1String("nobody_here")), qPrintable(error.description));
    QCOMPARE(cn.State(), 0);
    // User and password arguments override the string's.
    cn.Open(text, QStringLiteral("pktest"), QStringLiteral("pktest"));
    QCOMPARE(cn.State(), 1);
}

void tst_Connection::writes_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<int>("affected");
    FOR_EACH_ENGINE("update two") << "UPDATE wr_items SET n = n + 1 WHERE n < 3" << 2;
    FOR_EACH_ENGINE("insert") << "INSERT INTO wr_items VALUES (4)" << 1;
    FOR_EACH_ENGINE("delete none") << "DELETE FROM wr_items WHERE n > 100" << 0;
    FOR_EACH_ENGINE("create table") << "CREATE TABLE wr_other (a INTEGER)" << 0;
}

void tst_Connection::writes()
{
    QFETCH(QString, engine);
    QFETCH(QString, statement);
    QFETCH(int, affected);
    Connection writer;
    OPEN_ENGINE(writer, engine, m_dir);
    writer.Execute(QStringLiteral("DROP TABLE IF EXISTS wr_other"));
    DataTest::recreateTable(writer, QStringLiteral("wr_items"), QStringLiteral("n INTEGER"));
    QCOMPARE(writer.Execute(QStringLiteral("INSERT INTO wr_items VALUES (1), (2), (3)")), 3);

    // A connection opened for reading refuses every write and leaves the data as it was.
    Connection reader;
    reader.Open(writer.ConnectionString() + QStringLiteral(";Mode=Read"));
    QVERIFY(reader.isReadOnly());
    QCOMPARE(capture([&] { reader.Execute(statement); }).number, int(ErrCommandFailed));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT n FROM wr_items"), &reader);
    QCOMPARE(rs.RecordCount(), 3);

    QCOMPARE(writer.Execute(statement), affected);
}

void tst_Connection::parametersAreBoundInOrder_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QVariantList>("parameters");
    const QVariantList values{QStringLiteral("O'Hara; DROP TABLE x"), 42, 12.5, QDate(2024, 2, 29),
                              QDateTime(QDate(2024, 3, 1), QTime(8, 15, 30)), true};
    FOR_EACH_ENGINE("values") << values;
    QVariantList nulls{Null(), Empty(), Null(), Null(), Null(), Null()};
    FOR_EACH_ENGINE("Null and Empty bind NULL") << nulls;
}

void tst_Connection::parametersAreBoundInOrder()
{
    QFETCH(QString, engine);
    QFETCH(QVariantList, parameters);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("par_items"),
                            QStringLiteral("name VARCHAR(40), qty INTEGER, price NUMERIC(10,2), due DATE, "
                                           "stamp TIMESTAMP, paid BOOLEAN"));
    QCOMPARE(cn.Execute(QStringLiteral("INSERT INTO par_items VALUES (?, ?, ?, ?, ?, ?)"), parameters), 1);
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM par_items"), &cn);
    for (int i = 0; i < parameters.size(); ++i) {
        const QVariant expected = isEmpty(parameters.at(i)) ? Null() : parameters.at(i);
        QCOMPARE(rs.Fields().Item(i).Value(), expected);
    }
    // A bound value is data, never SQL.
    QCOMPARE(cn.Execute(QStringLiteral("UPDATE par_items SET qty = ? WHERE name = ?"),
                        {7, QStringLiteral("' OR '1'='1")}),
             0);
}

void tst_Connection::statementText_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<bool>("refused");
    QTest::addColumn<QString>("text"); // the value read, or part of the refusal besides the statement
    // One statement, whatever semicolons its strings, names and comments hold.
    FOR_EACH_ENGINE("; in a string") << "SELECT 'a;b' AS v" << false << "a;b";
    FOR_EACH_ENGINE("doubled quote") << "SELECT 'it''s;' AS v" << false << "it's;";
    FOR_EACH_ENGINE("; in a quoted name") << "SELECT \"v;\" AS v FROM (SELECT 'q' AS \"v;\") t" << false << "q";
    FOR_EACH_ENGINE("trailing ; and comment") << "SELECT 'x' AS v; -- done" << false << "x";
    // Blanks, comments and empty statements around the statement are not a second one.
    FOR_EACH_ENGINE("empty statements and comments around it")
        << "; /* first */ ;\n SELECT 'x' AS v ;; -- done\n /* really */ ;  " << false << "x";
    QTest::newRow("sqlite: ; in a bracketed name is no second statement")
        << "sqlite" << "SELECT [v;w] AS v FROM (SELECT 'q' AS [v;w])" << false << "q";
    QTest::newRow("postgres: dollar quoted") << "postgres" << "SELECT $t$;'$t$ AS v" << false << ";'";
    QTest::newRow("postgres: escape string") << "postgres" << "SELECT E'\\';' AS v" << false << "';";
    // Refused, and nothing of it runs.
    FOR_EACH_ENGINE("syntax error") << "UPDATE rj_items SET n = WHERE" << true << "syntax";
    FOR_EACH_ENGINE("constraint") << "UPDATE rj_items SET n = NULL" << true << "";
    FOR_EACH_ENGINE("second statement") << "UPDATE rj_items SET n = 0; DELETE FROM rj_items" << true
                                        << "one statement";
    FOR_EACH_ENGINE("statement after a comment")
        << "UPDATE rj_items SET n = 0 /* ; */; -- x\nDELETE FROM rj_items" << true << "one statement";
    FOR_EACH_ENGINE("second statement after a quoted ;")
        << "UPDATE rj_items SET n = 0 WHERE 'a;b' <> \"n;\"; DELETE FROM rj_items" << true << "one statement";
}

void tst_Connection::statementText()
{
    QFETCH(QString, engine);
    QFETCH(QString, statement);
    QFETCH(bool, refused);
    QFETCH(QString, text);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("rj_items"), QStringLiteral("n INTEGER NOT NULL"));
    cn.Execute(QStringLiteral("INSERT INTO rj_items VALUES (5)"));
    Recordset rs;
    if (!refused) {
        rs.Open(statement, &cn);
        QCOMPARE(rs.Fields().Item(QStringLiteral("v")).Value().toString(), text);
        return;
    }
    const auto error = capture([&] { cn.Execute(statement); });
    QCOMPARE(error.number, int(ErrCommandFailed));
    QVERIFY2(error.description.contains(statement), qPrintable(error.description));
    QVERIFY2(error.description.contains(text, Qt::CaseInsensitive), qPrintable(error.description));
    // The same text is refused as a recordset source too.
    QCOMPARE(capture([&] { rs.Open(statement, &cn); }).number, int(ErrCommandFailed));
    rs.Open(QStringLiteral("SELECT n FROM rj_items"), &cn);
    QCOMPARE(rs.GetRows(-1, 1).value(0, 0), QVariant(5));
    QCOMPARE(rs.RecordCount(), 1);
}

void tst_Connection::parametersCarryNoSecondStatement_data()
{
    QTest::addColumn<QString>("engine");
    FOR_EACH_ENGINE("markers");
}

void tst_Connection::parametersCarryNoSecondStatement()
{
    QFETCH(QString, engine);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("pm_items"), QStringLiteral("n INTEGER, note VARCHAR(10)"));
    cn.Execute(QStringLiteral("INSERT INTO pm_items VALUES (5, 'a;?')"));
    const QString two = QStringLiteral("UPDATE pm_items SET n = ?; DELETE FROM pm_items");
    const auto error = capture([&] { cn.Execute(two, {1}); });
    QCOMPARE(error.number, int(ErrCommandFailed));
    QVERIFY2(error.description.contains(QLatin1String("one statement")), qPrintable(error.description));
    // A '?' in a string is no marker; the markers outside it take the values in order.
    QCOMPARE(cn.Execute(QStringLiteral("UPDATE pm_items SET n = ? WHERE note = 'a;?' AND n = ?;"), {7, 5}), 1);
    // Inside the host's transaction a refused text leaves the transaction usable.
    cn.Execute(QStringLiteral("BEGIN"));
    QCOMPARE(capture([&] { cn.Execute(two, {2}); }).number, int(ErrCommandFailed));
    QCOMPARE(cn.Execute(QStringLiteral("UPDATE pm_items SET n = n + 1")), 1);
    cn.Execute(QStringLiteral("COMMIT"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT n FROM pm_items"), &cn);
    QCOMPARE(rs.GetRows(-1, 1).value(0, 0).toInt(), 8);
}

void tst_Connection::primaryKeySchema_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QVariantList>("restrictions");
    QTest::addColumn<QStringList>("rows"); // "table.column:ordinal"
    const QStringList both{"pk_lines.order_no:1", "pk_lines.line_no:2", "pk_orders.id:1"};
    FOR_EACH_ENGINE("any table") << QVariantList{} << both;
    FOR_EACH_ENGINE("table, any case")
        << QVariantList{Empty(), Empty(), QStringLiteral("PK_Lines")} << QStringList{both.mid(0, 2)};
    FOR_EACH_ENGINE("Null means any") << QVariantList{Null(), Null(), QStringLiteral("pk_orders")}
                                      << QStringList{both.at(2)};
    FOR_EACH_ENGINE("table without a key") << QVariantList{Empty(), Empty(), QStringLiteral("pk_notes")}
                                           << QStringList{};
}

void tst_Connection::primaryKeySchema()
{
    QFETCH(QString, engine);
    QFETCH(QVariantList, restrictions);
    QFETCH(QStringList, rows);
    Connection cn;
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("pk_orders"), QStringLiteral("id INTEGER PRIMARY KEY, note TEXT"));
    // Key order differs from column order.
    DataTest::recreateTable(cn, QStringLiteral("pk_lines"),
                            QStringLiteral("line_no INTEGER, order_no INTEGER, qty INTEGER, "
                                           "PRIMARY KEY (order_no, line_no)"));
    DataTest::recreateTable(cn, QStringLiteral("pk_notes"), QStringLiteral("body TEXT"));

    const std::unique_ptr<Recordset> schema = cn.OpenSchema(28, restrictions);
    QCOMPARE(schema->Fields().Count(), 8);
    QCOMPARE(schema->Fields().Item(3).Name(), QStringLiteral("COLUMN_NAME"));
    QStringList got;
    for (; !schema->adoEOF(); schema->MoveNext()) {
        const QString table = schema->Fields().Item(2).Value().toString();
        if (table.startsWith(QLatin1String("pk_")))
            got << QStringLiteral("%1.%2:%3").arg(table, schema->Fields().Item(3).Value().toString(),
                                                  schema->Fields().Item(QStringLiteral("ordinal")).Value().toString());
    }
    QCOMPARE(got, rows);
    QCOMPARE(capture([&] { cn.OpenSchema(20); }).number, int(ErrNotCapable));
    QCOMPARE(capture([&] { cn.OpenSchema(28, {Empty(), Empty(), 5}); }).number, int(ErrBadArguments));
}

void tst_Connection::closedConnection()
{
    Connection cn;
    Recordset rs;
    QCOMPARE(capture([&] { cn.Execute(QStringLiteral("SELECT 1")); }).number, int(ErrConnectionInvalid));
    QCOMPARE(capture([&] { cn.OpenSchema(28); }).number, int(ErrObjectClosed));
    QCOMPARE(capture([&] { cn.Close(); }).number, int(ErrObjectClosed));
    QCOMPARE(capture([&] { rs.Open(QStringLiteral("SELECT 1"), &cn); }).number, int(ErrConnectionInvalid));
    QCOMPARE(capture([&] { rs.Open(QStringLiteral("SELECT 1")); }).number, int(ErrConnectionInvalid));

    cn.Open(QStringLiteral("Provider=SQLite;Data Source=:memory:"));
    QCOMPARE(capture([&] { cn.Open(QStringLiteral("Provider=SQLite;Data Source=:memory:")); }).number,
             int(ErrObjectOpen));
    rs.Open(QStringLiteral("SELECT 1 AS one"), &cn);
    cn.Close();
    QCOMPARE(cn.State(), 0);
    // The recordset's rows stay readable; running it again needs the connection.
    QCOMPARE(rs.Fields().Item(0).Value(), QVariant(1));
    QCOMPARE(capture([&] { rs.Requery(); }).number, int(ErrConnectionInvalid));
}

// The print query form puts picked dates into its SQL as CStr writes them, in the user's
// short-date pattern; the server must read them in the same day/month order.
void tst_Connection::postgresReadsDatesAsTheUserWritesThem_data()
{
    QTest::addColumn<RegionalTest::Settings>("settings");
    QTest::newRow("classic") << RegionalTest::classic();
    QTest::newRow("US") << RegionalTest::us();
    QTest::newRow("UK") << RegionalTest::uk();
    QTest::newRow("German") << RegionalTest::german();
}

void tst_Connection::postgresReadsDatesAsTheUserWritesThem()
{
    QFETCH(RegionalTest::Settings, settings);
    RegionalTest::Scope scope;
    scope.set(settings);
    Connection cn;
    OPEN_ENGINE(cn, QStringLiteral("postgres"), m_dir);
    const QDate day(2005, 2, 3);
    const QDateTime stamp(QDate(2005, 3, 10), QTime(14, 30, 5));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT CAST('%1' AS DATE) AS d, CAST('%2' AS TIMESTAMP) AS t").arg(CStr(day), CStr(stamp)),
            &cn);
    QCOMPARE(rs.Fields().Item(QStringLiteral("d")).Value().toDate(), day);
    QCOMPARE(rs.Fields().Item(QStringLiteral("t")).Value().toDateTime(), stamp);
}

QTEST_GUILESS_MAIN(tst_Connection)
#include "tst_connection.moc"
