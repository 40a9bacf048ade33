#include "platform/regionalsettings_p.h"

#include <PanelKestrin/registry.h>

#include <atomic>

namespace PanelKestrin {

namespace {

// Bumped by every write to the store; each thread keeps the settings it read last with the
// count it read them at.
std::atomic<quint64> storeWrites{1};

QString internationalKey() { return QStringLiteral("\\Control Panel\\International"); }

QString storedOrDefault(const QString &valueName)
{
    const QString stored = GetRegValue(HKEY_CURRENT_USER, internationalKey(), valueName);
    return stored.isEmpty() ? internationalDefault(valueName) : stored;
}

// A locale's short-date pattern with its year widened to four digits: business dates carry
// the century.
QString localeShortDate(const QLocale &locale)
{
    if (locale.language() == QLocale::C)
        return QStringLiteral("MM/dd/yyyy");
    QString pattern = locale.dateFormat(QLocale::ShortFormat);
    if (!pattern.contains(QLatin1String("yyyy")))
        pattern.replace(QLatin1String("yy"), QLatin1String("yyyy"));
    return pattern;
}

} // namespace

bool RegionalSettings::dayFirst() const
{
    const int day = shortDate.indexOf(QLatin1Char('d'), 0, Qt::CaseInsensitive);
    const int month = shortDate.indexOf(QLatin1Char('m'), 0, Qt::CaseInsensitive);
    return day >= 0 && (month < 0 || day < month);
}

QString internationalDefault(const QString &valueName, const QLocale &locale)
{
    if (valueName.compare(QLatin1String("sShortDate"), Qt::CaseInsensitive) == 0)
        return localeShortDate(locale);
    if (valueName.compare(QLatin1String("sDecimal"), Qt::CaseInsensitive) == 0)
        return locale.decimalPoint();
    if (valueName.compare(QLatin1String("sDate"), Qt::CaseInsensitive) == 0)
        return localeDateSeparator(locale);
    return QString();
}

const RegionalSettings &regionalSettings()
{
    thread_local quint64 readAt = 0;
    thread_local RegionalSettings kept;
    const quint64 writes = storeWrites.load(std::memory_order_acquire);
    if (readAt != writes) {
        kept.shortDate = storedOrDefault(QStringLiteral("sShortDate"));
        kept.decimal = storedOrDefault(QStringLiteral("sDecimal"));
        kept.dateSeparator = storedOrDefault(QStringLiteral("sDate"));
        readAt = writes;
    }
    return kept;
}

void regionalSettingsChanged()
{
    storeWrites.fetch_add(1, std::memory_order_acq_rel);
}

} // namespace PanelKestrin
