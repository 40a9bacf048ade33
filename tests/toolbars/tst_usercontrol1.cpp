#include "toolbartestsupport.h"

#include <PanelKestrin/usercontrol1.h>

using namespace PanelKestrin;
using namespace ToolbarTest;
using U = UserControl1;

namespace {

// Enabled patterns with the permission flags at their initial False (Add, Edit, Delete off).
const QString kAtFirst = QStringLiteral("001100001110");
const QString kAtLast = QStringLiteral("110000001110");
const QString kBrowse = QStringLiteral("111100001110");
const QString kEdit = QStringLiteral("000000010001");
const QString kEmpty = QStringLiteral("000000000010");
// The same with gAllowAdd, gAllowEdit and gAllowDelete set.
const QString kBrowseAllowed = QStringLiteral("111111101110");
const QString kEmptyAllowed = QStringLiteral("000010000010");

void journalEvents(UserControl1 &bar, QStringList &journal)
{
    QObject::connect(&bar, &U::addclick, [&] { journal << QStringLiteral("addclick"); });
    QObject::connect(&bar, &U::editclick, [&] { journal << QStringLiteral("editclick"); });
    QObject::connect(&bar, &U::Deleteclick, [&] { journal << QStringLiteral("Deleteclick"); });
    QObject::connect(&bar, &U::saveclick, [&] { journal << QStringLiteral("saveclick"); });
    QObject::connect(&bar, &U::findclick, [&] { journal << QStringLiteral("findclick"); });
    QObject::connect(&bar, &U::printclick, [&] { journal << QStringLiteral("printclick"); });
}

// A host form whose close query asks the toolbar, as hosts of this toolbar do.
class QueryHost : public Host
{
public:
    UserControl1 *bar = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        bar->gFormQueryUnloadFired = true;
        bar->Command1_Click(U::QueryUnloadCommand);
        bar->gFormQueryUnloadFired = false;
        event->setAccepted(!bar->gUnloadFomForQueryUnload);
    }
};

// A shown host with the toolbar over `rows` customers, standing on `start` with that position
// taken as the saved one (command 12 runs only the closing step).
struct Fixture
{
    QueryHost host;
    UserControl1 *bar = new UserControl1;
    Customers data;

    bool open(int rows, const QString &start)
    {
        host.bar = bar;
        data.open(rows);
        data.standOn(start);
        bar->setsrset(&data.rs);
        journalEvents(*bar, host.journal);
        bar->Command1_Click(12);
        return showOn(host, bar);
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
    void closeQuery_data();
    void closeQuery();
    void escapeOnACleanFormLeavesIt();
    void flaggedErrorStopsTheClick();
    void runtimeErrorsAreReportedNotThrown();
    void print_data();
    void print();
};

void tst_usercontrol1::navigation_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("record");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("refreshed");
    QTest::newRow("First from the last") << "last" << int(U::btntop) << 1 << kAtFirst << true;
    QTest::newRow("First on the first") << "first" << int(U::btntop) << 1 << kAtFirst << false;
    QTest::newRow("Prev in the middle") << "3" << int(U::btnprev) << 2 << kBrowse << true;
    QTest::newRow("Prev to the first") << "2" << int(U::btnprev) << 1 << kBrowse << true;
    QTest::newRow("Prev on the first") << "first" << int(U::btnprev) << 1 << kAtFirst << false;
    QTest::newRow("Next in the middle") << "first" << int(U::btnnext) << 2 << kBrowse << true;
    QTest::newRow("Next on the last") << "last" << int(U::btnnext) << 4 << kAtLast << false;
    QTest::newRow("Last from the first") << "first" << int(U::btnlast) << 4 << kAtLast << true;
}

void tst_usercontrol1::navigation()
{
    QFETCH(QString, start);
    QFETCH(int, button);
    QFETCH(int, record);
    QFETCH(QString, mode);
    QFETCH(bool, refreshed);
    Fixture f;
    QVERIFY(f.open(4, start));
    click(f.bar, button);
    QCOMPARE(f.data.rs.AbsolutePosition(), record);
    QCOMPARE(pattern(f.bar), mode);
    QCOMPARE(f.host.journal, refreshed ? QStringList{"refresh1"} : QStringList{});
}

void tst_usercontrol1::permissionGates_data()
{
    QTest::addColumn<QStringList>("flags");
    QTest::addColumn<QString>("browse");
    QTest::addColumn<QString>("empty");
    QTest::newRow("none") << QStringList{} << kBrowse << kEmpty;
    QTest::newRow("move first") << QStringList{"gAllowMoveFirst"} << "011100001110" << kEmpty;
    QTest::newRow("move next gates Prev") << QStringList{"gAllowMoveNext"} << "101100001110" << kEmpty;
    QTest::newRow("move previous gates Next") << QStringList{"gAllowMovePrevious"} << "110100001110" << kEmpty;
    QTest::newRow("move last") << QStringList{"gAllowMoveLast"} << "111000001110" << kEmpty;
    QTest::newRow("find") << QStringList{"gAllowFind"} << "111100000110" << kEmpty;
    QTest::newRow("add, edit, delete") << QStringList{"gAllowAdd", "gAllowEdit", "gAllowDelete"} << kBrowseAllowed
                                       << kEmptyAllowed;
}

