// Random choices put through the print query form's two filter builders. The input picks the
// field type, which range boxes and criteria are filled, the database kind and the texts
// (separated by a 0 byte: from, to, criteria value, rpttitle, selquery). Every value must
// appear in both filters exactly as typed, the statement must start with the base query (its
// "+" turned into "||" for the third kind) and end in its order term as the kind says, and
// the formula, when its values hold nothing the formula reader treats specially, must read and
// evaluate over a row without any error but a missing field.

#include "printing/reportfilters_p.h"
#include "printing/selectionformula_p.h"

#include <PanelKestrin/dataerrors.h>
#include <PanelKestrin/runtimeerror.h>

#include <QRegularExpression>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace PanelKestrin;

namespace {

[[noreturn]] void fault(const char *what, const QString &detail)
{
    std::fprintf(stderr, "report filter fault: %s: %s\n", what, qPrintable(detail));
    std::abort();
}

// Text that a quoted formula literal carries as it is: no quote, no line or control character.
bool plain(const QString &text)
{
    for (const QChar c : text)
        if (c == QLatin1Char('\'') || c.unicode() < 32)
            return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const uint8_t choice = data[0];
    const int kind = data[1] % 4;
    const QList<QByteArray> parts = QByteArray(reinterpret_cast<const char *>(data + 2), qsizetype(size - 2)).split('\0');
    auto part = [&parts](int i) { return i < parts.size() ? QString::fromUtf8(parts.at(i)) : QString(); };

    ReportFilterInput input;
    input.field = QStringLiteral("f");
    input.fieldType = (choice & 3) == 0 ? 7 : (choice & 3) == 1 ? 131 : 200;
    input.fromText = (choice & 4) ? part(0).trimmed() : QString();
    input.toText = (choice & 8) ? part(1).trimmed() : QString();
    input.fromDate = QStringLiteral("12/25/2005");
    input.toDate = QStringLiteral("12/31/2005");
    input.hasCriteria = (choice & 16) != 0;
    input.criteriaField = QStringLiteral("c");
    input.criteriaValue = part(2);
    const QString rpttitle = part(3);
    const QString selquery = part(4);

    const QString table = reportTableName(rpttitle);
    if (!rpttitle.endsWith(table))
        fault("the table is not the end of rpttitle", rpttitle);
    const QString formula = engineSelectionFormula(input, table);
    const SqlReportFilter filter = sqlReportFilter(input);
    const bool dates = input.fieldType == 7;
    for (const QString &value : {dates ? QString() : input.fromText, dates ? QString() : input.toText,
                                 input.hasCriteria ? input.criteriaValue : QString()}) {
        if (!value.isEmpty() && (!formula.contains(value) || !filter.where.contains(value)))
            fault("a value is not in the filters as typed", value);
    }
    if (input.hasCriteria && filter.orderField != input.criteriaValue)
        fault("the order term is not the criteria value", filter.orderField);

    const QString statement = sqlReportStatement(selquery, filter, kind, QStringLiteral("f"));
    const QString base = kind == 1 || kind == 2 ? selquery : QString(selquery).replace(QLatin1Char('+'), QLatin1String("||"));
    const QString orderBy = QStringLiteral(" order by ") + filter.orderField;
    const bool ordered = kind == 1 ? filter.orderField != QLatin1String("f") : kind == 2 || !filter.orderField.isEmpty();
    if (!statement.startsWith(base) || statement.endsWith(orderBy) != ordered
        || statement.size() != base.size() + (filter.where.isEmpty() ? 0 : 7 + filter.where.size())
                                    + (ordered ? orderBy.size() : 0))
        fault("the statement is not base, where and order term", statement);

    // A numeric range reads only when its texts are numbers; leave those to the reader's own fuzzing.
    const bool readable = plain(input.fromText) && plain(input.toText) && plain(input.criteriaValue)
                          && plain(table) && !table.contains(QRegularExpression(QStringLiteral("[{}.()=<>,]")))
                          && !table.trimmed().isEmpty() && input.fieldType != 131;
    if (!readable)
        return 0;
    try {
        const SelectionFormula parsed = SelectionFormula::parse(formula);
        parsed.matches([](const QString &, const QString &field) -> QVariant {
            return field == QLatin1String("f") ? QVariant(QStringLiteral("Abc")) : QVariant(QStringLiteral("x"));
        });
    } catch (const RuntimeError &e) {
        fault("a plain formula did not read or evaluate", formula + QStringLiteral(" -> ") + e.Description());
    }
    return 0;
}
