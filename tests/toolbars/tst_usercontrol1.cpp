#include "toolbartestsupport.h"

#include <PanelKestrin/usercontrol1.h>

using namespace ToolbarTest;
using U = UserControl1;

namespace {

// Enabled patterns with the permission flags False (Add, Edit and Delete then stay off) ...
const QString kAtFirst = QStringLiteral("001100001110"), kAtLast = QStringLiteral("110000001110"),
              kBrowse = QStringLiteral("111100001110"), kEdit = QStringLiteral("000000010001");
// ... and with gAllowAdd, gAllowEdit and gAllowDelete True.
const QString kBrowseAllowed = QStringLiteral("111111101110"), kEmptyAllowed = QStringLiteral("000010000010");

// A host whose close query asks the toolbar, as hosts of this toolbar do.
class QueryHost : public Host
{
public:
    UserControl1 *bar = new UserControl1;
    Customers data;

    // The toolbar over `rows` customers standing on `start`, taken as the saved position
    // (command 12 runs only the closing step).
    bool open(int rows, const QString &start)
    {
        data.open(rows);
        data.standOn(start);
        bar->setsrset(&data.rs);
        for (auto [signal, name] : {std::pair{&U::addclick, "addclick"}, {&U::editclick, "editclick"},
                                    {&U::Deleteclick, "Deleteclick"}, {&U::saveclick, "saveclick"},
                                    {&U::printclick, "printclick"}})
            connect(bar, signal, this, [this, name = QString::fromLatin1(name)] { journal << name; });
        bar->Command1_Click(12);
        return showOn(*this, bar);
    }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        bar->gFormQueryUnloadFired = true;
        bar->Command1_Click(U::QueryUnloadCommand);
        bar->gFormQueryUnloadFired = false;
        event->setAccepted(!bar->gUnloadFomForQueryUnload);
    }
};

} // namespace

class tst_usercontrol1 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void navigation_data();
    void navigation();
    void permissionGates_data();
    void permissionGates();
    void editCycle_data();
    void editCycle();
    void deleteOnlyRecordEndsEmpty_data();
    void deleteOnlyRecordEndsEmpty();
    void closeQuery_data();
    void closeQuery();
    void stoppedClicksAndErrors();
    void print();
};

void tst_usercontrol1::navigation_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("record");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("refreshed"); // only when the record changed
    QTest::newRow("First from the last") << "last" << int(U::btntop) << 1 << kAtFirst << true;
    QTest::newRow("First on the first") << "1" << int(U::btntop) << 1 << kAtFirst << false;
    QTest::newRow("Prev to the first") << "2" << int(U::btnprev) << 1 << kBrowse << true;
    QTest::newRow("Prev on the first") << "1" << int(U::btnprev) << 1 << kAtFirst << false;
    QTest::newRow("Next in the middle") << "1" << int(U::btnnext) << 2 << kBrowse << true;
    QTest::newRow("Next on the last") << "last" << int(U::btnnext) << 4 << kAtLast << false;
    QTest::newRow("Last from the first") << "1" << int(U::btnlast) << 4 << kAtLast << true;
}

void tst_usercontrol1::navigation()
{
    QFETCH(QString, start);
    QFETCH(int, button);
    QFETCH(int, record);
    QFETCH(QString, mode);
    QFETCH(bool, refreshed);
    QueryHost host;
    QVERIFY(host.open(4, start));
    click(host.bar, button);
    QCOMPARE(host.data.rs.AbsolutePosition(), record);
    QCOMPARE(pattern(host.bar), mode);
    QCOMPARE(host.journal, refreshed ? QStringList{"refresh1"} : QStringList{});
}

void tst_usercontrol1::permissionGates_data()
{
    QTest::addColumn<QStringList>("flags");
    QTest::addColumn<QString>("browse");
    QTest::addColumn<QString>("empty");
    const QString empty = QStringLiteral("000000000010");
    QTest::newRow("none") << QStringList{} << kBrowse << empty;
    QTest::newRow("move first") << QStringList{"gAllowMoveFirst"} << "011100001110" << empty;
    QTest::newRow("move next gates Prev") << QStringList{"gAllowMoveNext"} << "101100001110" << empty;
    QTest::newRow("move previous gates Next") << QStringList{"gAllowMovePrevious"} << "110100001110" << empty;
    QTest::newRow("move last") << QStringList{"gAllowMoveLast"} << "111000001110" << empty;
    QTest::newRow("find") << QStringList{"gAllowFind"} << "111100000110" << empty;
    QTest::newRow("add, edit, delete") << QStringList{"gAllowAdd", "gAllowEdit", "gAllowDelete"} << kBrowseAllowed
                                       << kEmptyAllowed;
}

