#include "datatestsupport.h"

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/variant.h>

using namespace PanelKestrin;
using DataTest::capture;

namespace {

// Moves by letter: F first, L last, N next, P previous, B to the bookmark of row 3, G GetRows(1).
void move(Recordset &rs, QChar letter)
{
    switch (letter.toLatin1()) {
    case 'F': rs.MoveFirst(); break;
    case 'L': rs.MoveLast(); break;
    case 'N': rs.MoveNext(); break;
    case 'P': rs.MovePrevious(); break;
    case 'B': rs.setBookmark(3.0); break;
    default: rs.GetRows(1); break;
    }
}

// A GetRows result as text: rows separated by ';', fields by ','.
QString rowsText(const VariantMatrix &m)
{
    QStringList rows;
    for (int r = m.LBound(2); r <= m.UBound(2); ++r) {
        QStringList row;
        for (int f = m.LBound(1); f <= m.UBound(1); ++f)
            row << m(f, r).toString();
        rows << row.join(QLatin1Char(','));
    }
    return rows.join(QLatin1Char(';'));
}

} // namespace

#define OPEN_ITEMS(...) do { if (!openItems(__VA_ARGS__)) return; } while (false)

class tst_Recordset : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void navigation_data();
    void navigation();
    void bookmarks_data();
    void bookmarks();
    void moveEvents_data();
    void moveEvents();
    void getRows_data();
    void getRows();
    void getRowsErrors_data();
    void getRowsErrors();
    void rowsHandedOutAndReread();
    void sqliteStatementsRunOnce_data();
    void sqliteStatementsRunOnce();
    void tableSourceAndDataMember_data();
    void tableSourceAndDataMember();
    void reportStyleOpen();
    void closedRecordset();

private:
    // nav_items: (id, name) = (1, a), (2, b), (3, c), or no rows; read in id order. False, with
    // the test failed, when the engine cannot be opened; OPEN_ITEMS then ends the test.
    bool openItems(Connection &cn, Recordset &rs, const QString &engine, int rows = 3);
    QTemporaryDir m_dir;
};

bool tst_Recordset::openItems(Connection &cn, Recordset &rs, const QString &engine, int rows)
{
    const QString why = DataTest::openEngine(cn, engine, m_dir);
    if (!why.isEmpty()) {
        QTest::qFail(qPrintable(why), __FILE__, __LINE__);
        return false;
    }
    DataTest::recreateTable(cn, QStringLiteral("nav_items"), QStringLiteral("id INTEGER PRIMARY KEY, name VARCHAR(10)"));
    for (int i = 1; i <= rows; ++i)
        cn.Execute(QStringLiteral("INSERT INTO nav_items VALUES (?, ?)"), {i, QString(QChar(u'a' + i - 1))});
    rs.Open(QStringLiteral("SELECT id, name FROM nav_items ORDER BY id"), &cn);
    return true;
}

void tst_Recordset::navigation_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("moves");
    QTest::addColumn<int>("error");    // raised by the last move
    QTest::addColumn<int>("position"); // AbsolutePosition afterwards
    const int none = 0, noRecord = ErrNoCurrentRecord;
    FOR_EACH_ENGINE("opened on the first row") << 3 << "" << none << 1;
    FOR_EACH_ENGINE("next past the last gives EOF") << 3 << "NNN" << none << int(Recordset::PositionEOF);
    FOR_EACH_ENGINE("next at EOF") << 3 << "NNNN" << noRecord << int(Recordset::PositionEOF);
    FOR_EACH_ENGINE("previous before the first gives BOF") << 3 << "P" << none << int(Recordset::PositionBOF);
    FOR_EACH_ENGINE("previous at BOF") << 3 << "PP" << noRecord << int(Recordset::PositionBOF);
    FOR_EACH_ENGINE("next from BOF") << 3 << "PN" << none << 1;
    FOR_EACH_ENGINE("previous from EOF") << 3 << "LNP" << none << 3;
    FOR_EACH_ENGINE("first from EOF") << 3 << "NNNF" << none << 1;
    FOR_EACH_ENGINE("empty: open") << 0 << "" << none << int(Recordset::PositionUnknown);
    FOR_EACH_ENGINE("empty: first") << 0 << "F" << noRecord << int(Recordset::PositionUnknown);
    FOR_EACH_ENGINE("empty: last") << 0 << "L" << noRecord << int(Recordset::PositionUnknown);
    FOR_EACH_ENGINE("empty: next") << 0 << "N" << noRecord << int(Recordset::PositionUnknown);
    FOR_EACH_ENGINE("empty: previous") << 0 << "P" << noRecord << int(Recordset::PositionUnknown);
}

