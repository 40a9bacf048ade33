// The timed message: shown beside its form without taking an answer, with the bell, and gone
// after two seconds; one dialog, reused.
#include <PanelKestrin/beep.h>
#include <PanelKestrin/dialog.h>
#include <PanelKestrin/twips.h>

#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QTimer>

using namespace PanelKestrin;

class tst_dialog : public QObject
{
    Q_OBJECT

private slots:
    void showsBesideTheFormAndClosesOnItsTimer_data();
    void showsBesideTheFormAndClosesOnItsTimer();
    void messageNeverClosesEarly();
};

void tst_dialog::showsBesideTheFormAndClosesOnItsTimer_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("message") << "No Matching Value Found";
    QTest::newRow("empty message") << "";
}

void tst_dialog::showsBesideTheFormAndClosesOnItsTimer()
{
    QFETCH(QString, message);
    int beeps = 0;
    const auto previous = setBeepHandler([&] { ++beeps; });
    QWidget form;
    form.setGeometry(200, 150, 400, 300);
    form.show();

    Dialog::DisplayMsg(message, &form);
    QPointer<Dialog> dialog = Dialog::current();
    QVERIFY(dialog && dialog->isVisible());
    QVERIFY(!dialog->isModal());
    QCOMPARE(dialog->windowTitle(), QStringLiteral("Error Message"));
    QCOMPARE(dialog->findChild<QLabel *>(QStringLiteral("Label1"))->text(), message);
    QCOMPARE(dialog->parentWidget(), &form);
    QCOMPARE(dialog->frameGeometry().top(), form.frameGeometry().top());
    QCOMPARE(beeps, 100);
    auto *timer = dialog->findChild<QTimer *>(QStringLiteral("Timer1"));
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 2000);

    // A second message while shown reuses the dialog and starts the two seconds again.
    Dialog::DisplayMsg(QStringLiteral("again"), &form);
    QCOMPARE(Dialog::current(), dialog.data());
    QCOMPARE(beeps, 200);
    QVERIFY(timer->isActive());

    dialog->Timer1_Timer(); // the tick after two seconds unloads it
    QTRY_VERIFY(dialog.isNull());
    QVERIFY(!Dialog::current());
    setBeepHandler(previous);
}

void tst_dialog::messageNeverClosesEarly()
{
    const auto previous = setBeepHandler([] {});
    QWidget form;
    form.show();
    QElapsedTimer shown;
    shown.start();
    Dialog::DisplayMsg(QStringLiteral("No Matching Value Found"), &form);
    QPointer<Dialog> dialog = Dialog::current();
    // A coarse timer may round its two seconds down by up to 5%, so only a precise one holds.
    QCOMPARE(dialog->findChild<QTimer *>(QStringLiteral("Timer1"))->timerType(), Qt::PreciseTimer);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.isNull(), 5000);
    const qint64 elapsed = shown.elapsed();
    QVERIFY2(elapsed >= 2000, qPrintable(QStringLiteral("closed after %1 ms").arg(elapsed)));
    setBeepHandler(previous);
}

QTEST_MAIN(tst_dialog)
#include "tst_dialog.moc"
