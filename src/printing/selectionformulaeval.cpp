// Evaluating a selection formula's tree over one row: the values of the referenced fields in,
// selected or not out. How two values compare is described in selectionformula_p.h.

#include "printing/selectionformulatree_p.h"
#include "shared/conversions_p.h"
#include "shared/variantkind_p.h"

#include <PanelKestrin/conversions.h>

#include <QDateTime>
#include <algorithm>

namespace PanelKestrin {

namespace {

// A value as comparisons see it. Numbers and dates keep the variant they came from, so that
// their written text is the one CStr gives (a Single field writes 1.1, not 1.10000002384186).
struct Value
{
    enum Kind { Null, Number, Text, Date };
    Kind kind = Null;
    double number = 0;
    QString text;      // Text
    DateTimeParts date; // Date
    QVariant source;   // Number, Date
};

Value makeNumber(double number, const QVariant &source)
{
    Value v;
    v.kind = Value::Number;
    v.number = number;
    v.source = source;
    return v;
}

Value makeDate(const QDate &date, const QTime &time, const QVariant &source)
{
    Value v;
    v.kind = Value::Date;
    v.date.date = date;
    v.date.time = time;
    v.source = source;
    return v;
}

Value makeText(const QString &text)
{
    Value v;
    v.kind = Value::Text;
    v.text = text;
    return v;
}

Value fromField(const QVariant &field)
{
    const VariantKind kind = variantKind(field);
    switch (kind) {
    case VariantKind::Empty:
    case VariantKind::Null:
        return Value();
    case VariantKind::Boolean:
    case VariantKind::Integer:
    case VariantKind::Single:
    case VariantKind::Double:
        return makeNumber(numberValue(field, kind), field);
    case VariantKind::Date:
        return makeDate(field.toDate(), QTime(0, 0), field);
    case VariantKind::DateTime:
        return makeDate(field.toDateTime().date(), field.toDateTime().time(), field);
    case VariantKind::Time:
        return makeDate(zeroDate(), field.toTime(), field);
    case VariantKind::String:
    case VariantKind::Other:
        break;
    }
    return makeText(field.toString());
}

QVariant dateVariant(const DateTimeParts &parts)
{
    if (parts.time == QTime(0, 0))
        return parts.date;
    return QDateTime(parts.date, parts.time);
}

// The value as text: texts as they are, numbers with "." and dates as CStr writes them.
QString textOf(const Value &v)
{
    if (v.kind == Value::Text)
        return v.text;
    if (hasTextForm(v.source))
        return pointText(v.source);
    return v.source.toString();
}

// The number a text stands for when the whole of it (blanks aside) is a number.
bool numberOfText(const QString &text, double *number)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty() || scanFormulaNumber(trimmed, 0) != trimmed.size())
        return false;
    bool ok = false;
    *number = trimmed.toDouble(&ok);
    return ok;
}

bool dateOf(const Value &v, DateTimeParts *date)
{
    if (v.kind == Value::Date) {
        *date = v.date;
        return true;
    }
    return v.kind == Value::Text && readFormulaDate(v.text, date, userDateOrder());
}

template <typename T>
bool holds(FormulaComparison comparison, const T &a, const T &b)
{
    switch (comparison) {
    case FormulaComparison::Equal: return a == b;
    case FormulaComparison::NotEqual: return a != b;
    case FormulaComparison::Less: return a < b;
    case FormulaComparison::LessEqual: return a <= b;
    case FormulaComparison::Greater: return a > b;
    case FormulaComparison::GreaterEqual: return a >= b;
    case FormulaComparison::Like: break;
    }
    return false;
}

// A date at midnight stands for its whole day: against it only days count.
bool holdsForDates(FormulaComparison comparison, const DateTimeParts &a, const DateTimeParts &b)
{
    const QTime midnight(0, 0);
    if (a.time == midnight || b.time == midnight || a.date != b.date)
        return holds(comparison, a.date, b.date);
    return holds(comparison, a.time, b.time);
}

// The whole of text against pattern: "*" any run of characters, "?" exactly one. Characters
// outside the basic plane count as one.
bool likeMatches(const QString &textValue, const QString &patternValue)
{
    const QList<uint> text = textValue.toUcs4();
    const QList<uint> pattern = patternValue.toUcs4();
    qsizetype t = 0, p = 0;
    qsizetype star = -1, resume = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern.at(p) == '*') {
            star = p++;
            resume = t;
        } else if (p < pattern.size() && (pattern.at(p) == '?' || pattern.at(p) == text.at(t))) {
            ++p;
            ++t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern.at(p) == '*')
        ++p;
    return p == pattern.size();
}

bool compare(FormulaComparison comparison, const Value &a, const Value &b)
{
    if (a.kind == Value::Null || b.kind == Value::Null)
        return false;
    if (comparison == FormulaComparison::Like)
        return likeMatches(textOf(a), textOf(b));

    DateTimeParts da, db;
    if ((a.kind == Value::Date || b.kind == Value::Date) && dateOf(a, &da) && dateOf(b, &db))
        return holdsForDates(comparison, da, db);

    double na = a.number, nb = b.number;
    if (a.kind == Value::Number && b.kind == Value::Number)
        return holds(comparison, na, nb);
    if (a.kind == Value::Number && b.kind == Value::Text && numberOfText(b.text, &nb))
        return holds(comparison, na, nb);
    if (b.kind == Value::Number && a.kind == Value::Text && numberOfText(a.text, &na))
        return holds(comparison, na, nb);

    return holds(comparison, QString::compare(textOf(a), textOf(b), Qt::CaseSensitive), 0);
}

class Evaluator
{
public:
    Evaluator(const SelectionFormulaTree &tree, const QVariantList &fieldValues)
        : m_tree(tree), m_fieldValues(fieldValues)
    {
    }

    bool condition(int index) const
    {
        const FormulaCondition &c = m_tree.conditions[size_t(index)];
        switch (c.kind) {
        case FormulaCondition::Or:
            return std::any_of(c.terms.begin(), c.terms.end(), [this](int term) { return condition(term); });
        case FormulaCondition::And:
            return std::all_of(c.terms.begin(), c.terms.end(), [this](int term) { return condition(term); });
        case FormulaCondition::Not:
            return !condition(c.terms.front());
        case FormulaCondition::Compare:
            break;
        }
        return compare(c.comparison, operand(c.left), operand(c.right));
    }

private:
    const SelectionFormulaTree &m_tree;
    const QVariantList &m_fieldValues;

    Value operand(int index) const
    {
        const FormulaOperand &o = m_tree.operands[size_t(index)];
        switch (o.kind) {
        case FormulaOperand::Field:
            return fromField(m_fieldValues.at(o.field));
        case FormulaOperand::Text:
            return makeText(o.text);
        case FormulaOperand::Number:
            return makeNumber(o.number, o.number);
        case FormulaOperand::Date:
            return makeDate(o.date.date, o.date.time, dateVariant(o.date));
        case FormulaOperand::Uppercase:
            break;
        }
        const Value inner = operand(o.inner);
        if (inner.kind == Value::Null)
            return inner;
        return makeText(textOf(inner).toUpper());
    }
};

} // namespace

bool evaluateFormula(const SelectionFormulaTree &tree, int condition, const QVariantList &fieldValues)
{
    return Evaluator(tree, fieldValues).condition(condition);
}

} // namespace PanelKestrin
