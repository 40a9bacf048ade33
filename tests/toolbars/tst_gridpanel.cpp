#include "toolbartestsupport.h"

#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/gridpanel.h>
#include <PanelKestrin/twips.h>

#include <QLineEdit>

using namespace ToolbarTest;
using G = GridPanel;

namespace {

const QString kEdit = QStringLiteral("000001001"), kBrowse = QStringLiteral("111110110"),
              kEmpty = QStringLiteral("000010010"), kAll = QStringLiteral("111111111");

// The grid toolbar driving a grid of the customers, srset over the same rows.
struct GridHost : Host
{
    GridPanel *bar = new GridPanel;
    gridcontrol *grid = new gridcontrol;
    Customers data;
    Recordset gridRows;

    bool open(int rows)
    {
        data.open(rows);
        data.standOn(QStringLiteral("last"));
        gridRows.Open(QStringLiteral("SELECT code, name FROM customers ORDER BY code"), &data.cn);
        grid->setFixedSize(TwipsToPixelsX(6000, grid), TwipsToPixelsY(2400, grid));
        grid->setGridHeader(QStringLiteral("Code,Name"));
        const bool shown = showOn(*this, bar);
        layout()->addWidget(grid);
        grid->MakeStruct(&gridRows);
        for (const auto set : {&gridcontrol::setDisableCol, &gridcontrol::setInvokeHelpCol, &gridcontrol::setMandatoryCol})
            (grid->*set)(QString());
        grid->MakeGridStructure();
        for (int i = 0; i < 5; ++i) // the grid settles its current cell through queued keys
            QCoreApplication::processEvents();
        bar->setUserGridName(grid);
        bar->setsrset(&data.rs);
        for (auto [signal, name] : {std::pair{&G::editclick, "editclick"}, {&G::saveclick, "saveclick"},
                                    {&G::CancelClick, "CancelClick"}, {&G::printclick, "printclick"}})
            connect(bar, signal, this, [this, name = QString::fromLatin1(name)] { journal << name; });
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
    GridHost host;
    QVERIFY(host.open(40));
    host.bar->setcmdenable(QStringLiteral("111100000"));
    click(host.bar, G::btnnext);
    QVERIFY(host.grid->CurrentRowNumber() > 1);
    click(host.bar, G::btnlast);
    QCOMPARE(host.grid->CurrentRowNumber(), 40);
    click(host.bar, G::btnprev);
    QVERIFY(host.grid->CurrentRowNumber() < 40);
    click(host.bar, G::btntop);
    QCOMPARE(host.grid->CurrentRowNumber(), 1);
    QCOMPARE(pattern(host.bar), QStringLiteral("111100000"));
    QCOMPARE(host.journal, QStringList{}); // neither events nor host calls
}

void tst_gridpanel::editCycle_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<QList<int>>("clicks");
    QTest::addColumn<bool>("gridRefuses");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("journal"); // never "Validatefields" nor "refresh1"
    QTest::addColumn<QString>("mode");
    QTest::addColumn<int>("record"); // srset's position afterwards (0: not checked)

    const QList<int> save{G::btnedit, G::btnsave}, undo{G::btnedit, G::btnundo};
    const QStringList undone{"editclick", "box:Confirm Undo", "CancelClick"};
    QTest::newRow("Edit") << 3 << QList<int>{G::btnedit} << false << 0 << QStringList{"editclick"} << kEdit << 3;
    QTest::newRow("Save") << 3 << save << false << 0 << QStringList{"editclick", "saveclick"} << kBrowse << 3;
    QTest::newRow("Save refused by the grid") << 3 << save << true << 0 << QStringList{"editclick"} << kEdit << 3;
    QTest::newRow("Undo answered No") << 3 << undo << false << int(vbNo) << QStringList{"editclick", "box:Confirm Undo"} << kEdit << 3;
    QTest::newRow("Undo moves to the first record") << 3 << undo << false << int(vbYes) << undone << kBrowse << 1;
    QTest::newRow("Undo with no records") << 0 << undo << false << int(vbYes) << undone << kEmpty << 0;
    QTest::newRow("Print") << 3 << QList<int>{G::btnprint} << false << 0 << QStringList{"printclick", "frmprint"} << kAll << 3;
}

void tst_gridpanel::editCycle()
{
    QFETCH(int, rows);
    QFETCH(QList<int>, clicks);
    QFETCH(bool, gridRefuses);
    QFETCH(int, answer);
    QFETCH(QStringList, journal);
    QFETCH(QString, mode);
    QFETCH(int, record);

    GridHost host;
    QVERIFY(host.open(rows));
    if (gridRefuses) { // the edit box holds a value the host's ValidateRow refuses
        connect(host.grid, &gridcontrol::ValidateRow, [](qint32 &, qint16 &, QVariant &, bool &Cancel) { Cancel = true; });
        host.grid->findChild<QLineEdit *>(QStringLiteral("TxtAdjust"))->setText(QStringLiteral("REFUSED"));
    }
    Boxes boxes(host.journal, {answer});
    ModalForms forms([&](QDialog *form) { host.journal << form->objectName(), form->close(); });
    for (int button : clicks)
        click(host.bar, button);
    QCOMPARE(host.journal, journal);
    QCOMPARE(pattern(host.bar), mode);
    if (record)
        QCOMPARE(host.data.rs.AbsolutePosition(), record);
}

void tst_gridpanel::unsetGridIsError91()
{
    Host host;
    auto *bar = new GridPanel;
    QVERIFY(showOn(host, bar));
    QVERIFY_THROWS_EXCEPTION(RuntimeError, bar->Command1_Click(G::btnnext));
    Reported reported;
    click(bar, G::btnsave);
    QCOMPARE(reported.numbers, QList<int>{ErrObjectNotSet});
    QCOMPARE(pattern(bar), kAll);
}

QTEST_MAIN(tst_gridpanel)
#include "tst_gridpanel.moc"
