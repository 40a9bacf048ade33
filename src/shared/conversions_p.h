#pragma once

#include "shared/datetext_p.h"

#include <QVariant>

namespace PanelKestrin {

// True when CStr gives value a text; false when it raises an error instead (Null, a
// non-finite number, a value of no classic subtype).
bool hasTextForm(const QVariant &value);

// CStr's text of value, except that numbers always take "." as the decimal point, whatever
// the user's settings: the text that Val reads back to the same number.
QString pointText(const QVariant &value);

// The order in which the user's short-date pattern names day and month; typed dates are
// read in it first.
DateOrder userDateOrder();

} // namespace PanelKestrin
