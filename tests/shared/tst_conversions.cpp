#include <PanelKestrin/conversions.h>
#include <PanelKestrin/variant.h>
#include <PanelKestrin/variantmatrix.h>

#include "errornumber.h"
#include "regionaltestsupport.h"

#include <QtTest>

using namespace PanelKestrin;

class tst_conversions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void val_data();
    void val();
    void cstr_data();
    void cstr();
    void wholeNumbers_data();
    void wholeNumbers();
    void dates_data();
    void dates();
    void calls_data();
    void calls();

private:
    RegionalTest::Scope regional;
};

void tst_conversions::initTestCase()
{
    // A host whose locale writes a comma as the decimal point reads "." all the same; what is
    // written here is the classic month-first form of settings with ".", which the user's
    // regional settings change (tst_regionalsettings).
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    regional.set(RegionalTest::classic());
}

// Val reads the number a text starts with; IsNumeric and CDbl take the whole text or nothing.
void tst_conversions::val_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("numeric");
    QTest::newRow("blanks, tabs and line feeds anywhere") << " \t1615 198\nth Street" << 1615198.0 << false;
    QTest::newRow("blanks around") << " -12.75 " << -12.75 << true;
    QTest::newRow("stops at letters") << "12.5abc" << 12.5 << false;
    QTest::newRow("second point stops") << "1.2.3" << 1.2 << false;
    QTest::newRow("empty") << "" << 0.0 << false;
    QTest::newRow("sign alone") << "-" << 0.0 << false;
    QTest::newRow("leading point") << ".5" << 0.5 << true;
    QTest::newRow("exponent D") << "2d-2" << 0.02 << true;
    QTest::newRow("exponent without digits") << "7e+" << 7.0 << false;
    QTest::newRow("comma is no point") << "1,5" << 1.0 << false;
    QTest::newRow("hex 16-bit is signed") << "&HFFFF" << -1.0 << true;
    QTest::newRow("hex above 16 bits") << "&H10000" << 65536.0 << true;
    QTest::newRow("octal") << "&O17" << 15.0 << true;
}

void tst_conversions::val()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QFETCH(bool, numeric);
    QCOMPARE(Val(text), value);
    QCOMPARE(IsNumeric(text), numeric);
    QCOMPARE(errorNumberOf([&] { QCOMPARE(CDbl(text), value); }), numeric ? 0 : 13);
}

void tst_conversions::cstr_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Empty") << Empty() << "";
    QTest::newRow("True") << QVariant(true) << "True";
    QTest::newRow("integer") << QVariant(-42) << "-42";
    QTest::newRow("15 digits") << QVariant(0.1 + 0.2) << "0.3";
    QTest::newRow("third") << QVariant(1.0 / 3.0) << "0.333333333333333";
    QTest::newRow("largest plain") << QVariant(123456789012345.0) << "123456789012345";
    QTest::newRow("1E+15") << QVariant(1e15) << "1E+15";
    QTest::newRow("0.0001") << QVariant(0.0001) << "0.0001";
    QTest::newRow("1E-05") << QVariant(0.00001) << "1E-05";
    QTest::newRow("negative zero") << QVariant(-0.0) << "0";
    QTest::newRow("single") << QVariant(0.1f) << "0.1";
    QTest::newRow("date") << QVariant(QDate(2005, 1, 5)) << "01/05/2005";
    QTest::newRow("date-time at midnight") << QVariant(QDateTime(QDate(2005, 1, 5), QTime(0, 0))) << "01/05/2005";
    QTest::newRow("date-time") << QVariant(QDateTime(QDate(2005, 1, 5), QTime(13, 5, 9))) << "01/05/2005 13:05:09";
}

void tst_conversions::cstr()
{
    QFETCH(QVariant, value);
    QFETCH(QString, expected);
    QCOMPARE(CStr(value), expected);
}

void tst_conversions::wholeNumbers_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("expected");
    QTest::newRow("2.5 to even") << QVariant(2.5) << 2;
    QTest::newRow("3.5 to even") << QVariant(3.5) << 4;
    QTest::newRow("text with blanks rounds too") << QVariant(QStringLiteral("  2.5  ")) << 2;
    QTest::newRow("True") << QVariant(true) << -1;
    QTest::newRow("Empty") << Empty() << 0;
    QTest::newRow("date serial") << QVariant(QDate(1900, 1, 1)) << 2;
}

void tst_conversions::wholeNumbers()
{
    QFETCH(QVariant, value);
    QFETCH(int, expected);
    QCOMPARE(int(CInt(value)), expected);
    QCOMPARE(int(CLng(value)), expected);
}

