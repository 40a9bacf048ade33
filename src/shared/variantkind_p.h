#pragma once

#include <QVariant>

namespace PanelKestrin {

// The classic variant subtypes that the conversion and formatting helpers tell apart.
// Invalid dates and date-times, containers and custom types are Other (type mismatch).
enum class VariantKind { Empty, Null, Boolean, Integer, Single, Double, Date, DateTime, Time, String, Other };

// A QtSql NULL (a valid variant whose value is null) counts as Null, like the explicit one.
VariantKind variantKind(const QVariant &v);

// True for the kinds that hold a number (booleans included: True is -1).
inline bool isNumberKind(VariantKind k)
{
    return k == VariantKind::Boolean || k == VariantKind::Integer || k == VariantKind::Single
           || k == VariantKind::Double;
}

// The numeric value of a number kind (True gives -1).
double numberValue(const QVariant &v, VariantKind k);

} // namespace PanelKestrin
