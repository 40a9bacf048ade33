// The print query form's two filter dialects as functions of what the user chose: the report
// engine's selection formula and the data report's SQL WHERE text, order term and statement.
#include "printing/reportfilters_p.h"

#include <QtTest>

using namespace PanelKestrin;

class tst_reportfilters : public QObject
{
    Q_OBJECT

private slots:
    void bothDialects_data();
    void bothDialects();
    void tableFromTheReportTitle_data();
    void tableFromTheReportTitle();
    void statementPerDatabaseKind_data();
    void statementPerDatabaseKind();
    void sortFieldIsTheUpperCasedFieldTerm();
};

namespace {

constexpr int Date = 7;
constexpr int Numeric = 131;
constexpr int Text = 200;
constexpr int Integer = 3;

} // namespace

void tst_reportfilters::bothDialects_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("criteria"); // the chosen value; empty: no criteria
    QTest::addColumn<QString>("formula");
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("orderField");

    QTest::newRow("text: lone from is a prefix match with its leading blank")
        << Text << "abc" << "" << ""
        << " uppercase({T.F}) like uppercase('abc*')"
        << " or Upper(F) like upper('abc%')" << "F";
    QTest::newRow("text: from and to, and every value beginning with to")
        << Text << "a" << "c" << ""
        << "(uppercase({T.F}) >= uppercase('a') and uppercase({T.F}) <= uppercase('c')) or uppercase({T.F}) like uppercase('c*')"
        << "(Upper(F) >= Upper('a') and Upper(F) <= upper('c')) or Upper(F) like upper('c%')" << "F";
    QTest::newRow("text: lone to")
        << Text << "" << "m" << ""
        << "(uppercase({T.F}) <= uppercase('m')) or uppercase({T.F}) like uppercase('m*')"
        << "(Upper(F) <= upper('m')) or Upper(F) like upper('m%')" << "F";
    QTest::newRow("text: nothing given") << Text << "" << "" << "" << "" << "" << "F";
    QTest::newRow("integers compare as text too")
        << Integer << "9" << "" << ""
        << " uppercase({T.F}) like uppercase('9*')" << " or Upper(F) like upper('9%')" << "F";
    QTest::newRow("numeric: both bounds")
        << Numeric << "10" << "20" << "" << "{T.F} >= 10 and {T.F} <= 20" << "F >= 10 and F <= 20" << "F";
    QTest::newRow("numeric: from only") << Numeric << "10" << "" << "" << "{T.F} >= 10" << "F >= 10" << "F";
    QTest::newRow("numeric: to only") << Numeric << "" << "20" << "" << "{T.F} <= 20" << "F <= 20" << "F";
    QTest::newRow("date: always both, from the pickers' texts")
        << Date << "ignored" << "ignored" << ""
        << "{T.F} >= '12/25/2005' and {T.F} <= '12/31/2005'" << "F >= '12/25/2005' and F <= '12/31/2005'" << "F";
    QTest::newRow("criteria alone; its value becomes the order term")
        << Text << "" << "" << "C7" << "{T.C} = 'C7'" << "C = 'C7'" << "C7";
    QTest::newRow("criteria before the range")
        << Numeric << "1" << "" << "C7" << "{T.C} = 'C7' and {T.F} >= 1" << "C = 'C7' and F >= 1" << "C7";
    QTest::newRow("criteria and a lone from: the and-or kept")
        << Text << "x" << "" << "C7"
        << "{T.C} = 'C7' and  uppercase({T.F}) like uppercase('x*')"
        << "C = 'C7' and  or Upper(F) like upper('x%')" << "C7";
    QTest::newRow("values as typed: quotes are not doubled")
        << Text << "O'Brien" << "" << "it's"
        << "{T.C} = 'it's' and  uppercase({T.F}) like uppercase('O'Brien*')"
        << "C = 'it's' and  or Upper(F) like upper('O'Brien%')" << "it's";
    QTest::newRow("values as typed: statement text stays inside the filter")
        << Numeric << "1; DROP TABLE T" << "" << ""
        << "{T.F} >= 1; DROP TABLE T" << "F >= 1; DROP TABLE T" << "F";
}

void tst_reportfilters::bothDialects()
{
    QFETCH(int, type);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, criteria);
    ReportFilterInput input;
    input.field = QStringLiteral("F");
    input.fieldType = type;
    input.fromText = from;
    input.toText = to;
    input.fromDate = QStringLiteral("12/25/2005");
    input.toDate = QStringLiteral("12/31/2005");
    input.hasCriteria = !criteria.isEmpty();
    input.criteriaField = QStringLiteral("C");
    input.criteriaValue = criteria;

    QTEST(engineSelectionFormula(input, QStringLiteral("T")), "formula");
    const SqlReportFilter filter = sqlReportFilter(input);
    QTEST(filter.where, "where");
    QTEST(filter.orderField, "orderField");
}

void tst_reportfilters::tableFromTheReportTitle_data()
{
    QTest::addColumn<QString>("rpttitle");
    QTest::addColumn<QString>("table");
    QTest::newRow("after \\RPT") << "C:\\reports\\RPTorders" << "orders";
    QTest::newRow("any case") << "C:\\reports\\rptOrders" << "Orders";
    QTest::newRow("the first \\RPT") << "C:\\RPT\\RPTorders" << "\\RPTorders";
    QTest::newRow("forward slashes") << "/srv/reports/RPTcustomers" << "customers";
    QTest::newRow("none: from the fourth character") << "customers" << "tomers";
    QTest::newRow("none and short") << "ab" << "";
}

void tst_reportfilters::tableFromTheReportTitle()
{
    QFETCH(QString, rpttitle);
    QTEST(reportTableName(rpttitle), "table");
}

void tst_reportfilters::statementPerDatabaseKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("orderField");
    QTest::addColumn<QString>("statement");
    const QString q = QStringLiteral("select code + ' ' + name as prntxt from customers");
    QTest::newRow("1: ordered by a field other than the key")
        << 1 << "F >= 1" << "name" << q + " where F >= 1 order by name";
    QTest::newRow("1: the key orders itself") << 1 << "" << "code" << q;
    QTest::newRow("2: order term always") << 2 << "" << "code" << q + " order by code";
    QTest::newRow("3: + joins become ||")
        << 3 << "F >= 1" << "name" << "select code || ' ' || name as prntxt from customers where F >= 1 order by name";
    QTest::newRow("0: no order field, no order term")
        << 0 << "" << "" << "select code || ' ' || name as prntxt from customers";
}

void tst_reportfilters::statementPerDatabaseKind()
{
    QFETCH(int, kind);
    QFETCH(QString, where);
    QFETCH(QString, orderField);
    const QString selquery = QStringLiteral("select code + ' ' + name as prntxt from customers");
    QTEST(sqlReportStatement(selquery, {where, orderField}, kind, QStringLiteral("code")), "statement");
}

void tst_reportfilters::sortFieldIsTheUpperCasedFieldTerm()
{
    QCOMPARE(engineSortField(QStringLiteral("orders"), QStringLiteral("odate")), QStringLiteral("+{ORDERS.ODATE}"));
}

QTEST_GUILESS_MAIN(tst_reportfilters)
#include "tst_reportfilters.moc"
