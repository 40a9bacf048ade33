#include "data/datatestsupport.h"
#include "regionaltestsupport.h"
#include "shared/conversions_p.h"

#include "demodatabase.h"
#include "orderlinestable.h"

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/strings.h>
#include <PanelKestrin/variant.h>
#include <PanelKestrin/variantmatrix.h>

#include <QtTest>

using namespace PanelKestrin;

// The demo's order-lines save on both engines, with day-first regional settings: loaded lines
// edited, one deleted, one added with the next free number and one with a typed number, dates
// as the grid hands them over (loaded dates, and edited ones as month-first text).
class tst_orderlinestable : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { regional.set(RegionalTest::uk()); }
    void saveEditedLines_data();
    void saveEditedLines();

private:
    RegionalTest::Scope regional;
    QTemporaryDir dir;
};

void tst_orderlinestable::saveEditedLines_data()
{
    QTest::addColumn<QString>("engine");
    QTest::newRow("SQLite") << "sqlite";
    QTest::newRow("PostgreSQL") << "postgres";
}

void tst_orderlinestable::saveEditedLines()
{
    QFETCH(QString, engine);
    Connection cn;
    OPEN_ENGINE(cn, engine, dir);
    if (engine == QLatin1String("postgres")) {
        // A schema of its own: the demo's tour fills the same tables on the same server.
        cn.Execute(QStringLiteral("DROP SCHEMA IF EXISTS tst_orderlines CASCADE"));
        cn.Execute(QStringLiteral("CREATE SCHEMA tst_orderlines"));
        cn.Execute(QStringLiteral("SET search_path TO tst_orderlines"));
    }
    DemoDatabase::ensureFilled(cn);
    DemoDatabase::ensureFilled(cn); // filled once: a second call finds the tables

    const int orderNo = 10003; // three lines
    Recordset rs;
    rs.Open(OrderLinesTable::selectStatement(orderNo), &cn);
    const VariantMatrix loaded = rs.GetRows();
    const QStringList loadedStatuses(loaded.count(2), QString());
    QCOMPARE(loaded.count(2), 3);
    const QSet<int> loadedLines = OrderLinesTable::loadedLineNumbers(loaded, loadedStatuses);

    // The grid after the user's work: line 1 edited, line 3 deleted, two lines added.
    using C = OrderLinesTable::Column;
    VariantMatrix data(0, C::ColumnCount - 1, 0, 3);
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < C::ColumnCount; ++c)
            data(c, r) = loaded(c, r);
    data(C::Quantity, 0) = 7.0;
    data(C::DeliveryDate, 0) = QStringLiteral("01/05/2026"); // 5 January, as an edited cell holds it
    const QList<QVariantList> added = {
        {0.0, QStringLiteral("IT00001"), 2.0, 0.0, 0.0, QStringLiteral("")},
        {99.0, QStringLiteral("IT00002"), 3.0, 1.25, 2.5, QStringLiteral("12/24/2026")},
    };
    for (int r = 0; r < added.size(); ++r)
        for (int c = 0; c < C::ColumnCount; ++c)
            data(c, r + 2) = added.at(r).at(c);
    const QStringList statuses = {QStringLiteral("E"), QString(), QStringLiteral("A"), QStringLiteral("A")};

    const OrderLinesTable::Changes changes = OrderLinesTable::changesFrom(data, statuses, loadedLines);
    QVERIFY2(changes.problem.isEmpty(), qPrintable(changes.problem));
    OrderLinesTable::write(cn, orderNo, changes);

    // Each line as "line|item|quantity|price|discount|delivery", "-" for none.
    const auto lineText = [](const QVariantList &cells) {
        QStringList texts;
        for (const QVariant &v : cells)
            texts << (isNull(v) ? QStringLiteral("-")
                      : v.metaType().id() == QMetaType::QDate ? v.toDate().toString(Qt::ISODate)
                      : Trim(pointText(v)));
        return texts.join(QLatin1Char('|'));
    };
    Recordset saved;
    saved.Open(QStringLiteral("SELECT line_no, item_code, quantity, unit_price, discount, delivery_date "
                              "FROM order_lines WHERE order_no = %1 ORDER BY line_no").arg(orderNo), &cn);
    QStringList rows;
    for (; !saved.adoEOF(); saved.MoveNext()) {
        QVariantList cells;
        for (int c = 0; c < saved.Fields().Count(); ++c)
            cells << saved.Fields().Item(c).Value();
        rows << lineText(cells);
    }
    const auto loadedLine = [&](int r, const QVariant &quantity, const QVariant &delivery) {
        return lineText({loaded(C::LineNo, r), loaded(C::ItemCode, r), quantity, loaded(C::UnitPrice, r),
                         loaded(C::Discount, r), delivery});
    };
    const QStringList expected = {
        loadedLine(0, 7, QDate(2026, 1, 5)),
        loadedLine(1, loaded(C::Quantity, 1), loaded(C::DeliveryDate, 1)),
        QStringLiteral("99|IT00002|3|1.25|2.5|2026-12-24"),
        QStringLiteral("100|IT00001|2|4.35|-|-"), // the number after the typed one, the item's list price
    };
    QCOMPARE(rows, expected);
}

QTEST_MAIN(tst_orderlinestable)
#include "tst_orderlinestable.moc"
