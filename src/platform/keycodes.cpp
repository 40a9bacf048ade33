#include <PanelKestrin/keycodes.h>

#include <QKeyEvent>

namespace PanelKestrin {

namespace {

struct KeyPair
{
    int qtKey;
    qint16 code;
};

// Keys whose code differs from the Qt key value. The first entry for a code is the key the
// code converts back to.
constexpr KeyPair keyTable[] = {
    {Qt::Key_Cancel, vbKeyCancel},
    {Qt::Key_Backspace, vbKeyBack},
    {Qt::Key_Tab, vbKeyTab},
    {Qt::Key_Backtab, vbKeyTab},
    {Qt::Key_Clear, vbKeyClear},
    {Qt::Key_Return, vbKeyReturn},
    {Qt::Key_Enter, vbKeyReturn},
    {Qt::Key_Shift, vbKeyShift},
    {Qt::Key_Control, vbKeyControl},
    {Qt::Key_Alt, vbKeyMenu},
    {Qt::Key_Pause, vbKeyPause},
    {Qt::Key_CapsLock, vbKeyCapital},
    {Qt::Key_Escape, vbKeyEscape},
    {Qt::Key_Space, vbKeySpace},
    {Qt::Key_PageUp, vbKeyPageUp},
    {Qt::Key_PageDown, vbKeyPageDown},
    {Qt::Key_End, vbKeyEnd},
    {Qt::Key_Home, vbKeyHome},
    {Qt::Key_Left, vbKeyLeft},
    {Qt::Key_Up, vbKeyUp},
    {Qt::Key_Right, vbKeyRight},
    {Qt::Key_Down, vbKeyDown},
    {Qt::Key_Select, vbKeySelect},
    {Qt::Key_Printer, vbKeyPrint},
    {Qt::Key_Execute, vbKeyExecute},
    {Qt::Key_Print, vbKeySnapshot},
    {Qt::Key_Insert, vbKeyInsert},
    {Qt::Key_Delete, vbKeyDelete},
    {Qt::Key_Help, vbKeyHelp},
    {Qt::Key_NumLock, vbKeyNumlock},
    {Qt::Key_ScrollLock, vbKeyScrollLock},
    // Punctuation keys of a US keyboard, unshifted and shifted.
    {Qt::Key_Semicolon, 186}, {Qt::Key_Colon, 186},
    {Qt::Key_Equal, 187}, {Qt::Key_Plus, 187},
    {Qt::Key_Comma, 188}, {Qt::Key_Less, 188},
    {Qt::Key_Minus, 189}, {Qt::Key_Underscore, 189},
    {Qt::Key_Period, 190}, {Qt::Key_Greater, 190},
    {Qt::Key_Slash, 191}, {Qt::Key_Question, 191},
    {Qt::Key_QuoteLeft, 192}, {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BracketLeft, 219}, {Qt::Key_BraceLeft, 219},
    {Qt::Key_Backslash, 220}, {Qt::Key_Bar, 220},
    {Qt::Key_BracketRight, 221}, {Qt::Key_BraceRight, 221},
    {Qt::Key_Apostrophe, 222}, {Qt::Key_QuoteDbl, 222},
    // Shifted digit row of a US keyboard: the key is the digit's.
    {Qt::Key_ParenRight, vbKey0}, {Qt::Key_Exclam, vbKey1}, {Qt::Key_At, vbKey2},
    {Qt::Key_NumberSign, vbKey3}, {Qt::Key_Dollar, vbKey4}, {Qt::Key_Percent, vbKey5},
    {Qt::Key_AsciiCircum, vbKey6}, {Qt::Key_Ampersand, vbKey7}, {Qt::Key_Asterisk, vbKey8},
    {Qt::Key_ParenLeft, vbKey9},
};

// Keys that have a code of their own on the numeric keypad.
constexpr KeyPair keypadTable[] = {
    {Qt::Key_Asterisk, vbKeyMultiply}, {Qt::Key_Plus, vbKeyAdd},
    {Qt::Key_Minus, vbKeySubtract},    {Qt::Key_Period, vbKeyDecimal},
    {Qt::Key_Comma, vbKeyDecimal},     {Qt::Key_Slash, vbKeyDivide},
};

} // namespace

qint16 KeyCodeFromEvent(const QKeyEvent *event)
{
    if (!event)
        return 0;
    const int key = event->key();
    if (event->modifiers() & Qt::KeypadModifier) {
        if (key >= Qt::Key_0 && key <= Qt::Key_9)
            return qint16(vbKeyNumpad0 + (key - Qt::Key_0));
        for (const KeyPair &p : keypadTable) {
            if (p.qtKey == key)
                return p.code;
        }
    }
    if ((key >= Qt::Key_0 && key <= Qt::Key_9) || (key >= Qt::Key_A && key <= Qt::Key_Z))
        return qint16(key); // the classic codes of digits and letters are their ASCII codes
    if (key >= Qt::Key_F1 && key <= Qt::Key_F16)
        return qint16(vbKeyF1 + (key - Qt::Key_F1));
    for (const KeyPair &p : keyTable) {
        if (p.qtKey == key)
            return p.code;
    }
    return 0;
}

qint16 ShiftFromModifiers(Qt::KeyboardModifiers modifiers)
{
    qint16 shift = 0;
    if (modifiers & Qt::ShiftModifier)
        shift |= vbShiftMask;
    if (modifiers & Qt::ControlModifier)
        shift |= vbCtrlMask;
    if (modifiers & Qt::AltModifier)
        shift |= vbAltMask;
    return shift;
}

qint16 ShiftFromEvent(const QKeyEvent *event)
{
    if (!event)
        return 0;
    const qint16 shift = ShiftFromModifiers(event->modifiers());
    return event->key() == Qt::Key_Backtab ? qint16(shift | vbShiftMask) : shift;
}

qint16 KeyAsciiFromEvent(const QKeyEvent *event)
{
    if (!event)
        return 0;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return vbKeyReturn;
    case Qt::Key_Backspace: return vbKeyBack;
    case Qt::Key_Escape: return vbKeyEscape;
    case Qt::Key_Delete: return 0; // some platforms report DEL as text; it types nothing
    default: break;
    }
    // Ctrl+letter types its control code whatever text the platform attached to it.
    const Qt::KeyboardModifiers mods = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (mods == Qt::ControlModifier && event->key() >= Qt::Key_A && event->key() <= Qt::Key_Z)
        return qint16(event->key() - Qt::Key_A + 1);
    const QString text = event->text();
    if (text.isEmpty())
        return 0;
    const char16_t c = text.at(0).unicode();
    return c <= 0x7FFF ? qint16(c) : qint16('?');
}

