#include <PanelKestrin/keycodes.h>

#include <QKeyEvent>
#include <QtTest>

using namespace PanelKestrin;

class tst_keycodes : public QObject
{
    Q_OBJECT

private slots:
    void fromQtEvents_data();
    void fromQtEvents();
    void codesConvertBackToTheirKeys();
    void shiftMasks();
};

void tst_keycodes::fromQtEvents_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<int>("shift");
    QTest::addColumn<int>("keyAscii");
    const int none = Qt::NoModifier;
    const int keypad = Qt::KeypadModifier;
    QTest::newRow("Return") << int(Qt::Key_Return) << none << "\r" << 13 << 0 << 13;
    QTest::newRow("keypad Enter") << int(Qt::Key_Enter) << keypad << "\r" << 13 << 0 << 13;
    QTest::newRow("Backtab carries Shift") << int(Qt::Key_Backtab) << none << "" << 9 << 1 << 0;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << none << "" << 8 << 0 << 8;
    QTest::newRow("Esc") << int(Qt::Key_Escape) << none << "\x1b" << 27 << 0 << 27;
    QTest::newRow("Delete types nothing") << int(Qt::Key_Delete) << none << "\x7f" << 46 << 0 << 0;
    QTest::newRow("letter") << int(Qt::Key_A) << none << "a" << 65 << 0 << 97;
    QTest::newRow("Shift+letter") << int(Qt::Key_A) << int(Qt::ShiftModifier) << "A" << 65 << 1 << 65;
    QTest::newRow("Ctrl+C") << int(Qt::Key_C) << int(Qt::ControlModifier) << "c" << 67 << 2 << 3;
    QTest::newRow("Shift+1 is the 1 key") << int(Qt::Key_Exclam) << int(Qt::ShiftModifier) << "!" << 49 << 1 << 33;
    QTest::newRow("keypad decimal") << int(Qt::Key_Period) << keypad << "." << 110 << 0 << 46;
    QTest::newRow("minus key") << int(Qt::Key_Minus) << none << "-" << 189 << 0 << 45;
    QTest::newRow("F1") << int(Qt::Key_F1) << none << "" << 112 << 0 << 0;
    QTest::newRow("Alt+F4") << int(Qt::Key_F4) << int(Qt::AltModifier) << "" << 115 << 4 << 0;
    QTest::newRow("accented letter") << int(Qt::Key_Eacute) << none << QString(QChar(0xE9)) << 0 << 0 << 0xE9;
}

void tst_keycodes::fromQtEvents()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(QString, text);
    QFETCH(int, keyCode);
    QFETCH(int, shift);
    QFETCH(int, keyAscii);
    const QKeyEvent event(QEvent::KeyPress, key, Qt::KeyboardModifiers(modifiers), text);
    QCOMPARE(int(KeyCodeFromEvent(&event)), keyCode);
    QCOMPARE(int(ShiftFromEvent(&event)), shift);
    QCOMPARE(int(KeyAsciiFromEvent(&event)), keyAscii);
}

// Every code that names a key converts to a Qt key that converts back to the same code, so
// rules written against codes and keys sent from codes agree.
void tst_keycodes::codesConvertBackToTheirKeys()
{
    int named = 0;
    for (int code = 1; code < 256; ++code) {
        const int key = QtKeyFromKeyCode(qint16(code));
        if (!key)
            continue;
        ++named;
        const bool onKeypad = code >= vbKeyNumpad0 && code <= vbKeyDivide;
        const QKeyEvent event(QEvent::KeyPress, key, onKeypad ? Qt::KeypadModifier : Qt::NoModifier);
        QCOMPARE(int(KeyCodeFromEvent(&event)), code);
    }
    QVERIFY(named > 100);
    QCOMPARE(QtKeyFromKeyCode(vbKeyReturn), int(Qt::Key_Return));
    QCOMPARE(QtKeyFromKeyCode(vbKeyTab), int(Qt::Key_Tab));
    QCOMPARE(QtKeyFromKeyCode(255), 0);
}

void tst_keycodes::shiftMasks()
{
    QCOMPARE(int(ShiftFromModifiers(Qt::ShiftModifier | Qt::AltModifier)), 5);
    QCOMPARE(int(ShiftFromModifiers(Qt::ControlModifier | Qt::KeypadModifier)), 2);
    for (qint16 shift = 0; shift < 8; ++shift)
        QCOMPARE(ShiftFromModifiers(ModifiersFromShift(shift)), shift);
}

QTEST_MAIN(tst_keycodes)
#include "tst_keycodes.moc"
