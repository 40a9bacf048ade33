#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QList>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

namespace PanelKestrin {

struct SelectionFormulaTree;

// A report's selection formula, read into a tree and evaluated row by row; the formula's text
// never reaches SQL. It reads what the print query form writes, for example
//   {orders.odate} >= '12/25/2005' and {orders.odate} <= '12/31/2005'
//   (uppercase({orders.cust}) >= uppercase('a') and uppercase({orders.cust}) <= uppercase('c'))
//       or uppercase({orders.cust}) like uppercase('c*')
//    uppercase({orders.cust}) like uppercase('AB*')
//
// Grammar (keywords and the function name in any case; blanks, tabs and line breaks between
// tokens; a blank or empty text is the empty formula, which selects every row):
//   formula    := [ or ]
//   or         := and { "or" and }
//   and        := not { "and" not }
//   not        := "not" not | "(" or ")" | comparison
//   comparison := value ( "=" | "<>" | "<" | "<=" | ">" | ">=" | "like" ) value
//   value      := "{" table "." field "}" | 'text' | number | #date# | "uppercase" "(" value ")"
// Parentheses group conditions, not values. In 'text' a doubled quote stands for one quote; the
// form inserts values as typed, so a value holding a lone quote makes the formula malformed
// (an error naming the position) rather than silently selecting something else. A number is
// digits with an optional sign and decimal point ("12", "-3.5", ".5"). Table and field names
// may hold any characters but { } . ' ( ) = < > , and control characters; blanks around them
// are dropped. #date# holds a date in any form that a date text may take (below).
//
// Comparing:
// - A Null field value makes the comparison false, so "not" of it is true.
// - When one side is a date (a date field, a #date#) and the other a date or a text that reads
//   as a date (mm/dd/yyyy as dates are written, dd/mm/yyyy when the first number cannot be a
//   month, yyyy-mm-dd, ISO date and time), the two compare as dates. A date without a time of
//   day (midnight) stands for its whole day, so a range ending '12/31/2005' keeps a row stamped
//   12/31/2005 14:00.
// - Two numbers compare as numbers; a number and a text that is wholly a number too.
// - Everything else compares as texts, character by character and case-sensitively (numbers and
//   dates by their written text); uppercase() is how a formula ignores case.
// - "like": the right side is a pattern for the whole of the left side's text: "*" matches any
//   run of characters (none included), "?" exactly one; every other character itself.
class PANELKESTRIN_EXPORT SelectionFormula
{
public:
    // A field the formula refers to: {table.field}.
    struct FieldReference
    {
        QString table;
        QString field;
        // "{table.field}", as the formula writes it.
        QString text() const;
        bool operator==(const FieldReference &other) const
        {
            return table == other.table && field == other.field;
        }
    };

    // The value of a field in the current row; an invalid (Empty) QVariant when the row has no
    // such field. A database NULL is Null.
    using FieldLookup = std::function<QVariant(const QString &table, const QString &field)>;
    // Whether the report's data has the field.
    using FieldExists = std::function<bool(const QString &table, const QString &field)>;

    // The empty formula: it selects every row.
    SelectionFormula();

    // Reads a formula. A malformed one raises run-time error 5 whose description names the
    // position (counted from 1 in the text as given, leading blanks included) and what was
    // expected there.
    static SelectionFormula parse(const QString &text);

    // True for a blank formula, which selects every row.
    bool isEmpty() const;
    // The text as it was given to parse().
    QString text() const;

    // Every field the formula refers to, once each, in the order they first appear: what the
    // report's query has to deliver for the formula to be evaluated.
    QList<FieldReference> fieldReferences() const;

    // Raises run-time error 3265 naming the first referenced field that the data lacks, so a
    // report can refuse the formula before reading any row (an empty table included).
    void checkFields(const FieldExists &exists) const;

    // Whether the row that lookup reads from is selected. Every referenced field is read once;
    // a field the row lacks raises run-time error 3265 naming it.
    bool matches(const FieldLookup &lookup) const;

private:
    std::shared_ptr<const SelectionFormulaTree> d;
};

} // namespace PanelKestrin
