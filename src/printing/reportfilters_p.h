#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>

namespace PanelKestrin {

// What the print query form gathers for a report's filter: the "Group On" field with its type
// code, the range the user gave (the texts trimmed; for a date field the two dates as text),
// and the "Criteria For" value chosen, if any. Values go into the filters as typed: no quote is
// doubled, nothing is escaped (the engine's formula reader and the database refuse what does
// not parse).
struct PANELKESTRIN_EXPORT ReportFilterInput
{
    QString field;        // grpfield
    int fieldType = 0;    // the field's type code: 7 date, 131 numeric, anything else text
    QString fromText;     // txtfrom, trimmed
    QString toText;       // txtto, trimmed
    QString fromDate;     // DTPicker1 as text (date fields)
    QString toDate;       // DTPicker2 as text
    bool hasCriteria = false;
    QString criteriaField; // SelectionField
    QString criteriaValue; // the chosen criteria row's value
};

// The table a report file's title names: the text after the first "\RPT" (in any case) of
// rpttitle, so that ...\RPTorders gives orders. "/RPT" counts as well when there is no "\RPT",
// for paths written with forward slashes. Without either, the text from the fourth character.
PANELKESTRIN_EXPORT QString reportTableName(const QString &rpttitle);

// The report engine's selection formula for the input, fields written {table.field}:
//   date:    {T.F} >= 'from' and {T.F} <= 'to'
//   numeric: {T.F} >= from [and] {T.F} <= to, each side only when given
//   text:    from and to: (uppercase({T.F}) >= uppercase('from') and uppercase({T.F}) <=
//            uppercase('to')) or uppercase({T.F}) like uppercase('to*'); to alone: the same
//            without the lower bound; from alone: " uppercase({T.F}) like uppercase('from*')"
//            (a prefix match, with its leading blank)
// With criteria, "{T.C} = 'value'" comes first, joined by " and " to the range when there is one.
PANELKESTRIN_EXPORT QString engineSelectionFormula(const ReportFilterInput &input, const QString &table);

// The engine's first sort field: "+" and {table.field} upper-cased.
PANELKESTRIN_EXPORT QString engineSortField(const QString &table, const QString &field);

// The SQL filter of a data report: the WHERE text (without "where") and the field of the order
// term. The same shapes as the formula with bare field names, "Upper(" / "upper(" and "%": a
// lone from value on a text field gives " or Upper(F) like upper('from%')", which begins with
// "or". With criteria the WHERE text starts with "C = 'value'", and the order field is the
// criteria value itself rather than the "Group On" field.
struct PANELKESTRIN_EXPORT SqlReportFilter
{
    QString where;
    QString orderField;
};
PANELKESTRIN_EXPORT SqlReportFilter sqlReportFilter(const ReportFilterInput &input);

// The data report's statement for a database kind: selquery, " where " and the filter when there
// is one, then " order by <field>": for kind 1 only when the field differs from primaryKey, for
// kind 2 always, for any other kind when the field is not empty (every "+" of selquery then
// becomes "||" first).
PANELKESTRIN_EXPORT QString sqlReportStatement(const QString &selquery, const SqlReportFilter &filter,
                                               int databaseKind, const QString &primaryKey);

} // namespace PanelKestrin
