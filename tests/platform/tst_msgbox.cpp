#include <PanelKestrin/msgbox.h>

#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

using namespace PanelKestrin;

using Buttons = QList<QMessageBox::StandardButton>;

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
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<int>("icon");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<int>("closedResult"); // Esc or the title bar's close
    QTest::addColumn<int>("clicked");
    QTest::addColumn<int>("clickedResult");
    using B = QMessageBox;
    QTest::newRow("OK only") << 0 << Buttons{B::Ok} << int(B::NoIcon) << int(B::Ok) << 1 << int(B::Ok) << 1;
    QTest::newRow("OK/Cancel, question, second default")
        << (vbOKCancel | vbQuestion | vbDefaultButton2) << Buttons{B::Ok, B::Cancel} << int(B::Question)
        << int(B::Cancel) << 2 << int(B::Ok) << 1;
    QTest::newRow("Abort/Retry/Ignore, critical, third default")
        << (vbAbortRetryIgnore | vbCritical | vbDefaultButton3) << Buttons{B::Abort, B::Retry, B::Ignore}
        << int(B::Critical) << int(B::Ignore) << 3 << int(B::Ignore) << 5;
    QTest::newRow("Yes/No/Cancel, exclamation")
        << (vbYesNoCancel | vbExclamation) << Buttons{B::Yes, B::No, B::Cancel} << int(B::Warning)
        << int(B::Yes) << 2 << int(B::Yes) << 6;
    QTest::newRow("confirmation, style 36") << 36 << Buttons{B::Yes, B::No} << int(B::Question)
                                            << int(B::Yes) << 7 << int(B::No) << 7;
    QTest::newRow("Retry/Cancel, information")
        << (vbRetryCancel | vbInformation) << Buttons{B::Retry, B::Cancel} << int(B::Information)
        << int(B::Retry) << 2 << int(B::Retry) << 4;
    QTest::newRow("default beyond the buttons is the first")
        << (vbYesNo | vbDefaultButton3) << Buttons{B::Yes, B::No} << int(B::NoIcon) << int(B::Yes) << 7
        << int(B::Abort) << 0;
}

void tst_msgbox::styleBits()
{
    QFETCH(int, style);
    QFETCH(Buttons, buttons);
    QFETCH(int, icon);
    QFETCH(int, defaultButton);
    QFETCH(int, closedResult);
    QFETCH(int, clicked);
    QFETCH(int, clickedResult);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Order Entry"));

    const auto box = createMessageBox(QStringLiteral("Delete <b>this</b>?"), style, QString());
    QMessageBox::StandardButtons expected;
    for (QMessageBox::StandardButton b : buttons)
        expected |= b;
    QCOMPARE(box->standardButtons(), expected);
    QCOMPARE(int(box->icon()), icon);
    QCOMPARE(int(box->standardButton(box->defaultButton())), defaultButton);
    QCOMPARE(box->text(), QStringLiteral("Delete <b>this</b>?"));
    QCOMPARE(box->textFormat(), Qt::PlainText);
    QCOMPARE(box->windowTitle(), QStringLiteral("Order Entry"));
    QCOMPARE(messageBoxResult(*box), closedResult);
    if (QAbstractButton *b = box->button(QMessageBox::StandardButton(clicked))) {
        b->click();
        QCOMPARE(messageBoxResult(*box), clickedResult);
    }
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
