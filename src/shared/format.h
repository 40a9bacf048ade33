#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <QVariant>

namespace PanelKestrin {

// The classic Format function.
//
// Dates (a QDate, QDateTime or QTime, a text that IsDate accepts, or a number taken as a
// serial date under a date pattern) are written with the pattern's tokens, letters in any
// case: d dd (day), ddd dddd (English day name), m mm (month; minutes right after an hour
// token), mmm mmmm (English month name), y (day of the year), yy yyyy, h hh (hour; 12-hour
// when the pattern holds AM/PM or am/pm), n nn (minutes), s ss (seconds). Every other
// character is a literal, as is text in double quotes and a character after "\".
//
// Numbers (and numeric text) under a pattern of "0", "#", "." and "," placeholders are
// written with that many digits: "0" always shows a digit, "#" only a significant one, ","
// between integer placeholders groups thousands, "%" multiplies by 100, "E+00" / "E-00"
// after the placeholders asks for scientific notation ("+" shows the exponent's sign always,
// "-" only when negative); up to three sections separated by ";" serve positive, negative
// and zero values. Values round half away from zero.
//
// Empty and Null give ""; a text that is neither gives itself back unchanged; an empty
// pattern gives CStr of the value.
PANELKESTRIN_EXPORT QString Format(const QVariant &Expression, const QString &Pattern = QString());

} // namespace PanelKestrin
