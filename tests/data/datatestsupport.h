// Helpers shared by the data tests: opening each engine and catching run-time errors.
#pragma once

#include "shared/errornumber.h"

#include <PanelKestrin/connection.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace DataTest {

using ::capture;
using ::Caught;

// The test server's connection string, written by the CTest fixture; empty when it is missing.
inline QString postgresConnectString()
{
    QFile file(QString::fromLocal8Bit(qgetenv("PK_TEST_PG_CONNECT_FILE")));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll()).trimmed();
}

// Opens the connection on "sqlite" (a new database file in dir, which must be valid) or
// "postgres" (the test server). Returns why it could not, or an empty string.
inline QString openEngine(PanelKestrin::Connection &connection, const QString &engine, const QTemporaryDir &dir)
{
    static int files = 0;
    QString text;
    if (engine == QLatin1String("sqlite")) {
        const QString path = dir.filePath(QStringLiteral("db%1.sqlite").arg(++files));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly)) // an empty file is an empty SQLite database
            return QStringLiteral("cannot create ") + path;
        text = QStringLiteral("Provider=SQLite;Data Source=") + path;
    } else {
        text = postgresConnectString();
        if (text.isEmpty())
            return QStringLiteral("no PostgreSQL test server: PK_TEST_PG_CONNECT_FILE names no readable file");
    }
    const Caught error = capture([&] { connection.Open(text); });
    return error.number ? error.description : QString();
}

#define OPEN_ENGINE(connection, engine, dir)                                                       \
    do {                                                                                           \
        const QString why = DataTest::openEngine(connection, engine, dir);                         \
        if (!why.isEmpty())                                                                        \
            QFAIL(qPrintable(why));                                                                \
    } while (false)

inline void recreateTable(PanelKestrin::Connection &connection, const QString &table, const QString &columns)
{
    connection.Execute(QStringLiteral("DROP TABLE IF EXISTS ") + table);
    connection.Execute(QStringLiteral("CREATE TABLE %1 (%2)").arg(table, columns));
}

} // namespace DataTest

// Adds one data row per engine; the caller streams the remaining columns after it:
//   FOR_EACH_ENGINE("empty table") << 0 << ...;
#define FOR_EACH_ENGINE(name)                                                                      \
    for (const char *engine_ : {"sqlite", "postgres"})                                             \
    QTest::addRow("%s: %s", engine_, name) << QString::fromLatin1(engine_)
