#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/keycodes.h>
#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QVector>
#include <algorithm>

namespace PanelKestrin {

namespace {

[[noreturn]] void invalidValue(const char *what, const QString &value)
{
    throw RuntimeError(ErrInvalidPropertyValue,
                       RuntimeError::standardDescription(ErrInvalidPropertyValue) + QStringLiteral(": ")
                           + QCoreApplication::translate("PanelKestrin::MaskEdBox", what).arg(value),
                       QStringLiteral("MaskEdBox"));
}

} // namespace

// The mask as given and, position by position, what it takes there.
class MaskEdBoxPrivate
{
public:
    // One position of the mask: a digit position or a literal character.
    struct Position
    {
        bool digit;
        QChar literal;
    };

    bool fitsMask(const QString &text) const;

    QString m_mask;
    QVector<Position> m_positions;
};

MaskEdBox::MaskEdBox(QWidget *parent) : QLineEdit(parent), d(std::make_unique<MaskEdBoxPrivate>()) {}

MaskEdBox::~MaskEdBox() = default;

QString MaskEdBox::Mask() const
{
    return d->m_mask;
}

void MaskEdBox::setMask(const QString &Mask)
{
    if (Mask.contains(QLatin1Char(';')))
        invalidValue("the mask \"%1\" holds a \";\"", Mask);
    // The line edit's own input mask does the editing: "9" is an optional digit there, and a
    // character after "\" is a literal whatever it is, so the mask's literals need no other care.
    QString inputMask;
    QVector<MaskEdBoxPrivate::Position> positions;
    for (const QChar c : Mask) {
        const bool digit = c == QLatin1Char('#');
        positions.append({digit, digit ? QChar() : c});
        if (digit)
            inputMask += QLatin1Char('9');
        else
            inputMask += QLatin1Char('\\') + QString(c);
    }
    if (!inputMask.isEmpty())
        inputMask += QLatin1Char(';') + QString(QChar(PromptChar));
    d->m_mask = Mask;
    d->m_positions = positions;
    QLineEdit::setInputMask(inputMask);
    QLineEdit::setText(QString());
    setCursorPosition(0);
}

QString MaskEdBox::Text() const
{
    return d->m_positions.isEmpty() ? text() : displayText();
}

bool MaskEdBoxPrivate::fitsMask(const QString &text) const
{
    if (text.size() != m_positions.size())
        return false;
    for (int i = 0; i < text.size(); ++i) {
        const Position &p = m_positions.at(i);
        const QChar c = text.at(i);
        if (p.digit ? !(c.isDigit() && c.unicode() < 128) && c != QChar(MaskEdBox::PromptChar) : c != p.literal)
            return false;
    }
    return true;
}

void MaskEdBox::setText(const QString &Text)
{
    if (d->m_positions.isEmpty()) {
        QLineEdit::setText(Text);
        return;
    }
    if (!Text.isEmpty() && !d->fitsMask(Text))
        invalidValue("\"%1\" does not fit the mask", Text);
    // The line edit closes up gaps in a text it is given ("1_/05" would become "10/5_"), so a
    // text with gaps is typed into place digit by digit, and told as one change.
    const int gap = Text.indexOf(QChar(PromptChar));
    const bool gapped = gap >= 0 && std::any_of(Text.begin() + gap, Text.end(), [](QChar c) { return c.isDigit(); });
    if (!gapped) {
        QLineEdit::setText(Text);
    } else {
        {
            const QSignalBlocker quiet(this);
            QLineEdit::setText(QString());
            for (int i = 0; i < Text.size(); ++i) {
                if (d->m_positions.at(i).digit && Text.at(i) != QChar(PromptChar)) {
                    setSelection(i, 1);
                    insert(Text.at(i));
                }
            }
            setModified(false);
        }
        emit textChanged(text());
    }
    setCursorPosition(0);
}

QString MaskEdBox::ClipText() const
{
    if (d->m_positions.isEmpty())
        return text();
    const QString shown = displayText();
    QString typed;
    for (int i = 0; i < shown.size() && i < d->m_positions.size(); ++i) {
        if (d->m_positions.at(i).digit && shown.at(i) != QChar(PromptChar))
            typed += shown.at(i);
    }
    return typed;
}

void MaskEdBox::setSelStart(int SelStart)
{
    if (SelStart < 0)
        invalidValue("SelStart %1", QString::number(SelStart));
    setCursorPosition(qMin(SelStart, Text().size()));
}

bool MaskEdBox::event(QEvent *event)
{
    // Tab and Shift+Tab are taken here, before the widget moves the focus with them.
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        qint16 KeyCode = KeyCodeFromEvent(key);
        qint16 Shift = ShiftFromEvent(key);
        if (KeyCode != 0) {
            const bool completed = guardEvent(QStringLiteral("MaskEdBox.KeyDown"), [&] { emit KeyDown(KeyCode, Shift); });
            // A swallowed key, or one whose handling failed, goes no further.
            if (!completed || KeyCode == 0) {
                event->accept();
                return true;
            }
        }
        // Only digits are typed into a mask: a literal typed would jump to the next group
        // and leave a gap behind.
        const QString typed = key->text();
        const bool plain = !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
        if (!d->m_positions.isEmpty() && plain && typed.size() == 1 && typed.at(0).isPrint()
            && !(typed.at(0).isDigit() && typed.at(0).unicode() < 128)) {
            event->accept();
            return true;
        }
    }
    return QLineEdit::event(event);
}

} // namespace PanelKestrin