void tst_Recordset::navigation()
{
    QFETCH(QString, engine);
    QFETCH(int, rows);
    QFETCH(QString, moves);
    QFETCH(int, error);
    QFETCH(int, position);
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, engine, rows);
    int raised = 0;
    for (const QChar letter : moves) {
        QCOMPARE(raised, 0); // only the last move may fail
        raised = capture([&] { move(rs, letter); }).number;
    }
    QCOMPARE(raised, error);
    QCOMPARE(rs.AbsolutePosition(), position);
    QCOMPARE(rs.RecordCount(), rows);
    QCOMPARE(rs.BOF(), rows == 0 || position == Recordset::PositionBOF);
    QCOMPARE(rs.adoEOF(), rows == 0 || position == Recordset::PositionEOF);
    QCOMPARE(rs.property("EOF").toBool(), rs.adoEOF());
    const auto read = capture([&] { QCOMPARE(rs.Fields().Item(0).Value(), QVariant(position)); });
    QCOMPARE(read.number, position > 0 ? 0 : int(ErrNoCurrentRecord));
}

void tst_Recordset::bookmarks_data()
{
    QTest::addColumn<QString>("engine");
    FOR_EACH_ENGINE("");
}

void tst_Recordset::bookmarks()
{
    QFETCH(QString, engine);
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, engine);
    rs.MoveNext();
    const QVariant second = rs.Bookmark();
    rs.MoveLast();
    QVERIFY(rs.Bookmark() != second);
    rs.setBookmark(second);
    QCOMPARE(rs.Fields().Item(QStringLiteral("NAME")).Value(), QVariant(QStringLiteral("b")));
    QCOMPARE(rs.Bookmark(), second); // the same row gives an equal bookmark
    for (const QVariant &bad : {QVariant(0.0), QVariant(4.0), QVariant(1.5), QVariant(QStringLiteral("1")), Null()})
        QCOMPARE(capture([&] { rs.setBookmark(bad); }).number, int(ErrBadArguments));
    QCOMPARE(rs.AbsolutePosition(), 2); // a refused bookmark does not move
    rs.MoveLast();
    rs.MoveNext();
    QCOMPARE(capture([&] { rs.Bookmark(); }).number, int(ErrNoCurrentRecord));
    rs.setBookmark(second); // a bookmark leads back from EOF
    QCOMPARE(rs.AbsolutePosition(), 2);
}

void tst_Recordset::moveEvents_data()
{
    QTest::addColumn<QString>("letter");
    QTest::addColumn<int>("reason");
    QTest::addColumn<int>("target");
    QTest::newRow("MoveFirst") << "F" << 12 << 1;
    QTest::newRow("MoveNext") << "N" << 13 << 3;
    QTest::newRow("MovePrevious") << "P" << 14 << 1;
    QTest::newRow("MoveLast") << "L" << 15 << 3;
    QTest::newRow("Bookmark") << "B" << 10 << 3;
    QTest::newRow("GetRows") << "G" << 10 << 3;
}

void tst_Recordset::moveEvents()
{
    QFETCH(QString, letter);
    QFETCH(int, reason);
    QFETCH(int, target);
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, QStringLiteral("sqlite"));
    rs.MoveNext(); // stand on row 2
    QList<int> willMove, completed;
    qint32 answer = Recordset::StatusCancel;
    connect(&rs, &Recordset::WillMove, this, [&](qint32 &adReason, qint32 &adStatus) {
        QCOMPARE(rs.AbsolutePosition(), 2); // raised before the cursor moves
        willMove << adReason;
        adStatus = answer;
    });
    connect(&rs, &Recordset::MoveComplete, this, [&](qint32 &adReason, qint32 &adStatus) {
        completed << adReason << adStatus << rs.AbsolutePosition();
    });

    const auto cancelled = capture([&] { move(rs, letter.at(0)); });
    QCOMPARE(cancelled.number, int(ErrOperationCancelled));
    QVERIFY(cancelled.description.contains(QLatin1String("cancelled by the user")));
    QCOMPARE(willMove, QList<int>{reason});
    QVERIFY(completed.isEmpty());
    QCOMPARE(rs.AbsolutePosition(), 2);

    answer = Recordset::StatusOK;
    move(rs, letter.at(0));
    QCOMPARE(completed, (QList<int>{reason, Recordset::StatusOK, target}));
}

