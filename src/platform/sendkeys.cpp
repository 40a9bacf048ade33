#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/sendkeys.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QWidget>
#include <deque>
#include <vector>

namespace PanelKestrin {

namespace {

struct KeyStroke
{
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    QString text;
};

struct NamedKey
{
    const char *name;
    int key;
    const char *text;
    bool keypad;
};

constexpr NamedKey namedKeys[] = {
    {"BACKSPACE", Qt::Key_Backspace, "\b", false}, {"BS", Qt::Key_Backspace, "\b", false},
    {"BKSP", Qt::Key_Backspace, "\b", false},      {"BREAK", Qt::Key_Pause, "", false},
    {"CAPSLOCK", Qt::Key_CapsLock, "", false},     {"DELETE", Qt::Key_Delete, "", false},
    {"DEL", Qt::Key_Delete, "", false},            {"DOWN", Qt::Key_Down, "", false},
    {"END", Qt::Key_End, "", false},               {"ENTER", Qt::Key_Return, "\r", false},
    {"ESC", Qt::Key_Escape, "\x1b", false},        {"ESCAPE", Qt::Key_Escape, "\x1b", false},
    {"HELP", Qt::Key_Help, "", false},             {"HOME", Qt::Key_Home, "", false},
    {"INSERT", Qt::Key_Insert, "", false},         {"INS", Qt::Key_Insert, "", false},
    {"LEFT", Qt::Key_Left, "", false},             {"NUMLOCK", Qt::Key_NumLock, "", false},
    {"PGDN", Qt::Key_PageDown, "", false},         {"PGUP", Qt::Key_PageUp, "", false},
    {"PRTSC", Qt::Key_Print, "", false},           {"RIGHT", Qt::Key_Right, "", false},
    {"SCROLLLOCK", Qt::Key_ScrollLock, "", false}, {"TAB", Qt::Key_Tab, "\t", false},
    {"UP", Qt::Key_Up, "", false},                 {"ADD", Qt::Key_Plus, "+", true},
    {"SUBTRACT", Qt::Key_Minus, "-", true},        {"MULTIPLY", Qt::Key_Asterisk, "*", true},
    {"DIVIDE", Qt::Key_Slash, "/", true},
};

[[noreturn]] void invalidKeys(const QString &detail)
{
    throw RuntimeError(ErrInvalidProcedureCall,
                       RuntimeError::standardDescription(ErrInvalidProcedureCall) + QStringLiteral(": ")
                           + detail,
                       QStringLiteral("SendKeys"));
}

// Shift+Tab reaches widgets as Backtab, as the platform delivers it.
KeyStroke withModifiers(KeyStroke k, Qt::KeyboardModifiers mods)
{
    k.modifiers |= mods;
    if (k.key == Qt::Key_Tab && (k.modifiers & Qt::ShiftModifier))
        k.key = Qt::Key_Backtab;
    if ((k.modifiers & Qt::ControlModifier) && k.key >= Qt::Key_A && k.key <= Qt::Key_Z)
        k.text = QChar(char16_t(k.key - Qt::Key_A + 1)); // Ctrl+letter types its control code
    return k;
}

KeyStroke characterStroke(QChar c)
{
    switch (c.unicode()) {
    case '\t': return {Qt::Key_Tab, {}, QStringLiteral("\t")};
    case '\r':
    case '\n': return {Qt::Key_Return, {}, QStringLiteral("\r")};
    case ' ': return {Qt::Key_Space, {}, QStringLiteral(" ")};
    default: break;
    }
    KeyStroke k{int(c.toUpper().unicode()), {}, QString(c)};
    if (c.isUpper())
        k.modifiers = Qt::ShiftModifier; // an upper-case letter is typed with Shift
    return k;
}

// The keys a "{...}" body names: "Name", "Name n" or a single character.
std::vector<KeyStroke> bracedStrokes(const QString &body)
{
    QString name = body;
    int count = 1;
    const int space = body.lastIndexOf(QLatin1Char(' '));
    if (space > 0) {
        bool ok = false;
        count = body.mid(space + 1).toInt(&ok);
        if (!ok || count < 0)
            invalidKeys(QCoreApplication::translate("PanelKestrin::SendKeys", "bad repeat count in {%1}").arg(body));
        name = body.left(space);
    }
    KeyStroke stroke;
    if (name.size() == 1) {
        stroke = characterStroke(name.at(0));
    } else if (name.size() >= 2 && name.at(0).toUpper() == QLatin1Char('F') && name.mid(1).toInt() >= 1
               && name.mid(1).toInt() <= 16) {
        stroke = {Qt::Key_F1 + name.mid(1).toInt() - 1, {}, QString()};
    } else {
        const NamedKey *found = nullptr;
        for (const NamedKey &n : namedKeys) {
            if (name.compare(QLatin1String(n.name), Qt::CaseInsensitive) == 0)
                found = &n;
        }
        if (!found)
            invalidKeys(QCoreApplication::translate("PanelKestrin::SendKeys", "unknown key name {%1}").arg(name));
        stroke = {found->key, found->keypad ? Qt::KeypadModifier : Qt::NoModifier,
                  QString::fromLatin1(found->text)};
    }
    return std::vector<KeyStroke>(size_t(count), stroke);
}

std::vector<KeyStroke> parseKeys(const QString &keys)
{
    auto fault = [](const char *what) {
        invalidKeys(QCoreApplication::translate("PanelKestrin::SendKeys", what));
    };
    std::vector<KeyStroke> strokes;
    std::vector<Qt::KeyboardModifiers> groups{Qt::NoModifier}; // modifiers of open "( )" groups
    Qt::KeyboardModifiers pending;
    auto add = [&](const std::vector<KeyStroke> &ks) {
        for (const KeyStroke &k : ks)
            strokes.push_back(withModifiers(k, groups.back() | pending));
        pending = {};
    };
    for (int i = 0; i < keys.size(); ++i) {
        const QChar c = keys.at(i);
        switch (c.unicode()) {
        case '+': pending |= Qt::ShiftModifier; break;
        case '^': pending |= Qt::ControlModifier; break;
        case '%': pending |= Qt::AltModifier; break;
        case '~': add({KeyStroke{Qt::Key_Return, {}, QStringLiteral("\r")}}); break;
        case '(':
            groups.push_back(groups.back() | pending);
            pending = {};
            break;
        case ')':
            if (groups.size() == 1 || pending)
                fault("unbalanced parenthesis");
            groups.pop_back();
            break;
        case '{': {
            // The first character after "{" belongs to the body even when it is "}" ("{}}").
            const int close = keys.indexOf(QLatin1Char('}'), i + 2);
            if (close < 0)
                fault("missing closing brace");
            add(bracedStrokes(keys.mid(i + 1, close - i - 1)));
            i = close;
            break;
        }
        case '}': fault("unbalanced brace"); break;
        default: add({characterStroke(c)}); break;
        }
    }
    if (groups.size() != 1)
        fault("unbalanced parenthesis");
    if (pending)
        fault("a Shift, Ctrl or Alt prefix has no key");
    return strokes;
}

QWidget *keyTarget()
{
    if (QWidget *w = QApplication::focusWidget())
        return w;
    return QApplication::activeWindow();
}

void deliver(const KeyStroke &k)
{
    if (QPointer<QWidget> target = keyTarget()) {
        QKeyEvent press(QEvent::KeyPress, k.key, k.modifiers, k.text);
        QCoreApplication::sendEvent(target, &press);
    }
    // The release goes where the focus is now: after a Tab that is the next control.
    if (QPointer<QWidget> target = keyTarget()) {
        QKeyEvent release(QEvent::KeyRelease, k.key, k.modifiers, k.text);
        QCoreApplication::sendEvent(target, &release);
    }
}

// The keyboard queue: keys typed but not yet delivered, oldest first.
struct KeyQueue
{
    std::deque<KeyStroke> strokes;
    bool deliveryPosted = false;
};

KeyQueue &keyQueue()
{
    static KeyQueue queue;
    return queue;
}

void deliverNextQueued();

void postDelivery()
{
    KeyQueue &q = keyQueue();
    if (q.deliveryPosted || q.strokes.empty() || !QCoreApplication::instance())
        return;
    q.deliveryPosted = true;
    QMetaObject::invokeMethod(QCoreApplication::instance(), &deliverNextQueued, Qt::QueuedConnection);
}

// Delivers one queued key, then lets the event loop run (and whatever that key posted) before
// the next, as keys typed ahead on a keyboard are.
void deliverNextQueued()
{
    KeyQueue &q = keyQueue();
    q.deliveryPosted = false;
    if (q.strokes.empty())
        return;
    const KeyStroke k = q.strokes.front();
    q.strokes.pop_front();
    struct PostNext
    {
        ~PostNext() { postDelivery(); }
    } postNext;
    deliver(k);
}

} // namespace

void SendKeys(const QString &Keys, bool Wait)
{
    const std::vector<KeyStroke> strokes = parseKeys(Keys);
    KeyQueue &q = keyQueue();
    q.strokes.insert(q.strokes.end(), strokes.begin(), strokes.end());
    if (!Wait) {
        postDelivery();
        return;
    }
    try {
        while (!q.strokes.empty()) {
            const KeyStroke k = q.strokes.front();
            q.strokes.pop_front();
            deliver(k);
        }
    } catch (...) {
        postDelivery(); // keys behind the one whose handler failed are still typed
        throw;
    }
}

} // namespace PanelKestrin
