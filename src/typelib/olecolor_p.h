#pragma once

// Colours as host forms write them: OLE_COLOR numbers, either an RGB value (red in the low
// byte, blue in the high one) or a system colour (high bit set, the colour's index below),
// which takes the colour of the platform's palette.

#include <QColor>
#include <QVariant>

class QPalette;

namespace PanelKestrin {

// The colour a number stands for, system colours read from palette. A signed 32-bit number
// (a host's Long) counts as its unsigned bit pattern. RuntimeError 380 for a number that is
// neither an RGB value nor a known system colour; `what` names the member.
QColor colourFromOleColor(const QVariant &number, const QPalette &palette, const QString &what);

// The RGB number of a colour.
qint32 oleColorFromColour(const QColor &colour);

} // namespace PanelKestrin
