// Reading a selection formula into its tree: a tokenizer that reads one token ahead and a
// recursive-descent reader over the grammar in selectionformula_p.h. Every malformed input ends
// in run-time error 5 naming the position and what was expected there.

#include "printing/selectionformula_p.h"
#include "printing/selectionformulatree_p.h"

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/runtimeerror.h>

#include <QDateTime>

namespace PanelKestrin {

namespace {

const QString &errorSource()
{
    static const QString source = QStringLiteral("SelectionFormula");
    return source;
}

// Deeper nesting of "not", parentheses and uppercase() than any real formula needs; it keeps
// reading and evaluation off the end of the stack.
constexpr int kMaxDepth = 100;
// Longest piece of the formula quoted in an error message.
constexpr int kMaxQuoted = 24;

struct Token
{
    enum Kind { End, Field, Text, Number, Date, Word, Operator, Open, Close, Other };
    Kind kind = End;
    qsizetype pos = 0;  // where it starts
    qsizetype end = 0;  // just past it
    QString text;       // Text: the value; Word: the word; Field: the table
    QString field;      // Field: the field name
    double number = 0;
    DateTimeParts date;
    FormulaComparison comparison = FormulaComparison::Equal;
};

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\r') || c == QLatin1Char('\n');
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool isWordStart(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_');
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_');
}

// Characters that end a table or field name inside braces.
bool endsName(QChar c)
{
    switch (c.unicode()) {
    case u'{': case u'}': case u'.': case u'\'': case u'(': case u')':
    case u'=': case u'<': case u'>': case u',': case u'\r': case u'\n':
        return true;
    default:
        return c.unicode() < 0x20;
    }
}

QString quoted(QStringView piece)
{
    if (piece.size() > kMaxQuoted)
        return QLatin1Char('\'') + piece.left(kMaxQuoted).toString() + QStringLiteral("...'");
    return QLatin1Char('\'') + piece.toString() + QLatin1Char('\'');
}

class Reader
{
public:
    explicit Reader(const QString &text) : m_text(text) {}

    SelectionFormulaTree read()
    {
        m_tree.text = m_text;
        advance();
        if (m_token.kind != Token::End) {
            m_tree.root = readOr(0);
            if (m_token.kind != Token::End)
                expected(QStringLiteral("'and', 'or' or the end of the formula"));
        }
        return std::move(m_tree);
    }

private:
    const QString &m_text;
    qsizetype m_at = 0;
    Token m_token;
    SelectionFormulaTree m_tree;

    [[noreturn]] void fail(qsizetype pos, const QString &what) const
    {
        throw RuntimeError(ErrInvalidProcedureCall,
                           QStringLiteral("Malformed selection formula at position %1: %2.").arg(pos + 1).arg(what),
                           errorSource());
    }

    QString found(qsizetype pos, qsizetype end) const
    {
        if (pos >= m_text.size())
            return QStringLiteral("the end of the formula");
        return quoted(QStringView(m_text).mid(pos, qMax<qsizetype>(end - pos, 1)));
    }

    [[noreturn]] void expectedAt(qsizetype pos, const QString &what) const
    {
        fail(pos, QStringLiteral("expected %1, found %2").arg(what, found(pos, pos + 1)));
    }

    [[noreturn]] void expected(const QString &what) const
    {
        fail(m_token.pos, QStringLiteral("expected %1, found %2").arg(what, found(m_token.pos, m_token.end)));
    }

    bool isWord(const char *keyword) const
    {
        return m_token.kind == Token::Word && m_token.text.compare(QLatin1String(keyword), Qt::CaseInsensitive) == 0;
    }

    // ---- tokens

