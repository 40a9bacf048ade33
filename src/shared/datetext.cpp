#include "shared/datetext_p.h"

#include <QList>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace PanelKestrin {

namespace {

constexpr int kMinYear = 100;
constexpr int kMaxYear = 9999;
// Serial numbers of 1/1/100 and of the last second of 12/31/9999.
constexpr double kMinSerial = -657434.0;
constexpr double kMaxSerial = 2958465.99999;

bool allDigits(QStringView s)
{
    if (s.isEmpty())
        return false;
    for (QChar c : s)
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return false;
    return true;
}

bool isDateSeparator(QChar c)
{
    return c == QLatin1Char('/') || c == QLatin1Char('-') || c == QLatin1Char('.');
}

int fullYear(int year)
{
    if (year >= 100)
        return year;
    return year < 30 ? 2000 + year : 1900 + year;
}

// The month an English month name or its three-letter abbreviation names (any case), as
// short-date patterns with "MMM" or "MMMM" write it; 0 for anything else.
int namedMonth(QStringView part)
{
    if (part.size() < 3 || !part.front().isLetter())
        return 0;
    const QLocale c = QLocale::c();
    for (int month = 1; month <= 12; ++month) {
        if (part.compare(c.monthName(month, QLocale::ShortFormat), Qt::CaseInsensitive) == 0
            || part.compare(c.monthName(month, QLocale::LongFormat), Qt::CaseInsensitive) == 0)
            return month;
    }
    return 0;
}

// Day, month name and year ("05-Dec-2005"), month name first ("Dec-05-2005") or year first
// ("2005-Dec-05"): the numbers are the day and the year, the one of three or four digits or
// else the last being the year.
bool readNamedMonth(const QList<QStringView> &parts, int *year, int *month, int *day)
{
    int named = -1;
    for (int i = 0; i < parts.size(); ++i) {
        const int m = namedMonth(parts.at(i));
        if (m > 0) {
            if (named >= 0)
                return false;
            named = i;
            *month = m;
        } else if (!allDigits(parts.at(i)) || parts.at(i).size() > 4) {
            return false;
        }
    }
    if (named < 0 || named == 2)
        return false;
    const int first = named == 0 ? 1 : 0;
    const bool yearFirst = first == 0 && parts.at(0).size() >= 3;
    *year = parts.at(yearFirst ? 0 : 2).toInt();
    *day = parts.at(yearFirst ? 2 : first).toInt();
    return true;
}

bool parseDatePart(QStringView text, DateOrder order, QDate *date)
{
    QList<QStringView> parts;
    int start = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (isDateSeparator(text.at(i))) {
            parts.append(text.mid(start, i - start));
            start = i + 1;
        }
    }
    parts.append(text.mid(start));
    if (parts.size() != 3)
        return false;
    int year = 0, month = 0, day = 0;
    if (readNamedMonth(parts, &year, &month, &day)) {
        // the month is named: no order to choose
    } else if (std::any_of(parts.cbegin(), parts.cend(), [](QStringView p) { return !allDigits(p) || p.size() > 4; })) {
        return false;
    } else if (parts.at(0).size() >= 3) {
        year = parts.at(0).toInt();
        month = parts.at(1).toInt();
        day = parts.at(2).toInt();
    } else {
        const bool dayFirst = order == DateOrder::DayFirst;
        day = parts.at(dayFirst ? 0 : 1).toInt();
        month = parts.at(dayFirst ? 1 : 0).toInt();
        year = parts.at(2).toInt();
        if (month > 12 && day <= 12)
            std::swap(month, day);
    }
    year = fullYear(year);
    if (year < kMinYear || year > kMaxYear)
        return false;
    const QDate result(year, month, day);
    if (!result.isValid())
        return false;
    *date = result;
    return true;
}

