#include "data/columninfo_p.h"

#include <limits>

namespace PanelKestrin {

namespace {
constexpr qint32 kUnbounded = 2147483647;
constexpr qint32 kNotApplicable = 255;
constexpr int kDefaultNumericPrecision = 18;
} // namespace

void setColumnType(ColumnInfo &column, qint32 type, int length, int precision, int scale)
{
    if (length < 0 && (type == FieldTypeVarChar || type == FieldTypeVarWChar))
        type = type == FieldTypeVarChar ? FieldTypeLongVarChar : FieldTypeLongVarWChar;

    struct Shape {
        qint32 size, precision, scale;
        ValueKind kind;
    };
    Shape shape{kUnbounded, kNotApplicable, kNotApplicable, ValueKind::AsIs};
    switch (type) {
    case FieldTypeSmallInt: shape = {2, 5, 0, ValueKind::Int}; break;
    case FieldTypeInteger: shape = {4, 10, 0, ValueKind::Int}; break;
    case FieldTypeTinyInt: shape = {1, 3, 0, ValueKind::Int}; break;
    case FieldTypeUnsignedInt: shape = {4, 10, 0, ValueKind::Int}; break;
    case FieldTypeBigInt: shape = {8, 19, 0, ValueKind::LongLong}; break;
    case FieldTypeSingle: shape = {4, 7, kNotApplicable, ValueKind::Double}; break;
    case FieldTypeDouble: shape = {8, 15, kNotApplicable, ValueKind::Double}; break;
    case FieldTypeNumeric:
        shape = {19, precision > 0 ? precision : kDefaultNumericPrecision, precision > 0 && scale >= 0 ? scale : 0,
                 ValueKind::Double};
        break;
    case FieldTypeDate: shape = {8, kNotApplicable, kNotApplicable, ValueKind::Date}; break;
    case FieldTypeDBTime: shape = {6, kNotApplicable, kNotApplicable, ValueKind::Time}; break;
    case FieldTypeDBTimeStamp: shape = {16, kNotApplicable, kNotApplicable, ValueKind::DateTime}; break;
    case FieldTypeBoolean: shape = {2, kNotApplicable, kNotApplicable, ValueKind::Bool}; break;
    case FieldTypeGUID: shape = {16, kNotApplicable, kNotApplicable, ValueKind::AsIs}; break;
    case FieldTypeChar:
    case FieldTypeWChar:
        shape = {length > 0 ? length : 1, kNotApplicable, kNotApplicable, ValueKind::Text};
        break;
    case FieldTypeVarChar:
    case FieldTypeVarWChar: shape = {length, kNotApplicable, kNotApplicable, ValueKind::Text}; break;
    case FieldTypeLongVarChar:
    case FieldTypeLongVarWChar: shape = {kUnbounded, kNotApplicable, kNotApplicable, ValueKind::Text}; break;
    default: break;
    }
    column.Type = type;
    column.DefinedSize = shape.size;
    column.Precision = shape.precision;
    column.NumericScale = shape.scale;
    column.Kind = shape.kind;
}

void setColumnTypeFromValue(ColumnInfo &column, const QVariant &value)
{
    const ValueKind kind = column.Kind;
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::UInt:
        setColumnType(column, FieldTypeInteger);
        break;
    case QMetaType::LongLong:
    case QMetaType::ULongLong: {
        const qlonglong v = value.toLongLong();
        const bool fits = v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max()
                          && (value.metaType().id() == QMetaType::LongLong || value.toULongLong() <= quint64(v));
        setColumnType(column, fits ? FieldTypeInteger : FieldTypeBigInt);
        break;
    }
    case QMetaType::Double:
    case QMetaType::Float:
        setColumnType(column, FieldTypeDouble);
        break;
    case QMetaType::QByteArray:
        setColumnType(column, FieldTypeLongVarBinary);
        break;
    default:
        setColumnType(column, FieldTypeLongVarChar);
        break;
    }
    column.Kind = kind; // the values keep the conversion chosen before they were read
}

} // namespace PanelKestrin