    void advance()
    {
        while (m_at < m_text.size() && isBlank(m_text.at(m_at)))
            ++m_at;
        m_token = Token();
        m_token.pos = m_at;
        if (m_at >= m_text.size()) {
            m_token.end = m_at;
            return;
        }
        const QChar c = m_text.at(m_at);
        const qsizetype numberEnd = scanFormulaNumber(m_text, m_at);
        if (numberEnd > m_at)
            readNumber(numberEnd);
        else if (c == QLatin1Char('{'))
            readField();
        else if (c == QLatin1Char('\''))
            readText();
        else if (c == QLatin1Char('#'))
            readDate();
        else if (isWordStart(c))
            readWord();
        else if (c == QLatin1Char('(') || c == QLatin1Char(')'))
            readSingle(c == QLatin1Char('(') ? Token::Open : Token::Close);
        else if (c == QLatin1Char('=') || c == QLatin1Char('<') || c == QLatin1Char('>'))
            readOperator();
        else
            readSingle(Token::Other);
        m_token.end = m_at;
    }

    void readSingle(Token::Kind kind)
    {
        m_token.kind = kind;
        ++m_at;
    }

    void readNumber(qsizetype end)
    {
        bool ok = false;
        const double value = QStringView(m_text).mid(m_at, end - m_at).toDouble(&ok);
        if (!ok || !qIsFinite(value))
            fail(m_at, QStringLiteral("expected a number within range, found %1").arg(found(m_at, end)));
        m_token.kind = Token::Number;
        m_token.number = value;
        m_token.text = m_text.mid(m_at, end - m_at);
        m_at = end;
    }

    void readWord()
    {
        const qsizetype start = m_at;
        while (m_at < m_text.size() && isWordChar(m_text.at(m_at)))
            ++m_at;
        m_token.kind = Token::Word;
        m_token.text = m_text.mid(start, m_at - start);
    }

    void readOperator()
    {
        const QChar c = m_text.at(m_at++);
        const QChar next = m_at < m_text.size() ? m_text.at(m_at) : QChar();
        m_token.kind = Token::Operator;
        if (c == QLatin1Char('=')) {
            m_token.comparison = FormulaComparison::Equal;
        } else if (c == QLatin1Char('<') && next == QLatin1Char('>')) {
            m_token.comparison = FormulaComparison::NotEqual;
            ++m_at;
        } else if (next == QLatin1Char('=')) {
            m_token.comparison = c == QLatin1Char('<') ? FormulaComparison::LessEqual : FormulaComparison::GreaterEqual;
            ++m_at;
        } else {
            m_token.comparison = c == QLatin1Char('<') ? FormulaComparison::Less : FormulaComparison::Greater;
        }
    }

    // 'text', a doubled quote standing for one quote.
    void readText()
    {
        const qsizetype start = m_at++;
        QString value;
        for (;;) {
            const qsizetype quote = m_text.indexOf(QLatin1Char('\''), m_at);
            if (quote < 0)
                expectedAt(m_text.size(), QStringLiteral("a quote closing the text begun at position %1").arg(start + 1));
            value += QStringView(m_text).mid(m_at, quote - m_at);
            m_at = quote + 1;
            if (m_at < m_text.size() && m_text.at(m_at) == QLatin1Char('\'')) {
                value += QLatin1Char('\'');
                ++m_at;
                continue;
            }
            break;
        }
        m_token.kind = Token::Text;
        m_token.text = value;
    }

    // A table or field name inside braces, up to the character that ends it.
    QString readName()
    {
        const qsizetype start = m_at;
        while (m_at < m_text.size() && !endsName(m_text.at(m_at)))
            ++m_at;
        return m_text.mid(start, m_at - start).trimmed();
    }

    bool at(char c) const
    {
        return m_at < m_text.size() && m_text.at(m_at) == QLatin1Char(c);
    }

    void readField()
    {
        const qsizetype start = m_at++;
        const QString table = readName();
        if (table.isEmpty())
            expectedAt(m_at, QStringLiteral("a table name after '{'"));
        if (!at('.'))
            expectedAt(m_at, QStringLiteral("'.' between the table and field names"));
        ++m_at;
        const QString field = readName();
        if (field.isEmpty())
            expectedAt(m_at, QStringLiteral("a field name after '.'"));
        if (!at('}'))
            expectedAt(m_at, QStringLiteral("'}' closing the field reference begun at position %1").arg(start + 1));
        ++m_at;
        m_token.kind = Token::Field;
        m_token.text = table;
        m_token.field = field;
    }

