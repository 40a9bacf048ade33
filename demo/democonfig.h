#pragma once

#include <QString>

// Where the demo keeps its database and how it describes it to the controls. Read from the
// demo's settings file; the defaults put the database in the user's data folder.
struct DemoConfig {
    QString databasePath;
    qint16 databaseKind = 3; // SQLite joins text with "||"

    static DemoConfig load(const QString &databaseOverride = QString());
    QString connectString() const;
};
