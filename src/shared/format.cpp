#include <PanelKestrin/format.h>

#include <PanelKestrin/conversions.h>
#include <PanelKestrin/runtimeerror.h>

#include "shared/conversions_p.h"
#include "shared/datepattern_p.h"
#include "shared/datetext_p.h"
#include "shared/numberformat_p.h"
#include "shared/numbertext_p.h"
#include "shared/variantkind_p.h"

namespace PanelKestrin {

namespace {

bool isNumberPattern(const QString &pattern)
{
    return pattern.contains(QLatin1Char('0')) || pattern.contains(QLatin1Char('#'));
}

} // namespace

QString Format(const QVariant &Expression, const QString &Pattern)
{
    const VariantKind kind = variantKind(Expression);
    if (kind == VariantKind::Empty || kind == VariantKind::Null)
        return QString();
    if (Pattern.isEmpty() || kind == VariantKind::Other)
        return CStr(Expression); // the general form; other types raise a type mismatch

    switch (kind) {
    case VariantKind::Date:
        return formatDate({Expression.toDate(), QTime(0, 0)}, Pattern);
    case VariantKind::DateTime:
        return formatDate({Expression.toDateTime().date(), Expression.toDateTime().time()}, Pattern);
    case VariantKind::Time:
        return formatDate({zeroDate(), Expression.toTime()}, Pattern);
    case VariantKind::String: {
        const QString text = Expression.toString();
        double value = 0.0;
        bool overflow = false;
        if (isNumberPattern(Pattern) && parseNumberText(text, &value, &overflow) && !overflow)
            return formatNumber(value, Pattern);
        DateTimeParts parts;
        if (parseDateText(text, &parts, userDateOrder()))
            return formatDate(parts, Pattern);
        return text;
    }
    default:
        break;
    }

    const double value = numberValue(Expression, kind);
    if (isNumberPattern(Pattern))
        return formatNumber(value, Pattern);
    DateTimeParts parts;
    if (!fromSerial(value, &parts))
        throw RuntimeError(ErrOverflow, QString(), QStringLiteral("Format"));
    return formatDate(parts, Pattern);
}

} // namespace PanelKestrin
