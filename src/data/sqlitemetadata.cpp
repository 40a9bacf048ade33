#include "data/sqlitemetadata_p.h"

#include "data/dataerror_p.h"
#include "data/enginemetadata_p.h"
#include "data/sqliterowreader_p.h"

#include <QCoreApplication>
#include <QHash>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

#include <sqlite3.h>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Connection");

struct DeclaredName {
    const char *name;
    qint32 type;
    ValueKind kind; // AsIs keeps the kind that goes with the type
};

// Declared type names (upper case, blanks simplified, without the parenthesised sizes).
const QHash<QString, DeclaredName> &declaredNames()
{
    static const QHash<QString, DeclaredName> names = [] {
        const DeclaredName list[] = {
            {"VARCHAR", FieldTypeVarChar, ValueKind::AsIs},
            {"CHARACTER VARYING", FieldTypeVarChar, ValueKind::AsIs},
            {"CHAR VARYING", FieldTypeVarChar, ValueKind::AsIs},
            {"VARYING CHARACTER", FieldTypeVarChar, ValueKind::AsIs},
            {"VARCHAR2", FieldTypeVarChar, ValueKind::AsIs},
            {"NVARCHAR", FieldTypeVarWChar, ValueKind::AsIs},
            {"NATIONAL CHARACTER VARYING", FieldTypeVarWChar, ValueKind::AsIs},
            {"NATIONAL VARCHAR", FieldTypeVarWChar, ValueKind::AsIs},
            {"CHAR", FieldTypeChar, ValueKind::AsIs},
            {"CHARACTER", FieldTypeChar, ValueKind::AsIs},
            {"BPCHAR", FieldTypeChar, ValueKind::AsIs},
            {"NCHAR", FieldTypeWChar, ValueKind::AsIs},
            {"NATIONAL CHARACTER", FieldTypeWChar, ValueKind::AsIs},
            {"NATIVE CHARACTER", FieldTypeWChar, ValueKind::AsIs},
            {"TEXT", FieldTypeLongVarChar, ValueKind::AsIs},
            {"CLOB", FieldTypeLongVarChar, ValueKind::AsIs},
            {"TINYTEXT", FieldTypeLongVarChar, ValueKind::AsIs},
            {"MEDIUMTEXT", FieldTypeLongVarChar, ValueKind::AsIs},
            {"LONGTEXT", FieldTypeLongVarChar, ValueKind::AsIs},
            {"NTEXT", FieldTypeLongVarWChar, ValueKind::AsIs},
            {"NUMERIC", FieldTypeNumeric, ValueKind::AsIs},
            {"DECIMAL", FieldTypeNumeric, ValueKind::AsIs},
            {"DEC", FieldTypeNumeric, ValueKind::AsIs},
            {"NUMBER", FieldTypeNumeric, ValueKind::AsIs},
            {"MONEY", FieldTypeNumeric, ValueKind::AsIs},
            {"INTEGER", FieldTypeInteger, ValueKind::AsIs},
            {"INT", FieldTypeInteger, ValueKind::AsIs},
            {"INT4", FieldTypeInteger, ValueKind::AsIs},
            {"MEDIUMINT", FieldTypeInteger, ValueKind::AsIs},
            {"SERIAL", FieldTypeInteger, ValueKind::AsIs},
            {"SMALLINT", FieldTypeSmallInt, ValueKind::AsIs},
            {"INT2", FieldTypeSmallInt, ValueKind::AsIs},
            {"SMALLSERIAL", FieldTypeSmallInt, ValueKind::AsIs},
            {"TINYINT", FieldTypeTinyInt, ValueKind::AsIs},
            {"BIGINT", FieldTypeBigInt, ValueKind::AsIs},
            {"INT8", FieldTypeBigInt, ValueKind::AsIs},
            {"BIGSERIAL", FieldTypeBigInt, ValueKind::AsIs},
            {"UNSIGNED BIG INT", FieldTypeBigInt, ValueKind::AsIs},
            {"REAL", FieldTypeDouble, ValueKind::AsIs},
            {"DOUBLE", FieldTypeDouble, ValueKind::AsIs},
            {"DOUBLE PRECISION", FieldTypeDouble, ValueKind::AsIs},
            {"FLOAT8", FieldTypeDouble, ValueKind::AsIs},
            {"FLOAT", FieldTypeDouble, ValueKind::AsIs},
            {"FLOAT4", FieldTypeSingle, ValueKind::AsIs},
            {"BOOLEAN", FieldTypeBoolean, ValueKind::AsIs},
            {"BOOL", FieldTypeBoolean, ValueKind::AsIs},
            {"DATE", FieldTypeDate, ValueKind::AsIs},
            {"DATETIME", FieldTypeDate, ValueKind::DateOrDateTime},
            {"TIMESTAMP", FieldTypeDBTimeStamp, ValueKind::AsIs},
            {"TIMESTAMP WITHOUT TIME ZONE", FieldTypeDBTimeStamp, ValueKind::AsIs},
            {"TIMESTAMP WITH TIME ZONE", FieldTypeDBTimeStamp, ValueKind::AsIs},
            {"TIMESTAMPTZ", FieldTypeDBTimeStamp, ValueKind::AsIs},
            {"TIME", FieldTypeDBTime, ValueKind::AsIs},
            {"TIME WITHOUT TIME ZONE", FieldTypeDBTime, ValueKind::AsIs},
            {"BLOB", FieldTypeLongVarBinary, ValueKind::AsIs},
            {"BYTEA", FieldTypeLongVarBinary, ValueKind::AsIs},
            {"VARBINARY", FieldTypeLongVarBinary, ValueKind::AsIs},
            {"UUID", FieldTypeGUID, ValueKind::AsIs},
        };
        QHash<QString, DeclaredName> h;
        for (const DeclaredName &n : list)
            h.insert(QString::fromLatin1(n.name), n);
        return h;
    }();
    return names;
}

