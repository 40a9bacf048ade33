#include "printing/reportdefinitionlines_p.h"

namespace PanelKestrin {

int reportLineAtOffset(const QByteArray &text, int offset)
{
    const int end = qBound(0, offset, int(text.size()));
    return int(std::count(text.constBegin(), text.constBegin() + end, '\n')) + 1;
}

namespace {

// Walks a valid JSON text along a path, counting lines as it goes.
class PathWalker
{
public:
    explicit PathWalker(const QByteArray &text) : m_text(text) {}

    int lineOf(const QVector<QVariant> &path)
    {
        m_found = 1;
        skipBlanks();
        follow(path, 0);
        return m_found;
    }

private:
    char peek() const { return m_pos < m_text.size() ? m_text.at(m_pos) : '\0'; }

    void advance()
    {
        if (peek() == '\n')
            ++m_line;
        ++m_pos;
    }

    void skipBlanks()
    {
        while (m_pos < m_text.size() && (peek() == ' ' || peek() == '\t' || peek() == '\r' || peek() == '\n'))
            advance();
    }

    // The raw text of a string (escapes left as written), the position after its closing quote.
    QByteArray readString()
    {
        advance(); // opening quote
        const int start = m_pos;
        while (m_pos < m_text.size() && peek() != '"') {
            if (peek() == '\\')
                advance();
            advance();
        }
        const QByteArray raw = m_text.mid(start, m_pos - start);
        advance(); // closing quote
        return raw;
    }

    void skipValue()
    {
        skipBlanks();
        const char c = peek();
        if (c == '"') {
            readString();
        } else if (c == '{' || c == '[') {
            int depth = 0;
            do {
                if (peek() == '"') {
                    readString();
                    continue;
                }
                if (peek() == '{' || peek() == '[')
                    ++depth;
                else if (peek() == '}' || peek() == ']')
                    --depth;
                advance();
            } while (depth > 0 && m_pos < m_text.size());
        } else {
            while (m_pos < m_text.size() && !QByteArray(",]} \t\r\n").contains(peek()))
                advance();
        }
        skipBlanks();
    }

    void follow(const QVector<QVariant> &path, int step)
    {
        m_found = m_line;
        if (step == path.size())
            return;
        const QVariant &want = path.at(step);
        if (want.typeId() == QMetaType::QString) {
            if (peek() != '{')
                return;
            advance();
            skipBlanks();
            while (peek() == '"') {
                const int keyLine = m_line;
                const QByteArray key = readString();
                skipBlanks();
                advance(); // ':'
                skipBlanks();
                if (QString::fromUtf8(key) == want.toString()) {
                    follow(path, step + 1);
                    if (step + 1 == path.size())
                        m_found = keyLine;
                    return;
                }
                skipValue();
                if (peek() == ',')
                    advance();
                skipBlanks();
            }
        } else {
            if (peek() != '[')
                return;
            advance();
            skipBlanks();
            for (int index = 0; peek() != ']' && m_pos < m_text.size(); ++index) {
                if (index == want.toInt()) {
                    follow(path, step + 1);
                    return;
                }
                skipValue();
                if (peek() == ',')
                    advance();
                skipBlanks();
            }
        }
    }

    const QByteArray &m_text;
    int m_pos = 0;
    int m_line = 1;
    int m_found = 1;
};

} // namespace

int reportLineOfPath(const QByteArray &text, const QVector<QVariant> &path)
{
    return PathWalker(text).lineOf(path);
}

} // namespace PanelKestrin
