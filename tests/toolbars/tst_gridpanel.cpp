#include "toolbartestsupport.h"

#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/twips.h>

#include <QLineEdit>

using namespace PanelKestrin;
using namespace ToolbarTest;
using G = GridPanel;

namespace {

const QString kEdit = QStringLiteral("000001001");
const QString kBrowse = QStringLiteral("111110110");
const QString kEmpty = QStringLiteral("000010010");

// A host form with the grid toolbar driving a grid of the customers, srset over the same rows.
struct Fixture
{
    Host host;
    GridPanel *bar = new GridPanel;
    gridcontrol *grid = new gridcontrol;
    Customers data;
    Recordset gridRows;

    bool open(int rows)
    {
        data.open(rows);
        gridRows.Open(QStringLiteral("SELECT code, name FROM customers ORDER BY code"), &data.cn);
        grid->setFixedSize(TwipsToPixelsX(6000, grid), TwipsToPixelsY(2400, grid));
        grid->setGridHeader(QStringLiteral("Code,Name"));
        const bool shown = showOn(host, bar);
        host.layout()->addWidget(grid);
        grid->MakeStruct(&gridRows);
        grid->setDisableCol(QString());
        grid->setInvokeHelpCol(QString());
        grid->setMandatoryCol(QString());
        grid->MakeGridStructure();
        for (int i = 0; i < 5; ++i) // the grid settles its current cell through queued keys
            QCoreApplication::processEvents();
        bar->setUserGridName(grid);
        bar->setsrset(&data.rs);
        QObject::connect(bar, &G::editclick, [this] { host.journal << QStringLiteral("editclick"); });
        QObject::connect(bar, &G::saveclick, [this] { host.journal << QStringLiteral("saveclick"); });
        QObject::connect(bar, &G::CancelClick, [this] { host.journal << QStringLiteral("CancelClick"); });
        QObject::connect(bar, &G::printclick, [this] { host.journal << QStringLiteral("printclick"); });
        return shown;
    }
};

} // namespace

class tst_gridpanel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { failOnUnscriptedModals(); }
    void pagingLeavesTheMode();
    void editCycle_data();
    void editCycle();
    void unsetGridIsError91();
};

void tst_gridpanel::pagingLeavesTheMode()
{
    Fixture f;
    QVERIFY(f.open(40));
    f.bar->setcmdenable(QStringLiteral("111100000"));
    click(f.bar, G::btnnext);
    const qint32 afterNext = f.grid->CurrentRowNumber();
    QVERIFY(afterNext > 1);
    click(f.bar, G::btnlast);
    QCOMPARE(f.grid->CurrentRowNumber(), 40);
    click(f.bar, G::btnprev);
    QVERIFY(f.grid->CurrentRowNumber() < 40);
    click(f.bar, G::btntop);
    QCOMPARE(f.grid->CurrentRowNumber(), 1);
    QCOMPARE(pattern(f.bar), QStringLiteral("111100000"));
    QCOMPARE(f.host.journal, QStringList{}); // neither events nor host calls
}

void tst_gridpanel::editCycle_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<bool>("gridRefuses");
    QTest::addColumn<QList<int>>("answers");
    QTest::addColumn<QStringList>("journal");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record"); // srset's position afterwards; 0 = not checked

    const QList<int> none, yes{vbYes}, no{vbNo};
    QTest::newRow("Edit") << 3 << QList<int>{G::btnedit} << false << none << QStringList{"editclick"} << kEdit << 3;
    QTest::newRow("Save") << 3 << QList<int>{G::btnedit, G::btnsave} << false << none
                          << QStringList{"editclick", "saveclick"} << kBrowse << 3;
    QTest::newRow("Save refused by the grid") << 3 << QList<int>{G::btnedit, G::btnsave} << true << none
                                              << QStringList{"editclick"} << kEdit << 3;
    QTest::newRow("Undo answered No") << 3 << QList<int>{G::btnedit, G::btnundo} << false << no
                                      << QStringList{"editclick", "box:Confirm Undo"} << kEdit << 3;
    QTest::newRow("Undo moves to the first record") << 3 << QList<int>{G::btnedit, G::btnundo} << false << yes
                                                    << QStringList{"editclick", "box:Confirm Undo", "CancelClick"}
                                                    << kBrowse << 1;
    QTest::newRow("Undo with no records") << 0 << QList<int>{G::btnedit, G::btnundo} << false << yes
                                          << QStringList{"editclick", "box:Confirm Undo", "CancelClick"} << kEmpty << 0;
    QTest::newRow("Print") << 3 << QList<int>{G::btnprint} << false << none << QStringList{"printclick", "form shown"}
                           << QStringLiteral("111111111") << 3;
}

void tst_gridpanel::editCycle()
{
    QFETCH(int, rows);
    QFETCH(QList<int>, clicks);
    QFETCH(bool, gridRefuses);
    QFETCH(QList<int>, answers);
    QFETCH(QStringList, journal);
    QFETCH(QString, mode);
    QFETCH(int, record);

    Fixture f;
    QVERIFY(f.open(rows));
    f.data.standOn(QStringLiteral("last"));
    if (gridRefuses) {
        connect(f.grid, &gridcontrol::ValidateRow, [](qint32 &, qint16 &, QVariant &, bool &Cancel) { Cancel = true; });
        f.grid->findChild<QLineEdit *>(QStringLiteral("TxtAdjust"))->setText(QStringLiteral("REFUSED"));
    }
    Boxes boxes(f.host.journal, answers);
    ModalForms forms([&](QDialog *) { f.host.journal << QStringLiteral("form shown"); });
    for (int button : clicks)
        click(f.bar, button);
    QCOMPARE(f.host.journal, journal); // never "Validatefields" nor "refresh1"
    QCOMPARE(pattern(f.bar), mode);
    if (record)
        QCOMPARE(f.data.rs.AbsolutePosition(), record);
}

void tst_gridpanel::unsetGridIsError91()
{
    Host host;
    auto *bar = new GridPanel;
    QVERIFY(showOn(host, bar));
    int thrown = 0;
    try {
        bar->Command1_Click(G::btnnext);
    } catch (const RuntimeError &e) {
        thrown = e.Number();
    }
    QCOMPARE(thrown, int(ErrObjectNotSet));
    Reported reported;
    click(bar, G::btnsave);
    QCOMPARE(reported.numbers, QList<int>{ErrObjectNotSet});
    QCOMPARE(pattern(bar), QStringLiteral("111111111"));
}

QTEST_MAIN(tst_gridpanel)
#include "tst_gridpanel.moc"
