#pragma once

#include <PanelKestrin/field.h>

#include <QString>
#include <QVector>

namespace PanelKestrin {

// How the values of a column are brought to the one QVariant type that both engines give
// for its declared type (text -> QString, INTEGER -> int, NUMERIC -> double ...).
enum class ValueKind : quint8 {
    AsIs,
    Int,
    LongLong,
    Double,
    Bool,
    Date,
    DateTime,
    DateOrDateTime, // a DATETIME column: QDateTime when the value has a time, QDate otherwise
    Time,
    Text,
    FromValue,      // an expression or an untyped column: typed by its values
};

// Everything a recordset knows about one of its columns.
struct ColumnInfo {
    QString Name;
    qint32 Type = FieldTypeLongVarChar;
    qint32 DefinedSize = 2147483647;
    qint32 Precision = 255;
    qint32 NumericScale = 255;
    qint32 Attributes = FieldIsNullable;
    QString BaseTable;  // empty for an expression
    QString BaseColumn;
    ValueKind Kind = ValueKind::AsIs;
    // Engine-specific identity of the source table and column, for lookups done after the
    // rows are fetched (PostgreSQL: table OID and attribute number).
    quint32 SourceTableId = 0;
    int SourceColumn = 0;
};

// Sets the classic type with the sizes that go with it. length (for character types),
// precision and scale (for NUMERIC) override the defaults where a declaration states them; a
// VARCHAR without a length becomes unbounded text.
void setColumnType(ColumnInfo &column, qint32 type, int length = -1, int precision = -1, int scale = -1);

// The type of an expression column from its first non-null value (integer -> INTEGER,
// 64-bit integer out of int range -> BIGINT, real -> DOUBLE, anything else -> unbounded text).
void setColumnTypeFromValue(ColumnInfo &column, const QVariant &value);

} // namespace PanelKestrin
