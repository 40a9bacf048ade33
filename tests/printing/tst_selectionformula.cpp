// The selection formula the report engine selects rows with: the formulas the print query
// form writes, over a small set of order rows, and malformed formulas with the position and
// expectation their error names.

#include "printing/selectionformula_p.h"
#include "regionaltestsupport.h"

#include <PanelKestrin/conversions.h>

#include <PanelKestrin/connection.h>
#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/variant.h>

#include <QDateTime>
#include <QTest>

using namespace PanelKestrin;

Q_DECLARE_METATYPE(RegionalTest::Settings)

namespace {

struct Order
{
    int id;
    QString cust;
    QString region;
    QVariant odate;
    QVariant amount;
    QVariant qty;
    QVariant note;
};

// Dates as a recordset hands them: a DATE column gives a QDate, a DATETIME a QDateTime.
const QList<Order> &orders()
{
    static const QList<Order> rows = {
        {1, QStringLiteral("Acme"), QStringLiteral("N"), QDate(2005, 12, 24), 50.0, 5, QStringLiteral("rush")},
        {2, QStringLiteral("abbott"), QStringLiteral("N"), QDate(2005, 12, 25), 100.0, 10, Null()},
        {3, QStringLiteral("Abc Ltd"), QStringLiteral("S"), QDateTime(QDate(2005, 12, 31), QTime(14, 0)), 250.5, 9,
         QStringLiteral("O'Brien")},
        {4, QStringLiteral("Baker"), QStringLiteral("N"), QDate(2006, 1, 1), 99.99, 100, QStringLiteral("")},
        {5, QStringLiteral("Cole"), QStringLiteral("S"), QDate(2005, 12, 28), Null(), 2, QStringLiteral("x")},
        {6, QStringLiteral("Cyan"), QStringLiteral("N"), Null(), 10.0, 1, QStringLiteral("call")},
        {7, QStringLiteral("delta"), QStringLiteral("S"), QDate(2005, 12, 26), 1000.0, 3, QStringLiteral("a*b")},
    };
    return rows;
}

QVariant lookup(const Order &row, const QString &table, const QString &field)
{
    if (table != QLatin1String("orders"))
        return QVariant();
    if (field == QLatin1String("cust"))
        return row.cust;
    if (field == QLatin1String("region"))
        return row.region;
    if (field == QLatin1String("odate"))
        return row.odate;
    if (field == QLatin1String("amount"))
        return row.amount;
    if (field == QLatin1String("qty"))
        return row.qty;
    if (field == QLatin1String("note"))
        return row.note;
    return QVariant();
}

// The ids of the rows the formula selects, as "2,3,5".
QString selectedIds(const SelectionFormula &formula)
{
    QStringList ids;
    for (const Order &row : orders()) {
        if (formula.matches([&row](const QString &table, const QString &field) { return lookup(row, table, field); }))
            ids.append(QString::number(row.id));
    }
    return ids.join(QLatin1Char(','));
}

} // namespace

class tst_SelectionFormula : public QObject
{
    Q_OBJECT

private slots:
    void selectsRows_data();
    void selectsRows();
    void malformedFormulaNamesPositionAndExpectation_data();
    void malformedFormulaNamesPositionAndExpectation();
    void fieldReferences_data();
    void fieldReferences();
    void missingFieldIsNamed();
    void selectsRowsOfARecordset_data();
    void selectsRowsOfARecordset();
    void dateRangeAsTheUserWritesDates_data();
    void dateRangeAsTheUserWritesDates();
};

