#include "data/sqltext_p.h"

#include <QRegularExpression>

namespace PanelKestrin {

bool isBareTableName(const QString &text)
{
    static const QRegularExpression name(
        QStringLiteral("^\\s*[A-Za-z_][A-Za-z0-9_$]*(\\.[A-Za-z_][A-Za-z0-9_$]*)?\\s*$"));
    return name.match(text).hasMatch();
}

namespace {

// Index just past the quoted run opened at i by the character text[i], or text.size().
// In an escape string (E'...') a backslash escapes the next character.
qsizetype skipQuoted(const QString &text, qsizetype i)
{
    const QChar quote = text[i];
    const bool escapes = quote == QLatin1Char('\'') && i > 0
                         && (text[i - 1] == QLatin1Char('E') || text[i - 1] == QLatin1Char('e'))
                         && (i < 2 || !(text[i - 2].isLetterOrNumber() || text[i - 2] == QLatin1Char('_')));
    for (++i; i < text.size(); ++i) {
        if (escapes && text[i] == QLatin1Char('\\')) {
            ++i;
            continue;
        }
        if (text[i] == quote) {
            if (i + 1 < text.size() && text[i + 1] == quote) {
                ++i; // a doubled quote stands for itself
                continue;
            }
            return i + 1;
        }
    }
    return text.size();
}

// If a comment starts at i, the index just past it; otherwise i.
qsizetype skipComment(const QString &text, qsizetype i)
{
    if (text.mid(i, 2) == QLatin1String("--")) {
        const qsizetype end = text.indexOf(QLatin1Char('\n'), i);
        return end < 0 ? text.size() : end + 1;
    }
    if (text.mid(i, 2) == QLatin1String("/*")) {
        const qsizetype end = text.indexOf(QLatin1String("*/"), i + 2);
        return end < 0 ? text.size() : end + 2;
    }
    return i;
}

// If a dollar-quoted string ($$...$$ or $tag$...$tag$) starts at i, the index just past it;
// otherwise i.
qsizetype skipDollarQuoted(const QString &text, qsizetype i)
{
    static const QRegularExpression tag(QStringLiteral("\\$([A-Za-z_][A-Za-z0-9_]*)?\\$"));
    const QRegularExpressionMatch m =
        tag.match(text, i, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
    if (!m.hasMatch())
        return i;
    // A '$' that continues an identifier (name$1) does not open a string.
    if (i > 0 && (text[i - 1].isLetterOrNumber() || text[i - 1] == QLatin1Char('_')))
        return i;
    const qsizetype end = text.indexOf(m.captured(0), i + m.capturedLength());
    return end < 0 ? text.size() : end + m.capturedLength();
}

} // namespace

QString singleStatement(const QString &text, bool &several)
{
    several = false;
    qsizetype terminator = -1;
    qsizetype i = 0;
    while (i < text.size()) {
        const QChar c = text[i];
        const qsizetype afterComment = skipComment(text, i);
        if (afterComment != i) {
            i = afterComment;
            continue;
        }
        if (c.isSpace()) {
            ++i;
            continue;
        }
        if (c == QLatin1Char(';')) {
            if (terminator < 0)
                terminator = i;
            ++i;
            continue;
        }
        if (terminator >= 0) {
            several = true;
            break;
        }
        if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('`')) {
            i = skipQuoted(text, i);
            continue;
        }
        if (c == QLatin1Char('$')) {
            const qsizetype after = skipDollarQuoted(text, i);
            i = after == i ? i + 1 : after;
            continue;
        }
        ++i;
    }
    return terminator < 0 ? text : text.left(terminator);
}

} // namespace PanelKestrin