void tst_conversions::dates_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QDate>("expected"); // invalid: not a date
    QTest::newRow("day first when month > 12") << QVariant(QStringLiteral("25/12/2005")) << QDate(2005, 12, 25);
    QTest::newRow("ambiguous reads month first") << QVariant(QStringLiteral("03/04/2005")) << QDate(2005, 3, 4);
    QTest::newRow("iso") << QVariant(QStringLiteral("2005-12-25")) << QDate(2005, 12, 25);
    QTest::newRow("dots, year 29") << QVariant(QStringLiteral("1.2.29")) << QDate(2029, 1, 2);
    QTest::newRow("dashes, year 30") << QVariant(QStringLiteral("1-2-30")) << QDate(1930, 1, 2);
    QTest::newRow("with time") << QVariant(QStringLiteral("12/25/2005 13:05:09")) << QDate(2005, 12, 25);
    QTest::newRow("with AM/PM time") << QVariant(QStringLiteral("12/25/2005 1:05 PM")) << QDate(2005, 12, 25);
    QTest::newRow("February 30") << QVariant(QStringLiteral("02/30/2005")) << QDate();
    QTest::newRow("two parts") << QVariant(QStringLiteral("12/25")) << QDate();
    QTest::newRow("bad time") << QVariant(QStringLiteral("12/25/2005 25:00")) << QDate();
    QTest::newRow("blank mask") << QVariant(QStringLiteral("__/__/____")) << QDate();
    QTest::newRow("empty text") << QVariant(QString()) << QDate();
    QTest::newRow("QDate") << QVariant(QDate(2001, 2, 3)) << QDate(2001, 2, 3);
}

void tst_conversions::dates()
{
    QFETCH(QVariant, value);
    QFETCH(QDate, expected);
    QCOMPARE(IsDate(value), expected.isValid());
    if (expected.isValid())
        QCOMPARE(CDate(value), expected);
    else
        QCOMPARE(errorNumberOf([&] { CDate(value); }), 13);
}

// Calls next to the run-time error they raise; a call raising none checks its own result.
void tst_conversions::calls_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("error");
    QTest::newRow("CStr Null") << Call([] { CStr(Null()); }) << 94;
    QTest::newRow("CStr database NULL") << Call([] { CStr(QVariant(QMetaType::fromType<QString>())); }) << 94;
    QTest::newRow("CStr matrix") << Call([] { CStr(QVariant::fromValue(VariantMatrix(0, 1, 0, 1))); }) << 13;
    QTest::newRow("Val Null") << Call([] { Val(Null()); }) << 94;
    QTest::newRow("Val overflow") << Call([] { Val("1e400"); }) << 6;
    QTest::newRow("CInt empty text") << Call([] { CInt(QString()); }) << 13;
    QTest::newRow("CInt 32767.5") << Call([] { CInt(32767.5); }) << 6;
    QTest::newRow("CLng takes 70000") << Call([] { QCOMPARE(CLng(70000), 70000); }) << 0;
    QTest::newRow("CLng 2^31") << Call([] { CLng(2147483648.0); }) << 6;
    QTest::newRow("CBool TRUE text") << Call([] { QVERIFY(CBool(QStringLiteral("TRUE"))); }) << 0;
    QTest::newRow("CBool false text") << Call([] { QVERIFY(!CBool(QStringLiteral(" false "))); }) << 0;
    QTest::newRow("CBool numeric text") << Call([] { QVERIFY(!CBool(QStringLiteral("0"))); }) << 0;
    QTest::newRow("CBool fraction") << Call([] { QVERIFY(CBool(-0.5)); }) << 0;
    QTest::newRow("CBool other text") << Call([] { CBool(QStringLiteral("yes")); }) << 13;
    QTest::newRow("CDate Null") << Call([] { CDate(Null()); }) << 94;
    QTest::newRow("CDate serial") << Call([] { QCOMPARE(CDate(2.75), QDate(1900, 1, 1)); }) << 0;
    QTest::newRow("CDate Empty") << Call([] { QCOMPARE(CDate(Empty()), QDate(1899, 12, 30)); }) << 0;
    QTest::newRow("CDate out of range") << Call([] { CDate(1e10); }) << 6;
    QTest::newRow("IsNumeric Null") << Call([] { QVERIFY(!IsNumeric(Null())); }) << 0;
    QTest::newRow("IsNumeric Empty") << Call([] { QVERIFY(IsNumeric(Empty())); }) << 0;
    QTest::newRow("IsNumeric too large") << Call([] { QVERIFY(!IsNumeric(QStringLiteral("1e400"))); }) << 0;
    QTest::newRow("IsDate number") << Call([] { QVERIFY(!IsDate(5)); }) << 0;
}

void tst_conversions::calls()
{
    QFETCH(Call, call);
    QFETCH(int, error);
    QCOMPARE(errorNumberOf(call), error);
}

QTEST_GUILESS_MAIN(tst_conversions)
#include "tst_conversions.moc"