int QtKeyFromKeyCode(qint16 KeyCode)
{
    if ((KeyCode >= vbKey0 && KeyCode <= vbKey9) || (KeyCode >= vbKeyA && KeyCode <= vbKeyZ))
        return KeyCode;
    if (KeyCode >= vbKeyNumpad0 && KeyCode <= vbKeyNumpad9)
        return Qt::Key_0 + (KeyCode - vbKeyNumpad0);
    if (KeyCode >= vbKeyF1 && KeyCode <= vbKeyF16)
        return Qt::Key_F1 + (KeyCode - vbKeyF1);
    for (const KeyPair &p : keypadTable) {
        if (p.code == KeyCode)
            return p.qtKey;
    }
    for (const KeyPair &p : keyTable) {
        if (p.code == KeyCode)
            return p.qtKey;
    }
    return 0;
}

Qt::KeyboardModifiers ModifiersFromShift(qint16 Shift)
{
    Qt::KeyboardModifiers modifiers;
    if (Shift & vbShiftMask)
        modifiers |= Qt::ShiftModifier;
    if (Shift & vbCtrlMask)
        modifiers |= Qt::ControlModifier;
    if (Shift & vbAltMask)
        modifiers |= Qt::AltModifier;
    return modifiers;
}

} // namespace PanelKestrin