void tst_usercontrol1::permissionGates()
{
    QFETCH(QStringList, flags);
    QFETCH(QString, browse);
    QFETCH(QString, empty);
    Fixture f;
    QVERIFY(f.open(3, "first"));
    for (const QString &flag : flags)
        QVERIFY(f.bar->setProperty(flag.toLatin1(), true));
    f.bar->Command1_Click(U::btnnext);
    QCOMPARE(pattern(f.bar), browse);
    // Delete on an empty recordset leaves the empty mode, gated the same way.
    Customers none;
    none.open(0);
    f.bar->setsrset(&none.rs);
    Boxes boxes(f.host.journal, {vbNo});
    f.bar->Command1_Click(U::btndel);
    QCOMPARE(pattern(f.bar), empty);
}

void tst_usercontrol1::editCycle_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<bool>("dirty");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QList<int>>("answers");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record");

    // Add, Edit and Delete are allowed. Every case starts on record 2; the host then moves to
    // record 3 after the first click.
    const QList<int> none, yes{vbYes}, no{vbNo};
    QTest::newRow("Undo after Edit returns to the edited record")
        << 3 << QList<int>{U::btnedit, U::btnundo} << true << true << yes
        << QStringList{"editclick", "box:Confirm Undo", "refresh1"} << kBrowseAllowed << 2;
    QTest::newRow("Undo answered No keeps editing")
        << 3 << QList<int>{U::btnedit, U::btnundo} << true << true << no
        << QStringList{"editclick", "box:Confirm Undo"} << kEdit << 3;
    QTest::newRow("Undo after Add on a clean form asks nothing")
        << 3 << QList<int>{U::btnadd, U::btnundo} << false << true << none
        << QStringList{"addclick", "refresh1"} << kBrowseAllowed << 3;
    QTest::newRow("Save after Edit saves at the edited record")
        << 3 << QList<int>{U::btnedit, U::btnsave} << false << true << none
        << QStringList{"editclick", "Validatefields", "saveclick"} << kBrowseAllowed << 2;
    QTest::newRow("Save after Add moves to the last record")
        << 4 << QList<int>{U::btnadd, U::btnsave} << false << true << none
        << QStringList{"addclick", "Validatefields", "saveclick"} << kBrowseAllowed << 4;
    QTest::newRow("Save refused keeps editing")
        << 3 << QList<int>{U::btnedit, U::btnsave} << false << false << none
        << QStringList{"editclick", "Validatefields"} << kEdit << 3;
    QTest::newRow("Delete answered Yes") << 3 << QList<int>{U::btndel} << false << true << yes
                                         << QStringList{"box:", "Deleteclick", "refresh1"} << kBrowseAllowed << 2;
    QTest::newRow("Delete answered No") << 3 << QList<int>{U::btndel} << false << true << no
                                        << QStringList{"box:"} << kBrowseAllowed << 2;
    QTest::newRow("Delete answered No, no records") << 0 << QList<int>{U::btndel} << false << true << no
                                                    << QStringList{"box:"} << kEmptyAllowed << 0;
}

void tst_usercontrol1::editCycle()
{
    QFETCH(int, rows);
    QFETCH(QList<int>, clicks);
    QFETCH(bool, dirty);
    QFETCH(bool, valid);
    QFETCH(QList<int>, answers);
    QFETCH(QStringList, journal);
    QFETCH(QString, mode);
    QFETCH(int, record);

    Fixture f;
    QVERIFY(f.open(rows, QStringLiteral("2")));
    f.bar->gAllowAdd = f.bar->gAllowEdit = f.bar->gAllowDelete = true;
    f.bar->gFormIsDirty = dirty;
    f.host.valid = valid;
    QObject::connect(f.bar, &U::Deleteclick, [&] { f.data.deleteCurrent(); });
    Boxes boxes(f.host.journal, answers);
    for (int i = 0; i < clicks.size(); ++i) {
        click(f.bar, clicks.at(i));
        if (i == 0 && clicks.size() > 1)
            f.data.rs.MoveNext();
    }
    QCOMPARE(f.host.journal, journal);
    QCOMPARE(pattern(f.bar), mode);
    if (record)
        QCOMPARE(f.data.rs.AbsolutePosition(), record);
    if (!boxes.styles.isEmpty())
        QCOMPARE(boxes.styles.first(), journal.contains("box:") ? int(vbYesNo) : vbYesNo + vbQuestion);
}

