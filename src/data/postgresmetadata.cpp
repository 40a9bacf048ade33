#include "data/dataerror_p.h"
#include "data/enginemetadata_p.h"
#include "data/sqltext_p.h"

#include <QCoreApplication>
#include <QHash>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>

#include <libpq-fe.h>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Connection");

// Built-in type OIDs (fixed in every PostgreSQL release).
enum TypeOid : Oid {
    OidBool = 16,
    OidBytea = 17,
    OidChar = 18,
    OidName = 19,
    OidInt8 = 20,
    OidInt2 = 21,
    OidInt4 = 23,
    OidText = 25,
    OidOid = 26,
    OidFloat4 = 700,
    OidFloat8 = 701,
    OidUnknown = 705,
    OidBpchar = 1042,
    OidVarchar = 1043,
    OidDate = 1082,
    OidTime = 1083,
    OidTimestamp = 1114,
    OidTimestampTz = 1184,
    OidNumeric = 1700,
    OidUuid = 2950,
};

// The length of a bpchar/varchar type modifier, or -1 for an unbounded one.
int characterLength(int typeModifier)
{
    return typeModifier >= 4 ? typeModifier - 4 : -1;
}

void setTypeFromOid(ColumnInfo &c, Oid type, int modifier)
{
    switch (type) {
    case OidBool: setColumnType(c, FieldTypeBoolean); break;
    case OidInt2: setColumnType(c, FieldTypeSmallInt); break;
    case OidInt4: setColumnType(c, FieldTypeInteger); break;
    case OidOid: setColumnType(c, FieldTypeUnsignedInt); break;
    case OidInt8: setColumnType(c, FieldTypeBigInt); break;
    case OidFloat4: setColumnType(c, FieldTypeSingle); break;
    case OidFloat8: setColumnType(c, FieldTypeDouble); break;
    case OidNumeric:
        if (modifier >= 4)
            setColumnType(c, FieldTypeNumeric, -1, ((modifier - 4) >> 16) & 0xffff, (modifier - 4) & 0xffff);
        else
            setColumnType(c, FieldTypeNumeric);
        break;
    case OidDate: setColumnType(c, FieldTypeDate); break;
    case OidTime: setColumnType(c, FieldTypeDBTime); break;
    case OidTimestamp:
    case OidTimestampTz: setColumnType(c, FieldTypeDBTimeStamp); break;
    case OidChar: setColumnType(c, FieldTypeChar, 1); break;
    case OidBpchar:
        if (characterLength(modifier) > 0)
            setColumnType(c, FieldTypeChar, characterLength(modifier));
        else
            setColumnType(c, FieldTypeLongVarChar);
        break;
    case OidVarchar: setColumnType(c, FieldTypeVarChar, characterLength(modifier)); break;
    case OidName: setColumnType(c, FieldTypeVarChar, 63); break;
    case OidBytea: setColumnType(c, FieldTypeLongVarBinary); break;
    case OidUuid: setColumnType(c, FieldTypeGUID); break;
    case OidText:
    case OidUnknown:
    default: setColumnType(c, FieldTypeLongVarChar); break;
    }
}

PGconn *postgresHandle(const QSqlDatabase &database)
{
    const QVariant handle = database.driver() ? database.driver()->handle() : QVariant();
    // The driver registers the handle under the struct's own name, pg_conn*.
    if (!handle.isValid()
        || (qstrcmp(handle.typeName(), "pg_conn*") != 0 && qstrcmp(handle.typeName(), "PGconn*") != 0))
        return nullptr;
    return *static_cast<PGconn *const *>(handle.constData());
}

class PostgresMetadata final : public EngineMetadata
{
public:
    PostgresMetadata(const QSqlDatabase &database, PGconn *connection)
        : m_database(database), m_connection(connection)
    {
    }

