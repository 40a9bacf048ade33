#pragma once

#include <PanelKestrin/panelkestrin_export.h>

class QPaintDevice;

namespace PanelKestrin {

// Published positions and sizes are in twips: 1440 per logical inch, so 15 twips per pixel
// at 96 DPI. Conversions use the logical DPI of the given paint device (a widget, a printer,
// an image); a null device means the primary screen. X and Y are converted separately because
// a device may have different horizontal and vertical resolutions.
constexpr int TwipsPerInch = 1440;

PANELKESTRIN_EXPORT double TwipsPerPixelX(const QPaintDevice *device = nullptr);
PANELKESTRIN_EXPORT double TwipsPerPixelY(const QPaintDevice *device = nullptr);

// Results are rounded to the nearest whole unit.
PANELKESTRIN_EXPORT int PixelsToTwipsX(int pixels, const QPaintDevice *device = nullptr);
PANELKESTRIN_EXPORT int PixelsToTwipsY(int pixels, const QPaintDevice *device = nullptr);
PANELKESTRIN_EXPORT int TwipsToPixelsX(double twips, const QPaintDevice *device = nullptr);
PANELKESTRIN_EXPORT int TwipsToPixelsY(double twips, const QPaintDevice *device = nullptr);

} // namespace PanelKestrin
