// The component entry points as a container uses them: found in the library file by their
// unadorned names, registering and unregistering the classes in the per-user store, and class
// objects that create the controls while the library counts what is alive.

#include <PanelKestrin/componententry.h>
#include <PanelKestrin/dispatch.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/typelibrary.h>

#include "typelib/classobject_p.h"

#include <QLibrary>
#include <QSettings>
#include <QtTest>

using namespace PanelKestrin;

namespace {

constexpr HRESULT S_OK_ = 0;
constexpr HRESULT S_FALSE_ = 1;

const GUID iidClassFactory = toGuid(QUuid(QStringLiteral("{00000001-0000-0000-C000-000000000046}")));
const GUID iidDispatch = toGuid(QUuid(QStringLiteral("{00020400-0000-0000-C000-000000000046}")));

const QString classes = QStringLiteral("Software\\Classes\\");

// Every value of the store, by its full key.
QMap<QString, QVariant> storeContents()
{
    QSettings store(RegistryStoreFileName(), QSettings::IniFormat);
    QMap<QString, QVariant> contents;
    for (const QString &key : store.allKeys())
        contents.insert(key, store.value(key));
    return contents;
}

QString braced(const QUuid &id)
{
    return id.toString(QUuid::WithBraces).toUpper();
}

} // namespace

