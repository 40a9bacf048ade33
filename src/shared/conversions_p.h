#pragma once

#include <QVariant>

namespace PanelKestrin {

// True when CStr gives value a text; false when it raises an error instead (Null, a
// non-finite number, a value of no classic subtype).
bool hasTextForm(const QVariant &value);

} // namespace PanelKestrin
