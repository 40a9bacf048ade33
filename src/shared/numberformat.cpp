#include "shared/numberformat_p.h"

#include <PanelKestrin/runtimeerror.h>

#include <QStringList>

#include <cmath>

namespace PanelKestrin {

namespace {

// One section of a numeric pattern, split into the literal text around the first run of
// placeholders and what that run asks for.
struct NumberSection {
    QString prefix;
    QString suffix;
    int integerZeros = 0;   // "0" placeholders before the point: minimum integer digits
    int integerPlaces = 0;  // all placeholders before the point
    bool point = false;
    int decimalMin = 0;     // decimals always shown (up to the last "0" after the point)
    int decimalMax = 0;     // decimals shown at most (every placeholder after the point)
    bool grouping = false;  // "," between integer placeholders
    bool percent = false;
    QString exponentLetter; // "E" or "e" when the pattern asks for scientific notation
    bool exponentPlus = false;
    int exponentDigits = 0; // minimum exponent digits
};

bool isPlaceholder(QChar c)
{
    return c == QLatin1Char('0') || c == QLatin1Char('#');
}

bool isNumberChar(QChar c)
{
    return isPlaceholder(c) || c == QLatin1Char('.') || c == QLatin1Char(',');
}

// Splits at ";" outside double quotes.
QStringList sectionsOf(const QString &pattern)
{
    QStringList sections(1);
    bool quoted = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        if (c == QLatin1Char(';') && !quoted) {
            sections.append(QString());
            continue;
        }
        sections.last() += c;
        if (c == QLatin1Char('\\') && i + 1 < pattern.size())
            sections.last() += pattern.at(++i);
    }
    return sections;
}

// "E+0", "e-#" ...: an exponent letter, its sign rule and at least one placeholder.
bool isExponentAt(const QString &text, int i)
{
    const QChar c = text.at(i);
    return (c == QLatin1Char('E') || c == QLatin1Char('e')) && i + 2 < text.size()
           && (text.at(i + 1) == QLatin1Char('+') || text.at(i + 1) == QLatin1Char('-'))
           && isPlaceholder(text.at(i + 2));
}

NumberSection parseSection(const QString &text)
{
    NumberSection section;
    enum { Before, Inside, After } state = Before;
    bool integerPlaceholderSeen = false;
    bool commaPending = false;
    int decimals = 0;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        QString &literal = state == Before ? section.prefix : section.suffix;
        if (c == QLatin1Char('"')) {
            const int close = text.indexOf(QLatin1Char('"'), i + 1);
            const int end = close < 0 ? text.size() : close;
            literal += QStringView(text).mid(i + 1, end - i - 1);
            i = end;
            if (state == Inside)
                state = After;
            continue;
        }
        if (c == QLatin1Char('\\')) {
            if (i + 1 < text.size())
                literal += text.at(++i);
            if (state == Inside)
                state = After;
            continue;
        }
        const bool secondPoint = c == QLatin1Char('.') && section.point;
        if (state != After && isNumberChar(c) && !secondPoint) {
            state = Inside;
            if (c == QLatin1Char('.')) {
                section.point = true;
            } else if (c == QLatin1Char(',')) {
                commaPending = !section.point && integerPlaceholderSeen;
            } else if (section.point) {
                ++decimals;
                if (c == QLatin1Char('0'))
                    section.decimalMin = decimals;
            } else {
                integerPlaceholderSeen = true;
                ++section.integerPlaces;
                section.grouping = section.grouping || commaPending;
                if (c == QLatin1Char('0'))
                    ++section.integerZeros;
            }
            continue;
        }
        if (state == Inside && isExponentAt(text, i)) {
            section.exponentLetter = c;
            section.exponentPlus = text.at(i + 1) == QLatin1Char('+');
            for (i += 2; i < text.size() && isPlaceholder(text.at(i)); ++i) {
                if (text.at(i) == QLatin1Char('0'))
                    ++section.exponentDigits;
            }
            --i;
            state = After;
            continue;
        }
        if (state == Inside)
            state = After;
        if (c == QLatin1Char('%'))
            section.percent = true;
        (state == Before ? section.prefix : section.suffix) += c;
    }
    section.decimalMax = decimals;
    return section;
}