void tst_Recordset::getRows_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<int>("moveNexts"); // before the call
    QTest::addColumn<int>("rows");
    QTest::addColumn<QVariant>("start");
    QTest::addColumn<QVariant>("fields");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("positionAfter"); // AbsolutePosition
    const int eof = Recordset::PositionEOF;
    FOR_EACH_ENGINE("all from the first") << 2 << -1 << QVariant(1) << Empty() << "1,a;2,b;3,c" << eof;
    FOR_EACH_ENGINE("two from the first") << 2 << 2 << QVariant(1) << Empty() << "1,a;2,b" << 3;
    FOR_EACH_ENGINE("rest from the current row") << 1 << -1 << Empty() << Empty() << "2,b;3,c" << eof;
    FOR_EACH_ENGINE("one from current, given as 0") << 1 << 1 << QVariant(0) << Empty() << "2,b" << 3;
    FOR_EACH_ENGINE("from the last") << 0 << -1 << QVariant(2) << Empty() << "3,c" << eof;
    FOR_EACH_ENGINE("from a bookmark, more than left") << 0 << 10 << QVariant(2.0) << Empty() << "2,b;3,c" << eof;
    FOR_EACH_ENGINE("one field by name") << 0 << -1 << QVariant(1) << QVariant(QStringLiteral("Name")) << "a;b;c"
                                         << eof;
    FOR_EACH_ENGINE("one field by index") << 0 << -1 << QVariant(1) << QVariant(1) << "a;b;c" << eof;
    FOR_EACH_ENGINE("list in the order given")
        << 0 << 2 << QVariant(1) << QVariant(QVariantList{QStringLiteral("name"), 0}) << "a,1;b,2" << 3;
    FOR_EACH_ENGINE("string list") << 0 << -1 << QVariant(1)
                                   << QVariant(QStringList{QStringLiteral("id"), QStringLiteral("name")})
                                   << "1,a;2,b;3,c" << eof;
}

void tst_Recordset::getRows()
{
    QFETCH(QString, engine);
    QFETCH(int, moveNexts);
    QFETCH(int, rows);
    QFETCH(QVariant, start);
    QFETCH(QVariant, fields);
    QFETCH(QString, expected);
    QFETCH(int, positionAfter);
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, engine);
    for (int i = 0; i < moveNexts; ++i)
        rs.MoveNext();
    const VariantMatrix m = rs.GetRows(rows, start, fields);
    QCOMPARE(m.LBound(1), 0);
    QCOMPARE(m.LBound(2), 0);
    QCOMPARE(rowsText(m), expected);
    QCOMPARE(rs.AbsolutePosition(), positionAfter);
}

void tst_Recordset::getRowsErrors_data()
{
    QTest::addColumn<int>("rowsInTable");
    QTest::addColumn<int>("moveNexts");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QVariant>("start");
    QTest::addColumn<QVariant>("fields");
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("named"); // in the description
    const int badArguments = ErrBadArguments, notFound = ErrItemNotFound;
    QTest::newRow("empty recordset") << 0 << 0 << -1 << QVariant(1) << Empty() << int(ErrNoCurrentRecord) << "";
    QTest::newRow("current row at EOF") << 3 << 3 << -1 << Empty() << Empty() << int(ErrNoCurrentRecord) << "EOF";
    QTest::newRow("zero rows") << 3 << 0 << 0 << QVariant(1) << Empty() << badArguments << "";
    QTest::newRow("unknown start code") << 3 << 0 << -1 << QVariant(7) << Empty() << badArguments << "";
    QTest::newRow("bookmark past the end") << 3 << 0 << -1 << QVariant(9.0) << Empty() << badArguments << "";
    QTest::newRow("start as text") << 3 << 0 << -1 << QVariant(QStringLiteral("1")) << Empty() << badArguments << "";
    QTest::newRow("unknown field") << 3 << 0 << -1 << QVariant(1) << QVariant(QStringLiteral("price")) << notFound
                                   << "price";
    QTest::newRow("field index past the last") << 3 << 0 << -1 << QVariant(1) << QVariant(2) << notFound << "2";
    QTest::newRow("negative field index") << 3 << 0 << -1 << QVariant(1) << QVariant(-1) << notFound << "-1";
    QTest::newRow("empty field list") << 3 << 0 << -1 << QVariant(1) << QVariant(QVariantList{}) << badArguments << "";
    QTest::newRow("field as a date") << 3 << 0 << -1 << QVariant(1) << QVariant(QDate(2024, 1, 1)) << badArguments
                                     << "";
}

