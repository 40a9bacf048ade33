#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <QStringList>

namespace PanelKestrin {

// The classic string functions. Positions are 1-based; an invalid start or length raises
// run-time error 5 (invalid procedure call or argument).

enum CompareMethod { vbBinaryCompare = 0, vbTextCompare = 1 };

// Remove space characters (only " ", not tabs) at the start, the end or both.
PANELKESTRIN_EXPORT QString Trim(const QString &String);
PANELKESTRIN_EXPORT QString LTrim(const QString &String);
PANELKESTRIN_EXPORT QString RTrim(const QString &String);

PANELKESTRIN_EXPORT QString UCase(const QString &String);
PANELKESTRIN_EXPORT QString LCase(const QString &String);
PANELKESTRIN_EXPORT int Len(const QString &String);

// The first or last Length characters (the whole text when it is shorter).
PANELKESTRIN_EXPORT QString Left(const QString &String, int Length);
PANELKESTRIN_EXPORT QString Right(const QString &String, int Length);
// The characters from Start on, or at most Length of them; "" when Start is past the end.
PANELKESTRIN_EXPORT QString Mid(const QString &String, int Start);
PANELKESTRIN_EXPORT QString Mid(const QString &String, int Start, int Length);

// Position of String2 in String1 searching from Start, 0 when absent. An empty String2 is
// found at Start; a Start past the end of String1 finds nothing.
PANELKESTRIN_EXPORT int InStr(int Start, const QString &String1, const QString &String2,
                              CompareMethod Compare = vbBinaryCompare);
PANELKESTRIN_EXPORT int InStr(const QString &String1, const QString &String2,
                              CompareMethod Compare = vbBinaryCompare);

// The pieces of Expression between delimiters. An empty Expression gives no pieces, an empty
// Delimiter the whole Expression; Limit (-1 = no limit) caps the count, the last piece
// keeping the rest of the text.
PANELKESTRIN_EXPORT QStringList Split(const QString &Expression, const QString &Delimiter = QStringLiteral(" "),
                                      int Limit = -1, CompareMethod Compare = vbBinaryCompare);
PANELKESTRIN_EXPORT QString Join(const QStringList &SourceArray, const QString &Delimiter = QStringLiteral(" "));

// The entries containing Match (Include true) or those not containing it (Include false).
PANELKESTRIN_EXPORT QStringList Filter(const QStringList &SourceArray, const QString &Match,
                                       bool Include = true, CompareMethod Compare = vbBinaryCompare);

// The text from Start on with at most Count (-1 = all) occurrences of Find replaced, left to
// right. The characters before Start are not part of the result.
PANELKESTRIN_EXPORT QString Replace(const QString &Expression, const QString &Find, const QString &ReplaceWith,
                                    int Start = 1, int Count = -1, CompareMethod Compare = vbBinaryCompare);

PANELKESTRIN_EXPORT QString Space(int Number);

} // namespace PanelKestrin
