#pragma once

#include <QString>

#include <functional>

class QLineEdit;

namespace PanelKestrin {

// Whether a typed character (its KeyAscii) may reach a box.
using KeyPressRule = std::function<bool(qint16 KeyAscii)>;

// Runs every character typed into box through rule, as the box's KeyPress handler named
// where: a refused character is discarded. Keys that type nothing (arrows, Delete) and Tab,
// which moves the focus, always pass. A rule that fails is reported at the event boundary and
// the character is discarded.
void setKeyPressRule(QLineEdit *box, const QString &where, KeyPressRule rule);

// "0" to "9".
bool isDigitKey(qint16 KeyAscii);

} // namespace PanelKestrin
