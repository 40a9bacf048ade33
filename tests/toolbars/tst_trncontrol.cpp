#include "toolbartestsupport.h"

#include <PanelKestrin/hostform.h>
#include <PanelKestrin/trncontrol.h>

using namespace PanelKestrin;
using namespace ToolbarTest;

namespace {

const QString kEdit = QStringLiteral("00010001");
const QString kBrowse = QStringLiteral("11101110");
const QString kEmpty = QStringLiteral("10000010");
const QString kUnchanged;

// Journals the toolbar's events; the DeleteAllowed handler sets Cancel as told, and the
// Deleteclick handler removes the current customer when data is given.
void journalEvents(TrnControl &bar, QStringList &journal, bool cancelDelete, Customers *data)
{
    QObject::connect(&bar, &TrnControl::addclick, [&] { journal << QStringLiteral("addclick"); });
    QObject::connect(&bar, &TrnControl::editclick, [&] { journal << QStringLiteral("editclick"); });
    QObject::connect(&bar, &TrnControl::DeleteAllowed, [&journal, cancelDelete](bool &Cancel) {
        journal << QStringLiteral("DeleteAllowed");
        QVERIFY(!Cancel); // reset before every raise
        Cancel = cancelDelete;
    });
    QObject::connect(&bar, &TrnControl::Deleteclick, [&journal, data] {
        journal << QStringLiteral("Deleteclick");
        if (data)
            data->deleteCurrent();
    });
    QObject::connect(&bar, &TrnControl::saveclick, [&] { journal << QStringLiteral("saveclick"); });
    QObject::connect(&bar, &TrnControl::findclick, [&] { journal << QStringLiteral("findclick"); });
    QObject::connect(&bar, &TrnControl::printclick, [&] { journal << QStringLiteral("printclick"); });
}

} // namespace

class tst_trncontrol : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void commandCycle_data();
    void commandCycle();
    void quitUnloadsTheHostForm();
    void printOpensTheQueryFormBelowTheHost();
    void failuresReachTheCallerOrTheReporter();
};

void tst_trncontrol::commandCycle_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("position");
    QTest::addColumn<QList<int>>("before");
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("cancelDelete");
    QTest::addColumn<QList<int>>("answers");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record"); // AbsolutePosition after the click; 0 = not checked

    using T = TrnControl;
    const QList<int> none, yes{vbYes}, no{vbNo};
    const QStringList delAsked{"DeleteAllowed", "box:Confirm Delete"};
    QTest::newRow("Add") << 3 << "2" << none << int(T::btnadd) << false << none << true
                         << QStringList{"addclick"} << kEdit << 2;
    QTest::newRow("Edit") << 3 << "2" << none << int(T::btnedit) << false << none << true
                          << QStringList{"editclick"} << kEdit << 2;
    QTest::newRow("Delete cancelled by the host") << 3 << "first" << none << int(T::btndel) << true << none << true
                                                  << QStringList{"DeleteAllowed"} << kBrowse << 1;
    QTest::newRow("Delete cancelled, table empty") << 0 << "first" << none << int(T::btndel) << true << none << true
                                                   << QStringList{"DeleteAllowed"} << kEmpty << 0;
    QTest::newRow("Delete answered No") << 3 << "first" << none << int(T::btndel) << false << no << true
                                        << delAsked << kBrowse << 1;
    QTest::newRow("Delete answered Yes") << 3 << "2" << none << int(T::btndel) << false << yes << true
                                         << delAsked + QStringList{"Deleteclick", "refresh1"} << kBrowse << 1;
    QTest::newRow("Delete of the last record") << 1 << "first" << none << int(T::btndel) << false << yes << true
                                               << delAsked + QStringList{"Deleteclick", "refresh1"} << kEmpty << 0;
    QTest::newRow("Save refused by Validatefields") << 3 << "first" << QList<int>{T::btnedit} << int(T::btnsave)
                                                    << false << none << false << QStringList{"Validatefields"}
                                                    << kUnchanged << 1;
    QTest::newRow("Save accepted") << 3 << "first" << QList<int>{T::btnadd} << int(T::btnsave) << false << none
                                   << true << QStringList{"Validatefields", "saveclick"} << kBrowse << 1;
    QTest::newRow("Find") << 3 << "2" << none << int(T::btnfind) << false << none << true
                          << QStringList{"findclick", "refresh1"} << kUnchanged << 2;
    QTest::newRow("Undo answered No") << 3 << "2" << QList<int>{T::btnadd} << int(T::btnundo) << false << no << true
                                      << QStringList{"box:Confirm Undo"} << kUnchanged << 2;
    QTest::newRow("Undo after Edit stays") << 3 << "2" << QList<int>{T::btnedit} << int(T::btnundo) << false << yes
                                           << true << QStringList{"box:Confirm Undo", "refresh1"} << kBrowse << 2;
    QTest::newRow("Undo after Add moves last") << 3 << "2" << QList<int>{T::btnadd} << int(T::btnundo) << false
                                               << yes << true << QStringList{"box:Confirm Undo", "refresh1"} << kBrowse
                                               << 3;
    QTest::newRow("Undo after Add, table empty") << 0 << "first" << QList<int>{T::btnadd} << int(T::btnundo) << false
                                                 << yes << true << QStringList{"box:Confirm Undo", "refresh1"} << kEmpty
                                                 << 0;
    QTest::newRow("Undo at EOF with records left") << 3 << "eof" << QList<int>{T::btnedit} << int(T::btnundo)
                                                   << false << yes << true
                                                   << QStringList{"box:Confirm Undo", "refresh1"} << kEmpty << 0;
}