    // #date#, in any form a date text may take.
    void readDate()
    {
        const qsizetype start = m_at;
        const qsizetype close = m_text.indexOf(QLatin1Char('#'), start + 1);
        if (close < 0)
            expectedAt(m_text.size(), QStringLiteral("'#' closing the date begun at position %1").arg(start + 1));
        if (!readFormulaDate(QStringView(m_text).mid(start + 1, close - start - 1), &m_token.date))
            fail(start, QStringLiteral("expected a date between the '#' signs, found %1").arg(found(start, close + 1)));
        m_token.kind = Token::Date;
        m_at = close + 1;
    }

    // ---- tree

    int addCondition(FormulaCondition condition)
    {
        m_tree.conditions.push_back(std::move(condition));
        return int(m_tree.conditions.size() - 1);
    }

    int addOperand(FormulaOperand operand)
    {
        m_tree.operands.push_back(std::move(operand));
        return int(m_tree.operands.size() - 1);
    }

    void checkDepth(int depth) const
    {
        if (depth > kMaxDepth)
            fail(m_token.pos, QStringLiteral("conditions and values nest more than %1 deep here").arg(kMaxDepth));
    }

    int readOr(int depth)
    {
        return readChain(FormulaCondition::Or, "or", depth);
    }

    int readAnd(int depth)
    {
        return readChain(FormulaCondition::And, "and", depth);
    }

    // Terms joined by one keyword; "or" joins "and" chains, "and" joins single conditions.
    int readChain(FormulaCondition::Kind kind, const char *keyword, int depth)
    {
        std::vector<int> terms;
        for (;;) {
            terms.push_back(kind == FormulaCondition::Or ? readAnd(depth) : readNot(depth));
            if (!isWord(keyword))
                break;
            advance();
        }
        if (terms.size() == 1)
            return terms.front();
        FormulaCondition chain;
        chain.kind = kind;
        chain.terms = std::move(terms);
        return addCondition(std::move(chain));
    }

    int readNot(int depth)
    {
        checkDepth(depth);
        if (isWord("not")) {
            advance();
            FormulaCondition negation;
            negation.kind = FormulaCondition::Not;
            negation.terms.push_back(readNot(depth + 1));
            return addCondition(std::move(negation));
        }
        if (m_token.kind == Token::Open) {
            const qsizetype open = m_token.pos;
            advance();
            if (m_token.kind == Token::Close)
                expected(QStringLiteral("a condition"));
            const int inner = readOr(depth + 1);
            if (m_token.kind != Token::Close)
                expected(QStringLiteral("'and', 'or' or ')' closing the parenthesis at position %1").arg(open + 1));
            advance();
            return inner;
        }
        return readComparison(depth);
    }

    int readComparison(int depth)
    {
        FormulaCondition comparison;
        comparison.left = readValue(depth);
        if (m_token.kind == Token::Operator)
            comparison.comparison = m_token.comparison;
        else if (isWord("like"))
            comparison.comparison = FormulaComparison::Like;
        else
            expected(QStringLiteral("a comparison operator or 'like'"));
        advance();
        comparison.right = readValue(depth);
        return addCondition(std::move(comparison));
    }

    // The next non-blank character after the current token, or a null character at the end.
    QChar nextCharacter() const
    {
        qsizetype i = m_token.end;
        while (i < m_text.size() && isBlank(m_text.at(i)))
            ++i;
        return i < m_text.size() ? m_text.at(i) : QChar();
    }

