#pragma once

#include <QString>

namespace PanelKestrin {

// Writes value with a numeric pattern of "0", "#", ".", ",", "%", an "E+0" exponent and
// literal text, in up to three ";"-separated sections (positive; negative; zero). See Format.
QString formatNumber(double value, const QString &pattern);

} // namespace PanelKestrin