// The date at the start of text as parseDatePart reads it: blanks after a separator dropped
// and a closing "." after the third part dropped ("2005. 12. 05." is 2005.12.05), as locales
// that space their short dates write them. *rest is what follows the date.
QString leadingDate(QStringView text, QStringView *rest)
{
    QString date;
    int separators = 0;
    qsizetype i = 0;
    while (i < text.size() && text.at(i) != QLatin1Char(' ')) {
        const QChar c = text.at(i++);
        if (!isDateSeparator(c)) {
            date += c;
            continue;
        }
        if (++separators == 3) {
            if (c != QLatin1Char('.'))
                date += c; // no date has a third separator: parseDatePart refuses it
            break;
        }
        date += c;
        while (i < text.size() && text.at(i) == QLatin1Char(' '))
            ++i;
    }
    *rest = text.mid(i);
    return date;
}

bool parseTimePart(QStringView text, QTime *time)
{
    int hour = 0, minute = 0, second = 0;
    QStringView clock = text;
    int meridiem = 0; // 0 none, 1 AM, 2 PM
    const int blank = text.indexOf(QLatin1Char(' '));
    if (blank >= 0) {
        const QStringView suffix = text.mid(blank + 1).trimmed();
        if (suffix.compare(QLatin1String("AM"), Qt::CaseInsensitive) == 0)
            meridiem = 1;
        else if (suffix.compare(QLatin1String("PM"), Qt::CaseInsensitive) == 0)
            meridiem = 2;
        else
            return false;
        clock = text.left(blank);
    }
    const QList<QStringView> fields = clock.split(QLatin1Char(':'));
    if (fields.size() > 3 || (fields.size() == 1 && meridiem == 0))
        return false;
    for (QStringView f : fields)
        if (!allDigits(f) || f.size() > 2)
            return false;
    hour = fields.at(0).toInt();
    if (fields.size() > 1)
        minute = fields.at(1).toInt();
    if (fields.size() > 2)
        second = fields.at(2).toInt();
    if (meridiem != 0) {
        if (hour < 1 || hour > 12)
            return false;
        hour = hour % 12 + (meridiem == 2 ? 12 : 0);
    }
    const QTime result(hour, minute, second);
    if (!result.isValid())
        return false;
    *time = result;
    return true;
}

} // namespace

bool parseDateText(QStringView text, DateTimeParts *out, DateOrder order)
{
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;

    DateTimeParts parts;
    const int blank = trimmed.indexOf(QLatin1Char(' '));
    const QStringView first = blank < 0 ? trimmed : trimmed.left(blank);
    if (first.contains(QLatin1Char(':'))) {
        // A time alone belongs to the zero date.
        parts.date = zeroDate();
        if (!parseTimePart(trimmed, &parts.time))
            return false;
    } else {
        QStringView rest;
        if (!parseDatePart(leadingDate(trimmed, &rest), order, &parts.date))
            return false;
        rest = rest.trimmed();
        if (!rest.isEmpty() && !parseTimePart(rest, &parts.time))
            return false;
    }
    *out = parts;
    return true;
}

double toSerial(const DateTimeParts &parts)
{
    const double days = double(zeroDate().daysTo(parts.date));
    const double fraction = parts.time.msecsSinceStartOfDay() / 86400000.0;
    return days < 0 ? days - fraction : days + fraction;
}

bool fromSerial(double serial, DateTimeParts *out)
{
    if (!std::isfinite(serial) || serial < kMinSerial - 1 || serial > kMaxSerial + 1)
        return false;
    const double whole = std::trunc(serial);
    int seconds = int(std::lround(std::fabs(serial - whole) * 86400.0));
    QDate date = zeroDate().addDays(qint64(whole));
    if (seconds >= 86400) {
        seconds = 0;
        date = date.addDays(1);
    }
    if (date.year() < kMinYear || date.year() > kMaxYear)
        return false;
    out->date = date;
    out->time = QTime(0, 0).addSecs(seconds);
    return true;
}

} // namespace PanelKestrin
