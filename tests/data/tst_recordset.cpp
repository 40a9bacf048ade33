#include "datatestsupport.h"

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/variant.h>

using namespace PanelKestrin;
using DataTest::capture;

class tst_Recordset : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void navigation_data();
    void navigation();
    void bookmarks_data();
    void bookmarks();
    void badBookmarks_data();
    void badBookmarks();
    void moveEvents_data();
    void moveEvents();
    void getRows_data();
    void getRows();
    void getRowsErrors_data();
    void getRowsErrors();
    void getRowsResultIsACopy();
    void tableSourceAndDataMember_data();
    void tableSourceAndDataMember();
    void unknownField_data();
    void unknownField();
    void requeryReadsNewRows();
    void reportStyleOpen();
    void closedRecordset();

private:
    // nav_items: (id, name) = (1, a), (2, b), (3, c), or no rows; read in id order.
    void openItems(Connection &cn, Recordset &rs, const QString &engine, int rows = 3);
    QTemporaryDir m_dir;
};

void tst_Recordset::openItems(Connection &cn, Recordset &rs, const QString &engine, int rows)
{
    OPEN_ENGINE(cn, engine, m_dir);
    DataTest::recreateTable(cn, QStringLiteral("nav_items"), QStringLiteral("id INTEGER PRIMARY KEY, name VARCHAR(10)"));
    for (int i = 1; i <= rows; ++i)
        cn.Execute(QStringLiteral("INSERT INTO nav_items VALUES (?, ?)"), {i, QString(QChar(u'a' + i - 1))});
    rs.Open(QStringLiteral("SELECT id, name FROM nav_items ORDER BY id"), &cn);
}

void tst_Recordset::navigation_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("moves"); // F first, L last, N next, P previous
    QTest::addColumn<int>("error");     // raised by the last move
    QTest::addColumn<int>("position");  // AbsolutePosition afterwards
    const int none = 0, noRecord = ErrNoCurrentRecord;
    FOR_EACH_ENGINE("opened on the first row") << 3 << "" << none << 1;
    FOR_EACH_ENGINE("next past the last gives EOF") << 3 << "NNN" << none << int(Recordset::PositionEOF);
    FOR_EACH_ENGINE("next at EOF") << 3 << "NNNN" << noRecord << int(Recordset::PositionEOF);
    FOR_EACH_ENGINE("previous before the first gives BOF") << 3 << "P" << none << int(Recordset::PositionBOF);
    FOR_EACH_ENGINE("previous at BOF") << 3 << "PP" << noRecord << int(Recordset::PositionBOF);
    FOR_EACH_ENGINE("next from BOF") << 3 << "PN" << none << 1;
    FOR_EACH_ENGINE("previous from EOF") << 3 << "LNP" << none << 3;
    FOR_EACH_ENGINE("last, previous") << 3 << "LP" << none << 2;
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
    openItems(cn, rs, engine, rows);
    int raised = 0;
    for (const QChar move : moves) {
        QCOMPARE(raised, 0); // only the last move may fail
        raised = capture([&] {
                     switch (move.toLatin1()) {
                     case 'F': rs.MoveFirst(); break;
                     case 'L': rs.MoveLast(); break;
                     case 'N': rs.MoveNext(); break;
                     case 'P': rs.MovePrevious(); break;
                     }
                 }).number;
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
    openItems(cn, rs, engine);
    rs.MoveNext();
    const QVariant second = rs.Bookmark();
    rs.MoveLast();
    QVERIFY(rs.Bookmark() != second);
    rs.setBookmark(second);
    QCOMPARE(rs.Fields().Item(QStringLiteral("NAME")).Value(), QVariant(QStringLiteral("b")));
    QCOMPARE(rs.Bookmark(), second); // the same row gives an equal bookmark
    rs.MoveLast();
    rs.MoveNext();
    QCOMPARE(capture([&] { rs.Bookmark(); }).number, int(ErrNoCurrentRecord));
    rs.setBookmark(second); // a bookmark leads back from EOF
    QCOMPARE(rs.AbsolutePosition(), 2);
}

void tst_Recordset::badBookmarks_data()
{
    QTest::addColumn<QVariant>("bookmark");
    QTest::newRow("zero") << QVariant(0.0);
    QTest::newRow("past the last") << QVariant(4.0);
    QTest::newRow("fraction") << QVariant(1.5);
    QTest::newRow("text") << QVariant(QStringLiteral("1"));
    QTest::newRow("Empty") << Empty();
    QTest::newRow("Null") << Null();
}

void tst_Recordset::badBookmarks()
{
    QFETCH(QVariant, bookmark);
    Connection cn;
    Recordset rs;
    openItems(cn, rs, QStringLiteral("sqlite"));
    rs.MoveNext();
    QCOMPARE(capture([&] { rs.setBookmark(bookmark); }).number, int(ErrBadArguments));
    QCOMPARE(rs.AbsolutePosition(), 2);
}

