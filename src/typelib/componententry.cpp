#include <PanelKestrin/componententry.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/typelibrary.h>
#include "typelib/classobject_p.h"

#include <QFileInfo>
#include <QList>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <dlfcn.h>
#endif

using namespace PanelKestrin;

namespace {

constexpr HRESULT kOk = 0;
constexpr HRESULT kFalse = 1;
constexpr HRESULT kPointer = HRESULT(0x80004003);
constexpr HRESULT kClassNotAvailable = HRESULT(0x80040111);
constexpr HRESULT kClassesNotRegistered = HRESULT(0x80040201); // the classes could not be (un)registered

// The dispatch marshaller that carries calls to dispatch-only interfaces.
const QString dispatchProxy = QStringLiteral("{00020420-0000-0000-C000-000000000046}");

// The file of this library, named as the in-process server of every class.
QString libraryFile()
{
#ifdef Q_OS_WIN
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&DllRegisterServer), &module);
    wchar_t path[MAX_PATH];
    return QString::fromWCharArray(path, int(GetModuleFileNameW(module, path, MAX_PATH)));
#else
    Dl_info info;
    if (dladdr(reinterpret_cast<void *>(&DllRegisterServer), &info) && info.dli_fname)
        return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absoluteFilePath();
    return QString();
#endif
}

struct Entry
{
    QString key;   // under HKEY_CURRENT_USER
    QString name;  // "" = the key's default value
    QString value;
};

QString braced(const QUuid &id)
{
    return id.toString(QUuid::WithBraces).toUpper();
}

// Everything registration records; unregistration removes the same list.
QList<Entry> registrationEntries()
{
    const TypeLibrary &lib = PublishedTypeLibrary();
    const QString root = QStringLiteral("Software\\Classes\\");
    const QString libId = braced(lib.guid);
    const QString version = QStringLiteral("%1.%2").arg(lib.majorVersion).arg(lib.minorVersion);
    const QString file = libraryFile();
    QList<Entry> entries;

    const QString typeLib = root + QStringLiteral("TypeLib\\") + libId + QLatin1Char('\\') + version;
    entries << Entry{typeLib, QString(), lib.helpString}
            << Entry{typeLib + QStringLiteral("\\%1\\win64").arg(lib.lcid, 0, 16), QString(), file}
            << Entry{typeLib + QStringLiteral("\\FLAGS"), QString(), QStringLiteral("2")} // holds controls
            << Entry{typeLib + QStringLiteral("\\HELPDIR"), QString(), QFileInfo(file).absolutePath()};

    for (const TypeLibClass &c : lib.classes) {
        const QString progId = lib.name + QLatin1Char('.') + c.name;
        const QString clsid = root + QStringLiteral("CLSID\\") + braced(c.guid);
        entries << Entry{clsid, QString(), progId}
                << Entry{clsid + QStringLiteral("\\ProgID"), QString(), progId}
                << Entry{clsid + QStringLiteral("\\InprocServer32"), QString(), file}
                << Entry{clsid + QStringLiteral("\\InprocServer32"), QStringLiteral("ThreadingModel"), QStringLiteral("Apartment")}
                << Entry{clsid + QStringLiteral("\\Control"), QString(), QString()}
                << Entry{clsid + QStringLiteral("\\TypeLib"), QString(), libId}
                << Entry{clsid + QStringLiteral("\\Version"), QString(), version}
                << Entry{root + progId, QString(), progId}
                << Entry{root + progId + QStringLiteral("\\CLSID"), QString(), braced(c.guid)};
        for (const TypeLibInterface *i : {&c.defaultInterface, &c.eventInterface}) {
            const QString key = root + QStringLiteral("Interface\\") + braced(i->guid);
            entries << Entry{key, QString(), i->name}
                    << Entry{key + QStringLiteral("\\ProxyStubClsid32"), QString(), dispatchProxy}
                    << Entry{key + QStringLiteral("\\TypeLib"), QString(), libId}
                    << Entry{key + QStringLiteral("\\TypeLib"), QStringLiteral("Version"), version};
        }
    }
    return entries;
}

} // namespace

extern "C" {

// The store does not say when it cannot be written, so what was recorded is read back: the
// installer that called learns of a store it may not write instead of a silent success.
HRESULT DllRegisterServer(void)
{
    const QList<Entry> entries = registrationEntries();
    for (const Entry &e : entries)
        SetRegValue(HKEY_CURRENT_USER, e.key, e.name, e.value);
    for (const Entry &e : entries) {
        if (GetRegValue(HKEY_CURRENT_USER, e.key, e.name) != e.value)
            return kClassesNotRegistered;
    }
    return kOk;
}

HRESULT DllUnregisterServer(void)
{
    const QList<Entry> entries = registrationEntries();
    for (const Entry &e : entries)
        DeleteRegValue(HKEY_CURRENT_USER, e.key, e.name);
    for (const Entry &e : entries) {
        if (!GetRegValue(HKEY_CURRENT_USER, e.key, e.name).isEmpty())
            return kClassesNotRegistered;
    }
    return kOk;
}

HRESULT DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID *ppv)
{
    if (!ppv)
        return kPointer;
    *ppv = nullptr;
    const TypeLibClass *c = PublishedTypeLibrary().findClass(toUuid(rclsid));
    if (!c)
        return kClassNotAvailable;
    auto *object = new ClassObject(*c);
    const HRESULT result = object->QueryInterface(riid, ppv);
    object->Release(); // the caller's reference, when it was given one, keeps it
    return result;
}

HRESULT DllCanUnloadNow(void)
{
    return ClassObject::liveCount() == 0 ? kOk : kFalse;
}

} // extern "C"
