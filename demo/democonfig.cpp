#include "democonfig.h"

#include <QDir>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

namespace {

// The value of one key of a connection string ("Host=db1;Port=5432"), or "".
QString connectValue(const QString &connectString, const QString &key)
{
    const QRegularExpression pattern(QStringLiteral("(?:^|;)\\s*%1\\s*=\\s*([^;]*)").arg(key),
                                     QRegularExpression::CaseInsensitiveOption);
    return pattern.match(connectString).captured(1).trimmed();
}

} // namespace

DemoConfig DemoConfig::load(const QString &databaseOverride, const QString &connectOverride)
{
    QSettings settings;
    DemoConfig config;
    const QString dataDir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    config.databasePath = databaseOverride.isEmpty()
        ? settings.value(QStringLiteral("Database/Path"), QDir(dataDir).filePath(QStringLiteral("orders.sqlite"))).toString()
        : databaseOverride;
    config.connectOverride = connectOverride;
    config.databaseKind = qint16(settings.value(QStringLiteral("Database/Kind"), config.databaseKind).toInt());
    return config;
}

QString DemoConfig::connectString() const
{
    if (!usesFile())
        return connectOverride;
    return QStringLiteral("Provider=SQLite;Data Source=\"%1\"").arg(databasePath);
}

QString DemoConfig::description() const
{
    if (usesFile())
        return QObject::tr("SQLite file %1").arg(QDir::toNativeSeparators(databasePath));
    const QString provider = connectValue(connectOverride, QStringLiteral("Provider"));
    if (provider.startsWith(QLatin1String("SQLite"), Qt::CaseInsensitive))
        return QObject::tr("SQLite file %1")
            .arg(connectValue(connectOverride, QStringLiteral("(?:Data Source|Database|Filename)")).remove(QLatin1Char('"')));
    const QString database = connectValue(connectOverride, QStringLiteral("(?:Database|Initial Catalog|dbname)"));
    const QString host = connectValue(connectOverride, QStringLiteral("(?:Host|Server|Data Source|Hostname)"));
    const QString port = connectValue(connectOverride, QStringLiteral("Port"));
    const QString where = host.isEmpty() ? QString() : QObject::tr(" on %1").arg(port.isEmpty() ? host : host + QLatin1Char(':') + port);
    return QObject::tr("%1 database %2%3").arg(provider, database, where);
}