sqlite3 *sqliteHandle(const QSqlDatabase &database)
{
    const QVariant handle = database.driver() ? database.driver()->handle() : QVariant();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

[[noreturn]] void raiseUnusable(const QString &why)
{
    raiseDataError(ErrOpenFailed,
                   QCoreApplication::translate("PanelKestrin::Connection",
                                               "The SQLite database cannot be used: %1")
                       .arg(why),
                   kSource);
}

class SqliteMetadata final : public EngineMetadata
{
public:
    SqliteMetadata(const QSqlDatabase &database, sqlite3 *handle) : m_database(database), m_handle(handle) {}

    QVector<ColumnInfo> describeResult(const QSqlQuery &query, const QString &statement) override;
    void completeDescription(QVector<ColumnInfo> &) override {}
    std::unique_ptr<RowReader> openRowReader(const QString &statement, int fieldCount) override
    {
        return openSqliteRows(m_handle, statement, fieldCount);
    }
    QVector<PrimaryKeyColumn> primaryKeys(const QString &catalog, const QString &schema,
                                          const QString &table) override;
    qint64 changeMark() const override { return sqlite3_total_changes64(m_handle); }
    qint32 recordsAffected(const QSqlQuery &query, qint64 markBefore) const override
    {
        if (query.isSelect())
            return -1;
        // sqlite3_changes() keeps the count of the last INSERT, UPDATE or DELETE, so a
        // statement that changed nothing is told apart by the total not having moved.
        return sqlite3_total_changes64(m_handle) == markBefore ? 0 : sqlite3_changes(m_handle);
    }
    QString singleStatement(const QString &text, bool withParameters, bool &several) override;

private:
    QSqlDatabase m_database;
    sqlite3 *m_handle;
};

QVector<ColumnInfo> SqliteMetadata::describeResult(const QSqlQuery &query, const QString &statement)
{
    QVector<ColumnInfo> columns;
    const QSqlRecord record = query.record();
    sqlite3_stmt *stmt = nullptr;
    const QByteArray sql = statement.toUtf8();
    if (sqlite3_prepare_v2(m_handle, sql.constData(), int(sql.size()), &stmt, nullptr) != SQLITE_OK
        || !stmt || sqlite3_column_count(stmt) != record.count()) {
        // The driver ran it, so this does not happen; the columns are then typed by value.
        sqlite3_finalize(stmt);
        for (int i = 0; i < record.count(); ++i) {
            ColumnInfo c;
            c.Name = record.fieldName(i);
            c.Kind = ValueKind::FromValue;
            columns.append(c);
        }
        return columns;
    }
    for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
        ColumnInfo c;
        c.Name = QString::fromUtf8(sqlite3_column_name(stmt, i));
        setTypeFromDeclaration(c, QString::fromUtf8(sqlite3_column_decltype(stmt, i)));
        const char *table = sqlite3_column_table_name(stmt, i);
        const char *origin = sqlite3_column_origin_name(stmt, i);
        if (table && origin) {
            c.BaseTable = QString::fromUtf8(table);
            c.BaseColumn = QString::fromUtf8(origin);
            int notNull = 0, primaryKey = 0, autoIncrement = 0;
            if (sqlite3_table_column_metadata(m_handle, sqlite3_column_database_name(stmt, i), table, origin,
                                              nullptr, nullptr, &notNull, &primaryKey, &autoIncrement)
                == SQLITE_OK)
                c.Attributes = (notNull || primaryKey) ? 0 : FieldIsNullable;
        } else {
            c.Kind = ValueKind::FromValue;
        }
        columns.append(c);
    }
    sqlite3_finalize(stmt);
    return columns;
}

