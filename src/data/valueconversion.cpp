#include "data/valueconversion_p.h"

#include <PanelKestrin/variant.h>

#include <limits>

namespace PanelKestrin {

namespace {

const QVariant &nullValue()
{
    static const QVariant null = Null();
    return null;
}

// Reads exactly `count` digits at text[pos]; false when one of them is not a digit.
bool readDigits(QStringView text, qsizetype pos, int count, int &out)
{
    if (pos + count > text.size())
        return false;
    int v = 0;
    for (int k = 0; k < count; ++k) {
        const char16_t c = text[pos + k].unicode();
        if (c < u'0' || c > u'9')
            return false;
        v = v * 10 + (c - u'0');
    }
    out = v;
    return true;
}

bool readDate(QStringView text, QDate &date)
{
    int y, m, d;
    if (!readDigits(text, 0, 4, y) || text.size() < 10 || text[4] != u'-' || !readDigits(text, 5, 2, m)
        || text[7] != u'-' || !readDigits(text, 8, 2, d))
        return false;
    date = QDate(y, m, d);
    return date.isValid();
}

// Parses "hh:mm[:ss[.fraction]]" at pos; returns the index past it or -1.
qsizetype readTime(QStringView text, qsizetype pos, QTime &time)
{
    int h, mi, s = 0, ms = 0;
    if (!readDigits(text, pos, 2, h) || pos + 2 >= text.size() || text[pos + 2] != u':'
        || !readDigits(text, pos + 3, 2, mi))
        return -1;
    pos += 5;
    if (pos < text.size() && text[pos] == u':') {
        if (!readDigits(text, pos + 1, 2, s))
            return -1;
        pos += 3;
        if (pos < text.size() && (text[pos] == u'.' || text[pos] == u',')) {
            ++pos;
            int scale = 100;
            while (pos < text.size() && text[pos] >= u'0' && text[pos] <= u'9') {
                ms += (text[pos].unicode() - u'0') * scale;
                scale /= 10;
                ++pos;
            }
        }
    }
    time = QTime(h, mi, s, ms);
    return time.isValid() ? pos : -1;
}

// Parses an optional zone at pos ("Z", "+hh", "+hhmm", "+hh:mm"); returns the index past it,
// pos when there is none, -1 when malformed. offsetSeconds is set when a zone was read.
qsizetype readZone(QStringView text, qsizetype pos, bool &hasZone, int &offsetSeconds)
{
    hasZone = false;
    if (pos < text.size() && text[pos] == u' ')
        ++pos;
    if (pos >= text.size())
        return pos;
    if (text[pos] == u'Z') {
        hasZone = true;
        offsetSeconds = 0;
        return pos + 1;
    }
    if (text[pos] != u'+' && text[pos] != u'-')
        return -1;
    const int sign = text[pos] == u'-' ? -1 : 1;
    int h, m = 0;
    if (!readDigits(text, pos + 1, 2, h))
        return -1;
    pos += 3;
    if (pos < text.size() && text[pos] == u':')
        ++pos;
    if (pos < text.size()) {
        if (!readDigits(text, pos, 2, m))
            return -1;
        pos += 2;
    }
    hasZone = true;
    offsetSeconds = sign * (h * 3600 + m * 60);
    return pos;
}

bool fitsInt(qlonglong v)
{
    return v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max();
}

void toAsIs(QVariant &v)
{
    if (v.isNull())
        v = nullValue();
}

void toInt(QVariant &v)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    const int id = v.metaType().id();
    if (id == QMetaType::LongLong || id == QMetaType::ULongLong) {
        const qlonglong x = v.toLongLong();
        if (fitsInt(x) && (id == QMetaType::LongLong || v.toULongLong() <= quint64(std::numeric_limits<int>::max())))
            v = QVariant(int(x));
    }
}

void toFromValue(QVariant &v)
{
    toInt(v);
}

void toLongLong(QVariant &v)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    const int id = v.metaType().id();
    // The PostgreSQL driver gives a non-negative BIGINT as an unsigned number.
    if (id == QMetaType::ULongLong && v.toULongLong() <= quint64(std::numeric_limits<qlonglong>::max())) {
        v = QVariant(v.toLongLong());
    } else if (id == QMetaType::Int || id == QMetaType::QString) {
        bool ok = false;
        const qlonglong x = v.toLongLong(&ok);
        if (ok)
            v = QVariant(x);
    }
}