    QVector<ColumnInfo> describeResult(const QSqlQuery &query, const QString &statement) override;
    void completeDescription(QVector<ColumnInfo> &columns) override;
    QVector<PrimaryKeyColumn> primaryKeys(const QString &catalog, const QString &schema,
                                          const QString &table) override;
    qint32 recordsAffected(const QSqlQuery &query, qint64) const override
    {
        return query.isSelect() ? -1 : query.numRowsAffected();
    }
    QString singleStatement(const QString &text, bool withParameters, bool &several) override;

private:
    [[noreturn]] void raiseCatalogError(const QSqlQuery &q) const
    {
        raiseDataError(ErrCommandFailed,
                       QCoreApplication::translate("PanelKestrin::Connection",
                                                   "Reading the PostgreSQL catalogue failed: %1 (in: %2)")
                           .arg(q.lastError().text(), q.lastQuery()),
                       kSource);
    }

    void runQuietly(const char *command) const { PQclear(PQexec(m_connection, command)); }

    QSqlDatabase m_database;
    PGconn *m_connection;
};

QVector<ColumnInfo> PostgresMetadata::describeResult(const QSqlQuery &query, const QString &)
{
    QVector<ColumnInfo> columns;
    const QSqlRecord record = query.record();
    const QVariant handle = query.result() ? query.result()->handle() : QVariant();
    const PGresult *result = nullptr;
    // The driver registers the handle under the struct's own name, pg_result*.
    if (handle.isValid()
        && (qstrcmp(handle.typeName(), "pg_result*") == 0 || qstrcmp(handle.typeName(), "PGresult*") == 0))
        result = *static_cast<PGresult *const *>(handle.constData());
    if (!result || PQnfields(result) != record.count()) {
        // Without the driver's result the columns are typed by their values.
        for (int i = 0; i < record.count(); ++i) {
            ColumnInfo c;
            c.Name = record.fieldName(i);
            c.Kind = ValueKind::FromValue;
            columns.append(c);
        }
        return columns;
    }
    for (int i = 0; i < PQnfields(result); ++i) {
        ColumnInfo c;
        c.Name = record.fieldName(i);
        setTypeFromOid(c, PQftype(result, i), PQfmod(result, i));
        const Oid table = PQftable(result, i);
        if (table != InvalidOid) {
            c.SourceTableId = table;
            c.SourceColumn = PQftablecol(result, i);
        }
        columns.append(c);
    }
    return columns;
}

void PostgresMetadata::completeDescription(QVector<ColumnInfo> &columns)
{
    struct Attribute {
        QString name;
        bool notNull;
    };
    struct Table {
        QString name;
        QHash<int, Attribute> attributes;
    };
    QHash<quint32, Table> tables; // one catalogue query per table of the result
    for (ColumnInfo &c : columns) {
        if (c.SourceTableId == 0)
            continue;
        auto it = tables.find(c.SourceTableId);
        if (it == tables.end()) {
            Table t;
            QSqlQuery q(m_database);
            q.setForwardOnly(true);
            const QString sql = QStringLiteral(
                                    "SELECT c.relname, a.attnum, a.attname, a.attnotnull "
                                    "FROM pg_catalog.pg_class c JOIN pg_catalog.pg_attribute a ON a.attrelid = c.oid "
                                    "WHERE c.oid = %1 AND a.attnum > 0")
                                    .arg(c.SourceTableId);
            if (!q.exec(sql))
                raiseCatalogError(q);
            while (q.next()) {
                t.name = q.value(0).toString();
                t.attributes.insert(q.value(1).toInt(), Attribute{q.value(2).toString(), q.value(3).toBool()});
            }
            it = tables.insert(c.SourceTableId, t);
        }
        const auto attribute = it->attributes.constFind(c.SourceColumn);
        if (attribute == it->attributes.cend())
            continue;
        c.BaseTable = it->name;
        c.BaseColumn = attribute->name;
        c.Attributes = attribute->notNull ? 0 : FieldIsNullable;
    }
}

