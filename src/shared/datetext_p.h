#pragma once

#include <QDate>
#include <QStringView>
#include <QTime>

namespace PanelKestrin {

// A date and a time of day, free of any time zone (the classic Date type has none).
struct DateTimeParts {
    QDate date;
    QTime time = QTime(0, 0);
};

// The zero of the classic Date type: 12/30/1899, serial number 0.
inline QDate zeroDate() { return QDate(1899, 12, 30); }

// Which of day and month a date text of three numbers names first when both could be either.
enum class DateOrder { MonthFirst, DayFirst };

// Reads a date text: three parts separated by "/", "-" or ".", numbers in the given order
// (m/d/y or d/m/y) unless that makes an impossible month and the other order does not; a
// first part of three or four digits makes it year first (yyyy-mm-dd). The month may be an
// English month name or its abbreviation ("05-Dec-2005", "Dec-05-2005", "2005-Dec-05"), as a
// short-date pattern with "MMM" writes it. Blanks after a separator and a closing "." are
// allowed ("5. 12. 2005", "2005. 12. 05."), as spaced short-date patterns write dates. Years
// below 100 are two-digit years: 00-29 are 20xx, 30-99 19xx. An optional time
// "h:mm[:ss] [AM|PM]" may follow after a blank; a time alone is a time on the zero date. False for anything that is
// not a possible date in the years 100 to 9999.
bool parseDateText(QStringView text, DateTimeParts *out, DateOrder order = DateOrder::MonthFirst);

// The classic serial number: whole days since the zero date; the fraction is the time of day
// (for dates before the zero date the fraction is subtracted: -1.25 is 12/29/1899 06:00).
double toSerial(const DateTimeParts &parts);

// The date and time of a serial number rounded to the second; false outside the years
// 100 to 9999 (or for a number that is not finite).
bool fromSerial(double serial, DateTimeParts *out);

} // namespace PanelKestrin
