#include <PanelKestrin/msgbox.h>

#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

using namespace PanelKestrin;

class tst_msgbox : public QObject
{
    Q_OBJECT

private slots:
    void styleBits_data();
    void styleBits();
    void handlerReplacesAndRestores();
};

void tst_msgbox::styleBits_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("buttons");
    QTest::addColumn<int>("icon");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<int>("defaultResult");
    QTest::addColumn<int>("closedResult"); // Esc or the title bar's close
    using B = QMessageBox;
    QTest::newRow("OK only") << 0 << int(B::Ok) << int(B::NoIcon) << int(B::Ok) << 1 << 1;
    QTest::newRow("OK/Cancel, question, second default") << (vbOKCancel | vbQuestion | vbDefaultButton2)
                                                         << int(B::Ok | B::Cancel) << int(B::Question)
                                                         << int(B::Cancel) << 2 << 2;
    QTest::newRow("Abort/Retry/Ignore, critical, third default")
        << (vbAbortRetryIgnore | vbCritical | vbDefaultButton3) << int(B::Abort | B::Retry | B::Ignore)
        << int(B::Critical) << int(B::Ignore) << 5 << 3;
    QTest::newRow("Yes/No/Cancel, exclamation") << (vbYesNoCancel | vbExclamation) << int(B::Yes | B::No | B::Cancel)
                                                << int(B::Warning) << int(B::Yes) << 6 << 2;
    // The delete confirmation (36) with a default beyond its two buttons: the first is default.
    QTest::newRow("Yes/No, question, default beyond the buttons")
        << (36 | vbDefaultButton3) << int(B::Yes | B::No) << int(B::Question) << int(B::Yes) << 6 << 7;
}

void tst_msgbox::styleBits()
{
    QFETCH(int, style);
    QFETCH(int, buttons);
    QFETCH(int, icon);
    QFETCH(int, defaultButton);
    QFETCH(int, defaultResult);
    QFETCH(int, closedResult);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Order Entry"));

    const auto box = createMessageBox(QStringLiteral("Delete <b>this</b>?"), style, QString());
    QCOMPARE(int(box->standardButtons()), buttons);
    QCOMPARE(int(box->icon()), icon);
    QCOMPARE(box->text(), QStringLiteral("Delete <b>this</b>?"));
    QCOMPARE(box->textFormat(), Qt::PlainText);
    QCOMPARE(box->windowTitle(), QStringLiteral("Order Entry"));
    QCOMPARE(messageBoxResult(*box), closedResult);
    QCOMPARE(int(box->standardButton(box->defaultButton())), defaultButton);
    box->defaultButton()->click();
    QCOMPARE(messageBoxResult(*box), defaultResult);
}

void tst_msgbox::handlerReplacesAndRestores()
{
    QStringList seen;
    QVERIFY(!setMessageBoxHandler([&](const QString &prompt, int style, const QString &title) {
        seen << QStringLiteral("%1|%2|%3").arg(prompt).arg(style).arg(title);
        return int(vbNo);
    })); // the standard box was in place
    QCOMPARE(MsgBox(QStringLiteral("Confirm Delete"), 36, QStringLiteral("Delete")), int(vbNo));
    QCOMPARE(seen, QStringList{QStringLiteral("Confirm Delete|36|Delete")});

    // A handler may replace itself while it runs; its own answer still counts.
    setMessageBoxHandler([](const QString &, int, const QString &) {
        setMessageBoxHandler([](const QString &, int, const QString &) { return int(vbCancel); });
        return int(vbYes);
    });
    QCOMPARE(MsgBox(QStringLiteral("a")), int(vbYes));
    QCOMPARE(MsgBox(QStringLiteral("b")), int(vbCancel));

    // An empty function restores the standard box: no handler is left installed.
    QVERIFY(setMessageBoxHandler({}));
    QVERIFY(!setMessageBoxHandler({}));
}

QTEST_MAIN(tst_msgbox)
#include "tst_msgbox.moc"
