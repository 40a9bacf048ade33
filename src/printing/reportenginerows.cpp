#include "printing/reportenginerows_p.h"

#include "printing/selectionformula_p.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/field.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QDateTime>
#include <algorithm>

namespace PanelKestrin {

int ReportRows::fieldIndex(const QString &field) const
{
    for (int i = 0; i < fields.size(); ++i)
        if (fields.at(i).compare(field.trimmed(), Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

int ReportRows::requireField(const QString &field, const QString &usedAs, const QString &fileName) const
{
    const int index = fieldIndex(field);
    if (index < 0)
        throw RuntimeError(ErrItemNotFound,
                           QStringLiteral("Report %1: the data has no field \"%2\" (%3)").arg(fileName, field, usedAs),
                           QStringLiteral("ReportEngine"));
    return index;
}

namespace {

// Whether a formula's table part names the report's source: any table for a query, whose
// columns are named by field alone; for a table source that table, with or without its schema.
bool namesSource(const ReportDefinition &definition, const QString &table)
{
    if (definition.table.isEmpty())
        return true;
    const QString source = definition.table;
    return table.compare(source, Qt::CaseInsensitive) == 0
           || table.compare(source.section(QLatin1Char('.'), -1), Qt::CaseInsensitive) == 0;
}

} // namespace

ReportRows loadReportRows(Connection &connection, const ReportDefinition &definition,
                          const SelectionFormula &formula)
{
    Recordset recordset;
    if (definition.table.isEmpty())
        recordset.Open(definition.query, &connection, -1, -1, Recordset::CommandText);
    else
        recordset.Open(definition.table, &connection, -1, -1, Recordset::CommandTable);
    if (recordset.State() == 0)
        throw RuntimeError(ErrItemNotFound,
                           QStringLiteral("Report %1: the query returns no rows to report on").arg(definition.fileName),
                           QStringLiteral("ReportEngine"));

    ReportRows result;
    const Fields fields = recordset.Fields();
    for (int i = 0; i < fields.Count(); ++i)
        result.fields << fields.Item(i).Name();

    auto fieldOf = [&](const QString &table, const QString &field) {
        return namesSource(definition, table) ? result.fieldIndex(field) : -1;
    };
    formula.checkFields([&](const QString &table, const QString &field) { return fieldOf(table, field) >= 0; });
    if (recordset.RecordCount() == 0)
        return result;

    const VariantMatrix data = recordset.GetRows(-1, Recordset::BookmarkFirst);
    const int fieldCount = int(result.fields.size());
    QVector<QVariant> row(fieldCount);
    for (int r = data.LBound(2); r <= data.UBound(2); ++r) {
        for (int f = 0; f < fieldCount; ++f)
            row[f] = data.value(data.LBound(1) + f, r);
        const bool selected = formula.isEmpty() || formula.matches([&](const QString &table, const QString &field) {
            const int index = fieldOf(table, field);
            return index < 0 ? QVariant() : row.at(index);
        });
        if (selected)
            result.rows.append(row);
    }
    return result;
}

namespace {

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::LongLong: case QMetaType::ULongLong:
    case QMetaType::Double: case QMetaType::Float: case QMetaType::Short: case QMetaType::UShort:
    case QMetaType::Bool:
        return true;
    default:
        return false;
    }
}

bool isDate(const QVariant &value)
{
    return value.typeId() == QMetaType::QDate || value.typeId() == QMetaType::QDateTime;
}

QDateTime asDateTime(const QVariant &value)
{
    return value.typeId() == QMetaType::QDate ? value.toDate().startOfDay() : value.toDateTime();
}

} // namespace

int compareReportValues(const QVariant &a, const QVariant &b)
{
    const bool aNull = !a.isValid() || a.isNull();
    const bool bNull = !b.isValid() || b.isNull();
    if (aNull || bNull)
        return int(bNull) - int(aNull);
    if (isNumber(a) && isNumber(b)) {
        const double x = a.toDouble(), y = b.toDouble();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (isDate(a) && isDate(b)) {
        const QDateTime x = asDateTime(a), y = asDateTime(b);
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    const int folded = a.toString().compare(b.toString(), Qt::CaseInsensitive);
    return folded != 0 ? folded : a.toString().compare(b.toString());
}

void sortReportRows(ReportRows &rows, const QVector<ReportSortKey> &keys, const QString &fileName)
{
    QVector<std::pair<int, bool>> columns; // field index, descending
    for (const ReportSortKey &key : keys)
        columns.append({rows.requireField(key.field, QStringLiteral("sort field"), fileName), key.descending});
    std::stable_sort(rows.rows.begin(), rows.rows.end(), [&columns](const QVector<QVariant> &x, const QVector<QVariant> &y) {
        for (const auto &[index, descending] : columns) {
            const int order = compareReportValues(x.at(index), y.at(index));
            if (order != 0)
                return descending ? order > 0 : order < 0;
        }
        return false;
    });
}

QVector<ReportSortKey> reportRunSortKeys(const ReportDefinition &definition, const QStringList &sortFields)
{
    QVector<ReportSortKey> given;
    for (const QString &text : sortFields)
        if (const auto key = ReportSortKey::parse(text))
            given.append(*key);
    given += definition.sort;
    QVector<ReportSortKey> keys;
    for (const ReportGroupDefinition &group : definition.groups) {
        ReportSortKey key{group.field, false};
        for (const ReportSortKey &other : given)
            if (other.field.compare(group.field, Qt::CaseInsensitive) == 0) {
                key.descending = other.descending;
                break;
            }
        keys.append(key);
    }
    return keys + given;
}

} // namespace PanelKestrin
