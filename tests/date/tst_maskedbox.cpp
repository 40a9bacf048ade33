#include <PanelKestrin/maskedbox.h>
#include <PanelKestrin/runtimeerror.h>

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

} // namespace

class tst_maskedbox : public QObject
{
    Q_OBJECT

private slots:
    void typing_data();
    void typing();
    void setText_data();
    void setText();
};

void tst_maskedbox::typing_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QTestEventList>("keys");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clipText");
    QTest::addColumn<int>("caret");

    QTest::newRow("digits skip literals") << "##/##/####" << ::typing("1205200577") << "12/05/2005" << "12052005" << 10;
    QTest::newRow("other characters refused") << "##/##/####" << ::typing("1a/2 b") << "12/__/____" << "12" << 3;
    QTest::newRow("backspace over a literal") << "##.##.####" << ::typing("123", {Qt::Key_Backspace, Qt::Key_Backspace})
                                              << "1_.__.____" << "1" << 1;
    QTest::newRow("delete leaves a gap") << "##-##-####" << ::typing("1234", {Qt::Key_Home, Qt::Key_Delete})
                                         << "_2-34-____" << "234" << 0;
    QTest::newRow("typing over digits") << "##/##/####" << ::typing("12052005", {Qt::Key_Home}, "3")
                                        << "32/05/2005" << "32052005" << 1;
    QTest::newRow("letter literals") << "##d##y" << ::typing("1234") << "12d34y" << "1234" << 6;
    QTest::newRow("no mask") << "" << ::typing("1a/") << "1a/" << "1a/" << 3;
}

void tst_maskedbox::typing()
{
    QFETCH(QString, mask);
    QFETCH(QTestEventList, keys);
    MaskEdBox box;
    box.setMask(mask);
    box.show();
    box.setFocus();
    keys.simulate(&box);
    QTEST(box.Text(), "text");
    QTEST(box.ClipText(), "clipText");
    QTEST(box.SelStart(), "caret");
}

void tst_maskedbox::setText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown"); // empty: refused with error 380, the old text kept

    QTest::newRow("complete") << "25/12/2005" << "25/12/2005";
    QTest::newRow("gaps stay in place") << "2_/__/20_5" << "2_/__/20_5";
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
    QSignalSpy changes(&box, &QLineEdit::textChanged);
    int error = 0;
    try {
        box.setText(text);
    } catch (const RuntimeError &e) {
        error = e.Number();
    }
    QCOMPARE(error, shown.isEmpty() ? int(ErrInvalidPropertyValue) : 0);
    QCOMPARE(box.Text(), shown.isEmpty() ? QStringLiteral("01/02/2003") : shown);
    QCOMPARE(changes.size(), shown.isEmpty() ? 0 : 1);
    QCOMPARE(box.SelStart(), 0);
}

QTEST_MAIN(tst_maskedbox)
#include "tst_maskedbox.moc"
