#include "shared/variantkind_p.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

namespace PanelKestrin {

VariantKind variantKind(const QVariant &v)
{
    if (!v.isValid())
        return VariantKind::Empty;
    if (v.isNull())
        return VariantKind::Null;
    switch (v.metaType().id()) {
    case QMetaType::Bool:
        return VariantKind::Boolean;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return VariantKind::Integer;
    case QMetaType::Float:
        return VariantKind::Single;
    case QMetaType::Double:
        return VariantKind::Double;
    case QMetaType::QDate:
        return v.toDate().isValid() ? VariantKind::Date : VariantKind::Other;
    case QMetaType::QDateTime:
        return v.toDateTime().isValid() ? VariantKind::DateTime : VariantKind::Other;
    case QMetaType::QTime:
        return v.toTime().isValid() ? VariantKind::Time : VariantKind::Other;
    case QMetaType::QString:
    case QMetaType::QChar:
        return VariantKind::String;
    default:
        return VariantKind::Other;
    }
}

double numberValue(const QVariant &v, VariantKind k)
{
    if (k == VariantKind::Boolean)
        return v.toBool() ? -1.0 : 0.0;
    return v.toDouble();
}

} // namespace PanelKestrin
