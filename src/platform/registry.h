#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QLocale>
#include <QString>

#ifdef Q_OS_WIN
#include <qt_windows.h> // HKEY and the HKEY_* root keys
#else
namespace PanelKestrin {
// Root keys of the per-user settings store, with the values they have on Windows.
using HKEY = quint32;
constexpr HKEY HKEY_CLASSES_ROOT = 0x80000000;
constexpr HKEY HKEY_CURRENT_USER = 0x80000001;
constexpr HKEY HKEY_LOCAL_MACHINE = 0x80000002;
constexpr HKEY HKEY_USERS = 0x80000003;
constexpr HKEY HKEY_PERFORMANCE_DATA = 0x80000004;
constexpr HKEY HKEY_CURRENT_CONFIG = 0x80000005;
constexpr HKEY HKEY_DYN_DATA = 0x80000006;
} // namespace PanelKestrin
#endif

namespace PanelKestrin {

// Reads a string value. On Windows from the registry: a missing key is created, a missing
// value or one of at most one byte (just the terminating zero) gives "". Elsewhere from the
// per-user settings store (see RegistryStoreFileName), where a sub-key "\A\B" is the group
// "A/B" under a group named after the root key, and names match case-insensitively as
// registry names do. There, the user's regional settings under HKEY_CURRENT_USER
// "\Control Panel\International" come from the user's locale while the store holds no value:
// "sDate" (the date separator, localeDateSeparator()), "sShortDate" (the short-date pattern,
// its year four digits; "MM/dd/yyyy" for the C locale) and "sDecimal" (the decimal separator).
PANELKESTRIN_EXPORT QString GetRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName);

// Writes a string value (creating the key) and removes one; hosts and tests use these to set
// what GetRegValue reads.
PANELKESTRIN_EXPORT void SetRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName,
                                     const QString &sValue);
PANELKESTRIN_EXPORT void DeleteRegValue(HKEY hKey, const QString &sSubKey, const QString &sValueName);

// The date separator of a locale's short date format: its first character that is not a
// letter (nor a quote), "/" when there is none.
PANELKESTRIN_EXPORT QString localeDateSeparator(const QLocale &locale = QLocale());

#ifndef Q_OS_WIN
// The INI file of the settings store:
// <QStandardPaths::GenericConfigLocation>/PanelKestrin/registry.ini.
PANELKESTRIN_EXPORT QString RegistryStoreFileName();
#endif

} // namespace PanelKestrin
