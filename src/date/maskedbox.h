#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QLineEdit>
#include <QString>

#include <memory>

namespace PanelKestrin {

class MaskEdBoxPrivate;

// A masked edit box: a line edit whose text always has the shape of its Mask. In the mask "#"
// stands for one digit and every other character is a literal shown as it is, so "##/##/####"
// holds a date. Positions not yet typed show the prompt character "_". Typing a digit fills the
// position at the caret (or the next digit position after literals) and moves on; other
// characters are refused; Backspace and Delete blank positions again.
//
// Every key press is first offered to KeyDown with its classic key code and shift mask
// (keycodes.h); a handler that sets KeyCode to 0 swallows the key, so it neither edits the text
// nor moves the focus (Tab) nor reaches the parent (Enter). Any other value lets the key go on
// as it was pressed.
class PANELKESTRIN_EXPORT MaskEdBox : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(QString Mask READ Mask WRITE setMask)
    Q_PROPERTY(QString Text READ Text WRITE setText)
    Q_PROPERTY(QString ClipText READ ClipText)
    Q_PROPERTY(int SelStart READ SelStart WRITE setSelStart)

public:
    explicit MaskEdBox(QWidget *parent = nullptr);
    ~MaskEdBox() override;

    QString Mask() const;
    // Sets the mask, blanks the text and puts the caret at the start. An empty mask makes a plain edit box. The character
    // ";" cannot stand in a mask: such a mask raises RuntimeError 380.
    void setMask(const QString &Mask);

    // The text as shown, literals and prompt characters included ("12/__/____").
    QString Text() const;
    // Replaces the text. With a mask it must have the mask's shape: a digit or the prompt
    // character at each "#", each literal in its place; "" blanks every position. Anything
    // else raises RuntimeError 380 and changes nothing. The caret goes to the start.
    void setText(const QString &Text);

    // The typed characters without literals and prompts, in order: "1205" for "12/05/____".
    QString ClipText() const;

    // The caret position, 0 before the first character. Setting it clears any selection;
    // positions past the end put the caret at the end; a negative one raises RuntimeError 380.
    int SelStart() const { return cursorPosition(); }
    void setSelStart(int SelStart);

    Q_INVOKABLE void SetFocus() { setFocus(); }

    // The character shown in positions not yet typed.
    static constexpr char16_t PromptChar = u'_';

Q_SIGNALS:
    // Raised for every key press before the box handles it.
    void KeyDown(qint16 &KeyCode, qint16 &Shift);

protected:
    bool event(QEvent *event) override;

private:
    friend class MaskEdBoxPrivate;
    std::unique_ptr<MaskEdBoxPrivate> const d;
};

} // namespace PanelKestrin
