#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/sendkeys.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QtTest>

using namespace PanelKestrin;

// A form with three line edits, shown and active, so that keys reach the focus widget.
class EditForm : public QWidget
{
public:
    QList<QWidget *> edits;

    EditForm()
    {
        auto *layout = new QVBoxLayout(this);
        for (int i = 0; i < 3; ++i)
            layout->addWidget(edits.emplaceBack(new QLineEdit(this)));
    }
    int focusIndex() const { return edits.indexOf(QApplication::focusWidget()); }
    QLineEdit *edit(int i) const { return static_cast<QLineEdit *>(edits.at(i)); }
};

// Sends the keys of a second SendKeys from inside a key handler, as the date box does when
// Down is pressed ("{Tab}" to the next control).
class DownMovesOn : public QObject
{
protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down) {
            SendKeys(QStringLiteral("{tab}"));
            return true;
        }
        return false;
    }
};

class tst_sendkeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void focusMoves_data();
    void focusMoves();
    void caretAndText_data();
    void caretAndText();
    void queuedKeysKeepTheirOrder();
    void keysSentFromAKeyHandler();
    void invalidKeys();

private:
    std::unique_ptr<EditForm> form;
};

void tst_sendkeys::init()
{
    form = std::make_unique<EditForm>();
    form->show();
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
}

void tst_sendkeys::focusMoves_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<bool>("wait");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("Tab, queued") << "{Tab}" << false << 0 << 1;
    QTest::newRow("Shift+Tab, queued") << "+{Tab}" << false << 1 << 0;
    QTest::newRow("Shift+Tab, waiting") << "+{tab}" << true << 2 << 1;
    QTest::newRow("repeat count") << "{Tab 2}" << true << 0 << 2;
    QTest::newRow("Shift+Tab wraps round") << "+{TAB}" << true << 0 << 2;
}

void tst_sendkeys::focusMoves()
{
    QFETCH(QString, keys);
    QFETCH(bool, wait);
    QFETCH(int, from);
    QFETCH(int, to);
    form->edits[from]->setFocus();
    QCOMPARE(form->focusIndex(), from);
    SendKeys(keys, wait);
    if (wait) {
        QCOMPARE(form->focusIndex(), to);
    } else {
        QCOMPARE(form->focusIndex(), from); // nothing happens until the event loop runs
        QTRY_COMPARE(form->focusIndex(), to);
    }
}

void tst_sendkeys::caretAndText_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("selected");
    // The edit holds "abcdef" with the caret after "abc".
    QTest::newRow("Right") << "{Right}" << "abcdef" << 4 << "";
    QTest::newRow("Right then Left") << "{Right}{Left}" << "abcdef" << 3 << "";
    QTest::newRow("Shift+End selects") << "+{End}" << "abcdef" << 6 << "def";
    QTest::newRow("typing") << "Xy" << "abcXydef" << 5 << "";
    QTest::newRow("backspace and delete") << "{BS}{Del}" << "abef" << 2 << "";
    QTest::newRow("braced specials") << "{+}{^}{%}{~}{(}{}}" << "abc+^%~(}def" << 9 << "";
    QTest::newRow("Ctrl+A selects all") << "^a" << "abcdef" << 6 << "abcdef";
    QTest::newRow("Shift group") << "+({Left}{Left})" << "abcdef" << 1 << "bc";
}

void tst_sendkeys::caretAndText()
{
    QFETCH(QString, keys);
    QFETCH(QString, text);
    QFETCH(int, cursor);
    QFETCH(QString, selected);
    QLineEdit *edit = form->edit(0);
    edit->setFocus();
    edit->setText(QStringLiteral("abcdef"));
    edit->setCursorPosition(3);
    SendKeys(keys, true);
    QCOMPARE(edit->text(), text);
    QCOMPARE(edit->cursorPosition(), cursor);
    QCOMPARE(edit->selectedText(), selected);
}

void tst_sendkeys::queuedKeysKeepTheirOrder()
{
    QLineEdit *edit = form->edit(0);
    edit->setFocus();
    SendKeys(QStringLiteral("ab"));
    SendKeys(QStringLiteral("c"));
    QCOMPARE(edit->text(), QString());
    QTRY_COMPARE(edit->text(), QStringLiteral("abc"));

    // Waiting delivers what was queued before, then its own keys.
    SendKeys(QStringLiteral("de"));
    SendKeys(QStringLiteral("f"), true);
    QCOMPARE(edit->text(), QStringLiteral("abcdef"));
    QCoreApplication::processEvents();
    QCOMPARE(edit->text(), QStringLiteral("abcdef"));
}

void tst_sendkeys::keysSentFromAKeyHandler()
{
    DownMovesOn filter;
    form->edits[0]->installEventFilter(&filter);
    form->edits[0]->setFocus();
    SendKeys(QStringLiteral("{Down}x"), true);
    // The Tab queued by the handler comes after the keys already typed ahead.
    QCOMPARE(form->edit(0)->text(), QStringLiteral("x"));
    QTRY_COMPARE(form->focusIndex(), 1);
}

void tst_sendkeys::invalidKeys()
{
    const QList<QPair<QString, QString>> cases{{"ab{Nope}", "Nope"}, {"{Right", "brace"}, {"+(ab", "parenthesis"},
                                               {"ab^", "prefix"}};
    form->edit(0)->setFocus();
    for (const auto &[keys, named] : cases) {
        try {
            SendKeys(keys, true);
            QFAIL(qPrintable(keys));
        } catch (const RuntimeError &e) {
            QCOMPARE(e.Number(), 5);
            QVERIFY2(e.Description().contains(named), qPrintable(e.Description()));
        }
    }
    QCoreApplication::processEvents();
    QCOMPARE(form->edit(0)->text(), QString()); // nothing of a faulty string is typed
}

QTEST_MAIN(tst_sendkeys)
#include "tst_sendkeys.moc"
