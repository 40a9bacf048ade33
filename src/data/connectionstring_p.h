#pragma once

#include <QHash>
#include <QString>

namespace PanelKestrin {

// The key=value pairs of a connection string. Keys are kept lower-cased with inner runs of
// blanks reduced to one, so "User ID", "user id" and "USER  ID" are the same key.
class ConnectionStringParts
{
public:
    // Splits at ';' outside quotes. A value may be enclosed in " or ' (a doubled quote inside
    // stands for itself, ';' inside is literal). Empty segments are skipped; a segment without
    // '=', an empty key or an unterminated quote raises error 3001 naming the segment.
    static ConnectionStringParts parse(const QString &text);

    bool contains(const QString &key) const;
    // The value of the first of the given keys that is present (aliases such as "Host" and
    // "Server"), or an empty string.
    QString value(std::initializer_list<const char *> keys) const;

private:
    static QString normalizedKey(const QString &key);
    QHash<QString, QString> m_values;
};

} // namespace PanelKestrin