// SQLite compiles one statement at a time and says where the text after it begins. Compiling
// that rest in turn tells blanks, comments and empty ';' (nothing to compile) from a further
// statement; a rest that does not compile is a further statement too. Compiling runs nothing.
QString SqliteMetadata::singleStatement(const QString &text, bool, bool &several)
{
    several = false;
    const auto *begin = reinterpret_cast<const char16_t *>(text.utf16());
    const char16_t *const end = begin + text.size();
    const char16_t *rest = begin;
    qsizetype first = -1, last = -1; // the statement's range in text
    while (rest < end) {
        sqlite3_stmt *stmt = nullptr;
        const void *tail = nullptr;
        const int rc = sqlite3_prepare16_v2(m_handle, rest, int((end - rest) * sizeof(char16_t)), &stmt, &tail);
        const bool compiled = stmt != nullptr;
        sqlite3_finalize(stmt);
        if (first >= 0 && (rc != SQLITE_OK || compiled)) {
            several = true;
            return text;
        }
        if (rc != SQLITE_OK)
            return text.mid(rest - begin); // the statement does not compile: the driver says why
        const auto *next = static_cast<const char16_t *>(tail);
        if (compiled) {
            first = rest - begin;
            last = next - begin;
        }
        if (!next || next <= rest)
            break;
        rest = next;
    }
    return first < 0 ? text : text.mid(first, last - first);
}

