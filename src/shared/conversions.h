#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QDate>
#include <QString>
#include <QVariant>

namespace PanelKestrin {

// The classic conversion functions over variants. Empty converts to 0 / "" / False; Null
// raises run-time error 94; a value that cannot be converted raises 13 (type mismatch), a
// result outside the target type's range 6 (overflow). A QtSql NULL counts as Null.
// Numbers read from text always use "." as the decimal point. What is written for people
// follows the user's regional settings (HKEY_CURRENT_USER "\Control Panel\International":
// sShortDate, sDecimal), and so does the day/month order in which a typed date is read.

// The leading number of the text, 0 when there is none. Blanks, tabs and line feeds are
// ignored anywhere; reading stops at the first character that cannot continue the number.
// Accepts a sign, one ".", an exponent with "E" or "D", and "&H" / "&O" prefixes.
// A number too large for a Double raises 6.
PANELKESTRIN_EXPORT double Val(const QString &String);
// Val of the variant's text, numbers written with "." whatever the user's decimal separator:
// Val(1.5) is 1.5 everywhere.
PANELKESTRIN_EXPORT double Val(const QVariant &Expression);
inline double Val(const char *String) { return Val(QString::fromUtf8(String)); }

// The text of a value: "True"/"False"; numbers in the shortest form with up to 15
// significant digits (7 for a Single), the user's decimal separator and exponents such as
// "1E+20"; dates in the user's short-date pattern ("MM/dd/yyyy" unless the settings or the
// locale say otherwise) followed by " hh:mm:ss" when the time is not midnight; times as
// "hh:mm:ss".
PANELKESTRIN_EXPORT QString CStr(const QVariant &Expression);

// Whole numbers, rounded half to even (2.5 -> 2, 3.5 -> 4). Text must be a number as a
// whole; True is -1; a date converts to its serial number (days since 12/30/1899).
PANELKESTRIN_EXPORT qint16 CInt(const QVariant &Expression);
PANELKESTRIN_EXPORT qint32 CLng(const QVariant &Expression);
PANELKESTRIN_EXPORT double CDbl(const QVariant &Expression);
// Numbers (numeric text too) are True when not zero; "True"/"False" in any case.
PANELKESTRIN_EXPORT bool CBool(const QVariant &Expression);

// True when CDbl would succeed: Empty, booleans, numbers and numeric text; not Null, dates
// or other text.
PANELKESTRIN_EXPORT bool IsNumeric(const QVariant &Expression);

// True for dates and for texts that read as a date: in the day/month order of the user's
// short-date pattern ("12/25/2005" month first, "25/12/2005" day first), in the other order
// when the first reading gives no month ("25/12/2005" under a month-first pattern), or year
// first ("2005-12-25"); separators "/", "-" or "."; an optional time may follow. Impossible
// dates are not dates.
PANELKESTRIN_EXPORT bool IsDate(const QVariant &Expression);
// The date of a date, a date text (read as IsDate reads it) or a serial number; Empty gives
// 12/30/1899.
PANELKESTRIN_EXPORT QDate CDate(const QVariant &Expression);

} // namespace PanelKestrin