class tst_ComponentEntry : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true); // never the real user's store
        QFile::remove(RegistryStoreFileName());
    }

    // A container looks the four entry points up by name in the library file it registered.
    void exportedWithCLinkage()
    {
        DllRegisterServer();
        const QString file = GetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("CLSID\\%1\\InprocServer32")
                                             .arg(braced(PublishedTypeLibrary().classes.first().guid)), QString());
        DllUnregisterServer();
        QVERIFY2(QFileInfo::exists(file), qPrintable(file));
        QLibrary library(file);
        QVERIFY(library.load());
        for (const char *name : {"DllRegisterServer", "DllUnregisterServer", "DllGetClassObject", "DllCanUnloadNow"})
            QVERIFY2(library.resolve(name), name);
        QCOMPARE(reinterpret_cast<void *>(library.resolve("DllGetClassObject")), reinterpret_cast<void *>(&DllGetClassObject));
    }

    // The registered file carries the type library's file version (5.02.0011 as 5.2.11).
    void fileCarriesTheLibraryFileVersion()
    {
        QStringList parts;
        for (const QString &part : PublishedTypeLibrary().fileVersion.split(QLatin1Char('.')))
            parts << QString::number(part.toInt());
        QCOMPARE(parts.join(QLatin1Char('.')), QStringLiteral("5.2.11"));
        QCOMPARE(DllRegisterServer(), S_OK_);
        const QString file = GetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("CLSID\\%1\\InprocServer32")
                                             .arg(braced(PublishedTypeLibrary().classes.first().guid)), QString());
        DllUnregisterServer();
        const QString real = QFileInfo(file).canonicalFilePath();
        QVERIFY2(real.endsWith(QStringLiteral(".so.") + parts.join(QLatin1Char('.'))), qPrintable(file + QStringLiteral(" -> ") + real));
    }

    void registrationRoundTrip()
    {
        SetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("Other.Control\\CLSID"), QString(), QStringLiteral("{kept}"));
        const QMap<QString, QVariant> before = storeContents();

        QCOMPARE(DllRegisterServer(), S_OK_);
        QCOMPARE(DllRegisterServer(), S_OK_); // registering again changes nothing
        const TypeLibrary &lib = PublishedTypeLibrary();
        for (const TypeLibClass &c : lib.classes) {
            const QString progId = QStringLiteral("PanelKestrin.") + c.name;
            const QString clsid = GetRegValue(HKEY_CURRENT_USER, classes + progId + QStringLiteral("\\CLSID"), QString());
            QCOMPARE(clsid, braced(c.guid));
            QCOMPARE(GetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("CLSID\\") + clsid + QStringLiteral("\\ProgID"), QString()), progId);
            QCOMPARE(GetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("CLSID\\") + clsid + QStringLiteral("\\TypeLib"), QString()), braced(lib.guid));
            QCOMPARE(GetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("Interface\\") + braced(c.eventInterface.guid), QString()),
                     c.eventInterface.name);
        }
        QCOMPARE(GetRegValue(HKEY_CURRENT_USER, classes + QStringLiteral("TypeLib\\%1\\7.0").arg(braced(lib.guid)), QString()),
                 QStringLiteral("PanelKestrin"));

        QCOMPARE(DllUnregisterServer(), S_OK_);
        QCOMPARE(storeContents(), before);
    }

    // An installer must learn that nothing was recorded: here the store's folder is a file.
    void storeThatCannotBeWritten()
    {
        QTemporaryDir home;
        const QByteArray realHome = qgetenv("HOME");
        qputenv("HOME", home.path().toLocal8Bit());
        const QString blocked = QFileInfo(RegistryStoreFileName()).absolutePath();
        QVERIFY(QDir().mkpath(QFileInfo(blocked).absolutePath()));
        QFile file(blocked);
        const bool blockedMade = blocked.startsWith(home.path()) && file.open(QIODevice::WriteOnly);
        const HRESULT registered = DllRegisterServer();
        qputenv("HOME", realHome);
        QVERIFY(blockedMade);
        QCOMPARE(registered, HRESULT(0x80040201)); // the classes could not be registered
    }

    void classObjectCreatesEachControl_data()
    {
        QTest::addColumn<QUuid>("clsid");
        QTest::addColumn<QUuid>("iid");
        for (const TypeLibClass &c : PublishedTypeLibrary().classes)
            QTest::newRow(qPrintable(c.name)) << c.guid << c.defaultInterface.guid;
    }

    void classObjectCreatesEachControl()
    {
        QFETCH(QUuid, clsid);
        QFETCH(QUuid, iid);
        QCOMPARE(DllCanUnloadNow(), S_OK_);
        void *object = nullptr;
        QCOMPARE(DllGetClassObject(toGuid(clsid), iidClassFactory, &object), S_OK_);
        auto *factory = static_cast<IClassFactory *>(object);
        QCOMPARE(DllCanUnloadNow(), S_FALSE_);

        void *created = nullptr;
        QCOMPARE(factory->CreateInstance(nullptr, toGuid(iid), &created), S_OK_);
        auto *control = static_cast<QWidget *>(created);
        QCOMPARE(Dispatch::ClassOf(control)->name, QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(factory->Release(), ULONG(0));
        QCOMPARE(DllCanUnloadNow(), S_FALSE_); // the control still uses the library
        delete control;
        QCOMPARE(DllCanUnloadNow(), S_OK_);
    }

    void refusals()
    {
        void *object = reinterpret_cast<void *>(1);
        QCOMPARE(DllGetClassObject(toGuid(QUuid::createUuid()), iidClassFactory, &object), HRESULT(0x80040111));
        QCOMPARE(object, nullptr);
        const GUID trn = toGuid(PublishedTypeLibrary().findClass(QStringLiteral("TrnControl"))->guid);
        QCOMPARE(DllGetClassObject(trn, iidDispatch, &object), HRESULT(0x80004002)); // a class object is no dispatch
        QCOMPARE(DllGetClassObject(trn, iidClassFactory, nullptr), HRESULT(0x80004003));
        QCOMPARE(DllCanUnloadNow(), S_OK_);

        QCOMPARE(DllGetClassObject(trn, iidClassFactory, &object), S_OK_);
        auto *factory = static_cast<IClassFactory *>(object);
        void *created = nullptr;
        QCOMPARE(factory->CreateInstance(factory, iidDispatch, &created), HRESULT(0x80040110));
        QCOMPARE(factory->CreateInstance(nullptr, iidClassFactory, &created), HRESULT(0x80004002));
        QCOMPARE(created, nullptr);
        factory->LockServer(true);
        factory->Release();
        QCOMPARE(DllCanUnloadNow(), S_FALSE_); // locked without a class object
        factory = nullptr;
        QCOMPARE(DllGetClassObject(trn, iidClassFactory, &object), S_OK_);
        static_cast<IClassFactory *>(object)->LockServer(false);
        static_cast<IClassFactory *>(object)->LockServer(false); // one unlock too many counts for nothing
        static_cast<IClassFactory *>(object)->Release();
        QCOMPARE(DllCanUnloadNow(), S_OK_);
        QCOMPARE(DllGetClassObject(trn, iidClassFactory, &object), S_OK_);
        QCOMPARE(DllCanUnloadNow(), S_FALSE_);
        static_cast<IClassFactory *>(object)->Release();
    }
};

QTEST_MAIN(tst_ComponentEntry)
#include "tst_componententry.moc"