void toDouble(QVariant &v)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    switch (v.metaType().id()) {
    case QMetaType::Double:
        return;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Int:
    case QMetaType::Float:
    case QMetaType::QString: {
        bool ok = false;
        const double x = v.toDouble(&ok);
        if (ok)
            v = QVariant(x);
        return;
    }
    default:
        return;
    }
}

void toBool(QVariant &v)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    switch (v.metaType().id()) {
    case QMetaType::Bool:
        return;
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Int:
        v = QVariant(v.toLongLong() != 0);
        return;
    case QMetaType::QString: {
        const QString s = v.toString().trimmed().toLower();
        if (s == QLatin1String("true") || s == QLatin1String("t") || s == QLatin1String("1"))
            v = QVariant(true);
        else if (s == QLatin1String("false") || s == QLatin1String("f") || s == QLatin1String("0"))
            v = QVariant(false);
        return;
    }
    default:
        return;
    }
}

void toDate(QVariant &v)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    switch (v.metaType().id()) {
    case QMetaType::QDate:
        return;
    case QMetaType::QDateTime:
        v = QVariant(v.toDateTime().date());
        return;
    case QMetaType::QString: {
        QDate d;
        if (parseIsoDate(v.toString(), d))
            v = QVariant(d);
        return;
    }
    default:
        return;
    }
}

void toDateTimeOrDate(QVariant &v, bool dateWithoutTime)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    switch (v.metaType().id()) {
    case QMetaType::QDateTime:
        return;
    case QMetaType::QDate:
        if (!dateWithoutTime)
            v = QVariant(v.toDate().startOfDay());
        return;
    case QMetaType::QString: {
        QDateTime dt;
        bool hasTime = false;
        if (parseIsoDateTime(v.toString(), dt, hasTime))
            v = (dateWithoutTime && !hasTime) ? QVariant(dt.date()) : QVariant(dt);
        return;
    }
    default:
        return;
    }
}

void toDateTime(QVariant &v)
{
    toDateTimeOrDate(v, false);
}

void toDateOrDateTime(QVariant &v)
{
    toDateTimeOrDate(v, true);
}

void toTime(QVariant &v)
{
    if (v.isNull()) {
        v = nullValue();
        return;
    }
    if (v.metaType().id() == QMetaType::QString) {
        const QString s = v.toString();
        QTime t;
        if (readTime(s, 0, t) == s.size())
            v = QVariant(t);
    }
}

} // namespace

bool parseIsoDate(QStringView text, QDate &date)
{
    return readDate(text, date);
}

bool parseIsoDateTime(QStringView text, QDateTime &dateTime, bool &hasTime)
{
    QDate date;
    if (!readDate(text, date))
        return false;
    hasTime = false;
    QTime time(0, 0);
    qsizetype pos = 10;
    if (pos < text.size() && (text[pos] == u' ' || text[pos] == u'T')) {
        pos = readTime(text, pos + 1, time);
        if (pos < 0)
            return false;
        hasTime = true;
    }
    bool hasZone = false;
    int offset = 0;
    pos = readZone(text, pos, hasZone, offset);
    if (pos != text.size())
        return false;
    if (hasZone)
        dateTime = QDateTime(date, time, Qt::OffsetFromUTC, offset).toLocalTime();
    else
        dateTime = QDateTime(date, time);
    return dateTime.isValid();
}

ValueConverter valueConverter(ValueKind kind)
{
    switch (kind) {
    case ValueKind::Int: return toInt;
    case ValueKind::LongLong: return toLongLong;
    case ValueKind::Double: return toDouble;
    case ValueKind::Bool: return toBool;
    case ValueKind::Date: return toDate;
    case ValueKind::DateTime: return toDateTime;
    case ValueKind::DateOrDateTime: return toDateOrDateTime;
    case ValueKind::Time: return toTime;
    case ValueKind::FromValue: return toFromValue;
    case ValueKind::Text:
    case ValueKind::AsIs: break;
    }
    return toAsIs;
}

} // namespace PanelKestrin