void tst_Recordset::moveEvents_data()
{
    QTest::addColumn<QString>("move");
    QTest::addColumn<int>("reason");
    QTest::addColumn<int>("target");
    QTest::newRow("MoveFirst") << "first" << 12 << 1;
    QTest::newRow("MoveNext") << "next" << 13 << 3;
    QTest::newRow("MovePrevious") << "previous" << 14 << 1;
    QTest::newRow("MoveLast") << "last" << 15 << 3;
    QTest::newRow("Bookmark") << "bookmark" << 10 << 3;
    QTest::newRow("GetRows") << "getrows" << 10 << 3;
}

void tst_Recordset::moveEvents()
{
    QFETCH(QString, move);
    QFETCH(int, reason);
    QFETCH(int, target);
    Connection cn;
    Recordset rs;
    openItems(cn, rs, QStringLiteral("sqlite"));
    rs.MoveNext(); // stand on row 2
    QList<int> willMove, completed;
    qint32 answer = Recordset::StatusOK;
    connect(&rs, &Recordset::WillMove, this, [&](qint32 &adReason, qint32 &adStatus) {
        QCOMPARE(rs.AbsolutePosition(), 2); // raised before the cursor moves
        willMove << adReason;
        adStatus = answer;
    });
    connect(&rs, &Recordset::MoveComplete, this, [&](qint32 &adReason, qint32 &adStatus) {
        completed << adReason << adStatus << rs.AbsolutePosition();
    });
    auto doMove = [&] {
        if (move == QLatin1String("first")) rs.MoveFirst();
        else if (move == QLatin1String("next")) rs.MoveNext();
        else if (move == QLatin1String("previous")) rs.MovePrevious();
        else if (move == QLatin1String("last")) rs.MoveLast();
        else if (move == QLatin1String("bookmark")) rs.setBookmark(3.0);
        else rs.GetRows(1);
    };

    answer = Recordset::StatusCancel;
    const auto cancelled = capture(doMove);
    QCOMPARE(cancelled.number, int(ErrOperationCancelled));
    QVERIFY(cancelled.description.contains(QLatin1String("cancelled by the user")));
    QCOMPARE(willMove, QList<int>{reason});
    QVERIFY(completed.isEmpty());
    QCOMPARE(rs.AbsolutePosition(), 2);

    answer = Recordset::StatusOK;
    doMove();
    QCOMPARE(completed, (QList<int>{reason, Recordset::StatusOK, target}));
}

void tst_Recordset::getRows_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<int>("moveNexts"); // before the call
    QTest::addColumn<int>("rows");
    QTest::addColumn<QVariant>("start");
    QTest::addColumn<QVariant>("fields");
    QTest::addColumn<QString>("expected");  // rows separated by ';', fields by ','
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
    openItems(cn, rs, engine);
    for (int i = 0; i < moveNexts; ++i)
        rs.MoveNext();
    const VariantMatrix m = rs.GetRows(rows, start, fields);
    QCOMPARE(m.LBound(1), 0);
    QCOMPARE(m.LBound(2), 0);
    QStringList got;
    for (int r = 0; r <= m.UBound(2); ++r) {
        QStringList row;
        for (int f = 0; f <= m.UBound(1); ++f)
            row << m(f, r).toString();
        got << row.join(QLatin1Char(','));
    }
    QCOMPARE(got.join(QLatin1Char(';')), expected);
    QCOMPARE(rs.AbsolutePosition(), positionAfter);
}

void tst_Recordset::getRowsErrors_data()
{
    QTest::addColumn<int>("rowsInTable");
    QTest::addColumn<QString>("before"); // N = MoveNext
    QTest::addColumn<int>("rows");
    QTest::addColumn<QVariant>("start");
    QTest::addColumn<QVariant>("fields");
    QTest::addColumn<int>("error");
    QTest::newRow("empty recordset") << 0 << "" << -1 << QVariant(1) << Empty() << int(ErrNoCurrentRecord);
    QTest::newRow("current row at EOF") << 3 << "NNN" << -1 << Empty() << Empty() << int(ErrNoCurrentRecord);
    QTest::newRow("zero rows") << 3 << "" << 0 << QVariant(1) << Empty() << int(ErrBadArguments);
    QTest::newRow("rows below -1") << 3 << "" << -2 << QVariant(1) << Empty() << int(ErrBadArguments);
    QTest::newRow("unknown start code") << 3 << "" << -1 << QVariant(7) << Empty() << int(ErrBadArguments);
    QTest::newRow("bookmark past the end") << 3 << "" << -1 << QVariant(9.0) << Empty() << int(ErrBadArguments);
    QTest::newRow("start as text") << 3 << "" << -1 << QVariant(QStringLiteral("1")) << Empty() << int(ErrBadArguments);
    QTest::newRow("unknown field") << 3 << "" << -1 << QVariant(1) << QVariant(QStringLiteral("nope"))
                                   << int(ErrItemNotFound);
    QTest::newRow("field index out of range") << 3 << "" << -1 << QVariant(1) << QVariant(2) << int(ErrItemNotFound);
    QTest::newRow("empty field list") << 3 << "" << -1 << QVariant(1) << QVariant(QVariantList{})
                                      << int(ErrBadArguments);
    QTest::newRow("field as a date") << 3 << "" << -1 << QVariant(1) << QVariant(QDate(2024, 1, 1))
                                     << int(ErrBadArguments);
}

