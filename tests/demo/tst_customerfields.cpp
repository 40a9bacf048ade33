#include "customerfields.h"

#include <PanelKestrin/dtcontrol.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QtTest>

using namespace PanelKestrin;

// The demo's customer fields in browse, edit and add mode: closed fields of every kind (text,
// date, number, check box) look the same and take no change from the keyboard or the mouse;
// open ones take it. The code opens only when adding.
class tst_customerfields : public QObject
{
    Q_OBJECT

private slots:
    void fieldsFollowTheMode_data();
    void fieldsFollowTheMode();
};

void tst_customerfields::fieldsFollowTheMode_data()
{
    QTest::addColumn<bool>("editing");
    QTest::addColumn<bool>("adding");
    QTest::newRow("browse") << false << false;
    QTest::newRow("edit") << true << false;
    QTest::newRow("add") << true << true;
}

void tst_customerfields::fieldsFollowTheMode()
{
    QFETCH(bool, editing);
    QFETCH(bool, adding);
    CustomerFields fields;
    fields.show();
    fields.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&fields)); // mnemonics work in the active window
    fields.clear();
    fields.setEditing(editing, adding);
    const QColor closedBack = fields.palette().color(QPalette::Window);

    QWidget *code = nullptr;
    for (QLabel *label : fields.findChildren<QLabel *>())
        if (label->text() == QLatin1String("&Code"))
            code = label->buddy();
    QVERIFY(code);

    // Text boxes and the date boxes' masks (spin boxes and the calendar have line edits of their own).
    int boxes = 0;
    for (QLineEdit *edit : fields.findChildren<QLineEdit *>()) {
        if (qobject_cast<QAbstractSpinBox *>(edit->parentWidget()))
            continue;
        ++boxes;
        const bool open = editing && (edit != code || adding);
        const QString before = edit->text();
        edit->setFocus();
        edit->setCursorPosition(0);
        QTest::keyClicks(edit, QStringLiteral("12"));
        QVERIFY2((edit->text() != before) == open, qPrintable(edit->objectName() + QLatin1Char(' ') + edit->text()));
        QCOMPARE(edit->palette().color(QPalette::Base) == closedBack, !open);
    }
    QCOMPARE(boxes, 7); // code, name, city, phone, credit limit, two dates

    for (auto *date : fields.findChildren<DTControl *>())
        QCOMPARE(date->findChild<QWidget *>(QStringLiteral("DTPicker1"))->isEnabled(), editing);

    auto *discount = fields.findChild<QSpinBox *>();
    const int percent = discount->value();
    discount->setFocus();
    QTest::keyClick(discount, Qt::Key_Up);
    QCOMPARE(discount->value() != percent, editing);
    QCOMPARE(discount->palette().color(QPalette::Base) == closedBack, !editing);

    // The check box: a click, Space, and its mnemonic.
    auto *active = fields.findChild<QCheckBox *>();
    const bool checked = active->isChecked();
    QTest::mouseClick(active, Qt::LeftButton);
    QCOMPARE(active->isChecked() != checked, editing);
    active->setChecked(checked);
    QTest::keyClick(&fields, Qt::Key_V, Qt::AltModifier);
    QCOMPARE(active->isDown(), editing); // the mnemonic presses the box now and releases it soon
    QTRY_COMPARE(active->isChecked() != checked, editing);
}

QTEST_MAIN(tst_customerfields)
#include "tst_customerfields.moc"
