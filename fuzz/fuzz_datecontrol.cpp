// Random input into the date entry control: key sequences typed into the mask (and wherever the
// focus goes from there), digit strings put into the mask and run through the date checks,
// dates written and read back, and date formats. After each input the mask must still have its
// shape, the checks must answer without raising anything but the impossible-date error 5, and
// nothing may escape into the event loop.
//
// Input: the first byte picks what is done ("k" keys, "c" digits into the checks, "v" a date
// through value, "f" formats; any other byte by its value). The second byte sets the control up:
// its two low bits pick one of four controls (separators "/", "-", ".", ". "), bit 2 asks for
// month-first order, bit 3 for Mindate 1 January 2000, bit 4 for Maxdate 31 December 2030
// ("@" control 0 day first, "D" month first, "X" with the range). The rest is the payload.
// Keys read as typed: digits, "T" Tab, "t" Shift+Tab, "E" Enter, "U" Up, "D" Down,
// "B" Backspace, "X" Delete, "L" Left, "R" Right, "H" Home, "N" End; other bytes pick from the
// whole key table. Digits for the checks: "0"-"9", "_" a gap, other bytes by their value, and
// one more byte for the key pressed on them.

#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/registry.h>
#include <PanelKestrin/runtimeerror.h>

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStandardPaths>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

using namespace PanelKestrin;

