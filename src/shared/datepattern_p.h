#pragma once

#include "shared/datetext_p.h"

#include <QString>

namespace PanelKestrin {

// Writes a date and time with a date pattern of Format's tokens, letters in any case: d dd
// (day), ddd dddd (English day name), m mm (month; minutes right after an hour token), mmm
// mmmm (English month name), y (day of the year), yy yyyy, h hh (hour; 12-hour when the
// pattern holds AM/PM or am/pm), n nn (minutes), s ss (seconds). Every other character is a
// literal, as is text in double quotes and a character after "\".
QString formatDate(const DateTimeParts &parts, const QString &pattern);

} // namespace PanelKestrin
