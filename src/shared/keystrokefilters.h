#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QtGlobal>

class QLineEdit;

namespace PanelKestrin {

// The built-in keystroke filters of numeric entry boxes. Each takes the typed character code
// and returns the code to use, 0 to refuse it. Control characters (codes below 32, such as
// Backspace 8) always pass unchanged.

// The number of decimals of a field that has no fixed scale (a floating-point field reports
// this scale, meaning "not applicable").
constexpr qint16 ScaleNotApplicable = 255;

// Accepts the digits 0-9 only.
PANELKESTRIN_EXPORT qint16 IntegerKeyFilter(qint16 KeyAscii);

// Looks at the box's text, caret and selection (a typed character replaces the selection).
// A digit is accepted when the resulting text has at most IntegerDigits digits before the
// point and at most Decimals after it; "." when the text has no point outside the selection
// and the digits that would follow it are at most Decimals. With Decimals = ScaleNotApplicable
// neither count is limited (IntegerDigits is then meaningless and ignored): any number of digits
// and one point. Everything else is refused. A missing EditBox raises error 91.
PANELKESTRIN_EXPORT qint16 DecimalKeyFilter(qint16 KeyAscii, QLineEdit *EditBox, qint16 Decimals,
                                            qint16 IntegerDigits);

} // namespace PanelKestrin

