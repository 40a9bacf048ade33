// A host that knows the controls only through their dispatch numbers: it builds a form's
// toolbar, grid and date box, drives them, answers their events through a sink, and gets the
// classic errors for what the interfaces do not offer.

#include <PanelKestrin/dispatch.h>
#include <PanelKestrin/dtcontrol.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/trncontrol.h>
#include <PanelKestrin/variantmatrix.h>

#include "../toolbars/toolbartestsupport.h"

using namespace PanelKestrin;
using namespace ToolbarTest;

namespace {

// Dispatch numbers of the members the host uses.
enum : qint32 {
    Command1_Click = 0x6003000D,
    TrnCmdenable = 0x6803000A,
    TrnSrset = 0x68030009,
    TrnReportToPrint = 0x68030000,
    GridValue = 0x4003001E,
    GridShowMenu = 0x40030021,
    GridHeader = 0x6803000C,
    GridDisableCol = 0x68030009,
    GridInvokeHelpCol = 0x68030008,
    GridMandatoryCol = 0x68030007,
    GridDataArray = 0x68030004,
    GridRowStatusArray = 0x68030003,
    GridMaxRowNumber = 0x68030000,
    GridChangeGridHeader = 0x6003000D,
    GridvColumnValue = 0x6003001A,
    GridvSetGridRowColValue = 0x6003001B,
    GridMakeStruct = 0x6003002B,
    GridMakeGridStructure = 0x60030035,
    GridRowAddnew = 0x60030036,
    DateBackColor = 0x6803000B,
    DateValue = 0x68030003,
    DateValidDaysOfMonth = 0x60030014,
};

// What the sinks received: "<dispId>" per event, in order.
struct Events
{
    QStringList received;
    std::function<void(qint32, QVariantList &)> answer;

    Dispatch::EventSink sink()
    {
        return [this](qint32 dispId, QVariantList &args) {
            received << QString::number(dispId);
            if (answer)
                answer(dispId, args);
        };
    }
};

QVariant get(QObject *control, qint32 id) { return Dispatch::Invoke(control, id, Dispatch::PropertyGet); }
void put(QObject *control, qint32 id, const QVariant &value) { Dispatch::Invoke(control, id, Dispatch::PropertyPut, {value}); }

} // namespace

class tst_Dispatch : public QObject
{
    Q_OBJECT

    Host host;
    Customers customers;
    TrnControl *toolbar = nullptr;
    gridcontrol *grid = nullptr;
    DTControl *date = nullptr;

private slots:
    void initTestCase()
    {
        failOnUnscriptedModals();
        customers.open(3);
        auto *layout = new QVBoxLayout(&host);
        layout->addWidget(toolbar = new TrnControl);
        layout->addWidget(grid = new gridcontrol);
        layout->addWidget(date = new DTControl);
        grid->setMinimumHeight(200);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
    }

    void toolbarAddEditSave()
    {
        Events events;
        std::unique_ptr<QObject> connection(Dispatch::Advise(toolbar, events.sink()));
        Dispatch::Invoke(toolbar, TrnSrset, Dispatch::PropertyPutRef, {QVariant::fromValue<QObject *>(&customers.rs)});
        put(toolbar, TrnCmdenable, QStringLiteral("11111111"));
        QCOMPARE(get(toolbar, TrnCmdenable).toString(), QStringLiteral("11111111"));

        host.journal.clear();
        for (qint16 index : {TrnControl::btnadd, TrnControl::btnsave, TrnControl::btnedit, TrnControl::btnsave})
            Dispatch::Invoke(toolbar, Command1_Click, Dispatch::Method, {index});
        QCOMPARE(events.received, QStringList({"1", "5", "2", "5"}));
        QCOMPARE(host.journal, QStringList({"Validatefields", "Validatefields"}));
        QCOMPARE(pattern(toolbar), QStringLiteral("11101110")); // browse mode after the save
    }

