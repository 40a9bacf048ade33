#pragma once

#include <QString>

// Where the demo keeps its data and how it describes it to the controls. Read from the demo's
// settings file; the defaults put a SQLite database in the user's data folder. A connection
// string given with --connect (any connection the library opens, PostgreSQL included) takes
// the place of the file.
struct DemoConfig {
    QString databasePath;
    QString connectOverride;
    qint16 databaseKind = 3; // SQLite and PostgreSQL both join text with "||"

    static DemoConfig load(const QString &databaseOverride = QString(), const QString &connectOverride = QString());
    bool usesFile() const { return connectOverride.isEmpty(); }
    QString connectString() const;
    // The database in use in a few words, for the main window: the file, or the server and
    // database of the connection string (never its password).
    QString description() const;
};
