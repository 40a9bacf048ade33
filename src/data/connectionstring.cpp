#include "data/connectionstring_p.h"

#include "data/dataerror_p.h"

#include <QCoreApplication>

namespace PanelKestrin {

namespace {

const QString kSource = QStringLiteral("PanelKestrin.Connection");

[[noreturn]] void malformed(const QString &segment, const char *why)
{
    raiseDataError(ErrBadArguments,
                   QCoreApplication::translate("PanelKestrin::Connection",
                                               "Malformed connection string segment \"%1\": %2.")
                       .arg(segment, QCoreApplication::translate("PanelKestrin::Connection", why)),
                   kSource);
}

} // namespace

QString ConnectionStringParts::normalizedKey(const QString &key)
{
    return key.simplified().toLower();
}

ConnectionStringParts ConnectionStringParts::parse(const QString &text)
{
    ConnectionStringParts parts;
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n) {
        const qsizetype segmentStart = i;
        // Key: everything up to '=' or ';'.
        while (i < n && text[i] != QLatin1Char('=') && text[i] != QLatin1Char(';'))
            ++i;
        const QString key = text.mid(segmentStart, i - segmentStart);
        if (i == n || text[i] == QLatin1Char(';')) {
            if (!key.trimmed().isEmpty())
                malformed(key.trimmed(), "there is no \"=\" between a keyword and its value");
            ++i; // an empty segment, as in a trailing ';'
            continue;
        }
        if (key.trimmed().isEmpty())
            malformed(text.mid(segmentStart).section(QLatin1Char(';'), 0, 0), "the keyword is missing");
        ++i; // past '='
        while (i < n && text[i].isSpace())
            ++i;
        QString value;
        if (i < n && (text[i] == QLatin1Char('"') || text[i] == QLatin1Char('\''))) {
            const QChar quote = text[i++];
            bool closed = false;
            while (i < n) {
                if (text[i] == quote) {
                    if (i + 1 < n && text[i + 1] == quote) {
                        value += quote;
                        i += 2;
                        continue;
                    }
                    ++i;
                    closed = true;
                    break;
                }
                value += text[i++];
            }
            if (!closed)
                malformed(text.mid(segmentStart), "a quoted value is not closed");
            while (i < n && text[i].isSpace())
                ++i;
            if (i < n && text[i] != QLatin1Char(';'))
                malformed(text.mid(segmentStart).section(QLatin1Char(';'), 0, 0),
                          "text follows the closing quote");
        } else {
            const qsizetype valueStart = i;
            while (i < n && text[i] != QLatin1Char(';'))
                ++i;
            value = text.mid(valueStart, i - valueStart).trimmed();
        }
        parts.m_values.insert(normalizedKey(key), value);
        ++i; // past ';'
    }
    return parts;
}

bool ConnectionStringParts::contains(const QString &key) const
{
    return m_values.contains(normalizedKey(key));
}

QString ConnectionStringParts::value(std::initializer_list<const char *> keys) const
{
    for (const char *key : keys) {
        const auto it = m_values.constFind(normalizedKey(QString::fromLatin1(key)));
        if (it != m_values.cend())
            return it.value();
    }
    return QString();
}

} // namespace PanelKestrin
