#pragma once

#include "data/columninfo_p.h"
#include "data/rowreader_p.h"

#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

#include <memory>

class QSqlQuery;

namespace PanelKestrin {

// One row of the primary-key schema: a column of a table's primary key.
struct PrimaryKeyColumn {
    QVariant Catalog; // Null where the engine has no catalogs
    QString Schema;
    QString Table;
    QString Column;
    int Ordinal = 0;  // 1-based position in the key
    QVariant KeyName; // Null when the key has no name
};

// What QtSql does not tell about a result or a database, read from each engine's own
// interface. One instance per open connection.
class EngineMetadata
{
public:
    virtual ~EngineMetadata() = default;

    // Describes the columns of the statement that `query` has just executed, before any row
    // is fetched: names, classic types and sizes, base table and column, NOT NULL.
    virtual QVector<ColumnInfo> describeResult(const QSqlQuery &query, const QString &statement) = 0;
    // Finishes the description with what needs further queries on the connection; called
    // once every row has been fetched, so the connection is free again.
    virtual void completeDescription(QVector<ColumnInfo> &columns) = 0;

    // A faster way than QtSql to read the rows of statement, which has just been run through
    // QtSql and gives fieldCount columns; null where there is none for this statement.
    virtual std::unique_ptr<RowReader> openRowReader(const QString &statement, int fieldCount)
    {
        Q_UNUSED(statement);
        Q_UNUSED(fieldCount);
        return nullptr;
    }

    // Primary-key columns of the tables matching the restrictions (an empty string matches
    // anything; table names match case-insensitively), by schema, table and key position.
    virtual QVector<PrimaryKeyColumn> primaryKeys(const QString &catalog, const QString &schema,
                                                  const QString &table) = 0;

    // A mark taken before a statement runs, and the records that statement affected given
    // the mark (0 for a statement that changes no rows, such as CREATE TABLE).
    virtual qint64 changeMark() const { return 0; }
    virtual qint32 recordsAffected(const QSqlQuery &query, qint64 markBefore) const = 0;

    // The one statement `text` holds, as the driver is to receive it. Where a statement ends
    // is the engine's own parser's answer, so quoting of any kind the engine knows counts.
    // `several` is set when the engine finds a second statement; the text must then not run
    // at all. `withParameters`: the text carries '?' markers for bound values, which the
    // statement returned carries as the driver will send them.
    virtual QString singleStatement(const QString &text, bool withParameters, bool &several) = 0;
};

// The SQLite one checks that the Qt driver runs the very SQLite library linked here (its
// connection handle is used directly) and raises -2147467259 naming both versions otherwise.
std::unique_ptr<EngineMetadata> createSqliteMetadata(const QSqlDatabase &database);
std::unique_ptr<EngineMetadata> createPostgresMetadata(const QSqlDatabase &database);

} // namespace PanelKestrin