void tst_trncontrol::commandCycle()
{
    QFETCH(int, rows);
    QFETCH(QString, position);
    QFETCH(QList<int>, before);
    QFETCH(int, button);
    QFETCH(bool, cancelDelete);
    QFETCH(QList<int>, answers);
    QFETCH(bool, valid);
    QFETCH(QStringList, journal);
    QFETCH(QString, mode);
    QFETCH(int, record);

    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    Customers data;
    data.open(rows);
    data.standOn(position);
    bar->setsrset(&data.rs);
    journalEvents(*bar, host.journal, cancelDelete, &data);
    Reported reported;
    Boxes boxes(host.journal, answers); // the setup clicks ask nothing
    for (int b : before)
        click(bar, b);
    host.journal.clear();
    host.valid = valid;
    const QString was = pattern(bar);

    click(bar, button);
    QCOMPARE(host.journal, journal);
    QCOMPARE(pattern(bar), mode.isEmpty() ? was : mode);
    if (record)
        QCOMPARE(data.rs.AbsolutePosition(), record);
    for (int i = 0; i < boxes.prompts.size(); ++i) {
        QCOMPARE(boxes.styles.at(i), vbYesNo + vbQuestion);
        QVERIFY(boxes.prompts.at(i) == QLatin1String("Are You Sure ?")
                || boxes.prompts.at(i) == QLatin1String("Are you Sure...All Changes will be Lost"));
    }
    QVERIFY(reported.numbers.isEmpty());
}

void tst_trncontrol::quitUnloadsTheHostForm()
{
    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    host.refuseClose = true;
    click(bar, TrnControl::btnquit);
    QCOMPARE(host.journal, QStringList{"closed"});
    QVERIFY(host.isVisible()); // the form's own close handling may refuse
    host.refuseClose = false;
    click(bar, TrnControl::btnquit);
    QVERIFY(!host.isVisible());
}

void tst_trncontrol::printOpensTheQueryFormBelowTheHost()
{
    Host host;
    auto *bar = new TrnControl;
    QVERIFY(showOn(host, bar));
    host.move(200, 120);
    connect(bar, &TrnControl::printclick, [&] { host.journal << QStringLiteral("printclick"); });
    // "O" belongs to the navigation toolbar: the transaction toolbar still opens the form.
    bar->setReportToPrint(QStringLiteral("O"));
    ModalForms forms([&](QDialog *form) {
        host.journal << QStringLiteral("shown");
        QCOMPARE(form->objectName(), QStringLiteral("frmprint"));
        const int hostTop = CallByName(&host, QStringLiteral("Top"), VbGet).toInt();
        QVERIFY(qAbs(CallByName(form, QStringLiteral("Top"), VbGet).toInt() - (hostTop + 350)) <= 15);
        QCOMPARE(CallByName(form, QStringLiteral("Left"), VbGet), CallByName(&host, QStringLiteral("Left"), VbGet));
        QTest::mouseClick(form->findChild<QAbstractButton *>(QStringLiteral("cmdcancel")), Qt::LeftButton);
    });
    const QString was = pattern(bar);
    click(bar, TrnControl::btnprint);
    QCOMPARE(host.journal, (QStringList{"printclick", "shown"}));
    QCOMPARE(pattern(bar), was);
}

void tst_trncontrol::failuresReachTheCallerOrTheReporter()
{
    QWidget bare; // a host form without Validatefields or refresh1
    auto *bar = new TrnControl(&bare);
    bare.show();
    const auto numberThrown = [&](qint16 index) {
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
    QCOMPARE(numberThrown(TrnControl::btnsave), int(ErrMemberNotSupported));
    QCOMPARE(numberThrown(TrnControl::btnfind), int(ErrMemberNotSupported));
    QCOMPARE(numberThrown(TrnControl::btnundo), int(ErrObjectNotSet));
    QCOMPARE(numberThrown(42), 0);

    // From a click the same failures are reported, never thrown into the event loop; what the
    // click did before failing stays done.
    Reported reported;
    bool found = false;
    connect(bar, &TrnControl::findclick, [&] { found = true; });
    click(bar, TrnControl::btnfind);
    click(bar, TrnControl::btndel);
    QVERIFY(found);
    QCOMPARE(reported.numbers, (QList<int>{ErrMemberNotSupported, ErrObjectNotSet}));
}

QTEST_MAIN(tst_trncontrol)
#include "tst_trncontrol.moc"