void tst_usercontrol1::permissionGates()
{
    QFETCH(QStringList, flags);
    QFETCH(QString, browse);
    QFETCH(QString, empty);
    QueryHost host;
    QVERIFY(host.open(3, "1"));
    for (const QString &flag : flags)
        QVERIFY(host.bar->setProperty(flag.toLatin1(), true));
    host.bar->Command1_Click(U::btnnext);
    QCOMPARE(pattern(host.bar), browse);
    Customers none; // Delete on an empty recordset leaves the empty mode, gated the same way
    none.open(0);
    host.bar->setsrset(&none.rs);
    Boxes boxes(host.journal);
    host.bar->Command1_Click(U::btndel);
    QCOMPARE(pattern(host.bar), empty);
}

void tst_usercontrol1::editCycle_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<bool>("dirty");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record");

    // From record 2; between two clicks the host moves to record 3.
    const QList<int> editUndo{U::btnedit, U::btnundo}, editSave{U::btnedit, U::btnsave};
    QTest::newRow("Undo after Edit returns to the edited record") << 3 << editUndo << true << true << int(vbYes)
        << QStringList{"editclick", "box:Confirm Undo", "refresh1"} << kBrowseAllowed << 2;
    QTest::newRow("Undo answered No keeps editing") << 3 << editUndo << true << true << int(vbNo)
        << QStringList{"editclick", "box:Confirm Undo"} << kEdit << 3;
    QTest::newRow("Undo after Add, clean form, asks nothing") << 3 << QList<int>{U::btnadd, U::btnundo} << false
        << true << 0 << QStringList{"addclick", "refresh1"} << kBrowseAllowed << 3;
    QTest::newRow("Save after Edit saves at the edited record") << 3 << editSave << false << true << 0
        << QStringList{"editclick", "Validatefields", "saveclick"} << kBrowseAllowed << 2;
    QTest::newRow("Save after Add moves to the last record") << 4 << QList<int>{U::btnadd, U::btnsave} << false
        << true << 0 << QStringList{"addclick", "Validatefields", "saveclick"} << kBrowseAllowed << 4;
    QTest::newRow("Save refused keeps editing") << 3 << editSave << false << false << 0
        << QStringList{"editclick", "Validatefields"} << kEdit << 3;
    QTest::newRow("Delete answered Yes") << 3 << QList<int>{U::btndel} << false << true << int(vbYes)
        << QStringList{"box:", "Deleteclick", "refresh1"} << kBrowseAllowed << 2;
    QTest::newRow("Delete answered No") << 3 << QList<int>{U::btndel} << false << true << int(vbNo)
        << QStringList{"box:"} << kBrowseAllowed << 2;
    QTest::newRow("Delete, no records") << 0 << QList<int>{U::btndel} << false << true << int(vbNo)
        << QStringList{"box:"} << kEmptyAllowed << 0;
}

void tst_usercontrol1::editCycle()
{
    QFETCH(int, rows);
    QFETCH(QList<int>, clicks);
    QFETCH(bool, dirty);
    QFETCH(bool, valid);
    QFETCH(int, answer);
    QFETCH(QStringList, journal);
    QFETCH(QString, mode);
    QFETCH(int, record);

    QueryHost host;
    QVERIFY(host.open(rows, "2"));
    host.bar->gAllowAdd = host.bar->gAllowEdit = host.bar->gAllowDelete = true;
    host.bar->gFormIsDirty = dirty;
    host.valid = valid;
    connect(host.bar, &U::Deleteclick, [&] { host.data.deleteCurrent(); });
    Boxes boxes(host.journal, {answer});
    for (int i = 0; i < clicks.size(); ++i) {
        click(host.bar, clicks.at(i));
        if (i == 0 && clicks.size() > 1)
            host.data.rs.MoveNext();
    }
    QCOMPARE(host.journal, journal);
    QCOMPARE(pattern(host.bar), mode);
    if (record)
        QCOMPARE(host.data.rs.AbsolutePosition(), record);
    if (journal.contains("box:")) // Delete asks with the default title and no icon
        QCOMPARE(boxes.styles, QList<int>{vbYesNo});
}

void tst_usercontrol1::deleteOnlyRecordEndsEmpty_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record"); // where the recordset stands afterwards; 0: nowhere
    QTest::newRow("the only record") << 1 << "1" << kEmptyAllowed << 0;
    QTest::newRow("the last of three") << 3 << "3" << kBrowseAllowed << 2;
}

