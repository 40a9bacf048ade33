#include "toolbartestsupport.h"

#include <PanelKestrin/hostform.h>
#include <PanelKestrin/trncontrol.h>

using namespace ToolbarTest;
using T = TrnControl;

namespace {
const QString kEdit = QStringLiteral("00010001"), kBrowse = QStringLiteral("11101110"),
              kEmpty = QStringLiteral("10000010"), kUnchanged;
}

class tst_trncontrol : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void commandCycle_data();
    void commandCycle();
    void quitAndPrint();
    void failuresReachTheCallerOrTheReporter();
};

void tst_trncontrol::commandCycle_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("before"); // a button pressed first (-1 none)
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("cancelDelete");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record"); // srset's position afterwards (0: not checked)

    const QStringList asked{"DeleteAllowed", "box:Confirm Delete"}, deleted = asked + QStringList{"Deleteclick", "refresh1"};
    const QStringList undone{"box:Confirm Undo", "refresh1"};
    QTest::newRow("Add") << 3 << "2" << -1 << int(T::btnadd) << false << 0 << QStringList{"addclick"} << kEdit << 2;
    QTest::newRow("Edit") << 3 << "2" << -1 << int(T::btnedit) << false << 0 << QStringList{"editclick"} << kEdit << 2;
    QTest::newRow("Delete cancelled") << 3 << "1" << -1 << int(T::btndel) << true << 0 << QStringList{"DeleteAllowed"} << kBrowse << 1;
    QTest::newRow("Delete cancelled, none left") << 0 << "1" << -1 << int(T::btndel) << true << 0 << QStringList{"DeleteAllowed"} << kEmpty << 0;
    QTest::newRow("Delete answered No") << 3 << "1" << -1 << int(T::btndel) << false << int(vbNo) << asked << kBrowse << 1;
    QTest::newRow("Delete answered Yes") << 3 << "2" << -1 << int(T::btndel) << false << int(vbYes) << deleted << kBrowse << 1;
    QTest::newRow("Delete of the last record") << 1 << "1" << -1 << int(T::btndel) << false << int(vbYes) << deleted << kEmpty << 0;
    QTest::newRow("Save accepted") << 3 << "1" << int(T::btnadd) << int(T::btnsave) << false << 0
                                   << QStringList{"Validatefields", "saveclick"} << kBrowse << 1;
    QTest::newRow("Find") << 3 << "2" << -1 << int(T::btnfind) << false << 0 << QStringList{"findclick", "refresh1"} << kUnchanged << 2;
    QTest::newRow("Undo answered No") << 3 << "2" << int(T::btnadd) << int(T::btnundo) << false << int(vbNo)
                                      << QStringList{"box:Confirm Undo"} << kUnchanged << 2;
    QTest::newRow("Undo after Edit stays") << 3 << "2" << int(T::btnedit) << int(T::btnundo) << false << int(vbYes) << undone << kBrowse << 2;
    QTest::newRow("Undo after Add moves last") << 3 << "2" << int(T::btnadd) << int(T::btnundo) << false << int(vbYes) << undone << kBrowse << 3;
    QTest::newRow("Undo after Add, none left") << 0 << "1" << int(T::btnadd) << int(T::btnundo) << false << int(vbYes) << undone << kEmpty << 0;
    // Either end empties the toolbar here, although records exist.
    QTest::newRow("Undo at EOF") << 3 << "eof" << int(T::btnedit) << int(T::btnundo) << false << int(vbYes) << undone << kEmpty << 0;
}

