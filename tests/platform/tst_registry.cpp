#include <PanelKestrin/registry.h>

#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QtTest>

using namespace PanelKestrin;

static const QString International = QStringLiteral("\\Control Panel\\International");

class tst_registry : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void dateSeparatorDefaultsToLocale();
    void setReadDelete_data();
    void setReadDelete();
    void storeLayout();
};

void tst_registry::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true); // never the real user's store
    QVERIFY(RegistryStoreFileName().startsWith(
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)));
    QVERIFY(RegistryStoreFileName().contains(QLatin1String("qttest")));
}

void tst_registry::init()
{
    QFile::remove(RegistryStoreFileName());
}

void tst_registry::dateSeparatorDefaultsToLocale()
{
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString separator = GetRegValue(HKEY_CURRENT_USER, International, QStringLiteral("sDate"));
    QLocale::setDefault(saved);
    QCOMPARE(separator, QStringLiteral("."));
    QCOMPARE(localeDateSeparator(QLocale(QLocale::English, QLocale::UnitedStates)), QStringLiteral("/"));
    QCOMPARE(localeDateSeparator(QLocale(QLocale::Dutch, QLocale::Netherlands)), QStringLiteral("-"));
    // Only that value has a default.
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, International, QStringLiteral("sTime")), QString());
    QCOMPARE(GetRegValue(HKEY_LOCAL_MACHINE, International, QStringLiteral("sDate")), QString());
}

void tst_registry::setReadDelete_data()
{
    QTest::addColumn<QString>("writeKey");
    QTest::addColumn<QString>("writeName");
    QTest::addColumn<QString>("readKey");
    QTest::addColumn<QString>("readName");
    QTest::newRow("same spelling") << International << "sDate" << International << "sDate";
    QTest::newRow("names ignore case") << International << "sDate" << "\\CONTROL PANEL\\international" << "SDATE";
    QTest::newRow("leading backslash optional") << "Control Panel\\International" << "sDate" << International << "sdate";
}

void tst_registry::setReadDelete()
{
    QFETCH(QString, writeKey);
    QFETCH(QString, writeName);
    QFETCH(QString, readKey);
    QFETCH(QString, readName);
    const QString localeDefault = localeDateSeparator();
    const QString other = localeDefault == QLatin1String("-") ? QStringLiteral(".") : QStringLiteral("-");

    SetRegValue(HKEY_CURRENT_USER, writeKey, writeName, other);
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, readKey, readName), other);
    QCOMPARE(GetRegValue(HKEY_LOCAL_MACHINE, readKey, readName), QString()); // another root

    // A stored empty value is a value: it does not fall back to the locale.
    SetRegValue(HKEY_CURRENT_USER, readKey, readName, QString());
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, writeKey, writeName), QString());

    DeleteRegValue(HKEY_CURRENT_USER, readKey, readName);
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, writeKey, writeName), localeDefault);
}

void tst_registry::storeLayout()
{
    SetRegValue(HKEY_CURRENT_USER, International, QStringLiteral("sDate"), QStringLiteral("-"));
    SetRegValue(HKEY_LOCAL_MACHINE, QStringLiteral("\\Software\\Orders"), QString(), QStringLiteral("x"));
    const QSettings store(RegistryStoreFileName(), QSettings::IniFormat);
    QCOMPARE(store.value(QStringLiteral("HKEY_CURRENT_USER/Control Panel/International/sDate")).toString(),
             QStringLiteral("-"));
    QCOMPARE(store.value(QStringLiteral("HKEY_LOCAL_MACHINE/Software/Orders/@")).toString(),
             QStringLiteral("x"));
    QCOMPARE(GetRegValue(HKEY_LOCAL_MACHINE, QStringLiteral("\\Software\\Orders"), QString()),
             QStringLiteral("x"));
}

QTEST_MAIN(tst_registry)
#include "tst_registry.moc"