void tst_usercontrol1::deleteOnlyRecordEndsEmpty()
{
    QFETCH(int, rows);
    QFETCH(QString, start);
    QFETCH(QString, mode);
    QFETCH(int, record);
    QueryHost host;
    QVERIFY(host.open(rows, start));
    host.bar->gAllowAdd = host.bar->gAllowEdit = host.bar->gAllowDelete = true;
    connect(host.bar, &U::Deleteclick, [&] { host.data.deleteCurrent(); });
    Boxes boxes(host.journal, {vbYes});
    click(host.bar, U::btndel);
    QCOMPARE(host.journal, (QStringList{"box:", "Deleteclick", "refresh1"})); // no error box
    QCOMPARE(pattern(host.bar), mode);
    QCOMPARE(host.data.rs.RecordCount(), rows - 1);
    if (record)
        QCOMPARE(host.data.rs.AbsolutePosition(), record);
    else
        QVERIFY(host.data.rs.BOF() && host.data.rs.adoEOF());
}

void tst_usercontrol1::closeQuery_data()
{
    QTest::addColumn<bool>("dirty");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("fromCloseQuery");
    QTest::addColumn<bool>("keepOpen");
    QTest::newRow("clean form closes unasked") << false << int(vbNo) << true << false;
    QTest::newRow("dirty, No keeps the form") << true << int(vbNo) << true << true;
    QTest::newRow("dirty, Yes closes") << true << int(vbYes) << true << false;
    QTest::newRow("No outside a close query") << true << int(vbNo) << false << false;
}

void tst_usercontrol1::closeQuery()
{
    QFETCH(bool, dirty);
    QFETCH(int, answer);
    QFETCH(bool, fromCloseQuery);
    QFETCH(bool, keepOpen);
    QueryHost host;
    QVERIFY(host.open(3, "2"));
    host.bar->gFormIsDirty = dirty;
    host.bar->gUnloadFomForQueryUnload = !keepOpen; // the command must write its answer
    Boxes boxes(host.journal, {answer});
    if (fromCloseQuery)
        host.close();
    else
        host.bar->Command1_Click(U::QueryUnloadCommand);
    QCOMPARE(host.bar->gUnloadFomForQueryUnload, keepOpen);
    QCOMPARE(host.isVisible(), keepOpen || !fromCloseQuery);
    QCOMPARE(host.journal, dirty ? QStringList{"box:Confirm Undo"} : QStringList{});

    // Esc while Undo and Quit are enabled, on a clean form, leaves it without asking.
    host.bar->gFormIsDirty = false;
    host.bar->setcmdenable(QString());
    host.show();
    host.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    QTest::keyClick(&host, Qt::Key_Escape);
    QVERIFY(!host.isVisible());
}

void tst_usercontrol1::stoppedClicksAndErrors()
{
    QueryHost host;
    QVERIFY(host.open(3, "1"));
    bool pending = true;
    connect(&host.data.rs, &Recordset::MoveComplete, [&](qint32 &, qint32 &) {
        host.bar->gErrorInClick = true;
        if (pending)
            Err().Raise(3021, QStringLiteral("customers"), QStringLiteral("No current record"));
    });
    Boxes boxes(host.journal);
    Reported reported;
    click(host.bar, U::btnnext); // stopped with an error pending: reported, no mode, no refresh
    QCOMPARE(boxes.prompts, QStringList{"No current record  Source=customers ; Number=3021"});
    QCOMPARE(boxes.styles, QList<int>{vbCritical});
    QCOMPARE(pattern(host.bar), QStringLiteral("111111111111"));
    QCOMPARE(Err().Number, 0);
    pending = false;
    click(host.bar, U::btnnext); // stopped silently
    QCOMPARE(host.data.rs.AbsolutePosition(), 3);

    // A run-time error inside a click is trapped and reported the same way, also from code.
    host.bar->setsrset(nullptr);
    host.bar->Command1_Click(U::btntop);
    click(host.bar, U::btnfind); // refreshes, then its closing step reads srset
    QCOMPARE(host.journal, (QStringList{"box:Force Formdeck", "box:Force Formdeck", "refresh1", "box:Force Formdeck"}));
    QCOMPARE(boxes.prompts.last(), QStringLiteral("Object variable or With block variable not set: srset  Source=PanelKestrin.UserControl1 ; Number=91"));
    QVERIFY(reported.numbers.isEmpty());
}

void tst_usercontrol1::print()
{
    for (const auto &[reportToPrint, flagged, shown] : {std::tuple{"D", false, 1}, {"O", false, 0}, {"D", true, 0}}) {
        QueryHost host;
        QVERIFY(host.open(3, "2"));
        connect(host.bar, &U::printclick, [&, reportToPrint = reportToPrint, flagged = flagged] {
            host.bar->setReportToPrint(QString::fromLatin1(reportToPrint));
            host.bar->gErrorInClick = flagged; // no error pending: nothing reported
        });
        ModalForms forms([](QDialog *form) { form->close(); });
        click(host.bar, U::btnprint);
        QCOMPARE(forms.shown, shown);
        QCOMPARE(host.journal, QStringList{"printclick"});
    }
}

QTEST_MAIN(tst_usercontrol1)
#include "tst_usercontrol1.moc"
