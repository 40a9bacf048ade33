#include "shared/datepattern_p.h"

#include <QLocale>

namespace PanelKestrin {

namespace {

QString padded(int n, int width)
{
    return QStringLiteral("%1").arg(n, width, 10, QLatin1Char('0'));
}

// Number of consecutive characters from i equal to c in any case.
int runLength(const QString &pattern, int i, QChar c)
{
    int n = 0;
    while (i + n < pattern.size() && pattern.at(i + n).toLower() == c)
        ++n;
    return n;
}

bool startsWithAt(const QString &pattern, int i, QLatin1String token)
{
    return QStringView(pattern).mid(i).startsWith(token, Qt::CaseInsensitive);
}

class DateWriter
{
public:
    DateWriter(const DateTimeParts &parts, const QString &pattern)
        : m_parts(parts), m_pattern(pattern),
          m_twelveHour(pattern.contains(QLatin1String("AM/PM"), Qt::CaseInsensitive)
                       || pattern.contains(QLatin1String("A/P"), Qt::CaseInsensitive))
    {
    }

    QString write()
    {
        int i = 0;
        while (i < m_pattern.size())
            i = writeAt(i);
        return m_out;
    }

private:
    // Writes the token or literal at i; returns the position after it.
    int writeAt(int i)
    {
        const QChar c = m_pattern.at(i);
        if (c == QLatin1Char('"')) {
            const int close = m_pattern.indexOf(QLatin1Char('"'), i + 1);
            const int end = close < 0 ? m_pattern.size() : close;
            m_out += QStringView(m_pattern).mid(i + 1, end - i - 1);
            return end + 1;
        }
        if (c == QLatin1Char('\\')) {
            if (i + 1 < m_pattern.size())
                m_out += m_pattern.at(i + 1);
            return i + 2;
        }
        if (startsWithAt(m_pattern, i, QLatin1String("AM/PM"))) {
            writeMeridiem(c, QStringLiteral("AM"), QStringLiteral("PM"));
            return i + 5;
        }
        if (startsWithAt(m_pattern, i, QLatin1String("A/P"))) {
            writeMeridiem(c, QStringLiteral("A"), QStringLiteral("P"));
            return i + 3;
        }
        const QChar letter = c.toLower();
        const int run = runLength(m_pattern, i, letter);
        int used = 0;
        switch (letter.unicode()) {
        case u'd': used = writeDay(run); break;
        case u'm': used = writeMonthOrMinute(run); break;
        case u'y': used = writeYear(run); break;
        case u'h': used = writeTimeField(run, hour()); break;
        case u'n': used = writeTimeField(run, m_parts.time.minute()); break;
        case u's': used = writeTimeField(run, m_parts.time.second()); break;
        default:
            m_out += c;
            return i + 1;
        }
        m_afterHour = letter == QLatin1Char('h');
        return i + used;
    }

    void writeMeridiem(QChar first, const QString &am, const QString &pm)
    {
        const QString text = m_parts.time.hour() < 12 ? am : pm;
        m_out += first.isLower() ? text.toLower() : text;
        m_afterHour = false;
    }

    int hour() const
    {
        const int h = m_parts.time.hour();
        if (!m_twelveHour)
            return h;
        return h % 12 == 0 ? 12 : h % 12;
    }

    int writeDay(int run)
    {
        const int used = qMin(run, 4);
        const QDate &d = m_parts.date;
        if (used <= 2)
            m_out += padded(d.day(), used);
        else
            m_out += QLocale::c().dayName(d.dayOfWeek(), used == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
        return used;
    }

    int writeMonthOrMinute(int run)
    {
        const int used = qMin(run, 4);
        if (used <= 2 && m_afterHour) {
            m_out += padded(m_parts.time.minute(), used);
        } else if (used <= 2) {
            m_out += padded(m_parts.date.month(), used);
        } else {
            m_out += QLocale::c().monthName(m_parts.date.month(),
                                            used == 3 ? QLocale::ShortFormat : QLocale::LongFormat);
        }
        return used;
    }

    int writeYear(int run)
    {
        const QDate &d = m_parts.date;
        if (run >= 4) {
            m_out += padded(d.year(), 4);
            return 4;
        }
        if (run >= 2) {
            m_out += padded(d.year() % 100, 2);
            return 2;
        }
        m_out += QString::number(d.dayOfYear());
        return 1;
    }

    int writeTimeField(int run, int value)
    {
        const int used = qMin(run, 2);
        m_out += padded(value, used);
        return used;
    }

    const DateTimeParts &m_parts;
    const QString &m_pattern;
    const bool m_twelveHour;
    bool m_afterHour = false;
    QString m_out;
};

} // namespace

QString formatDate(const DateTimeParts &parts, const QString &pattern)
{
    return DateWriter(parts, pattern).write();
}

} // namespace PanelKestrin
