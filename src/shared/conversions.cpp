#include <PanelKestrin/conversions.h>

#include <PanelKestrin/runtimeerror.h>

#include "platform/regionalsettings_p.h"
#include "shared/conversions_p.h"
#include "shared/datepattern_p.h"
#include "shared/datetext_p.h"
#include "shared/numbertext_p.h"
#include "shared/variantkind_p.h"

#include <QCoreApplication>

#include <charconv>
#include <cmath>

namespace PanelKestrin {

namespace {

QString translate(const char *text)
{
    return QCoreApplication::translate("PanelKestrin::Conversions", text);
}

[[noreturn]] void raiseNull(const char *function)
{
    throw RuntimeError(ErrInvalidUseOfNull, QString(), QLatin1String(function));
}

[[noreturn]] void raiseMismatch(const char *function, const QVariant &value)
{
    const QString description = value.metaType().id() == QMetaType::QString
        ? translate("Type mismatch: \"%1\" cannot be converted").arg(value.toString())
        : translate("Type mismatch: a value of type %1 cannot be converted")
              .arg(QLatin1String(value.metaType().name()));
    throw RuntimeError(ErrTypeMismatch, description, QLatin1String(function));
}

[[noreturn]] void raiseOverflow(const char *function)
{
    throw RuntimeError(ErrOverflow, QString(), QLatin1String(function));
}

QString twoDigits(int n)
{
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

// mm/dd/yyyy. Grids convert every date they show, so the common four-digit year is written
// character by character.
QString monthFirstDateText(const QDate &date)
{
    const int year = date.year();
    if (year < 0 || year > 9999)
        return QStringLiteral("%1/%2/%3")
            .arg(twoDigits(date.month()), twoDigits(date.day()))
            .arg(year, 4, 10, QLatin1Char('0'));
    const auto digit = [](int n) { return QChar(u'0' + n); };
    const QChar text[10] = {digit(date.month() / 10), digit(date.month() % 10), QLatin1Char('/'),
                            digit(date.day() / 10),   digit(date.day() % 10),   QLatin1Char('/'),
                            digit(year / 1000),       digit(year / 100 % 10),   digit(year / 10 % 10),
                            digit(year % 10)};
    return QString(text, 10);
}

bool isMonthFirstPattern(const QString &pattern)
{
    return pattern.compare(QLatin1String("MM/dd/yyyy"), Qt::CaseInsensitive) == 0;
}

// A date in the user's short-date pattern.
QString dateText(const QDate &date)
{
    const QString &pattern = regionalSettings().shortDate;
    if (isMonthFirstPattern(pattern))
        return monthFirstDateText(date);
    return formatDate({date, QTime(0, 0)}, pattern);
}

QString timeText(const QTime &time)
{
    return QStringLiteral("%1:%2:%3").arg(twoDigits(time.hour()), twoDigits(time.minute()), twoDigits(time.second()));
}

// Shortest text of x with at most `digits` significant digits and the given decimal
// separator; exponent form (with at least two exponent digits) for very large and very small
// magnitudes, as "%.*g" chooses it.
QString numberText(double x, int digits, const QString &decimal)
{
    if (!std::isfinite(x))
        raiseOverflow("CStr");
    if (x == 0.0)
        return QStringLiteral("0");
    // The "%.*g" form, written without a locale and with the exponent letter in upper case.
    char text[40];
    const std::to_chars_result written = std::to_chars(text, text + sizeof text, x, std::chars_format::general, digits);
    for (char *c = text; c != written.ptr; ++c)
        if (*c == 'e')
            *c = 'E';
    QString result = QString::fromLatin1(text, int(written.ptr - text));
    if (decimal != QLatin1String("."))
        result.replace(QLatin1Char('.'), decimal);
    return result;
}

// The Double value of anything that converts to a number.
double toDouble(const QVariant &v, const char *function)
{
    const VariantKind kind = variantKind(v);
    switch (kind) {
    case VariantKind::Empty:
        return 0.0;
    case VariantKind::Null:
        raiseNull(function);
    case VariantKind::Boolean:
    case VariantKind::Integer:
    case VariantKind::Single:
    case VariantKind::Double:
        return numberValue(v, kind);
    case VariantKind::Date:
        return toSerial({v.toDate(), QTime(0, 0)});
    case VariantKind::DateTime:
        return toSerial({v.toDateTime().date(), v.toDateTime().time()});
    case VariantKind::Time:
        return toSerial({zeroDate(), v.toTime()});
    case VariantKind::String: {
        double value = 0.0;
        bool overflow = false;
        if (!parseNumberText(v.toString(), &value, &overflow))
            raiseMismatch(function, v);
        if (overflow)
            raiseOverflow(function);
        return value;
    }
    case VariantKind::Other:
        break;
    }
    raiseMismatch(function, v);
}

// Rounds half to even and checks the range of the target type.
double roundedWhole(const QVariant &v, const char *function, double lowest, double highest)
{
    const double rounded = std::nearbyint(toDouble(v, function));
    if (!(rounded >= lowest && rounded <= highest))
        raiseOverflow(function);
    return rounded;
}

QString textWithDecimal(const QVariant &Expression, const QString &decimal)
{
    const VariantKind kind = variantKind(Expression);
    switch (kind) {
    case VariantKind::Empty:
        return QString();
    case VariantKind::Null:
        raiseNull("CStr");
    case VariantKind::Boolean:
        return Expression.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case VariantKind::Integer:
        if (Expression.metaType().id() == QMetaType::ULongLong)
            return QString::number(Expression.toULongLong());
        return QString::number(Expression.toLongLong());
    case VariantKind::Single:
        return numberText(double(Expression.toFloat()), 7, decimal);
    case VariantKind::Double:
        return numberText(Expression.toDouble(), 15, decimal);
    case VariantKind::Date:
        return dateText(Expression.toDate());
    case VariantKind::DateTime: {
        const QDateTime dt = Expression.toDateTime();
        if (dt.time() == QTime(0, 0))
            return dateText(dt.date());
        return dateText(dt.date()) + QLatin1Char(' ') + timeText(dt.time());
    }
    case VariantKind::Time:
        return timeText(Expression.toTime());
    case VariantKind::String:
        return Expression.toString();
    case VariantKind::Other:
        break;
    }
    raiseMismatch("CStr", Expression);
}

} // namespace

double Val(const QString &String)
{
    QString text;
    text.reserve(String.size());
    for (QChar c : String) {
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\n'))
            text += c;
    }
    const NumberScan scan = scanNumber(text);
    if (scan.overflow)
        raiseOverflow("Val");
    return scan.value;
}

double Val(const QVariant &Expression)
{
    return Val(pointText(Expression));
}

DateOrder userDateOrder()
{
    return regionalSettings().dayFirst() ? DateOrder::DayFirst : DateOrder::MonthFirst;
}

bool hasTextForm(const QVariant &value)
{
    switch (variantKind(value)) {
    case VariantKind::Null:
    case VariantKind::Other:
        return false;
    case VariantKind::Single:
        return std::isfinite(value.toFloat());
    case VariantKind::Double:
        return std::isfinite(value.toDouble());
    default:
        return true;
    }
}

QString CStr(const QVariant &Expression)
{
    return textWithDecimal(Expression, regionalSettings().decimal);
}

QString pointText(const QVariant &value)
{
    static const QString point = QStringLiteral(".");
    return textWithDecimal(value, point);
}

qint16 CInt(const QVariant &Expression)
{
    return qint16(roundedWhole(Expression, "CInt", -32768.0, 32767.0));
}

qint32 CLng(const QVariant &Expression)
{
    return qint32(roundedWhole(Expression, "CLng", -2147483648.0, 2147483647.0));
}

double CDbl(const QVariant &Expression)
{
    return toDouble(Expression, "CDbl");
}

bool CBool(const QVariant &Expression)
{
    if (variantKind(Expression) == VariantKind::String) {
        const QString text = Expression.toString().trimmed();
        if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return false;
    }
    return toDouble(Expression, "CBool") != 0.0;
}

bool IsNumeric(const QVariant &Expression)
{
    const VariantKind kind = variantKind(Expression);
    if (kind == VariantKind::Empty || isNumberKind(kind))
        return true;
    if (kind != VariantKind::String)
        return false;
    double value = 0.0;
    bool overflow = false;
    return parseNumberText(Expression.toString(), &value, &overflow) && !overflow;
}

bool IsDate(const QVariant &Expression)
{
    switch (variantKind(Expression)) {
    case VariantKind::Date:
    case VariantKind::DateTime:
    case VariantKind::Time:
        return true;
    case VariantKind::String: {
        DateTimeParts parts;
        return parseDateText(Expression.toString(), &parts, userDateOrder());
    }
    default:
        return false;
    }
}

QDate CDate(const QVariant &Expression)
{
    const VariantKind kind = variantKind(Expression);
    switch (kind) {
    case VariantKind::Empty:
    case VariantKind::Time:
        return zeroDate();
    case VariantKind::Null:
        raiseNull("CDate");
    case VariantKind::Date:
        return Expression.toDate();
    case VariantKind::DateTime:
        return Expression.toDateTime().date();
    case VariantKind::String: {
        DateTimeParts parts;
        if (!parseDateText(Expression.toString(), &parts, userDateOrder()))
            raiseMismatch("CDate", Expression);
        return parts.date;
    }
    case VariantKind::Boolean:
    case VariantKind::Integer:
    case VariantKind::Single:
    case VariantKind::Double: {
        DateTimeParts parts;
        if (!fromSerial(numberValue(Expression, kind), &parts))
            raiseOverflow("CDate");
        return parts.date;
    }
    case VariantKind::Other:
        break;
    }
    raiseMismatch("CDate", Expression);
}

} // namespace PanelKestrin
