#include "shared/numbertext_p.h"

#include <QLocale>
#include <QString>

#include <cmath>

namespace PanelKestrin {

namespace {

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

int digitValue(QChar c, int radix)
{
    int d = -1;
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        d = u - u'0';
    else if (u >= u'a' && u <= u'f')
        d = u - u'a' + 10;
    else if (u >= u'A' && u <= u'F')
        d = u - u'A' + 10;
    return d < radix ? d : -1;
}

// "&H..." or "&O...": the digits after the prefix, sign-extended from 16 or 32 bits.
NumberScan scanRadix(QStringView text, int radix)
{
    NumberScan scan;
    quint64 value = 0;
    int pos = 2;
    while (pos < text.size()) {
        const int d = digitValue(text.at(pos), radix);
        if (d < 0)
            break;
        if (!scan.overflow)
            value = value * quint64(radix) + quint64(d);
        if (value > 0xFFFFFFFFull)
            scan.overflow = true;
        ++pos;
    }
    if (pos == 2)
        return scan; // a bare prefix is no number
    scan.consumed = pos;
    if (value <= 0xFFFFull)
        scan.value = double(qint16(quint16(value)));
    else
        scan.value = double(qint32(quint32(value)));
    return scan;
}

} // namespace

NumberScan scanNumber(QStringView text)
{
    NumberScan scan;
    if (text.size() >= 2 && text.at(0) == QLatin1Char('&')) {
        const QChar prefix = text.at(1).toUpper();
        if (prefix == QLatin1Char('H'))
            return scanRadix(text, 16);
        if (prefix == QLatin1Char('O'))
            return scanRadix(text, 8);
        return scan;
    }

    QString number; // the accepted characters, rewritten for the C locale
    int pos = 0;
    if (pos < text.size() && (text.at(pos) == QLatin1Char('+') || text.at(pos) == QLatin1Char('-')))
        number += text.at(pos++);
    int mantissaDigits = 0;
    bool point = false;
    for (; pos < text.size(); ++pos) {
        const QChar c = text.at(pos);
        if (isDigit(c)) {
            ++mantissaDigits;
        } else if (c == QLatin1Char('.') && !point) {
            point = true;
        } else {
            break;
        }
        number += c;
    }
    if (mantissaDigits == 0)
        return scan;
    int end = pos;

    // The exponent counts only when at least one digit follows the letter and its sign.
    if (pos < text.size()) {
        const QChar letter = text.at(pos).toUpper();
        if (letter == QLatin1Char('E') || letter == QLatin1Char('D')) {
            int epos = pos + 1;
            QString exponent = QStringLiteral("e");
            if (epos < text.size() && (text.at(epos) == QLatin1Char('+') || text.at(epos) == QLatin1Char('-')))
                exponent += text.at(epos++);
            const int firstDigit = epos;
            while (epos < text.size() && isDigit(text.at(epos)))
                exponent += text.at(epos++);
            if (epos > firstDigit) {
                number += exponent;
                end = epos;
            }
        }
    }

    bool ok = false;
    const double value = QLocale::c().toDouble(number, &ok);
    scan.consumed = end;
    if (ok) {
        scan.value = value;
    } else if (std::isinf(value)) {
        scan.overflow = true;
    } else {
        scan.value = 0.0; // below the smallest Double: underflows to zero
    }
    return scan;
}

bool parseNumberText(QStringView text, double *value, bool *overflow)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;
    const NumberScan scan = scanNumber(trimmed);
    if (scan.consumed == 0 || scan.consumed != trimmed.size())
        return false;
    *value = scan.value;
    *overflow = scan.overflow;
    return true;
}

} // namespace PanelKestrin
