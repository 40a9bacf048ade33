#include <PanelKestrin/conversions.h>
#include <PanelKestrin/format.h>
#include <PanelKestrin/registry.h>

#include "regionaltestsupport.h"

#include <QtTest>

using namespace PanelKestrin;

Q_DECLARE_METATYPE(RegionalTest::Settings)

// The classic conversions under the user's regional settings: what is written for people
// follows them, what programs exchange does not.
class tst_regionalsettings : public QObject
{
    Q_OBJECT

private slots:
    void conversions_data();
    void conversions();
    void localeDefaults_data();
    void localeDefaults();

private:
    RegionalTest::Scope scope;
};

void tst_regionalsettings::conversions_data()
{
    QTest::addColumn<RegionalTest::Settings>("settings");
    QTest::addColumn<QString>("date");     // CStr of 5 December 2005
    QTest::addColumn<QString>("dateTime"); // the same at 14:30:05
    QTest::addColumn<QString>("number");   // CStr(-1234.5)
    QTest::addColumn<QDate>("typed");      // CDate("05/12/2005")

    QTest::newRow("locale C") << RegionalTest::classic() << "12/05/2005" << "12/05/2005 14:30:05" << "-1234.5"
                              << QDate(2005, 5, 12);
    QTest::newRow("US") << RegionalTest::us() << "12/5/2005" << "12/5/2005 14:30:05" << "-1234.5" << QDate(2005, 5, 12);
    QTest::newRow("UK") << RegionalTest::uk() << "05/12/2005" << "05/12/2005 14:30:05" << "-1234.5"
                        << QDate(2005, 12, 5);
    QTest::newRow("German") << RegionalTest::german() << "05.12.2005" << "05.12.2005 14:30:05" << "-1234,5"
                            << QDate(2005, 12, 5);
    QTest::newRow("month named")
        << RegionalTest::Settings{QStringLiteral("dd-MMM-yyyy"), QStringLiteral("."), QStringLiteral("-")}
        << "05-Dec-2005" << "05-Dec-2005 14:30:05" << "-1234.5" << QDate(2005, 12, 5);
    // Blanks after the separators and a closing ".", as several locales write short dates.
    QTest::newRow("Slovak") << RegionalTest::Settings{QStringLiteral("d. M. yyyy"), QStringLiteral(","), QStringLiteral(".")}
                            << "5. 12. 2005" << "5. 12. 2005 14:30:05" << "-1234,5" << QDate(2005, 12, 5);
    QTest::newRow("Hungarian")
        << RegionalTest::Settings{QStringLiteral("yyyy. MM. dd."), QStringLiteral(","), QStringLiteral(".")}
        << "2005. 12. 05." << "2005. 12. 05. 14:30:05" << "-1234,5" << QDate(2005, 5, 12);
}

void tst_regionalsettings::conversions()
{
    QFETCH(RegionalTest::Settings, settings);
    QFETCH(QString, date);
    QFETCH(QString, dateTime);
    QFETCH(QString, number);
    QFETCH(QDate, typed);
    scope.set(settings);

    const QDate december5(2005, 12, 5);
    QCOMPARE(CStr(december5), date);
    QCOMPARE(CStr(QDateTime(december5, QTime(14, 30, 5))), dateTime);
    QCOMPARE(CStr(-1234.5), number);
    QCOMPARE(Format(-1234.5), number); // no pattern: the general form
    QCOMPARE(CStr(1234), QStringLiteral("1234"));

    // Typed dates: the user's day/month order first, the other one when that gives no month.
    QCOMPARE(CDate(QStringLiteral("05/12/2005")), typed);
    QCOMPARE(CDate(QStringLiteral("13/12/2005")), QDate(2005, 12, 13));
    QCOMPARE(CDate(QStringLiteral("12/13/2005")), QDate(2005, 12, 13));
    QCOMPARE(CDate(QStringLiteral("2005-12-05")), december5);
    QVERIFY(!IsDate(QStringLiteral("31/02/2005")));
    // What is shown reads back to the same date, also as the grid editor's fixed-form value.
    for (const QDate &d : {december5, QDate(2005, 1, 31), QDate(1999, 2, 3)}) {
        QVERIFY2(IsDate(CStr(d)), qPrintable(CStr(d)));
        QCOMPARE(CDate(CStr(d)), d);
        QCOMPARE(Format(CStr(d), QStringLiteral("mm/dd/yyyy")), d.toString(QStringLiteral("MM/dd/yyyy")));
    }

    // Fixed whatever the settings: Val reads ".", patterns write what they say.
    QCOMPARE(Val(QStringLiteral("1,5")), 1.0);
    QCOMPARE(Val(QStringLiteral("1.5")), 1.5);
    QCOMPARE(Val(QVariant(1.5)), 1.5);
    QCOMPARE(Format(1.5, QStringLiteral("0.00")), QStringLiteral("1.50"));
    QCOMPARE(Format(december5, QStringLiteral("mm/dd/yyyy")), QStringLiteral("12/05/2005"));
}

// With nothing stored, the settings come from the user's locale, years in four digits.
void tst_regionalsettings::localeDefaults_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("shortDate");
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("date"); // CStr of 5 December 2005

    QTest::newRow("C") << QLocale::c() << "MM/dd/yyyy" << "." << "/" << "12/05/2005";
    QTest::newRow("en_US") << QLocale(QLocale::English, QLocale::UnitedStates) << "M/d/yyyy" << "." << "/" << "12/5/2005";
    QTest::newRow("en_GB") << QLocale(QLocale::English, QLocale::UnitedKingdom) << "dd/MM/yyyy" << "." << "/"
                           << "05/12/2005";
    QTest::newRow("de_DE") << QLocale(QLocale::German, QLocale::Germany) << "dd.MM.yyyy" << "," << "." << "05.12.2005";
}

void tst_regionalsettings::localeDefaults()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, shortDate);
    QFETCH(QString, decimal);
    QFETCH(QString, separator);
    QFETCH(QString, date);
    const QLocale saved;
    QLocale::setDefault(locale);
    scope.clear();
    const QString key = QStringLiteral("\\Control Panel\\International");
    const QString readShortDate = GetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("sShortDate"));
    const QString readDecimal = GetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("sDecimal"));
    const QString readSeparator = GetRegValue(HKEY_CURRENT_USER, key, QStringLiteral("sDate"));
    const QString written = CStr(QDate(2005, 12, 5));
    QLocale::setDefault(saved);
    scope.clear(); // the next test reads its settings afresh
    QCOMPARE(readShortDate, shortDate);
    QCOMPARE(readDecimal, decimal);
    QCOMPARE(readSeparator, separator);
    QCOMPARE(written, date);
}

QTEST_MAIN(tst_regionalsettings)
#include "tst_regionalsettings.moc"