    int readValue(int depth)
    {
        checkDepth(depth);
        FormulaOperand operand;
        switch (m_token.kind) {
        case Token::Field: {
            const SelectionFormula::FieldReference reference{m_token.text, m_token.field};
            operand.kind = FormulaOperand::Field;
            operand.field = int(m_tree.fields.indexOf(reference));
            if (operand.field < 0) {
                operand.field = int(m_tree.fields.size());
                m_tree.fields.append(reference);
            }
            break;
        }
        case Token::Text:
            operand.kind = FormulaOperand::Text;
            operand.text = m_token.text;
            break;
        case Token::Number:
            operand.kind = FormulaOperand::Number;
            operand.number = m_token.number;
            operand.text = m_token.text;
            break;
        case Token::Date:
            operand.kind = FormulaOperand::Date;
            operand.date = m_token.date;
            break;
        case Token::Word:
            if (isWord("uppercase"))
                return readUppercase(depth);
            if (!isWord("and") && !isWord("or") && !isWord("not") && !isWord("like")
                && nextCharacter() == QLatin1Char('('))
                fail(m_token.pos, QStringLiteral("unknown function %1; the one function is uppercase()")
                                      .arg(quoted(m_token.text)));
            expected(QStringLiteral("a value"));
        default:
            expected(QStringLiteral("a value"));
        }
        advance();
        return addOperand(std::move(operand));
    }

    int readUppercase(int depth)
    {
        advance();
        if (m_token.kind != Token::Open)
            expected(QStringLiteral("'(' after uppercase"));
        const qsizetype open = m_token.pos;
        advance();
        FormulaOperand operand;
        operand.kind = FormulaOperand::Uppercase;
        operand.inner = readValue(depth + 1);
        if (m_token.kind != Token::Close)
            expected(QStringLiteral("')' closing the parenthesis at position %1").arg(open + 1));
        advance();
        return addOperand(std::move(operand));
    }
};

QString fieldText(const QString &table, const QString &field)
{
    return QLatin1Char('{') + table + QLatin1Char('.') + field + QLatin1Char('}');
}

[[noreturn]] void raiseMissingField(const SelectionFormula::FieldReference &reference)
{
    throw RuntimeError(ErrItemNotFound,
                       QStringLiteral("The selection formula refers to the field %1, which the report's data does not have.")
                           .arg(reference.text()),
                       errorSource());
}

} // namespace

qsizetype scanFormulaNumber(QStringView text, qsizetype from)
{
    qsizetype i = from;
    if (i < text.size() && (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-')))
        ++i;
    qsizetype digits = 0;
    while (i < text.size() && isDigit(text.at(i))) {
        ++i;
        ++digits;
    }
    if (i < text.size() && text.at(i) == QLatin1Char('.')) {
        qsizetype after = i + 1;
        while (after < text.size() && isDigit(text.at(after))) {
            ++after;
            ++digits;
        }
        if (digits > 0)
            i = after;
    }
    return digits > 0 ? i : from;
}

bool readFormulaDate(QStringView text, DateTimeParts *out, DateOrder order)
{
    if (parseDateText(text, out, order))
        return true;
    const QDateTime iso = QDateTime::fromString(text.trimmed().toString(), Qt::ISODate);
    if (!iso.isValid() || iso.date().year() < 100)
        return false;
    out->date = iso.date();
    out->time = iso.time();
    return true;
}

QString SelectionFormula::FieldReference::text() const
{
    return fieldText(table, field);
}

SelectionFormula::SelectionFormula() : d(std::make_shared<SelectionFormulaTree>()) {}

SelectionFormula SelectionFormula::parse(const QString &text)
{
    SelectionFormula formula;
    formula.d = std::make_shared<SelectionFormulaTree>(Reader(text).read());
    return formula;
}

bool SelectionFormula::isEmpty() const
{
    return d->root < 0;
}

QString SelectionFormula::text() const
{
    return d->text;
}

QList<SelectionFormula::FieldReference> SelectionFormula::fieldReferences() const
{
    return d->fields;
}

void SelectionFormula::checkFields(const FieldExists &exists) const
{
    for (const FieldReference &reference : d->fields) {
        if (!exists(reference.table, reference.field))
            raiseMissingField(reference);
    }
}

bool SelectionFormula::matches(const FieldLookup &lookup) const
{
    if (d->root < 0)
        return true;
    QVariantList values;
    values.reserve(d->fields.size());
    for (const FieldReference &reference : d->fields) {
        QVariant value = lookup(reference.table, reference.field);
        if (!value.isValid())
            raiseMissingField(reference);
        values.append(std::move(value));
    }
    return evaluateFormula(*d, d->root, values);
}

} // namespace PanelKestrin