QVector<PrimaryKeyColumn> SqliteMetadata::primaryKeys(const QString &catalog, const QString &schema,
                                                      const QString &table)
{
    QVector<PrimaryKeyColumn> keys;
    if (!catalog.isEmpty())
        return keys; // SQLite has no catalogs
    QString sql = QStringLiteral(
        "SELECT t.schema, t.name, p.name, p.pk, "
        " (SELECT i.name FROM pragma_index_list(t.name, t.schema) i WHERE i.origin = 'pk') "
        "FROM pragma_table_list t JOIN pragma_table_info(t.name, t.schema) p "
        "WHERE t.type = 'table' AND p.pk > 0 AND t.name NOT LIKE 'sqlite\\_%' ESCAPE '\\'");
    if (!schema.isEmpty())
        sql += QStringLiteral(" AND t.schema = ? COLLATE NOCASE");
    if (!table.isEmpty())
        sql += QStringLiteral(" AND t.name = ? COLLATE NOCASE");
    sql += QStringLiteral(" ORDER BY t.schema, t.name, p.pk");
    QSqlQuery q(m_database);
    q.setForwardOnly(true);
    q.prepare(sql);
    if (!schema.isEmpty())
        q.addBindValue(schema);
    if (!table.isEmpty())
        q.addBindValue(table);
    if (!q.exec())
        raiseDataError(ErrCommandFailed,
                       QCoreApplication::translate("PanelKestrin::Connection",
                                                   "Reading the primary keys failed: %1")
                           .arg(q.lastError().text()),
                       kSource);
    while (q.next()) {
        PrimaryKeyColumn k;
        k.Catalog = QVariant::fromValue(nullptr);
        k.Schema = q.value(0).toString();
        k.Table = q.value(1).toString();
        k.Column = q.value(2).toString();
        k.Ordinal = q.value(3).toInt();
        const QVariant name = q.value(4);
        k.KeyName = name.isNull() ? QVariant::fromValue(nullptr) : QVariant(name.toString());
        keys.append(k);
    }
    return keys;
}

} // namespace

void setTypeFromDeclaration(ColumnInfo &column, const QString &declaredType)
{
    const QString text = declaredType.simplified().toUpper();
    if (text.isEmpty()) {
        column.Kind = ValueKind::FromValue;
        return;
    }
    const qsizetype open = text.indexOf(QLatin1Char('('));
    QString name = (open < 0 ? text : text.left(open)).trimmed();
    int first = -1, second = -1;
    if (open >= 0) {
        const qsizetype close = text.indexOf(QLatin1Char(')'), open);
        const QStringList args = text.mid(open + 1, close < 0 ? -1 : close - open - 1).split(QLatin1Char(','));
        bool ok = false;
        first = args.value(0).trimmed().toInt(&ok);
        if (!ok)
            first = -1;
        if (args.size() > 1) {
            second = args.value(1).trimmed().toInt(&ok);
            if (!ok)
                second = -1;
        }
        // "TIMESTAMP(3) WITH TIME ZONE": the words after the sizes belong to the name.
        if (close >= 0)
            name = (name + QLatin1Char(' ') + text.mid(close + 1)).simplified();
    }
    const auto it = declaredNames().constFind(name);
    if (it == declaredNames().cend()) {
        column.Kind = ValueKind::FromValue;
        return;
    }
    qint32 type = it->type;
    if (name == QLatin1String("FLOAT") && first > 0 && first <= 24)
        type = FieldTypeSingle; // FLOAT(p) up to 24 bits is single precision
    const bool sized = type == FieldTypeNumeric;
    setColumnType(column, type, sized ? -1 : first, sized ? first : -1, sized ? second : -1);
    if (it->kind != ValueKind::AsIs)
        column.Kind = it->kind;
}

std::unique_ptr<EngineMetadata> createSqliteMetadata(const QSqlDatabase &database)
{
    sqlite3 *handle = sqliteHandle(database);
    if (!handle)
        raiseUnusable(QCoreApplication::translate("PanelKestrin::Connection",
                                                  "the Qt driver gives no SQLite connection handle."));
    // The handle is only safe to use when the driver runs the library linked here.
    QSqlQuery q(database);
    const QString linked = QString::fromLatin1(sqlite3_libversion());
    if (!q.exec(QStringLiteral("SELECT sqlite_version()")) || !q.next() || q.value(0).toString() != linked)
        raiseUnusable(QCoreApplication::translate("PanelKestrin::Connection",
                                                  "the Qt driver runs SQLite %1 but SQLite %2 is linked.")
                          .arg(q.value(0).toString(), linked));
    return std::make_unique<SqliteMetadata>(database, handle);
}

} // namespace PanelKestrin
