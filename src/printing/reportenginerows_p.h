#pragma once

#include "printing/reportdefinition_p.h"

#include <QStringList>
#include <QVariant>
#include <QVector>

namespace PanelKestrin {

class Connection;
class SelectionFormula;

// The rows a report engine run lays out: read from the report file's source, kept when the
// selection formula selects them, then sorted.
struct ReportRows
{
    QStringList fields;               // the data's field names, in the source's order
    QVector<QVector<QVariant>> rows;  // one value per field

    // The position of a field (case-insensitive), -1 when the data has none.
    int fieldIndex(const QString &field) const;
    // The same, raising RuntimeError 3265 naming the field, what uses it and the report file.
    int requireField(const QString &field, const QString &usedAs, const QString &fileName) const;
};

// Reads every row of the definition's table or query on connection and keeps those formula
// selects. The formula's {table.field} names a field of the data; for a table source its table
// must be that table. A field the data lacks raises RuntimeError 3265 before any row is read.
ReportRows loadReportRows(Connection &connection, const ReportDefinition &definition,
                          const SelectionFormula &formula);

// Orders two values for sorting and grouping: Null (and Empty) first, numbers as numbers,
// dates as dates, everything else as texts without regard to case.
int compareReportValues(const QVariant &a, const QVariant &b);

// Sorts the rows by keys, the first deciding first; rows equal on every key keep their order.
void sortReportRows(ReportRows &rows, const QVector<ReportSortKey> &keys, const QString &fileName);

// The sort keys of a run: each group's field first (in the direction the first key naming it
// asks for), so groups come out whole; then the engine's SortFields, then the file's.
QVector<ReportSortKey> reportRunSortKeys(const ReportDefinition &definition, const QStringList &sortFields);

} // namespace PanelKestrin
