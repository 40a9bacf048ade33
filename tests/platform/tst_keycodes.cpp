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
};

// What the round trip below cannot show: second keys of a code, masks, typed characters, unknown keys.
void tst_keycodes::fromQtEvents_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<int>("shift");
    QTest::addColumn<int>("keyAscii");
    const int none = Qt::NoModifier;
    QTest::newRow("keypad Enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << "\r" << 13 << 0 << 13;
    QTest::newRow("Backtab carries Shift") << int(Qt::Key_Backtab) << none << "" << 9 << 1 << 0;
    QTest::newRow("Backspace without text") << int(Qt::Key_Backspace) << none << "" << 8 << 0 << 8;
    QTest::newRow("Delete types nothing") << int(Qt::Key_Delete) << none << "\x7f" << 46 << 0 << 0;
    QTest::newRow("Ctrl+C") << int(Qt::Key_C) << int(Qt::ControlModifier) << "c" << 67 << 2 << 3;
    QTest::newRow("Shift+1 is the 1 key") << int(Qt::Key_Exclam) << int(Qt::ShiftModifier) << "!" << 49 << 1 << 33;
    QTest::newRow("Alt+Shift+F4, keypad flag ignored")
        << int(Qt::Key_F4) << int(Qt::AltModifier | Qt::ShiftModifier | Qt::KeypadModifier) << "" << 115 << 5 << 0;
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

// Every code that names a key converts to a Qt key that converts back to the same code, and
// every shift mask to modifiers and back, so rules written against codes and keys sent from
// codes agree.
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
    QCOMPARE(QtKeyFromKeyCode(vbKeyReturn), int(Qt::Key_Return)); // not the keypad's Enter
    QCOMPARE(QtKeyFromKeyCode(vbKeyTab), int(Qt::Key_Tab));       // not Backtab
    for (qint16 shift = 0; shift < 8; ++shift)
        QCOMPARE(ShiftFromModifiers(ModifiersFromShift(shift)), shift);
}

QTEST_MAIN(tst_keycodes)
#include "tst_keycodes.moc"