void tst_trncontrol::commandCycle()
{
    QFETCH(int, rows);
    QFETCH(QString, start);
    QFETCH(int, before);
    QFETCH(int, button);
    QFETCH(bool, cancelDelete);
    QFETCH(int, answer);
    QFETCH(QStringList, journal);
    QFETCH(QString, mode);
    QFETCH(int, record);

    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(rows);
    data.standOn(start);
    bar->setsrset(&data.rs);
    QStringList &j = host.journal;
    connect(bar, &T::addclick, [&] { j << "addclick"; });
    connect(bar, &T::editclick, [&] { j << "editclick"; });
    connect(bar, &T::DeleteAllowed, [&](bool &Cancel) {
        j << "DeleteAllowed";
        QVERIFY(!Cancel); // reset before every raise
        Cancel = cancelDelete;
    });
    connect(bar, &T::Deleteclick, [&] { j << "Deleteclick", data.deleteCurrent(); });
    connect(bar, &T::saveclick, [&] { j << "saveclick"; });
    connect(bar, &T::findclick, [&] { j << "findclick"; });
    Reported reported;
    Boxes boxes(j, {answer});
    if (before >= 0)
        click(bar, before);
    j.clear();
    const QString was = pattern(bar);

    click(bar, button);
    QCOMPARE(j, journal);
    QCOMPARE(pattern(bar), mode.isEmpty() ? was : mode);
    if (record)
        QCOMPARE(data.rs.AbsolutePosition(), record);
    for (int style : qAsConst(boxes.styles))
        QCOMPARE(style, vbYesNo + vbQuestion);
    QVERIFY(reported.numbers.isEmpty());
}

void tst_trncontrol::quitAndPrint()
{
    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    host.move(200, 120);
    host.valid = false;
    click(bar, T::btnedit);
    click(bar, T::btnsave); // refused: no event, still editing
    QCOMPARE(pattern(bar), kEdit);

    // Print raises printclick, then shows the form 350 twips below the host's top; "O" is the
    // navigation toolbar's business, this one still opens the form.
    bar->setcmdenable(QString());
    connect(bar, &T::printclick, [&] { host.journal << "printclick"; });
    bar->setReportToPrint(QStringLiteral("O"));
    ModalForms forms([&](QDialog *form) {
        host.journal << form->objectName();
        const int hostTop = CallByName(&host, QStringLiteral("Top"), VbGet).toInt();
        QVERIFY(qAbs(CallByName(form, QStringLiteral("Top"), VbGet).toInt() - (hostTop + 350)) <= 15);
        QCOMPARE(CallByName(form, QStringLiteral("Left"), VbGet), CallByName(&host, QStringLiteral("Left"), VbGet));
        QTest::mouseClick(form->findChild<QAbstractButton *>(QStringLiteral("cmdcancel")), Qt::LeftButton);
    });
    click(bar, T::btnprint);
    QCOMPARE(pattern(bar), QStringLiteral("11111111"));

    // Quit unloads the form; the form's own close handling may refuse.
    host.refuseClose = true;
    click(bar, T::btnquit);
    QVERIFY(host.isVisible());
    host.refuseClose = false;
    click(bar, T::btnquit);
    QVERIFY(!host.isVisible());
    QCOMPARE(host.journal, (QStringList{"Validatefields", "printclick", "frmprint", "closed", "closed"}));
}

void tst_trncontrol::failuresReachTheCallerOrTheReporter()
{
    QWidget bare; // a host form without Validatefields or refresh1
    auto *bar = new TrnControl(&bare);
    bare.show();
    const auto thrown = [&](qint16 index) {
        try {
            bar->Command1_Click(index);
        } catch (const RuntimeError &e) {
            return e.Number();
        }
        return 0;
    };
    QStringList journal;
    Boxes boxes(journal, {vbYes, vbYes});
    bar->setsrset(nullptr);
    QCOMPARE(thrown(T::btnsave), int(ErrMemberNotSupported));
    QCOMPARE(thrown(T::btnundo), int(ErrObjectNotSet));
    QCOMPARE(thrown(42), 0);

    // From a click they are reported; what the click did before failing stays done.
    Reported reported;
    bool found = false;
    connect(bar, &T::findclick, [&] { found = true; });
    click(bar, T::btnfind);
    click(bar, T::btndel);
    QVERIFY(found);
    QCOMPARE(reported.numbers, (QList<int>{ErrMemberNotSupported, ErrObjectNotSet}));
}

QTEST_MAIN(tst_trncontrol)
#include "tst_trncontrol.moc"