namespace {

struct Key
{
    char name;
    int key;
    Qt::KeyboardModifiers modifiers;
    const char *text;
};

const Key kKeys[] = {
    {'0', Qt::Key_0, {}, "0"}, {'1', Qt::Key_1, {}, "1"}, {'2', Qt::Key_2, {}, "2"}, {'3', Qt::Key_3, {}, "3"},
    {'4', Qt::Key_4, {}, "4"}, {'5', Qt::Key_5, {}, "5"}, {'6', Qt::Key_6, {}, "6"}, {'7', Qt::Key_7, {}, "7"},
    {'8', Qt::Key_8, {}, "8"}, {'9', Qt::Key_9, {}, "9"},
    {'T', Qt::Key_Tab, {}, "\t"}, {'t', Qt::Key_Backtab, Qt::ShiftModifier, ""}, {'E', Qt::Key_Return, {}, "\r"},
    {'U', Qt::Key_Up, {}, ""}, {'D', Qt::Key_Down, {}, ""}, {'B', Qt::Key_Backspace, {}, "\b"},
    {'X', Qt::Key_Delete, {}, ""}, {'L', Qt::Key_Left, {}, ""}, {'R', Qt::Key_Right, {}, ""},
    {'H', Qt::Key_Home, {}, ""}, {'N', Qt::Key_End, {}, ""},
    {0, Qt::Key_Enter, Qt::KeypadModifier, "\r"}, {0, Qt::Key_Escape, {}, "\x1b"}, {0, Qt::Key_Space, {}, " "},
    {0, Qt::Key_Slash, {}, "/"}, {0, Qt::Key_Minus, {}, "-"}, {0, Qt::Key_Period, {}, "."}, {0, Qt::Key_A, {}, "a"},
    {0, Qt::Key_F4, {}, ""}, {0, Qt::Key_Down, Qt::AltModifier, ""}, {0, Qt::Key_A, Qt::ControlModifier, "\x01"},
    {0, Qt::Key_Z, Qt::ControlModifier, "\x1a"}, {0, Qt::Key_X, Qt::ControlModifier, "\x18"},
    {0, Qt::Key_V, Qt::ControlModifier, "\x16"}, {0, Qt::Key_Home, Qt::ShiftModifier, ""},
    {0, Qt::Key_Shift, Qt::ShiftModifier, ""},
};
constexpr size_t kKeyCount = sizeof(kKeys) / sizeof(kKeys[0]);

const char *const kSeparators[] = {"/", "-", ".", ". "};
constexpr int kControls = 4;

struct Form
{
    QWidget window;
    QLineEdit *before = nullptr;
    QLineEdit *after = nullptr;
    DTControl *date[kControls] = {};
    MaskEdBox *mask[kControls] = {};
};

Form *form = nullptr;
std::vector<int> reported;

[[noreturn]] void fault(const char *what, const QString &detail = QString())
{
    std::fprintf(stderr, "date control fault: %s %s\n", what, qPrintable(detail));
    std::abort();
}

const Key &keyFor(uint8_t byte)
{
    for (const Key &k : kKeys) {
        if (k.name && k.name == char(byte))
            return k;
    }
    return kKeys[byte % kKeyCount];
}

// Delivers the key where the keyboard would: to the focus widget, else the active window.
void press(const Key &k)
{
    QWidget *target = QApplication::focusWidget();
    if (!target)
        target = QApplication::activeWindow();
    if (!target)
        return;
    QKeyEvent down(QEvent::KeyPress, k.key, k.modifiers, QString::fromLatin1(k.text));
    QApplication::sendEvent(target, &down);
    QKeyEvent up(QEvent::KeyRelease, k.key, k.modifiers, QString::fromLatin1(k.text));
    QApplication::sendEvent(QApplication::focusWidget() ? QApplication::focusWidget() : target, &up);
}

// Lets the keys the control sends (Up, Down) arrive.
void settle()
{
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

// The mask keeps its shape; the checks answer; value is a date, the empty date, or error 5.
void checkInvariants(DTControl *date, MaskEdBox *mask)
{
    const QString maskText = mask->Mask();
    const QString text = mask->Text();
    if (text.size() != maskText.size())
        fault("text and mask differ in length", text);
    for (int i = 0; i < text.size(); ++i) {
        const bool digit = maskText.at(i) == QLatin1Char('#');
        const QChar c = text.at(i);
        if (digit ? !(c == QLatin1Char('_') || (c >= QLatin1Char('0') && c <= QLatin1Char('9'))) : c != maskText.at(i))
            fault("text does not fit the mask", text);
    }
    const QString clip = mask->ClipText();
    if (clip.size() > 8)
        fault("more than eight digits", clip);
    date->ValidDaysOfMonth();
    try {
        const QDate value = date->value();
        if (clip.size() < 8 ? value != QDate(1899, 12, 30) : !value.isValid())
            fault("value does not match the mask", text);
    } catch (const RuntimeError &e) {
        if (e.Number() != ErrInvalidProcedureCall || clip.size() != 8)
            fault("value raised", e.Description());
    }
}

void typeKeys(const uint8_t *data, size_t size)
{
    for (size_t i = 0; i < size && i < 64; ++i) {
        press(keyFor(data[i]));
        settle();
    }
}

// Puts digits (and gaps) into the mask, then runs the key rules and the exit check on them.
void checkDigits(DTControl *date, MaskEdBox *mask, const uint8_t *data, size_t size)
{
    QString text = mask->Text();
    int at = 0;
    for (int i = 0; i < text.size() && size_t(at) < size; ++i) {
        if (mask->Mask().at(i) != QLatin1Char('#'))
            continue;
        const uint8_t b = data[at++];
        const int digit = b >= '0' && b <= '9' ? b - '0' : b == '_' ? 10 : b % 11;
        text[i] = digit == 10 ? QChar(MaskEdBox::PromptChar) : QChar(char16_t(u'0' + digit));
    }
    mask->setText(text);
    checkInvariants(date, mask);
    if (size_t(at) < size) {
        const char rules[] = "TtEUD";
        const uint8_t rule = data[at];
        press(keyFor(rule && std::strchr(rules, rule) ? rule : uint8_t(rules[rule % 5])));
        settle();
    }
    form->after->setFocus();
    settle();
}

void roundTrip(DTControl *date, MaskEdBox *mask, const uint8_t *data, size_t size)
{
    qint64 day = 0;
    for (size_t i = 0; i < size && i < 4; ++i)
        day = day * 256 + data[i];
    const QDate value = QDate(1, 1, 1).addDays(day % 3652059); // 1 January 1 to 31 December 9999
    date->setvalue(value);
    checkInvariants(date, mask);
    const QDate back = date->value();
    if (back != (value == QDate(1899, 12, 30) ? QDate(1899, 12, 30) : value))
        fault("value did not come back", value.toString(Qt::ISODate));
}

void formats(DTControl *date, const uint8_t *data, size_t size)
{
    const QString format = QString::fromLatin1(reinterpret_cast<const char *>(data), int(qMin(size, size_t(24))));
    date->SetDateFormat(format);
    date->setdDateFormat(format);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz_datecontrol";
    static char *argv[] = {name, nullptr};
    new QApplication(argc, argv);
    QStandardPaths::setTestModeEnabled(true); // the separators go into a store of its own
    setMessageBoxHandler([](const QString &, int, const QString &) { return int(vbOK); });
    setErrorReporter([](const RuntimeError &e) { reported.push_back(e.Number()); });

    form = new Form;
    auto *grid = new QGridLayout(&form->window);
    grid->addWidget(form->before = new QLineEdit(&form->window), 0, 0);
    for (int i = 0; i < kControls; ++i) {
        SetRegValue(HKEY_CURRENT_USER, QStringLiteral("\\Control Panel\\International"), QStringLiteral("sDate"),
                    QString::fromLatin1(kSeparators[i]));
        grid->addWidget(form->date[i] = new DTControl(&form->window), i + 1, 0);
        form->mask[i] = form->date[i]->findChild<MaskEdBox *>(QStringLiteral("MaskEdBox1"));
    }
    grid->addWidget(form->after = new QLineEdit(&form->window), kControls + 1, 0);
    form->window.show();
    form->window.activateWindow();
    settle();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const uint8_t setup = data[1];
    const int which = setup & 3;
    DTControl *date = form->date[which];
    MaskEdBox *mask = form->mask[which];

    // Every control starts blank, so that none holds the focus from an earlier input.
    for (DTControl *d : form->date)
        d->setvalue(QDate());
    date->setdDateFormat(setup & 4 ? QStringLiteral("MM/DD/YYYY") : QString());
    date->setMindate(setup & 8 ? QDate(2000, 1, 1) : QDate(1601, 1, 1));
    date->setMaxdate(setup & 16 ? QDate(2030, 12, 31) : QDate(9999, 12, 31));
    date->setFocus();
    settle();
    reported.clear();

    switch (data[0] == 'k' ? 0 : data[0] == 'c' ? 1 : data[0] == 'v' ? 2 : data[0] == 'f' ? 3 : data[0] % 4) {
    case 0: typeKeys(data + 2, size - 2); break;
    case 1: checkDigits(date, mask, data + 2, size - 2); break;
    case 2: roundTrip(date, mask, data + 2, size - 2); break;
    default: formats(date, data + 2, size - 2); break;
    }
    for (int i = 0; i < kControls; ++i)
        checkInvariants(form->date[i], form->mask[i]);
    // Only an impossible date may be reported, when a key rule meets it.
    for (int number : reported) {
        if (number != ErrInvalidProcedureCall)
            fault("an error was reported", QString::number(number));
    }
    Err().Clear();
    return 0;
}