void tst_Recordset::getRowsErrors()
{
    QFETCH(int, rowsInTable);
    QFETCH(int, moveNexts);
    QFETCH(int, rows);
    QFETCH(QVariant, start);
    QFETCH(QVariant, fields);
    QFETCH(int, error);
    QFETCH(QString, named);
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, QStringLiteral("sqlite"), rowsInTable);
    for (int i = 0; i < moveNexts; ++i)
        rs.MoveNext();
    const qint32 position = rs.AbsolutePosition();
    const auto caught = capture([&] { rs.GetRows(rows, start, fields); });
    QCOMPARE(caught.number, error);
    QVERIFY2(caught.description.contains(named), qPrintable(caught.description));
    QCOMPARE(rs.AbsolutePosition(), position); // a failed call does not move
    if (error == ErrItemNotFound) // a field reads the same names and positions
        QCOMPARE(capture([&] { rs.Fields().Item(fields); }).number, error);
}

void tst_Recordset::rowsHandedOutAndReread()
{
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, QStringLiteral("sqlite"));
    VariantMatrix first = rs.GetRows(-1, 1);
    first(1, 0) = QStringLiteral("changed by the host"); // the host's copy is its own
    first.redimPreserve(5);
    QCOMPARE(rowsText(rs.GetRows(-1, 1)), QStringLiteral("1,a;2,b;3,c"));

    rs.MoveLast();
    cn.Execute(QStringLiteral("INSERT INTO nav_items VALUES (4, 'd')"));
    QCOMPARE(rs.RecordCount(), 3); // the rows were read at Open
    rs.Requery();
    QCOMPARE(rs.RecordCount(), 4);
    QCOMPARE(rs.AbsolutePosition(), 1);
    cn.Execute(QStringLiteral("DROP TABLE nav_items"));
    QCOMPARE(capture([&] { rs.Requery(); }).number, int(ErrCommandFailed));
    QCOMPARE(rs.RecordCount(), 4); // a failed requery keeps the rows
}

// SQLite queries are read through the engine's own interface, every other statement through
// QtSql, which has run it already: a statement with effects must not run twice, and a failure
// on a later row still fails the Open.
void tst_Recordset::sqliteStatementsRunOnce_data()
{
    QTest::addColumn<QString>("statement");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("rowsInTable");
    QTest::newRow("query") << "SELECT id, name FROM nav_items ORDER BY id" << "1,a;2,b;3,c" << 0 << 3;
    QTest::newRow("query with a common table")
        << " with t AS (SELECT id FROM nav_items) SELECT id FROM t ORDER BY id;" << "1;2;3" << 0 << 3;
    QTest::newRow("insert returning its row") << "INSERT INTO nav_items VALUES (4, 'd') RETURNING id, name"
                                              << "4,d" << 0 << 4;
    QTest::newRow("failure on the third row")
        << "SELECT CASE WHEN id = 3 THEN abs(-9223372036854775807 - 1) ELSE id END FROM nav_items ORDER BY id" << ""
        << int(ErrCommandFailed) << 3;
}

void tst_Recordset::sqliteStatementsRunOnce()
{
    QFETCH(QString, statement);
    QFETCH(int, error);
    Connection cn;
    Recordset items;
    OPEN_ITEMS(cn, items, QStringLiteral("sqlite"));
    Recordset rs;
    QCOMPARE(capture([&] { rs.Open(statement, &cn); }).number, error);
    if (error == 0)
        QTEST(rowsText(rs.GetRows(-1, 1)), "rows");
    Recordset count;
    count.Open(QStringLiteral("SELECT COUNT(*) FROM nav_items"), &cn);
    QTEST(count.Fields().Item(0).Value().toInt(), "rowsInTable");
}

