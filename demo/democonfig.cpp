#include "democonfig.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

DemoConfig DemoConfig::load(const QString &databaseOverride)
{
    QSettings settings;
    DemoConfig config;
    const QString dataDir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    config.databasePath = databaseOverride.isEmpty()
        ? settings.value(QStringLiteral("Database/Path"), QDir(dataDir).filePath(QStringLiteral("orders.sqlite"))).toString()
        : databaseOverride;
    config.databaseKind = qint16(settings.value(QStringLiteral("Database/Kind"), config.databaseKind).toInt());
    return config;
}

QString DemoConfig::connectString() const
{
    return QStringLiteral("Provider=SQLite;Data Source=\"%1\"").arg(databasePath);
}