void tst_usercontrol1::closeQuery_data()
{
    QTest::addColumn<bool>("dirty");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("fromCloseQuery");
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("keepOpen");
    QTest::newRow("clean form closes unasked") << false << int(vbNo) << true << false << false;
    QTest::newRow("dirty, No keeps the form") << true << int(vbNo) << true << true << true;
    QTest::newRow("dirty, Yes closes") << true << int(vbYes) << true << true << false;
    QTest::newRow("No outside a close query") << true << int(vbNo) << false << true << false;
}

void tst_usercontrol1::closeQuery()
{
    QFETCH(bool, dirty);
    QFETCH(int, answer);
    QFETCH(bool, fromCloseQuery);
    QFETCH(bool, asked);
    QFETCH(bool, keepOpen);
    Fixture f;
    QVERIFY(f.open(3, "2"));
    f.bar->gFormIsDirty = dirty;
    f.bar->gUnloadFomForQueryUnload = !keepOpen; // the command must write its answer
    Boxes boxes(f.host.journal, {answer});
    if (fromCloseQuery) {
        f.host.close();
        QCOMPARE(f.host.isVisible(), keepOpen);
    } else {
        f.bar->Command1_Click(U::QueryUnloadCommand);
    }
    QCOMPARE(f.bar->gUnloadFomForQueryUnload, keepOpen);
    QCOMPARE(f.host.journal, asked ? QStringList{"box:Confirm Undo"} : QStringList{});
}

void tst_usercontrol1::escapeOnACleanFormLeavesIt()
{
    Fixture f;
    QVERIFY(f.open(3, "2"));
    Boxes boxes(f.host.journal);
    QTest::keyClick(&f.host, Qt::Key_Escape);
    QVERIFY(!f.host.isVisible());
    QCOMPARE(f.host.journal, QStringList{});
}

void tst_usercontrol1::flaggedErrorStopsTheClick()
{
    Fixture f;
    QVERIFY(f.open(3, "first"));
    const QString was = pattern(f.bar);
    bool pending = true;
    QObject::connect(&f.data.rs, &Recordset::MoveComplete, [&](qint32 &, qint32 &) {
        f.bar->gErrorInClick = true;
        if (pending)
            Err().Raise(3021, QStringLiteral("customers"), QStringLiteral("No current record"));
    });
    Boxes boxes(f.host.journal);
    click(f.bar, U::btnnext);
    QCOMPARE(f.host.journal, QStringList{"box:Force Formdeck"});
    QCOMPARE(boxes.styles, QList<int>{vbCritical});
    QCOMPARE(boxes.prompts.first(), QStringLiteral("No current record  Source=customers ; Number=3021"));
    QCOMPARE(pattern(f.bar), was); // no mode change, no refresh
    QCOMPARE(Err().Number, 0);

    // A flag without a pending error stops the click silently.
    pending = false;
    click(f.bar, U::btnnext);
    QCOMPARE(f.host.journal.size(), 1);
    QCOMPARE(f.data.rs.AbsolutePosition(), 3);
}

void tst_usercontrol1::runtimeErrorsAreReportedNotThrown()
{
    Host host;
    auto *bar = new UserControl1;
    QVERIFY(showOn(host, bar));
    bar->setsrset(nullptr);
    Boxes boxes(host.journal);
    Reported reported;
    bar->Command1_Click(U::btntop); // trapped, even when called from code
    click(bar, U::btnfind);         // refreshes, then its closing step reads srset
    QCOMPARE(host.journal, (QStringList{"box:Force Formdeck", "refresh1", "box:Force Formdeck"}));
    for (const QString &prompt : boxes.prompts)
        QVERIFY2(prompt.endsWith(QLatin1String(" Source=PanelKestrin.UserControl1 ; Number=91")), qPrintable(prompt));
    QVERIFY(reported.numbers.isEmpty());
}

void tst_usercontrol1::print_data()
{
    QTest::addColumn<QString>("reportToPrint");
    QTest::addColumn<bool>("flagged");
    QTest::addColumn<int>("shown");
    QTest::newRow("data report") << "D" << false << 1;
    QTest::newRow("host prints by itself") << "O" << false << 0;
    QTest::newRow("host flagged an error") << "D" << true << 0;
}

void tst_usercontrol1::print()
{
    QFETCH(QString, reportToPrint);
    QFETCH(bool, flagged);
    QFETCH(int, shown);
    Fixture f;
    QVERIFY(f.open(3, "2"));
    QObject::connect(f.bar, &U::printclick, [&] {
        f.bar->setReportToPrint(reportToPrint);
        f.bar->gErrorInClick = flagged;
    });
    ModalForms forms;
    click(f.bar, U::btnprint);
    QCOMPARE(forms.shown, shown);
    QCOMPARE(f.host.journal, QStringList{"printclick"});
}

QTEST_MAIN(tst_usercontrol1)
#include "tst_usercontrol1.moc"
