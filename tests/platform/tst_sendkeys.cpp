#include "shared/errornumber.h"

#include <PanelKestrin/sendkeys.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QtTest>

using namespace PanelKestrin;

class tst_sendkeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void delivery_data();
    void delivery();
    void queuedKeysKeepTheirOrder();
    void invalidKeys();

protected:
    // Sends the keys of a second SendKeys from inside a key handler, as the date box does when
    // Down is pressed ("{Tab}" to the next control).
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down) {
            SendKeys(QStringLiteral("{tab}"));
            return true;
        }
        return false;
    }

private:
    int focusIndex() const { return edits.indexOf(qobject_cast<QLineEdit *>(QApplication::focusWidget())); }
    std::unique_ptr<QWidget> form;
    QList<QLineEdit *> edits;
};

// A form with three line edits, shown and active, so that keys reach the focus widget. The
// middle one has the focus and holds "abcdef" with the caret after "abc".
void tst_sendkeys::init()
{
    form = std::make_unique<QWidget>();
    edits.clear();
    auto *layout = new QVBoxLayout(form.get());
    for (int i = 0; i < 3; ++i)
        layout->addWidget(edits.emplaceBack(new QLineEdit(form.get())));
    edits[1]->installEventFilter(this);
    edits[1]->setText(QStringLiteral("abcdef"));
    edits[1]->setCursorPosition(3);
    form->show();
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
    edits[1]->setFocus();
    QCOMPARE(focusIndex(), 1);
}

void tst_sendkeys::delivery_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<bool>("wait");
    QTest::addColumn<int>("focus"); // the edit that has the focus afterwards
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("selected");
    QTest::newRow("Tab, queued") << "{Tab}" << false << 2 << "abcdef" << 3 << "";
    QTest::newRow("Shift+Tab") << "+{tab}" << true << 0 << "abcdef" << 3 << "";
    QTest::newRow("arrows, repeat count") << "{Right}{right}{LEFT 3}" << true << 1 << "abcdef" << 2 << "";
    QTest::newRow("typing, queued") << "Xy" << false << 1 << "abcXydef" << 5 << "";
    QTest::newRow("backspace and delete") << "{BS}{Del}" << true << 1 << "abef" << 2 << "";
    QTest::newRow("braced literals") << "{+}{^}{%}{~}{(}{}}" << true << 1 << "abc+^%~(}def" << 9 << "";
    QTest::newRow("Ctrl+A selects all") << "^a" << true << 1 << "abcdef" << 6 << "abcdef";
    QTest::newRow("Shift group") << "+({Left}{Left})" << true << 1 << "abcdef" << 1 << "bc";
    // The Tab the handler sends is queued behind the keys already typed ahead.
    QTest::newRow("keys sent by a key handler") << "{Down}x" << true << 2 << "abcxdef" << 4 << "";
}

void tst_sendkeys::delivery()
{
    QFETCH(QString, keys);
    QFETCH(bool, wait);
    QFETCH(int, focus);
    QFETCH(QString, text);
    QFETCH(int, cursor);
    QFETCH(QString, selected);
    QLineEdit *edit = edits[1];
    SendKeys(keys, wait);
    if (wait) {
        QCOMPARE(edit->text(), text); // delivered before SendKeys returns
    } else {
        QCOMPARE(edit->text(), QStringLiteral("abcdef")); // nothing happens until the event loop runs
        QCOMPARE(focusIndex(), 1);
        QTRY_COMPARE(edit->text(), text);
    }
    QTRY_COMPARE(focusIndex(), focus);
    QCOMPARE(edit->cursorPosition(), cursor);
    QCOMPARE(edit->selectedText(), selected);
}

void tst_sendkeys::queuedKeysKeepTheirOrder()
{
    QLineEdit *edit = edits[1];
    edit->clear();
    SendKeys(QStringLiteral("ab"));
    SendKeys(QStringLiteral("c"));
    QTRY_COMPARE(edit->text(), QStringLiteral("abc"));

    // Waiting delivers what was queued before, then its own keys.
    SendKeys(QStringLiteral("de"));
    SendKeys(QStringLiteral("f"), true);
    QCOMPARE(edit->text(), QStringLiteral("abcdef"));
    QCoreApplication::processEvents();
    QCOMPARE(edit->text(), QStringLiteral("abcdef"));
}

void tst_sendkeys::invalidKeys()
{
    const QList<QPair<QString, QString>> cases{{"ab{Nope}", "Nope"}, {"{Right", "brace"}, {"+(ab", "parenthesis"},
                                               {"ab^", "prefix"}};
    for (const auto &[keys, named] : cases) {
        const Caught error = capture([&] { SendKeys(keys, true); });
        QCOMPARE(error.number, 5);
        QVERIFY2(error.description.contains(named), qPrintable(error.description));
    }
    QCoreApplication::processEvents();
    QCOMPARE(edits[1]->text(), QStringLiteral("abcdef")); // nothing of a faulty string is typed
}

QTEST_MAIN(tst_sendkeys)
#include "tst_sendkeys.moc"
