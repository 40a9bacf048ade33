// Keys typed into the editor TxtAdjust: the moves of KeyDown (help, arrows, Home, End, Enter
// and Shift+Enter) and the character filter of KeyPress by the column's field description.
#include <PanelKestrin/gridcontrol.h>

#include "grid/gridcontrol_p.h"
#include "grid/gridsubscript_p.h"

#include <PanelKestrin/connectionsettings.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/strings.h>

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace PanelKestrin {

namespace {
bool enabledAt(const QVector<GridStruct> &rules, int col)
{
    return checkedAt(rules, col, QStringLiteral("GridStructArray")).ColEnable;
}

// The KeyAscii of one typed character; characters beyond the 16-bit range stand as '?'.
qint16 keyAsciiOf(QStringView character)
{
    const char16_t c = character.front().unicode();
    return character.size() == 1 && c <= 0x7FFF ? qint16(c) : qint16('?');
}

// Splits typed text into characters, a surrogate pair counting as one.
QList<QStringView> charactersOf(QStringView text)
{
    QList<QStringView> characters;
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype n = text.at(i).isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        characters << text.mid(i, n);
        i += n;
    }
    return characters;
}
} // namespace

// Runs the classic KeyDown and KeyPress handlers for a key typed into the editor. Returns true
// when the key is used up (moved the cell, swallowed, or replaced by another character).
bool gridcontrolPrivate::editorKeyEvent(QKeyEvent *event)
{
    qint16 KeyCode = KeyCodeFromEvent(event);
    qint16 Shift = ShiftFromEvent(event);
    const qint16 pressed = KeyCode;
    TxtAdjust_KeyDown(KeyCode, Shift);
    // The editor handles the moving keys itself: the line edit must not act on them again. A
    // key without a classic code (a letter of another alphabet, a currency sign) moves nothing
    // and goes on to the character filter.
    if ((pressed != 0 && KeyCode == 0) || pressed == vbKeyReturn || pressed == vbKeyF1 || pressed == vbKeyUp
        || pressed == vbKeyDown || pressed == vbKeyHome || pressed == vbKeyEnd)
        return true;

    const qint16 typed = KeyAsciiFromEvent(event);
    if (typed == 0)
        return false;
    // A key press that types several characters at once has each of them filtered.
    const QString text = event->text();
    if (charactersOf(text).size() > 1 && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
        typeFiltered(text);
        return true;
    }
    qint16 KeyAscii = typed;
    TxtAdjust_KeyPress(KeyAscii);
    if (KeyAscii == typed)
        return false;
    if (KeyAscii != 0)
        TxtAdjust->insert(QString(QChar(KeyAscii)));
    return true;
}

// Text that an input method commits is typed character by character through the filter; what
// the filter lets through goes into the editor, and the line edit keeps only the composition.
void gridcontrolPrivate::editorInputMethodEvent(QInputMethodEvent *event)
{
    if (event->commitString().isEmpty())
        return;
    const QString committed = event->commitString();
    event->setCommitString(QString());
    typeFiltered(committed);
}

// Each character as if typed on its own: refused, passed, or replaced as the column's
// character filter decides, against the editor's text as it stands at that character.
void gridcontrolPrivate::typeFiltered(const QString &text)
{
    for (const QStringView character : charactersOf(text)) {
        const qint16 typed = keyAsciiOf(character);
        qint16 KeyAscii = typed;
        TxtAdjust_KeyPress(KeyAscii);
        if (KeyAscii == typed)
            TxtAdjust->insert(character.toString());
        else if (KeyAscii != 0)
            TxtAdjust->insert(QString(QChar(KeyAscii)));
    }
}

