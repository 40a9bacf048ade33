#pragma once

#include "printing/selectionformula_p.h"
#include "shared/datetext_p.h"

#include <QString>
#include <QStringView>
#include <vector>

namespace PanelKestrin {

// The tree a selection formula is read into, shared by the reader (selectionformula.cpp) and
// the evaluator (selectionformulaeval.cpp). Nodes live in two flat arrays and point at each
// other by index; "and" and "or" hold all their terms in one node, so a long chain of terms
// does not deepen the evaluation.

// A value: a field's value in the row, a literal, or uppercase() of another value.
struct FormulaOperand
{
    enum Kind { Field, Text, Number, Date, Uppercase };
    Kind kind = Text;
    int field = -1;      // Field: index into SelectionFormulaTree::fields
    int inner = -1;      // Uppercase: index of its argument in SelectionFormulaTree::operands
    QString text;        // Text: the text; Number: as written
    double number = 0;   // Number
    DateTimeParts date;  // Date
};

enum class FormulaComparison { Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, Like };

// A condition: "or"/"and" of terms, "not" of one term, or a comparison of two operands.
struct FormulaCondition
{
    enum Kind { Or, And, Not, Compare };
    Kind kind = Compare;
    std::vector<int> terms;  // Or, And: indices of conditions; Not: one index
    FormulaComparison comparison = FormulaComparison::Equal;
    int left = -1;           // Compare: indices of operands
    int right = -1;
};

struct SelectionFormulaTree
{
    QString text;
    QList<SelectionFormula::FieldReference> fields;
    std::vector<FormulaOperand> operands;
    std::vector<FormulaCondition> conditions;
    int root = -1; // -1: the empty formula
};

// The end of the number that starts at text[from] (an optional sign, digits with an optional
// decimal point, at least one digit), or from itself when no number starts there.
qsizetype scanFormulaNumber(QStringView text, qsizetype from);

// Reads a date text as dates are written (see parseDateText), day and month in the given order
// first, or an ISO date and time. A date literal between '#' signs is program text and reads
// month first; a quoted text compared with a date is what CStr wrote for the user (the print
// query form's picked range) and reads in the user's order.
bool readFormulaDate(QStringView text, DateTimeParts *out, DateOrder order = DateOrder::MonthFirst);

// Evaluates the condition at index over the values of the tree's fields, in the order of
// SelectionFormulaTree::fields.
bool evaluateFormula(const SelectionFormulaTree &tree, int condition, const QVariantList &fieldValues);

} // namespace PanelKestrin