    // The sink's Cancel is what the toolbar reads: set, the delete is refused without a question.
    void eventCancelIsReadBack_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("refused") << true << QStringList{"3"};
        QTest::newRow("asked") << false << QStringList{"3", "4"};
    }

    void eventCancelIsReadBack()
    {
        QFETCH(bool, cancel);
        QFETCH(QStringList, expected);
        Events events;
        events.answer = [&](qint32 dispId, QVariantList &args) {
            if (dispId == 3)
                args[0] = cancel;
        };
        std::unique_ptr<QObject> connection(Dispatch::Advise(toolbar, events.sink()));
        Dispatch::Invoke(toolbar, TrnSrset, Dispatch::PropertyPutRef, {QVariant::fromValue<QObject *>(&customers.rs)});
        QStringList journal;
        Boxes boxes(journal, {vbYes});
        Dispatch::Invoke(toolbar, Command1_Click, Dispatch::Method, {qint16(TrnControl::btndel)});
        QCOMPARE(events.received, expected);
        QCOMPARE(boxes.prompts.size(), cancel ? 0 : 1);
    }

    void gridLoadedAndEdited()
    {
        customers.rs.MoveFirst();
        put(grid, GridHeader, QStringLiteral("Code,Name,Joined"));
        Dispatch::Invoke(grid, GridMakeStruct, Dispatch::Method, {QVariant::fromValue<QObject *>(&customers.rs)});
        for (qint32 list : {GridDisableCol, GridInvokeHelpCol, GridMandatoryCol})
            put(grid, list, QString());
        Dispatch::Invoke(grid, GridMakeGridStructure, Dispatch::Method);
        QCOMPARE(get(grid, GridMaxRowNumber).toInt(), 4);
        QCOMPARE(Dispatch::Invoke(grid, GridvColumnValue, Dispatch::Method, {2, 1}).toString(), QStringLiteral("C2"));

        QVariantList cell{qint16(2), qint16(2), QStringLiteral("New name")};
        QVERIFY(Dispatch::Invoke(grid, GridvSetGridRowColValue, Dispatch::Method, cell).toBool());
        QCOMPARE(cell.at(0).toInt(), 2);
        const VariantMatrix data = get(grid, GridDataArray).value<VariantMatrix>();
        QCOMPARE(data(1, 1).toString(), QStringLiteral("New name"));
        QCOMPARE(get(grid, GridRowStatusArray).toStringList().size(), 3);

        // A vararg member collects its arguments as one array: the captions are its first element.
        Dispatch::Invoke(grid, GridChangeGridHeader, Dispatch::Method,
                         QVariantList{QVariant(QVariantList{QStringLiteral("Key"), QStringLiteral("Who"), QStringLiteral("Since")})});
        QCOMPARE(Dispatch::Invoke(grid, GridvColumnValue, Dispatch::Method, {0, 2}).toString(), QStringLiteral("Who"));
    }

    // The grid writes -1 into the caller's row for a row past the grid; the host sees it.
    void byReferenceArgumentsComeBack()
    {
        QStringList journal;
        Boxes boxes(journal, {vbOK});
        QVariantList cell{qint16(99), qint16(1), QStringLiteral("x")};
        Dispatch::Invoke(grid, GridvSetGridRowColValue, Dispatch::Method, cell);
        QCOMPARE(cell.at(0).toInt(), -1);
        QCOMPARE(cell.at(1).toInt(), 1);
        QCOMPARE(boxes.prompts, QStringList{"Trying to assign a Row that is Invalid for the Grid."});
    }

    void gridRowLevelValidateCancelled_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::addColumn<int>("rows");
        QTest::newRow("refused") << true << 4;
        QTest::newRow("added") << false << 5;
    }

    void gridRowLevelValidateCancelled()
    {
        QFETCH(bool, cancel);
        QFETCH(int, rows);
        customers.rs.MoveFirst();
        Dispatch::Invoke(grid, GridMakeStruct, Dispatch::Method, {QVariant::fromValue<QObject *>(&customers.rs)});
        Dispatch::Invoke(grid, GridMakeGridStructure, Dispatch::Method);
        put(grid, GridShowMenu, true);
        Events events;
        events.answer = [&](qint32 dispId, QVariantList &args) {
            if (dispId == 5)
                args[1] = cancel;
        };
        std::unique_ptr<QObject> connection(Dispatch::Advise(grid, events.sink()));
        Dispatch::Invoke(grid, GridRowAddnew, Dispatch::Method);
        QCOMPARE(get(grid, GridMaxRowNumber).toInt(), rows);
        QCOMPARE(events.received.contains(QStringLiteral("1")), !cancel); // GridAfterRowAdd
    }

    void dateSetAndRead()
    {
        put(date, DateValue, QDate(2026, 11, 23));
        QCOMPARE(get(date, DateValue).toDate(), QDate(2026, 11, 23));
        QVERIFY(Dispatch::Invoke(date, DateValidDaysOfMonth, Dispatch::Method).toBool());
        // Colours travel as OLE_COLOR numbers, red in the low byte.
        put(date, DateBackColor, 0x0000FF);
        QCOMPARE(date->BackColor(), QColor(Qt::red));
        QCOMPARE(get(date, DateBackColor).toInt(), 0x0000FF);
    }

    // Host forms set colours as OLE_COLOR numbers: an RGB value, or a system colour (high bit
    // set, often held in a signed Long) that takes the colour of the platform's palette.
    void coloursFromHostNumbers_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::addColumn<QColor>("expected");
        const QPalette palette = date->palette();
        QTest::newRow("rgb") << QVariant(0x00CCFFFF) << QColor(255, 255, 204);
        QTest::newRow("window background") << QVariant(qint64(0x80000005)) << palette.color(QPalette::Base);
        QTest::newRow("button face as a Long") << QVariant(qint32(-2147483633)) << palette.color(QPalette::Button);
        QTest::newRow("tool tip background") << QVariant(qint64(0x80000018)) << palette.color(QPalette::ToolTipBase);
    }

    void coloursFromHostNumbers()
    {
        QFETCH(QVariant, number);
        QFETCH(QColor, expected);
        put(date, DateBackColor, QColor(Qt::black));
        put(date, DateBackColor, number);
        QCOMPARE(date->BackColor(), expected);
    }

    void coloursOutOfRange_data()
    {
        QTest::addColumn<QVariant>("number");
        QTest::newRow("above white") << QVariant(0x01000000);
        QTest::newRow("no such system colour") << QVariant(qint64(0x80000019));
        QTest::newRow("negative") << QVariant(-1);
    }

    void coloursOutOfRange()
    {
        QFETCH(QVariant, number);
        put(date, DateBackColor, QColor(Qt::red));
        try {
            put(date, DateBackColor, number);
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.Number(), int(ErrInvalidPropertyValue));
        }
        QCOMPARE(date->BackColor(), QColor(Qt::red));
    }

    // A host hands over what its variables hold: a date as text or as a serial number, a
    // Boolean as text. They convert as the host's own code would convert them, or raise 13.
    void hostValuesConvert_data()
    {
        QTest::addColumn<bool>("onGrid"); // else the date box
        QTest::addColumn<qint32>("dispId");
        QTest::addColumn<QVariant>("given");
        QTest::addColumn<QVariant>("expected");
        QTest::addColumn<int>("error");
        QTest::newRow("date as text") << false << qint32(DateValue) << QVariant("11/23/2026") << QVariant(QDate(2026, 11, 23)) << 0;
        QTest::newRow("date as serial number") << false << qint32(DateValue) << QVariant(46349.0) << QVariant(QDate(2026, 11, 23)) << 0;
        QTest::newRow("text that is no date") << false << qint32(DateValue) << QVariant("soon") << QVariant() << 13;
        QTest::newRow("Boolean as text") << true << qint32(GridShowMenu) << QVariant("True") << QVariant(true) << 0;
        QTest::newRow("Boolean as number text") << true << qint32(GridShowMenu) << QVariant("0") << QVariant(false) << 0;
        QTest::newRow("text that is no Boolean") << true << qint32(GridShowMenu) << QVariant("abc") << QVariant() << 13;
    }

    void hostValuesConvert()
    {
        QFETCH(bool, onGrid);
        QFETCH(qint32, dispId);
        QFETCH(QVariant, given);
        QFETCH(QVariant, expected);
        QFETCH(int, error);
        QObject *control = onGrid ? static_cast<QObject *>(grid) : date;
        try {
            put(control, dispId, given);
            QCOMPARE(error, 0);
            QCOMPARE(get(control, dispId), expected);
        } catch (const RuntimeError &e) {
            QCOMPARE(e.Number(), error);
        }
    }

    void namesMatchAnyCase()
    {
        QCOMPARE(Dispatch::GetIDOfName(toolbar, QStringLiteral("CMDENABLE")), qint32(TrnCmdenable));
        QCOMPARE(Dispatch::GetIDOfName(grid, QStringLiteral("vsetgridrowcolvalue")), qint32(GridvSetGridRowColValue));
        Dispatch::Invoke(grid, QStringLiteral("GVALUE"), Dispatch::PropertyPutRef, {QStringLiteral("*")});
        QCOMPARE(grid->gValue.toString(), QStringLiteral("*"));
        QCOMPARE(Dispatch::Invoke(grid, GridValue, Dispatch::PropertyGet).toString(), QStringLiteral("*"));
    }

    void classicErrors_data()
    {
        QTest::addColumn<QString>("member"); // a dispatch number in hex, or a name
        QTest::addColumn<int>("kind");
        QTest::addColumn<QVariantList>("args");
        QTest::addColumn<int>("error");
        QTest::newRow("unknown number") << "0x60030099" << int(Dispatch::Method) << QVariantList{} << 438;
        QTest::newRow("unknown name") << "Refresh" << int(Dispatch::Method) << QVariantList{} << 438;
        QTest::newRow("event is no member") << "addclick" << int(Dispatch::Method) << QVariantList{} << 438;
        QTest::newRow("write-only read") << "0x68030000" << int(Dispatch::PropertyGet) << QVariantList{} << 438;
        QTest::newRow("object put by value") << "srset" << int(Dispatch::PropertyPut) << QVariantList{QVariant()} << 438;
        QTest::newRow("no argument") << "Command1_Click" << int(Dispatch::Method) << QVariantList{} << 450;
        QTest::newRow("two arguments") << "0x6003000D" << int(Dispatch::Method) << QVariantList{1, 2} << 450;
        QTest::newRow("put without value") << "cmdenable" << int(Dispatch::PropertyPut) << QVariantList{} << 450;
        QTest::newRow("text for a number") << "Command1_Click" << int(Dispatch::Method) << QVariantList{"Add"} << 13;
        QTest::newRow("number for a recordset") << "srset" << int(Dispatch::PropertyPutRef) << QVariantList{42} << 13;
    }

    void classicErrors()
    {
        QFETCH(QString, member);
        QFETCH(int, kind);
        QFETCH(QVariantList, args);
        QFETCH(int, error);
        bool isNumber = false;
        const qint32 id = qint32(member.toUInt(&isNumber, 16));
        try {
            if (isNumber)
                Dispatch::Invoke(toolbar, id, Dispatch::InvokeKind(kind), args);
            else
                Dispatch::Invoke(toolbar, member, Dispatch::InvokeKind(kind), args);
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.Number(), error);
        }
    }

    void objectsThatAreNoControl()
    {
        QObject plain;
        QVERIFY(!Dispatch::ClassOf(&plain));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, Dispatch::Invoke(&plain, TrnCmdenable, Dispatch::PropertyGet));
        try {
            Dispatch::Invoke(nullptr, TrnCmdenable, Dispatch::PropertyGet);
            QFAIL("no error raised");
        } catch (const RuntimeError &e) {
            QCOMPARE(e.Number(), 91);
        }
    }
};

QTEST_MAIN(tst_Dispatch)
#include "tst_dispatch.moc"
