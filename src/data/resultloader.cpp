#include "data/resultloader_p.h"

#include "data/connection_p.h"
#include "data/dataerror_p.h"
#include "data/enginemetadata_p.h"
#include "data/valueconversion_p.h"

#include <PanelKestrin/variant.h>

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <QVarLengthArray>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Recordset");

[[noreturn]] void raiseRejected(const QString &message, const QString &statement)
{
    raiseDataError(ErrCommandFailed,
                   QCoreApplication::translate("PanelKestrin::Recordset", "%1 (statement: %2)").arg(message, statement),
                   kSource);
}

// Columns typed by their values take the type of their first non-null value.
void typeColumnsFromValues(LoadedResult &result)
{
    for (int f = 0; f < result.columns.size(); ++f) {
        ColumnInfo &column = result.columns[f];
        if (column.Kind != ValueKind::FromValue)
            continue;
        QVariant first;
        for (int r = 0; r < result.rowCount && !first.isValid(); ++r) {
            const QVariant &v = result.rows(f, r);
            if (!isNull(v))
                first = v;
        }
        setColumnTypeFromValue(column, first);
    }
}

// QtSql's own reading, for the statements no engine reader takes.
class QueryRows
{
public:
    explicit QueryRows(QSqlQuery &query) : m_query(query) {}
    bool next() { return m_query.next(); }
    void read(int field, QVariant &value) const { value = m_query.value(field); }
    QString error() const { return m_query.lastError().isValid() ? m_query.lastError().text() : QString(); }

private:
    QSqlQuery &m_query;
};

// Reads every row of source straight into the matrix GetRows hands out, each value converted
// by its column's converter; the row dimension grows by doubling and is cut to size at the
// end. Returns the number of rows.
template <typename Rows>
int readRows(Rows &source, const ValueConverter *converters, int fieldCount, VariantMatrix &rows)
{
    int capacity = 256;
    rows.redim(0, fieldCount - 1, 0, capacity - 1);
    int row = 0;
    while (source.next()) {
        if (row == capacity) {
            capacity *= 2;
            rows.redimPreserve(capacity - 1);
        }
        for (int f = 0; f < fieldCount; ++f) {
            QVariant &cell = rows(f, row);
            source.read(f, cell);
            converters[f](cell);
        }
        ++row;
    }
    rows.redimPreserve(row - 1);
    return row;
}

} // namespace

LoadedResult loadResult(ConnectionPrivate &connection, const QString &statement)
{
    bool several = false;
    const QString sql = connection.metadata->singleStatement(statement, false, several);
    if (several)
        raiseRejected(QCoreApplication::translate("PanelKestrin::Recordset",
                                                  "Only one statement can be run at a time."),
                      statement);
    LoadedResult result;
    QSqlQuery query(connection.database);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        raiseRejected(query.lastError().text(), statement);
    if (!query.isSelect())
        return result;

    result.returnedRows = true;
    result.columns = connection.metadata->describeResult(query, sql);
    const int fieldCount = int(result.columns.size());
    QVarLengthArray<ValueConverter, 32> converters;
    for (const ColumnInfo &column : std::as_const(result.columns))
        converters.append(valueConverter(column.Kind));

    // The engine's own reader where it has one: QtSql's bookkeeping costs more per value
    // than the read itself.
    const std::unique_ptr<RowReader> reader = connection.metadata->openRowReader(sql, fieldCount);
    QString failure;
    if (reader) {
        query.finish();
        result.rowCount = readRows(*reader, converters.constData(), fieldCount, result.rows);
        failure = reader->error();
    } else {
        QueryRows rows(query);
        result.rowCount = readRows(rows, converters.constData(), fieldCount, result.rows);
        failure = rows.error();
        query.finish();
    }
    if (!failure.isEmpty())
        raiseRejected(failure, statement);

    connection.metadata->completeDescription(result.columns);
    typeColumnsFromValues(result);
    return result;
}

} // namespace PanelKestrin