void gridcontrolPrivate::TxtAdjust_KeyDown(qint16 &KeyCode, qint16 &Shift)
{
    const qint32 row = flexgrid->Row();
    const qint32 col = flexgrid->Col();
    switch (KeyCode) {
    case vbKeyF1: {
        qint16 helpCol = qint16(col - 1);
        QVariant value = GetEditValue(helpCol);
        bool Cancel = false;
        emit q->InvokeHelp(helpCol, value, Cancel);
        if (Cancel) {
            KeyCode = 0;
            return;
        }
        break;
    }
    case vbKeyUp:
        if (row >= 2)
            flexgrid->setRow(row - 1);
        break;
    case vbKeyDown:
        if (row != flexgrid->Rows() - 1)
            flexgrid->setRow(row + 1);
        break;
    case vbKeyHome:
        flexgrid->setRow(1);
        flexgrid->setCol(1);
        break;
    case vbKeyEnd:
        flexgrid->setRow(flexgrid->Rows() - 1);
        flexgrid->setCol(flexgrid->Cols() - 1);
        break;
    case vbKeyReturn:
        if (Shift == vbShiftMask) {
            // Ctrl+Shift+Enter counts as plain Enter: only Shift alone goes back.
            if (col >= 2) {
                SkipToPrevEnabledCol();
                flexgrid->setCol(flexgrid->Col() - 1);
            } else if (row != 1) {
                flexgrid->setRow(row - 1);
                flexgrid->setCol(flexgrid->Cols() - 1);
            }
            selectEditorText();
            return;
        }
        if (bHoldCell) {
            // The cell may not be left.
        } else if (col != flexgrid->Cols() - 1) {
            SkipToNextEnabledCol();
            if (enabledAt(GridStructArray, flexgrid->Col() + 1))
                flexgrid->setCol(flexgrid->Col() + 1);
        } else if (row != flexgrid->Rows() - 1) {
            flexgrid->setRow(row + 1);
            flexgrid->setCol(1);
        } else {
            q->pop_Click(0); // Enter on the last cell adds a row
        }
        selectEditorText();
        break;
    default:
        return;
    }
    // Columns filled through the help look-up hide the editor.
    const int current = flexgrid->Col();
    TxtAdjust->setVisible(enabledAt(GridStructArray, current) && !GridStructArray.at(current).HelpInvoked);
}

// Prepares Enter so that its move lands on the next enabled column: when the next column is
// disabled, the current column becomes the one before the first enabled column further on.
void gridcontrolPrivate::SkipToNextEnabledCol()
{
    const int col = flexgrid->Col();
    if (enabledAt(GridStructArray, col + 1))
        return;
    for (int i = col + 1; i <= flexgrid->Cols(); ++i) {
        if (enabledAt(GridStructArray, i)) {
            flexgrid->setCol(i - 1);
            return;
        }
    }
}

void gridcontrolPrivate::SkipToPrevEnabledCol()
{
    const int col = flexgrid->Col();
    if (enabledAt(GridStructArray, col - 1))
        return;
    for (int i = col - 1; i >= 0; --i) {
        if (enabledAt(GridStructArray, i)) {
            flexgrid->setCol(i + 1);
            return;
        }
    }
}

void gridcontrolPrivate::TxtAdjust_KeyPress(qint16 &KeyAscii)
{
    // Backspace and the two characters "(" and "&" pass unchecked in every column.
    if (KeyAscii == 8 || KeyAscii == 40 || KeyAscii == 38 || flexgrid->Col() == 0)
        return;
    const int col = flexgrid->Col() - 1;
    const RecStruct &rec = checkedAt(RecStructArray, col, QStringLiteral("RecStructArray"));
    if (Len(Trim(TxtAdjust->text())) == rec.Length) {
        KeyAscii = 0;
    } else if (KeyAscii == 46) {
        // A point is always accepted.
    } else if (rec.DataType == QLatin1String("C")) {
        if (KeyAscii >= 'a' && KeyAscii <= 'z')
            KeyAscii = qint16(KeyAscii - 'a' + 'A'); // character columns hold upper case only
    } else if (rec.DataType == QLatin1String("N")) {
        const ConnectionSettings &settings = ConnectionSettings::instance();
        KeyAscii = rec.Decimal == 0
            ? settings.IntegerKeyFilter(KeyAscii)
            : settings.DecimalKeyFilter(KeyAscii, TxtAdjust, rec.Decimal, qint16(rec.Length - rec.Decimal));
    }
}

} // namespace PanelKestrin
