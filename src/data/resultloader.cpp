#include "data/resultloader_p.h"

#include "data/connection_p.h"
#include "data/dataerror_p.h"
#include "data/sqltext_p.h"
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

} // namespace

LoadedResult loadResult(ConnectionPrivate &connection, const QString &statement)
{
    bool several = false;
    const QString sql = singleStatement(statement, several);
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

    // Rows go straight into the matrix GetRows hands out; its row dimension grows by
    // doubling and is cut to size at the end.
    int capacity = 256;
    result.rows.redim(0, fieldCount - 1, 0, capacity - 1);
    int row = 0;
    while (query.next()) {
        if (row == capacity) {
            capacity *= 2;
            result.rows.redimPreserve(capacity - 1);
        }
        for (int f = 0; f < fieldCount; ++f) {
            QVariant &cell = result.rows(f, row);
            cell = query.value(f);
            converters[f](cell);
        }
        ++row;
    }
    if (query.lastError().isValid())
        raiseRejected(query.lastError().text(), statement);
    query.finish();
    result.rows.redimPreserve(row - 1);
    result.rowCount = row;

    connection.metadata->completeDescription(result.columns);
    typeColumnsFromValues(result);
    return result;
}

} // namespace PanelKestrin
