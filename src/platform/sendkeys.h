#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>

namespace PanelKestrin {

// Types keystrokes as if on the keyboard. Keys uses the classic syntax: plain characters;
// "~" for Enter; "{Name}" for a named key (Right, Left, Up, Down, Tab, Enter, Home, End, Esc,
// BS, Del, Ins, PgUp, PgDn, F1..F16 ...; names are case-insensitive), "{Name n}" to repeat it
// n times, "{+}" etc. for a special character itself; prefixes "+" Shift, "^" Ctrl, "%" Alt
// for the next key or for a parenthesised group ("+(ab)").
//
// Each key is delivered as a press and a release to the widget that has the focus at that
// moment (else the active window), so Tab and Shift+Tab move the focus as they would from the
// keyboard. With Wait false the keys join a keyboard queue and are delivered one after another
// once control returns to the event loop; with Wait true the queue, this call's keys included,
// is delivered before SendKeys returns.
//
// The whole string is checked before anything is sent: an unknown key name, an unbalanced
// brace or parenthesis, or a prefix without a key raises RuntimeError 5 naming the fault.
PANELKESTRIN_EXPORT void SendKeys(const QString &Keys, bool Wait = false);

} // namespace PanelKestrin
