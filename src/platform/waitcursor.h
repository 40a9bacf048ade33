#pragma once

#include <PanelKestrin/panelkestrin_export.h>

namespace PanelKestrin {

// Shows the hourglass while it lives and restores the previous cursor when it goes out of
// scope, on every path including exceptions. Guards nest: the cursor comes back when the
// outermost one ends.
class PANELKESTRIN_EXPORT WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;

private:
    bool m_shown; // false without a GUI application: nothing to restore then
};

// The screen's mouse pointer in the classic procedural form.
enum MousePointerConstants : int {
    vbDefault = 0,
    vbArrow = 1,
    vbCrosshair = 2,
    vbIbeam = 3,
    vbIconPointer = 4,
    vbSizePointer = 5,
    vbSizeNESW = 6,
    vbSizeNS = 7,
    vbSizeNWSE = 8,
    vbSizeWE = 9,
    vbUpArrow = 10,
    vbHourglass = 11,
    vbNoDrop = 12,
    vbArrowHourglass = 13,
    vbArrowQuestion = 14,
    vbSizeAll = 15,
};

// Sets the pointer shown over every window of the application (11 the hourglass); 0 gives
// each widget its own cursor back. A value outside 0 to 15 raises RuntimeError 380. Code that
// can fail between setting and resetting the pointer should prefer WaitCursor.
PANELKESTRIN_EXPORT void setMousePointer(int pointer);
PANELKESTRIN_EXPORT int MousePointer();

} // namespace PanelKestrin