void tst_Recordset::tableSourceAndDataMember_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("options");
    QTest::addColumn<QString>("dataMember");
    FOR_EACH_ENGINE("bare table name") << "nav_items" << -1 << "nav_items";
    FOR_EACH_ENGINE("table name, options 2") << " nav_items " << 2 << "nav_items";
    FOR_EACH_ENGINE("statement") << "SELECT name, id FROM nav_items" << 1 << "nav_items";
    FOR_EACH_ENGINE("expression first") << "SELECT id * 2 AS twice, name FROM nav_items" << 1 << "";
    FOR_EACH_ENGINE("joined, first table wins")
        << "SELECT b.name, a.id FROM nav_items a JOIN nav_other b ON b.id = a.id" << -1 << "nav_other";
}

void tst_Recordset::tableSourceAndDataMember()
{
    QFETCH(QString, engine);
    QFETCH(QString, source);
    QFETCH(int, options);
    QFETCH(QString, dataMember);
    Connection cn;
    Recordset items;
    OPEN_ITEMS(cn, items, engine);
    DataTest::recreateTable(cn, QStringLiteral("nav_other"), QStringLiteral("id INTEGER, name TEXT"));
    cn.Execute(QStringLiteral("INSERT INTO nav_other VALUES (1, 'x'), (2, 'y'), (3, 'z')"));
    Recordset rs;
    rs.Open(source, &cn, -1, -1, options);
    QCOMPARE(rs.RecordCount(), 3);
    QCOMPARE(rs.Fields().Count(), 2);
    QCOMPARE(rs.DataMember(), dataMember);
}

void tst_Recordset::reportStyleOpen()
{
    // How a print form opens its data: properties first, then a text command.
    Connection cn;
    Recordset items;
    OPEN_ITEMS(cn, items, QStringLiteral("sqlite"));
    Recordset rs;
    rs.setProperty("CursorType", 3);
    rs.setProperty("CursorLocation", 3);
    rs.setProperty("LockType", 3);
    rs.setActiveConnection(&cn);
    rs.Open(QStringLiteral("SELECT * FROM nav_items WHERE id > 1 ORDER BY id"), nullptr, -1, -1, 1);
    QCOMPARE(rs.CursorType(), 3);
    QCOMPARE(rs.LockType(), 3);
    QCOMPARE(rs.CursorLocation(), 3);
    QCOMPARE(rs.ActiveConnection(), &cn);
    QCOMPARE(rs.Fields().Item(QStringLiteral("id")).Value(), QVariant(2));
    QCOMPARE(capture([&] { rs.setCursorType(1); }).number, int(ErrObjectOpen));
    // A statement without rows leaves the recordset closed, as it returns no records.
    Recordset action;
    action.Open(QStringLiteral("UPDATE nav_items SET name = 'z' WHERE id = 1"), &cn);
    QCOMPARE(action.State(), 0);
}

void tst_Recordset::closedRecordset()
{
    Connection cn;
    Recordset rs;
    OPEN_ITEMS(cn, rs, QStringLiteral("sqlite"));
    const Field field = rs.Fields().Item(0);
    rs.Close();
    QCOMPARE(rs.State(), 0);
    const std::function<void()> uses[] = {
        [&] { rs.BOF(); },          [&] { rs.adoEOF(); },       [&] { rs.MoveNext(); },
        [&] { rs.MoveFirst(); },    [&] { rs.GetRows(); },      [&] { rs.Fields(); },
        [&] { rs.RecordCount(); },  [&] { rs.Bookmark(); },     [&] { rs.DataMember(); },
        [&] { rs.Requery(); },      [&] { rs.Close(); },        [&] { field.Value(); },
        [&] { field.Name(); },
    };
    for (const auto &use : uses)
        QCOMPARE(capture(use).number, int(ErrObjectClosed));
    rs.Open(); // the source and connection are kept
    QCOMPARE(rs.RecordCount(), 3);
    QCOMPARE(field.Value(), QVariant(1)); // a handle follows its recordset
}

QTEST_GUILESS_MAIN(tst_Recordset)
#include "tst_recordset.moc"