void tst_SelectionFormula::selectsRows_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("ids");

    // What the print query form writes.
    QTest::newRow("date range as dates are written")
        << "{orders.odate} >= '12/25/2005' and {orders.odate} <= '12/31/2005'" << "2,3,5,7";
    QTest::newRow("date range in ISO form")
        << "{orders.odate} >= '2005-12-25' and {orders.odate} <= '2005-12-31'" << "2,3,5,7";
    QTest::newRow("date range day first")
        << "{orders.odate} >= '26/12/2005' and {orders.odate} <= '28/12/2005'" << "5,7";
    QTest::newRow("date range of one day keeps a time within it")
        << "{orders.odate} >= '12/31/2005' and {orders.odate} <= '12/31/2005'" << "3";
    QTest::newRow("numeric range") << "{orders.amount} >= 50 and {orders.amount} <= 100" << "1,2,4";
    QTest::newRow("numeric from only") << "{orders.amount} >= 250" << "3,7";
    QTest::newRow("numeric to only") << "{orders.amount} <= 10" << "6";
    QTest::newRow("text range with its prefix tail")
        << "(uppercase({orders.cust}) >= uppercase('a') and uppercase({orders.cust}) <= uppercase('c'))"
           " or uppercase({orders.cust}) like uppercase('c*')"
        << "1,2,3,4,5,6";
    QTest::newRow("text range: the tail takes values beginning with the to text")
        << "(uppercase({orders.cust}) >= uppercase('ab') and uppercase({orders.cust}) <= uppercase('abc'))"
           " or uppercase({orders.cust}) like uppercase('abc*')"
        << "2,3";
    QTest::newRow("lone from value with its leading blank")
        << " uppercase({orders.cust}) like uppercase('ab*')" << "2,3";
    QTest::newRow("criteria alone") << "{orders.region} = 'N'" << "1,2,4,6";
    QTest::newRow("criteria and numeric range") << "{orders.region} = 'S' and {orders.amount} >= 50" << "3,7";
    QTest::newRow("criteria and lone from value")
        << "{orders.region} = 'N' and  uppercase({orders.cust}) like uppercase('a*')" << "1,2";
    // "and" binds tighter than "or": the prefix tail selects rows of every criteria value.
    QTest::newRow("criteria and text range: the tail escapes the criteria")
        << "{orders.region} = 'S' and (uppercase({orders.cust}) >= uppercase('a') and uppercase({orders.cust}) "
           "<= uppercase('b')) or uppercase({orders.cust}) like uppercase('b*')"
        << "3,4";
    QTest::newRow("whole numbers through uppercase compare as text")
        << "uppercase({orders.qty}) >= uppercase('2') and uppercase({orders.qty}) <= uppercase('5')" << "1,5,7";

    // Comparison rules.
    QTest::newRow("text is case-sensitive") << "{orders.cust} = 'acme'" << "";
    QTest::newRow("like is case-sensitive") << "{orders.cust} like 'A*'" << "1,3";
    QTest::newRow("like matches the whole value") << "{orders.cust} like 'Ac'" << "";
    QTest::newRow("like: ? is one character") << "{orders.cust} like '?ya?'" << "6";
    QTest::newRow("like: * matches a star too") << "{orders.note} like 'a*b'" << "7";
    QTest::newRow("like on a date reads its written text") << "{orders.odate} like '12/2?/2005'" << "1,2,5,7";
    QTest::newRow("number against numeric text") << "{orders.amount} = '100.00'" << "2";
    QTest::newRow("number against other text compares texts") << "{orders.qty} < 'a'" << "1,2,3,4,5,6,7";
    QTest::newRow("signed and decimal literals") << "{orders.amount} > -1 and {orders.amount} < 11." << "6";
    QTest::newRow("date literal") << "{orders.odate} = #12/25/2005#" << "2";
    QTest::newRow("date literal with a time") << "{orders.odate} > #2005-12-31 10:00#" << "3,4";
    QTest::newRow("date against text that is no date compares texts") << "{orders.odate} >= 'x'" << "";
    QTest::newRow("empty text") << "{orders.note} = ''" << "4";
    QTest::newRow("Null makes the comparison false") << "{orders.note} <> 'x'" << "1,3,4,6,7";
    QTest::newRow("not of a Null comparison is true") << "not ({orders.note} = 'x')" << "1,2,3,4,6,7";
    QTest::newRow("uppercase of Null is Null") << "uppercase({orders.note}) like '*'" << "1,3,4,5,6,7";
    QTest::newRow("doubled quote is one quote") << "{orders.note} = 'O''Brien'" << "3";
    QTest::newRow("keywords in any case")
        << "{orders.qty} > 5 AND NOT {orders.qty} = 100 Or UpperCase({orders.cust}) LIKE 'COLE'" << "2,3,5";
    QTest::newRow("nested parentheses and not") << "not (not ({orders.qty} >= 9))" << "2,3,4";
    QTest::newRow("line breaks and tabs between tokens") << "{orders.qty}\t<=\r\n2" << "5,6";
    QTest::newRow("blank formula selects every row") << "   " << "1,2,3,4,5,6,7";
}

void tst_SelectionFormula::selectsRows()
{
    QFETCH(QString, formula);
    QFETCH(QString, ids);
    QCOMPARE(selectedIds(SelectionFormula::parse(formula)), ids);
}

