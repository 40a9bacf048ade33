#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/runtimeerror.h>

#include <QVBoxLayout>
#include <QtTest>

using namespace PanelKestrin;

namespace {

// Types text, presses the keys, then types more.
QTestEventList typing(const QString &text, const QList<Qt::Key> &then = {}, const QString &more = {})
{
    QTestEventList events;
    events.addKeyClicks(text);
    for (Qt::Key key : then)
        events.addKeyClick(key);
    events.addKeyClicks(more);
    return events;
}

// A shown, active form holding a box between two plain edits, the box with the focus.
struct Form
{
    QWidget window;
    QLineEdit *before = new QLineEdit(&window);
    MaskEdBox *box = new MaskEdBox(&window);
    QLineEdit *after = new QLineEdit(&window);

    explicit Form(const QString &mask)
    {
        auto *layout = new QVBoxLayout(&window);
        for (QWidget *w : {static_cast<QWidget *>(before), static_cast<QWidget *>(box), static_cast<QWidget *>(after)})
            layout->addWidget(w);
        box->setMask(mask);
        window.show();
        window.activateWindow();
        box->setFocus();
    }
};

} // namespace

class tst_maskedbox : public QObject
{
    Q_OBJECT

private slots:
    void typing_data();
    void typing();
    void setText_data();
    void setText();
    void keyDownSwallows_data();
    void keyDownSwallows();
};

void tst_maskedbox::typing_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clipText");
    QTest::addColumn<int>("caret");

    QTest::newRow("digits skip literals") << "##/##/####" << ::typing("12052005") << "12/05/2005" << "12052005" << 10;
    QTest::newRow("other characters refused") << "##/##/####" << ::typing("1a/2 b") << "12/__/____" << "12" << 3;
    QTest::newRow("full box takes no more") << "##/##/####" << ::typing("1205200577") << "12/05/2005" << "12052005" << 10;
    QTest::newRow("backspace blanks") << "##-##-####" << ::typing("1234", {Qt::Key_Backspace}) << "12-3_-____" << "123" << 4;
    QTest::newRow("backspace over a literal") << "##.##.####" << ::typing("123", {Qt::Key_Backspace, Qt::Key_Backspace})
                                              << "1_.__.____" << "1" << 1;
    QTest::newRow("delete leaves a gap") << "##/##/####" << ::typing("1234", {Qt::Key_Home, Qt::Key_Delete})
                                         << "_2/34/____" << "234" << 0;
    QTest::newRow("typing over digits") << "##/##/####" << ::typing("12052005", {Qt::Key_Home}, "3")
                                        << "32/05/2005" << "32052005" << 1;
    QTest::newRow("letter literals") << "##d##y" << ::typing("1234") << "12d34y" << "1234" << 6;
    QTest::newRow("no mask") << "" << ::typing("1a/") << "1a/" << "1a/" << 3;
}

void tst_maskedbox::typing()
{
    QFETCH(QString, mask);
    QFETCH(QTestEventList, keys);
    Form form(mask);
    keys.simulate(form.box);
    QTEST(form.box->Text(), "text");
    QTEST(form.box->ClipText(), "clipText");
    QTEST(form.box->SelStart(), "caret");
}

void tst_maskedbox::setText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown"); // empty: refused with error 380, the old text kept

    QTest::newRow("complete") << "25/12/2005" << "25/12/2005";
    QTest::newRow("with prompts") << "25/__/20_5" << "25/__/20_5";
    QTest::newRow("empty blanks") << "" << "__/__/____";
    QTest::newRow("wrong literal") << "25-12-2005" << "";
    QTest::newRow("letter") << "2x/12/2005" << "";
    QTest::newRow("short") << "25/12/205" << "";
}

void tst_maskedbox::setText()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    MaskEdBox box;
    box.setMask(QStringLiteral("##/##/####"));
    box.setText(QStringLiteral("01/02/2003"));
    int error = 0;
    try {
        box.setText(text);
    } catch (const RuntimeError &e) {
        error = e.Number();
    }
    QCOMPARE(error, shown.isEmpty() ? int(ErrInvalidPropertyValue) : 0);
    QCOMPARE(box.Text(), shown.isEmpty() ? QStringLiteral("01/02/2003") : shown);

    // The caret: past the end goes to the end, negative is refused.
    box.setSelStart(3);
    QCOMPARE(box.cursorPosition(), 3);
    box.setSelStart(99);
    QCOMPARE(box.SelStart(), 10);
    QVERIFY_THROWS_EXCEPTION(RuntimeError, box.setSelStart(-1));
}

void tst_maskedbox::keyDownSwallows_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("swallowed"); // the key code the handler zeroes
    QTest::addColumn<int>("keyCode");
    QTest::addColumn<int>("shift");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("focus");

    QTest::newRow("digit typed") << int(Qt::Key_5) << 0 << 0 << 53 << 0 << "5_/__" << "box";
    QTest::newRow("digit swallowed") << int(Qt::Key_5) << 0 << 53 << 53 << 0 << "__/__" << "box";
    QTest::newRow("Tab moves on") << int(Qt::Key_Tab) << 0 << 0 << 9 << 0 << "__/__" << "after";
    QTest::newRow("Tab swallowed") << int(Qt::Key_Tab) << 0 << 9 << 9 << 0 << "__/__" << "box";
    QTest::newRow("Shift+Tab is Tab with Shift") << int(Qt::Key_Backtab) << int(Qt::ShiftModifier) << 0 << 9 << 1
                                                 << "__/__" << "before";
    QTest::newRow("Shift+Tab swallowed") << int(Qt::Key_Backtab) << int(Qt::ShiftModifier) << 9 << 9 << 1 << "__/__" << "box";
    QTest::newRow("failing handler swallows") << int(Qt::Key_Tab) << 0 << -1 << 9 << 0 << "__/__" << "box";
}

void tst_maskedbox::keyDownSwallows()
{
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(int, swallowed);
    Form form(QStringLiteral("##/##"));
    QVERIFY(QTest::qWaitForWindowActive(&form.window));
    QList<RuntimeError> reported;
    const ErrorReporter saved = setErrorReporter([&](const RuntimeError &e) { reported << e; });
    int keyCode = -1, shift = -1;
    QObject::connect(form.box, &MaskEdBox::KeyDown, [&](qint16 &KeyCode, qint16 &Shift) {
        keyCode = KeyCode;
        shift = Shift;
        if (swallowed < 0)
            throw RuntimeError(ErrTypeMismatch);
        if (KeyCode == swallowed)
            KeyCode = 0;
    });
    QTest::keyClick(form.box, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    setErrorReporter(saved);
    QTEST(keyCode, "keyCode");
    QTEST(shift, "shift");
    QTEST(form.box->Text(), "text");
    QFETCH(QString, focus);
    QCOMPARE(QApplication::focusWidget(), focus == QLatin1String("box") ? static_cast<QWidget *>(form.box)
                                          : focus == QLatin1String("after") ? form.after : form.before);
    QCOMPARE(reported.size(), swallowed < 0 ? 1 : 0);
}

QTEST_MAIN(tst_maskedbox)
#include "tst_maskedbox.moc"
