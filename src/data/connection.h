#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QObject>
#include <QString>
#include <QVariantList>

#include <memory>

namespace PanelKestrin {

class Recordset;
struct ConnectionPrivate;

// An open session with a database, in the classic recordset model. Connection strings:
//   Provider=SQLite;Data Source=<file or :memory:>[;Mode=Read]
//   Provider=PostgreSQL;Host=...;Port=...;Database=...;User ID=...;Password=...[;Mode=Read]
// Keys are case-insensitive, values may be quoted with " or '. Mode=Read opens the database
// so that no statement can change it. Each open Connection has a Qt database connection of
// its own, removed again on Close() or destruction.
class PANELKESTRIN_EXPORT Connection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString ConnectionString READ ConnectionString WRITE setConnectionString)
    Q_PROPERTY(qint32 State READ State)
    Q_PROPERTY(QString Provider READ Provider)

public:
    enum Engine { EngineNone = 0, EngineSQLite = 1, EnginePostgreSQL = 2 };
    Q_ENUM(Engine)
    // The one schema OpenSchema answers.
    enum SchemaEnum { SchemaPrimaryKeys = 28 };
    Q_ENUM(SchemaEnum)

    explicit Connection(QObject *parent = nullptr);
    ~Connection() override;

    QString ConnectionString() const;
    // Raises 3705 while the connection is open.
    void setConnectionString(const QString &ConnectionString);

    // Opens the database the string names (the ConnectionString property when the argument is
    // empty). Non-empty UserID and Password override the string's. A malformed string raises
    // 3001, an unknown provider 3706, a missing SQLite file or a refused login -2147467259
    // naming the file or host:port with the driver's message; a missing file is never created.
    Q_INVOKABLE void Open(const QString &ConnectionString = QString(), const QString &UserID = QString(),
                          const QString &Password = QString(), qint32 Options = -1);
    // Runs one statement and returns the records it affected (0 for one that changes no rows,
    // -1 for a query). Statements the database rejects raise -2147217900 with its message;
    // so does text in which the database's parser finds a second statement, and none of it
    // runs. Blanks, comments and empty ';' around the statement are not a statement.
    Q_INVOKABLE qint32 Execute(const QString &CommandText);
    // The same with '?' placeholders bound to the parameters in order (Null() binds NULL).
    Q_INVOKABLE qint32 Execute(const QString &CommandText, const QVariantList &Parameters);
    // Schema 28 (primary keys), restricted by (catalog, schema, table) where an Empty or Null
    // entry means any: an open recordset with the fields TABLE_CATALOG, TABLE_SCHEMA,
    // TABLE_NAME, COLUMN_NAME, COLUMN_GUID, COLUMN_PROPID, ORDINAL, PK_NAME, one row per key
    // column in key order. Other schemas raise 3251.
    std::unique_ptr<Recordset> OpenSchema(qint32 Schema, const QVariantList &Restrictions = {});
    // Raises 3704 when the connection is not open.
    Q_INVOKABLE void Close();

    // 0 closed, 1 open.
    qint32 State() const;
    // "SQLite" or "PostgreSQL" once a connection string has been opened; empty before.
    QString Provider() const;
    Engine engine() const;
    bool isReadOnly() const;

private:
    friend struct ConnectionAccess;
    void checkOpen() const;
    qint32 run(const QString &CommandText, const QVariantList *Parameters);

    std::unique_ptr<ConnectionPrivate> d;
};

} // namespace PanelKestrin