void tst_SelectionFormula::malformedFormulaNamesPositionAndExpectation_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("error");

    QTest::newRow("unclosed brace") << "{orders.cust = 'x'"
                                    << "14: expected '}' closing the field reference begun at position 1, found '='";
    QTest::newRow("unclosed brace at the end")
        << "{orders.cust" << "13: expected '}' closing the field reference begun at position 1, found the end of the formula";
    QTest::newRow("field without table") << "{cust} = 'x'" << "6: expected '.' between the table and field names, found '}'";
    QTest::newRow("empty field name") << "{orders.} = 'x'" << "9: expected a field name after '.', found '}'";
    QTest::newRow("unclosed quote") << " uppercase({orders.cust}) like uppercase('AB*)"
                                    << "47: expected a quote closing the text begun at position 42, found the end of the formula";
    QTest::newRow("lone quote in a value as the form inserts it")
        << " uppercase({orders.note}) like uppercase('O'Brien*')"
        << "45: expected ')' closing the parenthesis at position 41, found 'Brien'";
    QTest::newRow("missing operand at the end") << "{orders.amount} >= " << "20: expected a value, found the end of the formula";
    QTest::newRow("missing operand before and")
        << "{orders.amount} >= and {orders.amount} <= 5" << "20: expected a value, found 'and'";
    QTest::newRow("missing comparison") << "{orders.cust}"
                                        << "14: expected a comparison operator or 'like', found the end of the formula";
    QTest::newRow("stray parenthesis") << "{orders.amount} >= 5 )"
                                       << "22: expected 'and', 'or' or the end of the formula, found ')'";
    QTest::newRow("trailing garbage") << "{orders.qty} = 5 xyz" << "18: expected 'and', 'or' or the end of the formula, found 'xyz'";
    QTest::newRow("chained comparison") << "{orders.qty} = 5 = 6"
                                        << "18: expected 'and', 'or' or the end of the formula, found '='";
    QTest::newRow("unknown function") << "lowercase({orders.cust}) = 'x'"
                                      << "1: unknown function 'lowercase'; the one function is uppercase()";
    QTest::newRow("empty parentheses") << "()" << "2: expected a condition, found ')'";
    QTest::newRow("uppercase of nothing") << "uppercase() = 'x'" << "11: expected a value, found ')'";
    QTest::newRow("uppercase without parenthesis") << "uppercase {orders.cust} = 'x'"
                                                   << "11: expected '(' after uppercase, found '{orders.cust}'";
    QTest::newRow("unclosed parenthesis")
        << "({orders.qty} = 5" << "18: expected 'and', 'or' or ')' closing the parenthesis at position 1, found the end of the formula";
    QTest::newRow("double quotes") << "{orders.cust} = \"x\"" << "17: expected a value, found '\"'";
    QTest::newRow("impossible date literal") << "{orders.odate} = #13/13/2005#"
                                             << "18: expected a date between the '#' signs, found '#13/13/2005#'";
    QTest::newRow("and without a right side") << "{orders.qty} = 5 and" << "21: expected a value, found the end of the formula";
    QTest::newRow("nesting too deep") << QStringLiteral("not ").repeated(150) + QStringLiteral("{orders.qty} = 1")
                                      << "405: conditions and values nest more than 100 deep here";
}

void tst_SelectionFormula::malformedFormulaNamesPositionAndExpectation()
{
    QFETCH(QString, formula);
    QFETCH(QString, error);
    try {
        SelectionFormula::parse(formula);
        QFAIL("the formula was accepted");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), int(ErrInvalidProcedureCall));
        QCOMPARE(e.Description(), QStringLiteral("Malformed selection formula at position ") + error + QLatin1Char('.'));
    }
}

void tst_SelectionFormula::fieldReferences_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("each once, in order of first use")
        << "{orders.region} = 'S' and (uppercase({orders.cust}) >= uppercase('a') and uppercase({orders.cust}) "
           "<= uppercase('b')) or uppercase({orders.cust}) like uppercase('b*')"
        << QStringList{"{orders.region}", "{orders.cust}"};
    QTest::newRow("blanks around names dropped") << "{ orders . odate } = #1/2/2005#" << QStringList{"{orders.odate}"};
    QTest::newRow("names with blanks") << "{order lines.unit price} > 0" << QStringList{"{order lines.unit price}"};
    QTest::newRow("empty formula") << "" << QStringList();
}

void tst_SelectionFormula::fieldReferences()
{
    QFETCH(QString, formula);
    QFETCH(QStringList, fields);
    QStringList references;
    for (const SelectionFormula::FieldReference &reference : SelectionFormula::parse(formula).fieldReferences())
        references.append(reference.text());
    QCOMPARE(references, fields);
}

