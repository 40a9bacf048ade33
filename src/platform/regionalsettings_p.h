#pragma once

#include <QLocale>
#include <QString>

namespace PanelKestrin {

// The user's regional settings that the classic conversions follow, as the per-user store
// holds them under HKEY_CURRENT_USER "\Control Panel\International": the short-date pattern
// ("sShortDate", letters d, M and y as in "dd/MM/yyyy"), the decimal separator ("sDecimal")
// and the date separator ("sDate"). A value the store does not hold, or holds empty, comes
// from the user's locale (see internationalDefault).
struct RegionalSettings {
    QString shortDate;
    QString decimal;
    QString dateSeparator;

    // The short-date pattern names the day before the month ("dd/MM/yyyy", "d.M.yyyy"):
    // a typed date is read day first. Year-first and month-first patterns read month first.
    bool dayFirst() const;
};

// The settings in force. Read from the store (and the locale, for what it does not hold) once
// and kept until the store is written through SetRegValue or DeleteRegValue, so that
// conversions run for every cell of a grid cost no file access; a store edited by another
// process, or a new default QLocale, is seen after such a write.
const RegionalSettings &regionalSettings();

// Forgets the kept settings; the registry writers call it.
void regionalSettingsChanged();

// What the store gives for a value of HKEY_CURRENT_USER "\Control Panel\International" that
// it does not hold: for sShortDate the locale's short-date pattern with a four-digit year
// ("MM/dd/yyyy" for the C locale, the form dates have always been written in), for sDecimal
// the locale's decimal point, for sDate the separator of its short-date pattern. A null
// string for any other value name.
QString internationalDefault(const QString &valueName, const QLocale &locale = QLocale());

} // namespace PanelKestrin
