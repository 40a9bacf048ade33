// Random text read as a selection formula and evaluated over a small fixed row. Reading must
// either give a tree or raise run-time error 5; evaluating may raise only 3265, for a field the
// row lacks. A formula that reads must read again inside "not (...)" (unless that nests it too
// deep) and select the row exactly when the formula itself does not.
//
// Input: the bytes as UTF-8 text (invalid sequences become replacement characters).

#include "printing/selectionformula_p.h"

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/variant.h>

#include <QDateTime>
#include <QHash>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace PanelKestrin;

namespace {

[[noreturn]] void fault(const char *what, const QString &detail)
{
    std::fprintf(stderr, "selection formula fault: %s %s\n", what, qPrintable(detail));
    std::abort();
}

// One row of each kind of value a recordset hands over, under short names a mutation finds.
const QHash<QString, QVariant> &row()
{
    static const QHash<QString, QVariant> values = {
        {QStringLiteral("t.s"), QStringLiteral("Abc*d")},
        {QStringLiteral("t.n"), 12.5},
        {QStringLiteral("t.i"), 7},
        {QStringLiteral("t.f"), 1.1f},
        {QStringLiteral("t.b"), true},
        {QStringLiteral("t.d"), QDate(2005, 12, 25)},
        {QStringLiteral("t.dt"), QDateTime(QDate(2005, 12, 31), QTime(14, 0))},
        {QStringLiteral("t.tm"), QTime(9, 30)},
        {QStringLiteral("t.z"), Null()},
        {QStringLiteral("t.e"), QString()},
        {QStringLiteral("t.inf"), qInf()},
        {QStringLiteral("t.nan"), qQNaN()},
        {QStringLiteral("t.u"), QStringLiteral("\u00e9\u00df\U0001F600")},
    };
    return values;
}

QVariant lookup(const QString &table, const QString &field)
{
    return row().value(table + QLatin1Char('.') + field);
}

// Whether the formula selects the row; -1 when a field was missing.
int evaluate(const SelectionFormula &formula)
{
    try {
        return formula.matches(lookup) ? 1 : 0;
    } catch (const RuntimeError &e) {
        if (e.Number() != ErrItemNotFound)
            fault("evaluating raised", e.Description());
        return -1;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    SelectionFormula formula;
    try {
        formula = SelectionFormula::parse(text);
    } catch (const RuntimeError &e) {
        if (e.Number() != ErrInvalidProcedureCall
            || !e.Description().startsWith(QLatin1String("Malformed selection formula at position ")))
            fault("reading raised", e.Description());
        return 0;
    }
    const int selected = evaluate(formula);
    if (formula.isEmpty()) {
        if (selected != 1)
            fault("the empty formula refused the row", text);
        return 0;
    }
    for (const SelectionFormula::FieldReference &reference : formula.fieldReferences()) {
        if (reference.table.isEmpty() || reference.field.isEmpty())
            fault("a field reference without a name", text);
    }

    SelectionFormula negation;
    try {
        negation = SelectionFormula::parse(QStringLiteral("not (") + text + QLatin1Char(')'));
    } catch (const RuntimeError &e) {
        if (!e.Description().contains(QLatin1String("nest more than")))
            fault("the formula did not read inside not (...)", e.Description());
        return 0;
    }
    const int negated = evaluate(negation);
    if (negated != (selected < 0 ? -1 : 1 - selected))
        fault("not (...) did not select the other way", text);
    return 0;
}