// A field the data lacks is named, before any row is read and when a row is; even when the
// condition that refers to it would not be needed for the row.
void tst_SelectionFormula::missingFieldIsNamed()
{
    const SelectionFormula formula = SelectionFormula::parse("{orders.qty} > 0 or {orders.custname} = 'x'");
    const QString description = QStringLiteral(
        "The selection formula refers to the field {orders.custname}, which the report's data does not have.");
    try {
        formula.checkFields([](const QString &table, const QString &field) {
            return lookup(orders().first(), table, field).isValid();
        });
        QFAIL("checkFields accepted a missing field");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), int(ErrItemNotFound));
        QCOMPARE(e.Description(), description);
    }
    try {
        selectedIds(formula);
        QFAIL("matches accepted a missing field");
    } catch (const RuntimeError &e) {
        QCOMPARE(e.Number(), int(ErrItemNotFound));
        QCOMPARE(e.Description(), description);
    }
}

// The values a real recordset delivers: DATE and DATETIME columns, NUMERIC, INTEGER, NULL.
void tst_SelectionFormula::selectsRowsOfARecordset_data()
{
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("ids");

    QTest::newRow("DATE range") << "{orders.odate} >= '12/25/2005' and {orders.odate} <= '12/31/2005'" << "2,3";
    QTest::newRow("DATETIME range keeps the last day's hours")
        << "{orders.stamp} >= '12/25/2005' and {orders.stamp} <= '12/31/2005'" << "2,3";
    QTest::newRow("NUMERIC range") << "{orders.amount} >= 50 and {orders.amount} <= 99.99" << "1,3";
    QTest::newRow("INTEGER through uppercase compares as text: 10 and 100 lie between 1 and 2")
        << "(uppercase({orders.qty}) >= uppercase('1') and uppercase({orders.qty}) <= uppercase('2'))"
           " or uppercase({orders.qty}) like uppercase('2*')"
        << "1,2,3,4";
    QTest::newRow("NULL is never selected by a comparison") << "{orders.amount} <> 0" << "1,2,3";
}

void tst_SelectionFormula::selectsRowsOfARecordset()
{
    QFETCH(QString, formula);
    QFETCH(QString, ids);
    Connection cn;
    cn.Open(QStringLiteral("Provider=SQLite;Data Source=:memory:"));
    cn.Execute(QStringLiteral("CREATE TABLE orders (id INTEGER PRIMARY KEY, odate DATE, stamp DATETIME, "
                              "amount NUMERIC(10,2), qty INTEGER)"));
    cn.Execute(QStringLiteral("INSERT INTO orders VALUES "
                              "(1, '2005-12-24', '2005-12-24 23:59:00', 50, 10), "
                              "(2, '2005-12-25', '2005-12-25 00:00:00', 100.5, 2), "
                              "(3, '2005-12-31', '2005-12-31 14:00:00', 99.99, 100), "
                              "(4, '2006-01-01', '2006-01-01 00:00:00', NULL, 25)"));
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM orders ORDER BY id"), &cn);
    const SelectionFormula selection = SelectionFormula::parse(formula);
    QStringList selected;
    for (; !rs.adoEOF(); rs.MoveNext()) {
        if (selection.matches([&rs](const QString &, const QString &field) { return rs.Fields().Item(field).Value(); }))
            selected.append(rs.Fields().Item(QStringLiteral("id")).Value().toString());
    }
    QCOMPARE(selected.join(QLatin1Char(',')), ids);
}

// The print query form writes a picked date range with CStr, in the user's short-date pattern;
// the engine must read those texts back in the same day/month order.
void tst_SelectionFormula::dateRangeAsTheUserWritesDates_data()
{
    QTest::addColumn<RegionalTest::Settings>("settings");
    QTest::newRow("classic") << RegionalTest::classic();
    QTest::newRow("US") << RegionalTest::us();
    QTest::newRow("UK") << RegionalTest::uk();
    QTest::newRow("German") << RegionalTest::german();
}

void tst_SelectionFormula::dateRangeAsTheUserWritesDates()
{
    QFETCH(RegionalTest::Settings, settings);
    RegionalTest::Scope scope;
    scope.set(settings);
    const QDate from(2005, 2, 3);
    const QDate to(2005, 3, 10);
    const SelectionFormula range = SelectionFormula::parse(QStringLiteral("{orders.odate} >= '") + CStr(from)
                                                           + QStringLiteral("' and {orders.odate} <= '") + CStr(to)
                                                           + QLatin1Char('\''));
    QStringList selected;
    for (const QDate &d : {from.addDays(-1), from, QDate(2005, 3, 2), to, to.addDays(1)}) {
        if (range.matches([&d](const QString &, const QString &) { return QVariant(d); }))
            selected.append(d.toString(Qt::ISODate));
    }
    QCOMPARE(selected, (QStringList{"2005-02-03", "2005-03-02", "2005-03-10"}));
}

QTEST_GUILESS_MAIN(tst_SelectionFormula)
#include "tst_selectionformula.moc"
