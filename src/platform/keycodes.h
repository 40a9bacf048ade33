#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QtGlobal>
#include <Qt>

class QKeyEvent;

namespace PanelKestrin {

// The classic key codes that KeyDown / KeyUp handlers and key rules compare against.
enum KeyCodeConstants : qint16 {
    vbKeyCancel = 3,
    vbKeyBack = 8,
    vbKeyTab = 9,
    vbKeyClear = 12,
    vbKeyReturn = 13,
    vbKeyShift = 16,
    vbKeyControl = 17,
    vbKeyMenu = 18,
    vbKeyPause = 19,
    vbKeyCapital = 20,
    vbKeyEscape = 27,
    vbKeySpace = 32,
    vbKeyPageUp = 33,
    vbKeyPageDown = 34,
    vbKeyEnd = 35,
    vbKeyHome = 36,
    vbKeyLeft = 37,
    vbKeyUp = 38,
    vbKeyRight = 39,
    vbKeyDown = 40,
    vbKeySelect = 41,
    vbKeyPrint = 42,
    vbKeyExecute = 43,
    vbKeySnapshot = 44,
    vbKeyInsert = 45,
    vbKeyDelete = 46,
    vbKeyHelp = 47,
    vbKey0 = 48, vbKey1, vbKey2, vbKey3, vbKey4, vbKey5, vbKey6, vbKey7, vbKey8, vbKey9,
    vbKeyA = 65, vbKeyB, vbKeyC, vbKeyD, vbKeyE, vbKeyF, vbKeyG, vbKeyH, vbKeyI, vbKeyJ, vbKeyK,
    vbKeyL, vbKeyM, vbKeyN, vbKeyO, vbKeyP, vbKeyQ, vbKeyR, vbKeyS, vbKeyT, vbKeyU, vbKeyV,
    vbKeyW, vbKeyX, vbKeyY, vbKeyZ,
    vbKeyNumpad0 = 96, vbKeyNumpad1, vbKeyNumpad2, vbKeyNumpad3, vbKeyNumpad4, vbKeyNumpad5,
    vbKeyNumpad6, vbKeyNumpad7, vbKeyNumpad8, vbKeyNumpad9,
    vbKeyMultiply = 106,
    vbKeyAdd = 107,
    vbKeySeparator = 108,
    vbKeySubtract = 109,
    vbKeyDecimal = 110,
    vbKeyDivide = 111,
    vbKeyF1 = 112, vbKeyF2, vbKeyF3, vbKeyF4, vbKeyF5, vbKeyF6, vbKeyF7, vbKeyF8, vbKeyF9,
    vbKeyF10, vbKeyF11, vbKeyF12, vbKeyF13, vbKeyF14, vbKeyF15, vbKeyF16,
    vbKeyNumlock = 144,
    vbKeyScrollLock = 145,
};

// The Shift argument of key and mouse events.
enum ShiftConstants : qint16 {
    vbShiftMask = 1,
    vbCtrlMask = 2,
    vbAltMask = 4,
};

// The classic key code of a key event: Return and Enter are both 13, Backtab is Tab (9), keys
// of the numeric keypad give the keypad codes, punctuation the codes of a US keyboard's keys.
// 0 for a key without a code.
PANELKESTRIN_EXPORT qint16 KeyCodeFromEvent(const QKeyEvent *event);

// The Shift argument for keyboard modifiers.
PANELKESTRIN_EXPORT qint16 ShiftFromModifiers(Qt::KeyboardModifiers modifiers);

// The Shift argument of a key event; Backtab always carries Shift.
PANELKESTRIN_EXPORT qint16 ShiftFromEvent(const QKeyEvent *event);

// The KeyAscii of a key press: the character code of the typed text (Enter 13, Backspace 8,
// Esc 27, Ctrl+letter its control code), 0 when the key types nothing. Characters outside the
// 16-bit range give '?'.
PANELKESTRIN_EXPORT qint16 KeyAsciiFromEvent(const QKeyEvent *event);

// The Qt key for a classic key code (the keypad digits give the digit keys); 0 for an unknown
// code.
PANELKESTRIN_EXPORT int QtKeyFromKeyCode(qint16 KeyCode);

// Keyboard modifiers for a Shift argument.
PANELKESTRIN_EXPORT Qt::KeyboardModifiers ModifiersFromShift(qint16 Shift);

} // namespace PanelKestrin
