#include <PanelKestrin/registry.h>

#include "platform/regionalsettings_p.h"

#ifndef Q_OS_WIN
#include <QSettings>
#include <QStandardPaths>
#endif

namespace PanelKestrin {

QString localeDateSeparator(const QLocale &locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    for (const QChar c : format) {
        // Blanks only space out a month name ("d MMM yyyy"): they separate no numbers.
        if (!c.isLetter() && !c.isSpace() && c != QLatin1Char('\''))
            return QString(c);
    }
    return QStringLiteral("/");
}

#ifdef Q_OS_WIN

namespace {

// The registry functions refuse a sub-key that starts with a backslash.
QByteArray subKeyBytes(const QString &subKey)
{
    QString s = subKey;
    while (s.startsWith(QLatin1Char('\\')))
        s.remove(0, 1);
    return s.toLocal8Bit();
}

} // namespace

QString GetRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName)
{
    HKEY key = nullptr;
    if (RegCreateKeyA(hKey, subKeyBytes(sSubKey).constData(), &key) != ERROR_SUCCESS)
        return QString();
    const QByteArray name = sValueName.toLocal8Bit();
    DWORD type = REG_SZ;
    DWORD size = 0;
    QString result;
    if (RegQueryValueExA(key, name.constData(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS
        && size > 1) {
        QByteArray buffer(int(size) + 1, ' ');
        if (RegQueryValueExA(key, name.constData(), nullptr, &type,
                             reinterpret_cast<LPBYTE>(buffer.data()), &size) == ERROR_SUCCESS
            && size > 1)
            result = QString::fromLocal8Bit(buffer.constData(), int(size) - 1); // without the zero
    }
    RegCloseKey(key);
    return result;
}

void SetRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName, const QString &sValue)
{
    HKEY key = nullptr;
    if (RegCreateKeyA(hKey, subKeyBytes(sSubKey).constData(), &key) != ERROR_SUCCESS)
        return;
    const QByteArray data = sValue.toLocal8Bit();
    RegSetValueExA(key, sValueName.toLocal8Bit().constData(), 0, REG_SZ,
                   reinterpret_cast<const BYTE *>(data.constData()), DWORD(data.size() + 1));
    RegCloseKey(key);
    regionalSettingsChanged();
}

void DeleteRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName)
{
    HKEY key = nullptr;
    if (RegOpenKeyExA(hKey, subKeyBytes(sSubKey).constData(), 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS)
        return;
    RegDeleteValueA(key, sValueName.toLocal8Bit().constData());
    RegCloseKey(key);
    regionalSettingsChanged();
}

#else

namespace {

QString rootGroup(HKEY hKey)
{
    switch (hKey) {
    case HKEY_CLASSES_ROOT: return QStringLiteral("HKEY_CLASSES_ROOT");
    case HKEY_CURRENT_USER: return QStringLiteral("HKEY_CURRENT_USER");
    case HKEY_LOCAL_MACHINE: return QStringLiteral("HKEY_LOCAL_MACHINE");
    case HKEY_USERS: return QStringLiteral("HKEY_USERS");
    case HKEY_CURRENT_CONFIG: return QStringLiteral("HKEY_CURRENT_CONFIG");
    default: return QStringLiteral("HKEY_%1").arg(hKey, 8, 16, QLatin1Char('0'));
    }
}

QString spelledAsStored(const QStringList &stored, const QString &name)
{
    for (const QString &s : stored) {
        if (s.compare(name, Qt::CaseInsensitive) == 0)
            return s;
    }
    return name;
}

// The store's key for a value: group per root key, then the sub-key's parts, then the value
// name ("@" for the key's unnamed default value). Parts already in the store keep their stored
// spelling, so names match case-insensitively.
QString storeKey(QSettings &store, HKEY hKey, const QString &subKey, const QString &valueName)
{
    QStringList path{rootGroup(hKey)};
    store.beginGroup(path.first());
    for (const QString &part : subKey.split(QLatin1Char('\\'), Qt::SkipEmptyParts)) {
        path.append(spelledAsStored(store.childGroups(), part));
        store.beginGroup(path.last());
    }
    path.append(spelledAsStored(store.childKeys(),
                                valueName.isEmpty() ? QStringLiteral("@") : valueName));
    for (int i = 1; i < path.size(); ++i)
        store.endGroup();
    return path.join(QLatin1Char('/'));
}

bool isInternationalKey(HKEY hKey, const QString &subKey)
{
    return hKey == HKEY_CURRENT_USER
        && subKey.split(QLatin1Char('\\'), Qt::SkipEmptyParts).join(QLatin1Char('/')).compare(
               QLatin1String("Control Panel/International"), Qt::CaseInsensitive) == 0;
}

} // namespace

QString RegistryStoreFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/PanelKestrin/registry.ini");
}

QString GetRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName)
{
    QSettings store(RegistryStoreFileName(), QSettings::IniFormat);
    const QString key = storeKey(store, hKey, sSubKey, sValueName);
    if (store.contains(key))
        return store.value(key).toString();
    if (isInternationalKey(hKey, sSubKey))
        return internationalDefault(sValueName);
    return QString();
}

void SetRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName, const QString &sValue)
{
    QSettings store(RegistryStoreFileName(), QSettings::IniFormat);
    store.setValue(storeKey(store, hKey, sSubKey, sValueName), sValue);
    store.sync();
    regionalSettingsChanged();
}

void DeleteRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName)
{
    QSettings store(RegistryStoreFileName(), QSettings::IniFormat);
    store.remove(storeKey(store, hKey, sSubKey, sValueName));
    store.sync();
    regionalSettingsChanged();
}

#endif

} // namespace PanelKestrin