void tst_Recordset::getRowsErrors()
{
    QFETCH(int, rowsInTable);
    QFETCH(QString, before);
    QFETCH(int, rows);
    QFETCH(QVariant, start);
    QFETCH(QVariant, fields);
    QFETCH(int, error);
    Connection cn;
    Recordset rs;
    openItems(cn, rs, QStringLiteral("sqlite"), rowsInTable);
    for (int i = 0; i < before.size(); ++i)
        rs.MoveNext();
    const qint32 position = rs.AbsolutePosition();
    QCOMPARE(capture([&] { rs.GetRows(rows, start, fields); }).number, error);
    QCOMPARE(rs.AbsolutePosition(), position); // a failed call does not move
}

void tst_Recordset::getRowsResultIsACopy()
{
    Connection cn;
    Recordset rs;
    openItems(cn, rs, QStringLiteral("sqlite"));
    VariantMatrix first = rs.GetRows(-1, 1);
    first(1, 0) = QStringLiteral("changed by the host");
    first.redimPreserve(5);
    const VariantMatrix again = rs.GetRows(-1, 1);
    QCOMPARE(again.UBound(2), 2);
    QCOMPARE(again(1, 0), QVariant(QStringLiteral("a")));
    rs.MoveFirst();
    QCOMPARE(rs.Fields().Item(1).Value(), QVariant(QStringLiteral("a")));
}

void tst_Recordset::tableSourceAndDataMember_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("options");
    QTest::addColumn<QString>("dataMember");
    QTest::addColumn<int>("fieldCount");
    FOR_EACH_ENGINE("bare table name") << "nav_items" << -1 << "nav_items" << 2;
    FOR_EACH_ENGINE("table name, options 2") << " nav_items " << 2 << "nav_items" << 2;
    FOR_EACH_ENGINE("statement") << "SELECT name, id FROM nav_items" << 1 << "nav_items" << 2;
    FOR_EACH_ENGINE("expression first") << "SELECT id * 2 AS twice, name FROM nav_items" << 1 << "" << 2;
    FOR_EACH_ENGINE("joined, first table wins")
        << "SELECT b.name, a.id FROM nav_items a JOIN nav_other b ON b.id = a.id" << -1 << "nav_other" << 2;
}

void tst_Recordset::tableSourceAndDataMember()
{
    QFETCH(QString, engine);
    QFETCH(QString, source);
    QFETCH(int, options);
    QFETCH(QString, dataMember);
    QFETCH(int, fieldCount);
    Connection cn;
    Recordset items;
    openItems(cn, items, engine);
    DataTest::recreateTable(cn, QStringLiteral("nav_other"), QStringLiteral("id INTEGER, name TEXT"));
    cn.Execute(QStringLiteral("INSERT INTO nav_other VALUES (1, 'x'), (2, 'y'), (3, 'z')"));
    Recordset rs;
    rs.Open(source, &cn, -1, -1, options);
    QCOMPARE(rs.RecordCount(), 3);
    QCOMPARE(rs.Fields().Count(), fieldCount);
    QCOMPARE(rs.DataMember(), dataMember);
}

void tst_Recordset::unknownField_data()
{
    QTest::addColumn<QString>("engine");
    QTest::addColumn<QVariant>("item");
    QTest::addColumn<QString>("named"); // in the description
    FOR_EACH_ENGINE("name") << QVariant(QStringLiteral("price")) << "price";
    FOR_EACH_ENGINE("index") << QVariant(2) << "2";
    FOR_EACH_ENGINE("negative index") << QVariant(-1) << "-1";
}

void tst_Recordset::unknownField()
{
    QFETCH(QString, engine);
    QFETCH(QVariant, item);
    QFETCH(QString, named);
    Connection cn;
    Recordset rs;
    openItems(cn, rs, engine);
    const auto error = capture([&] { rs.Fields().Item(item); });
    QCOMPARE(error.number, int(ErrItemNotFound));
    QVERIFY2(error.description.contains(named), qPrintable(error.description));
}

void tst_Recordset::requeryReadsNewRows()
{
    Connection cn;
    Recordset rs;
    openItems(cn, rs, QStringLiteral("sqlite"));
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

void tst_Recordset::reportStyleOpen()
{
    // How a print form opens its data: properties first, then a text command.
    Connection cn;
    Recordset items;
    openItems(cn, items, QStringLiteral("sqlite"));
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
    QVERIFY(!rs.adoEOF());
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
    openItems(cn, rs, QStringLiteral("sqlite"));
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
