#include "data/sqltext_p.h"

#include <QRegularExpression>

namespace PanelKestrin {

bool isBareTableName(const QString &text)
{
    static const QRegularExpression name(
        QStringLiteral("^\\s*[A-Za-z_][A-Za-z0-9_$]*(\\.[A-Za-z_][A-Za-z0-9_$]*)?\\s*$"));
    return name.match(text).hasMatch();
}

QString numberedMarkers(const QString &text)
{
    QString result;
    result.reserve(text.size() + text.size() / 8);
    QChar closingQuote;
    int count = 0;
    for (const QChar c : text) {
        if (!closingQuote.isNull()) {
            if (c == closingQuote)
                closingQuote = QChar();
            result += c;
        } else if (c == QLatin1Char('?')) {
            result += QLatin1Char('$') + QString::number(++count);
        } else {
            if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('`'))
                closingQuote = c;
            result += c;
        }
    }
    return result;
}

} // namespace PanelKestrin