// The server decides: a statement prepared through the extended query protocol must be a
// single one, and the server refuses text holding more with a syntax error that, unlike a real
// syntax error, points at no position in the text. Preparing runs nothing. Text the server
// refuses for another reason goes to the driver, which gets the same answer (the whole text is
// parsed before any of it runs). Inside the host's transaction a savepoint keeps the check
// from aborting it. The driver numbers '?' markers before it prepares, so the statement
// checked is the numbered one, and that is the one returned to run.
QString PostgresMetadata::singleStatement(const QString &text, bool withParameters, bool &several)
{
    several = false;
    const QString sql = withParameters ? numberedMarkers(text) : text;
    const bool inTransaction = PQtransactionStatus(m_connection) == PQTRANS_INTRANS;
    if (inTransaction)
        runQuietly("SAVEPOINT panelkestrin_statement_check");
    PGresult *result = PQprepare(m_connection, "", sql.toUtf8().constData(), 0, nullptr);
    if (!result)
        raiseDataError(ErrCommandFailed,
                       QCoreApplication::translate("PanelKestrin::Connection", "%1 (statement: %2)")
                           .arg(QString::fromUtf8(PQerrorMessage(m_connection)).trimmed(), text),
                       kSource);
    const bool prepared = PQresultStatus(result) == PGRES_COMMAND_OK;
    several = !prepared && qstrcmp(PQresultErrorField(result, PG_DIAG_SQLSTATE), "42601") == 0
              && !PQresultErrorField(result, PG_DIAG_STATEMENT_POSITION);
    PQclear(result);
    if (inTransaction) {
        if (!prepared)
            runQuietly("ROLLBACK TO SAVEPOINT panelkestrin_statement_check");
        runQuietly("RELEASE SAVEPOINT panelkestrin_statement_check");
    }
    return sql;
}

QVector<PrimaryKeyColumn> PostgresMetadata::primaryKeys(const QString &catalog, const QString &schema,
                                                        const QString &table)
{
    QString sql = QStringLiteral(
        "SELECT current_database(), n.nspname, c.relname, a.attname, k.ordinal, con.conname "
        "FROM pg_catalog.pg_constraint con "
        "JOIN pg_catalog.pg_class c ON c.oid = con.conrelid "
        "JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace "
        "CROSS JOIN LATERAL unnest(con.conkey) WITH ORDINALITY AS k(attnum, ordinal) "
        "JOIN pg_catalog.pg_attribute a ON a.attrelid = c.oid AND a.attnum = k.attnum "
        "WHERE con.contype = 'p' AND n.nspname NOT IN ('pg_catalog', 'information_schema') "
        "AND n.nspname NOT LIKE 'pg\\_toast%'");
    if (!catalog.isEmpty())
        sql += QStringLiteral(" AND lower(current_database()) = lower(?)");
    if (!schema.isEmpty())
        sql += QStringLiteral(" AND lower(n.nspname) = lower(?)");
    if (!table.isEmpty())
        sql += QStringLiteral(" AND lower(c.relname) = lower(?)");
    // Tables reachable without a schema name come first, as a host naming a bare table means them.
    sql += QStringLiteral(" ORDER BY pg_catalog.pg_table_is_visible(c.oid) DESC, n.nspname, c.relname, k.ordinal");
    QSqlQuery q(m_database);
    q.setForwardOnly(true);
    q.prepare(sql);
    for (const QString &restriction : {catalog, schema, table})
        if (!restriction.isEmpty())
            q.addBindValue(restriction);
    if (!q.exec())
        raiseCatalogError(q);
    QVector<PrimaryKeyColumn> keys;
    while (q.next()) {
        PrimaryKeyColumn k;
        k.Catalog = q.value(0).toString();
        k.Schema = q.value(1).toString();
        k.Table = q.value(2).toString();
        k.Column = q.value(3).toString();
        k.Ordinal = q.value(4).toInt();
        k.KeyName = q.value(5).toString();
        keys.append(k);
    }
    return keys;
}

} // namespace

std::unique_ptr<EngineMetadata> createPostgresMetadata(const QSqlDatabase &database)
{
    PGconn *connection = postgresHandle(database);
    if (!connection)
        raiseDataError(ErrOpenFailed,
                       QCoreApplication::translate("PanelKestrin::Connection",
                                                   "The PostgreSQL database cannot be used: the Qt driver gives no "
                                                   "connection handle."),
                       kSource);
    return std::make_unique<PostgresMetadata>(database, connection);
}

} // namespace PanelKestrin