QString grouped(const QString &digits)
{
    QString out;
    for (int i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            out += QLatin1Char(',');
        out += digits.at(i);
    }
    return out;
}

// The digits of a non-negative value in fixed notation.
QString plainDigits(double magnitude, const NumberSection &section)
{
    const QString fixed = QString::number(magnitude, 'f', section.decimalMax);
    const int dot = fixed.indexOf(QLatin1Char('.'));
    QString integer = dot < 0 ? fixed : fixed.left(dot);
    QString decimals = dot < 0 ? QString() : fixed.mid(dot + 1);
    while (decimals.size() > section.decimalMin && decimals.endsWith(QLatin1Char('0')))
        decimals.chop(1);
    if (integer == QLatin1String("0") && section.integerZeros == 0)
        integer.clear();
    while (integer.size() < section.integerZeros)
        integer.prepend(QLatin1Char('0'));
    if (section.grouping)
        integer = grouped(integer);
    return section.point ? integer + QLatin1Char('.') + decimals : integer;
}

int integerDigitCount(double magnitude, int decimals)
{
    const QString fixed = QString::number(magnitude, 'f', decimals);
    const int dot = fixed.indexOf(QLatin1Char('.'));
    return dot < 0 ? fixed.size() : dot;
}

// The digits of a non-negative value as the section shows them (without prefix or suffix).
// In scientific notation the mantissa has as many integer digits as the pattern has
// integer placeholders.
QString digitsFor(double magnitude, const NumberSection &section)
{
    if (section.exponentLetter.isEmpty())
        return plainDigits(magnitude, section);
    const int places = qMax(1, section.integerPlaces);
    int exponent = magnitude == 0.0 ? 0 : int(std::floor(std::log10(magnitude))) - (places - 1);
    double mantissa = magnitude / std::pow(10.0, exponent);
    // Rounding may carry into one more integer digit (9.996 as "0.00" is "10.00").
    if (magnitude != 0.0 && integerDigitCount(mantissa, section.decimalMax) > places) {
        ++exponent;
        mantissa = magnitude / std::pow(10.0, exponent);
    }
    const QString sign = exponent < 0 ? QStringLiteral("-") : section.exponentPlus ? QStringLiteral("+") : QString();
    return plainDigits(mantissa, section) + section.exponentLetter + sign
           + QStringLiteral("%1").arg(std::abs(exponent), section.exponentDigits, 10, QLatin1Char('0'));
}

QString render(double magnitude, const NumberSection &section)
{
    return section.prefix + digitsFor(section.percent ? magnitude * 100.0 : magnitude, section) + section.suffix;
}

bool hasNonZeroDigit(const QString &text)
{
    for (QChar c : text)
        if (c >= QLatin1Char('1') && c <= QLatin1Char('9'))
            return true;
    return false;
}

} // namespace

QString formatNumber(double value, const QString &pattern)
{
    if (!std::isfinite(value))
        throw RuntimeError(ErrOverflow, QString(), QStringLiteral("Format"));
    const QStringList sections = sectionsOf(pattern);
    if (value < 0 && sections.size() >= 2 && !sections.at(1).isEmpty())
        return render(-value, parseSection(sections.at(1)));
    if (value == 0 && sections.size() >= 3 && !sections.at(2).isEmpty())
        return render(0.0, parseSection(sections.at(2)));

    const NumberSection section = parseSection(sections.at(0));
    const QString digits = digitsFor(std::fabs(section.percent ? value * 100.0 : value), section);
    const QString sign = value < 0 && hasNonZeroDigit(digits) ? QStringLiteral("-") : QString();
    return sign + section.prefix + digits + section.suffix;
}

} // namespace PanelKestrin
