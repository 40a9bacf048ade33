#include <PanelKestrin/registry.h>

#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QtTest>

using namespace PanelKestrin;

class tst_registry : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void setReadDelete();
};

void tst_registry::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true); // never the real user's store
    QVERIFY(RegistryStoreFileName().contains(QLatin1String("qttest")));
    QFile::remove(RegistryStoreFileName());
    // A locale whose short dates are not written with "/", the separator when nothing is known.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_registry::setReadDelete()
{
    // Key and value names ignore case, and the key's leading backslash is optional.
    const QString written = QStringLiteral("Control Panel\\International");
    const QString read = QStringLiteral("\\CONTROL PANEL\\international");
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, read, QStringLiteral("SDATE")), QStringLiteral(".")); // the locale's
    QCOMPARE(localeDateSeparator(QLocale::c()), QStringLiteral("/")); // "d MMM yyyy" has none
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, read, QStringLiteral("sTime")), QString()); // only sDate has one

    SetRegValue(HKEY_CURRENT_USER, written, QStringLiteral("sDate"), QStringLiteral("-"));
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, read, QStringLiteral("SDATE")), QStringLiteral("-"));
    QCOMPARE(GetRegValue(HKEY_LOCAL_MACHINE, read, QStringLiteral("sDate")), QString()); // another root, no default
    // The store is a plain settings file that a host (or a test) may also fill itself.
    const QSettings store(RegistryStoreFileName(), QSettings::IniFormat);
    QCOMPARE(store.value(QStringLiteral("HKEY_CURRENT_USER/Control Panel/International/sDate")).toString(),
             QStringLiteral("-"));

    // A stored empty value is a value: it does not fall back to the locale.
    SetRegValue(HKEY_CURRENT_USER, read, QStringLiteral("sdate"), QString());
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, written, QStringLiteral("sDate")), QString());

    DeleteRegValue(HKEY_CURRENT_USER, read, QStringLiteral("SDate"));
    QCOMPARE(GetRegValue(HKEY_CURRENT_USER, written, QStringLiteral("sDate")), QStringLiteral("."));
}

QTEST_MAIN(tst_registry)
#include "tst_registry.moc"
