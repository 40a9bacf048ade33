#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <functional>

namespace PanelKestrin {

// Sounds the platform bell, or calls the handler set with setBeepHandler.
PANELKESTRIN_EXPORT void Beep();

// Replaces the bell (tests count beeps); an empty function restores the platform bell.
// Returns the handler replaced.
PANELKESTRIN_EXPORT std::function<void()> setBeepHandler(std::function<void()> handler);

} // namespace PanelKestrin
