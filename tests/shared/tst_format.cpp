#include <PanelKestrin/format.h>
#include <PanelKestrin/variant.h>
#include <PanelKestrin/variantmatrix.h>

#include "errornumber.h"
#include "regionaltestsupport.h"

#include <QtTest>

using namespace PanelKestrin;

class tst_format : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void format_data();
    void format();
    void typeMismatch();

private:
    RegionalTest::Scope regional;
};

void tst_format::initTestCase()
{
    // Names and separators must not follow the user's language. A pattern is written as it
    // stands; only dates typed as text and the general form follow the regional settings, here
    // the classic month-first ones with "." (tst_regionalsettings covers the others).
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    regional.set(RegionalTest::classic());
}

void tst_format::format_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("expected");
    const QVariant march7 = QDate(2005, 3, 7);
    const QVariant afternoon = QDateTime(QDate(2005, 3, 7), QTime(14, 5, 9));
    QTest::newRow("mm/dd/yyyy") << march7 << "mm/dd/yyyy" << "03/07/2005";
    QTest::newRow("dd.MM.yyyy") << march7 << "dd.MM.yyyy" << "07.03.2005";
    QTest::newRow("upper-case tokens") << march7 << "DD/MM/YYYY" << "07/03/2005";
    QTest::newRow("short tokens") << march7 << "d/m/yy" << "7/3/05";
    QTest::newRow("names") << march7 << "dddd, mmmm d (ddd mmm)" << "Monday, March 7 (Mon Mar)";
    QTest::newRow("mm after hh is minutes") << afternoon << "hh:mm:ss" << "14:05:09";
    QTest::newRow("nn minutes") << afternoon << "yyyy-mm-dd h:nn" << "2005-03-07 14:05";
    QTest::newRow("12-hour") << afternoon << "h:nn AM/PM" << "2:05 PM";
    QTest::newRow("quoted and escaped literals") << march7 << "\"day\" d \\d" << "day 7 d";
    QTest::newRow("day-first text") << QVariant(QStringLiteral("25/12/2005")) << "mm/dd/yyyy" << "12/25/2005";
    QTest::newRow("serial under a date pattern") << QVariant(38000.0) << "mm/dd/yyyy" << "01/14/2004";
    QTest::newRow("date, no pattern") << afternoon << "" << "03/07/2005 14:05:09";
    // What is no date is written as it stands.
    QTest::newRow("plain text") << QVariant(QStringLiteral("abc")) << "mm/dd/yyyy" << "abc";
    QTest::newRow("impossible date") << QVariant(QStringLiteral("30/02/2005")) << "mm/dd/yyyy" << "30/02/2005";
    QTest::newRow("number text under a date pattern") << QVariant(QStringLiteral("5")) << "mm/dd/yyyy" << "5";
    QTest::newRow("Null") << Null() << "mm/dd/yyyy" << "";

    QTest::newRow("grouping") << QVariant(1234567.891) << "#,##0.00" << "1,234,567.89";
    QTest::newRow("optional digits") << QVariant(0.5) << "#.##" << ".5";
    QTest::newRow("point kept without decimals") << QVariant(3) << "#.##" << "3.";
    QTest::newRow("leading zeros") << QVariant(7) << "000" << "007";
    QTest::newRow("half away from zero") << QVariant(-2.5) << "0" << "-3";
    QTest::newRow("tiny negative is zero") << QVariant(-0.001) << "0.00" << "0.00";
    QTest::newRow("percent") << QVariant(0.126) << "0.0%" << "12.6%";
    QTest::newRow("prefix and suffix") << QVariant(-5) << "$0 \"net\"" << "-$5 net";
    QTest::newRow("negative section") << QVariant(-5) << "0;(0)" << "(5)";
    QTest::newRow("zero section") << QVariant(0) << "0.00;-0.00;\"nil\"" << "nil";
    QTest::newRow("scientific") << QVariant(0.000123) << "0.00E+00" << "1.23E-04";
    QTest::newRow("scientific carry") << QVariant(9.996) << "0.00E+00" << "1.00E+01";
    QTest::newRow("numeric text") << QVariant(QStringLiteral(" 12.5 ")) << "0.00" << "12.50";
    QTest::newRow("number, no pattern") << QVariant(1e20) << "" << "1E+20";
}

void tst_format::format()
{
    QFETCH(QVariant, value);
    QFETCH(QString, pattern);
    QFETCH(QString, expected);
    QCOMPARE(Format(value, pattern), expected);
}

void tst_format::typeMismatch()
{
    const QVariant matrix = QVariant::fromValue(VariantMatrix(0, 0, 0, 0));
    QCOMPARE(errorNumberOf([&] { Format(matrix, QStringLiteral("0")); }), 13);
}

QTEST_GUILESS_MAIN(tst_format)
#include "tst_format.moc"
