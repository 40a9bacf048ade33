#include "printing/reportfilters_p.h"

#include <PanelKestrin/field.h>

namespace PanelKestrin {

namespace {

constexpr int kNumericType = 131;

// How one dialect writes a range: the field term, the upper-casing function around the field
// and around each value (the SQL text spells them in mixed case), the wildcard of "like", and
// what stands before a lone from value's prefix match.
struct Dialect
{
    QString field;      // {T.F} or F
    QString upperField; // uppercase( / Upper(
    QString upperFrom;  // around the from value
    QString upperTo;    // around the to value
    QString upperLike;  // around the pattern
    QChar wildcard;
    QString lonePrefix;
};

QString rangeText(const ReportFilterInput &input, const Dialect &d)
{
    QString range;
    if (input.fieldType == FieldTypeDate)
        return d.field + QStringLiteral(" >= '") + input.fromDate + QStringLiteral("' and ") + d.field
               + QStringLiteral(" <= '") + input.toDate + QLatin1Char('\'');
    if (input.fieldType == kNumericType) {
        if (!input.fromText.isEmpty())
            range = d.field + QStringLiteral(" >= ") + input.fromText;
        if (!input.toText.isEmpty())
            range = (range.isEmpty() ? QString() : range + QStringLiteral(" and ")) + d.field
                    + QStringLiteral(" <= ") + input.toText;
        return range;
    }
    const QString upperField = d.upperField + d.field + QLatin1Char(')');
    if (!input.fromText.trimmed().isEmpty())
        range = upperField + QStringLiteral(" >= ") + d.upperFrom + QLatin1Char('\'') + input.fromText
                + QStringLiteral("')");
    if (!input.toText.trimmed().isEmpty()) {
        range = (range.isEmpty() ? QString() : range + QStringLiteral(" and ")) + upperField + QStringLiteral(" <= ")
                + d.upperTo + QLatin1Char('\'') + input.toText + QStringLiteral("')");
        // Every value that begins with the to text is inside the range.
        range = QLatin1Char('(') + range + QStringLiteral(") or ") + upperField + QStringLiteral(" like ")
                + d.upperLike + QLatin1Char('\'') + input.toText + d.wildcard + QStringLiteral("')");
    } else if (!range.isEmpty()) {
        // A lone from value is a prefix match, not a lower bound.
        range = d.lonePrefix + upperField + QStringLiteral(" like ") + d.upperLike + QLatin1Char('\'')
                + input.fromText + d.wildcard + QStringLiteral("')");
    }
    return range;
}

QString withCriteria(const QString &criteria, const QString &range)
{
    return criteria + (range.isEmpty() ? QString() : QStringLiteral(" and ") + range);
}

} // namespace

QString reportTableName(const QString &rpttitle)
{
    qsizetype at = rpttitle.indexOf(QLatin1String("\\RPT"), 0, Qt::CaseInsensitive);
    if (at < 0)
        at = rpttitle.indexOf(QLatin1String("/RPT"), 0, Qt::CaseInsensitive);
    // Not found counts as position 0 of a text counted from 1: the table starts at the fourth
    // character.
    return rpttitle.mid(at < 0 ? 3 : at + 4);
}

QString engineSelectionFormula(const ReportFilterInput &input, const QString &table)
{
    const QString field = QLatin1Char('{') + table + QLatin1Char('.') + input.field + QLatin1Char('}');
    const Dialect dialect{field,
                          QStringLiteral("uppercase("),
                          QStringLiteral("uppercase("),
                          QStringLiteral("uppercase("),
                          QStringLiteral("uppercase("),
                          QLatin1Char('*'),
                          QStringLiteral(" ")};
    const QString range = rangeText(input, dialect);
    if (!input.hasCriteria)
        return range;
    return withCriteria(QLatin1Char('{') + table + QLatin1Char('.') + input.criteriaField + QStringLiteral("} = '")
                            + input.criteriaValue + QLatin1Char('\''),
                        range);
}

QString engineSortField(const QString &table, const QString &field)
{
    return QLatin1Char('+') + (QLatin1Char('{') + table + QLatin1Char('.') + field + QLatin1Char('}')).toUpper();
}

SqlReportFilter sqlReportFilter(const ReportFilterInput &input)
{
    const Dialect dialect{input.field,
                          QStringLiteral("Upper("),
                          QStringLiteral("Upper("),
                          QStringLiteral("upper("),
                          QStringLiteral("upper("),
                          QLatin1Char('%'),
                          QStringLiteral(" or ")};
    const QString range = rangeText(input, dialect);
    if (!input.hasCriteria)
        return {range, input.field};
    // The order term reads the variable the criteria step reused for the criteria value.
    return {withCriteria(input.criteriaField + QStringLiteral(" = '") + input.criteriaValue + QLatin1Char('\''), range),
            input.criteriaValue};
}

QString sqlReportStatement(const QString &selquery, const SqlReportFilter &filter, int databaseKind,
                           const QString &primaryKey)
{
    const QString orderBy = QStringLiteral(" order by ") + filter.orderField;
    const QString where = filter.where.isEmpty() ? QString() : QStringLiteral(" where ") + filter.where;
    switch (databaseKind) {
    case 1:
        return selquery + where + (filter.orderField != primaryKey ? orderBy : QString());
    case 2:
        return selquery + where + orderBy;
    default:
        return QString(selquery).replace(QLatin1Char('+'), QLatin1String("||")) + where
               + (filter.orderField.isEmpty() ? QString() : orderBy);
    }
}

} // namespace PanelKestrin
