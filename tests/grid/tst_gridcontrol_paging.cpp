// Paging and population: the page size taken from the control's height, the moves by a page
// and to either end, and repainting the cells from the data array.
#include "data/datatestsupport.h"
#include "gridtestsupport.h"

#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;
using DataTest::capture;

class tst_gridcontrol_paging : public QObject
{
    Q_OBJECT

private slots:
    void init() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { settle(); }

    void pageSizeFromHeight();
    void moves_data();
    void moves();
    void populate();
};

void tst_gridcontrol_paging::pageSizeFromHeight()
{
    gridcontrol fresh;
    fresh.resize(100, TwipsToPixelsY(2900, &fresh));
    // A new control counts one row less than a loaded one.
    QCOMPARE(int(GridInternals::pageSize(fresh)), 3600 / 285 - 1);
    LinesGrid lines(1, QStringLiteral("SELECT * FROM lines"), 2900);
    auto &grid = lines.grid;
    QCOMPARE(int(GridInternals::pageSize(*grid)), 10);
}

// A grid with a page of 10 rows.
void tst_gridcontrol_paging::moves_data()
{
    QTest::addColumn<int>("dataRows");
    QTest::addColumn<int>("startRow");
    QTest::addColumn<QString>("move");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("topRow"); // -1: not checked

    QTest::newRow("prev to the first row") << 24 << 4 << "Prevpage" << 1 << -1;
    QTest::newRow("prev by a page") << 24 << 14 << "Prevpage" << 4 << -1;
    QTest::newRow("prev on one page") << 7 << 5 << "Prevpage" << 5 << -1;
    QTest::newRow("next to the last row") << 24 << 20 << "Nextpage" << 24 << 24;
    QTest::newRow("next by a page") << 24 << 3 << "Nextpage" << 13 << 13;
    QTest::newRow("next on one page scrolls only") << 7 << 3 << "Nextpage" << 3 << 3;
    QTest::newRow("top") << 24 << 17 << "TopRow" << 1 << -1;
    QTest::newRow("last") << 24 << 2 << "LastRow" << 24 << -1;
}

void tst_gridcontrol_paging::moves()
{
    QFETCH(int, dataRows);
    QFETCH(QString, move);
    QFETCH(int, topRow);
    QFETCH(int, startRow);
    LinesGrid lines(dataRows, QStringLiteral("SELECT * FROM lines"), 2900);
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);
    view->setRow(startRow);

    QVERIFY(QMetaObject::invokeMethod(grid.get(), move.toLatin1().constData()));
    QTEST(view->Row(), "row");
    if (topRow >= 0)
        QCOMPARE(view->TopRow(), topRow);
    // The editor follows the current row.
    QCOMPARE(view->TextMatrix(view->Row(), 0), QStringLiteral(">"));
    QCOMPARE(GridInternals::editor(*grid)->text(), view->Text());
}

void tst_gridcontrol_paging::populate()
{
    LinesGrid lines(2, QStringLiteral("SELECT item, qty FROM lines"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);

    VariantMatrix data(0, 1, 0, 1);
    data(0, 0) = QStringLiteral("A1");
    data(1, 0) = 10;
    data(0, 1) = QStringLiteral("A2");
    data(1, 1) = 2.25;
    grid->setDataArray(data);
    grid->PopulateGrid();
    QCOMPARE(view->TextMatrix(2, 2), QStringLiteral("2.25"));
    QCOMPARE(grid->RowStatusArray(), QStringList({"", ""}));

    data(1, 1) = Null(); // Null is not blanked here
    grid->setDataArray(data);
    QCOMPARE(capture([&] { grid->PopulateGrid(); }).number, int(ErrInvalidUseOfNull));

    data.redimPreserve(2); // one row more than the grid has
    data(1, 1) = 1;
    grid->setDataArray(data);
    QCOMPARE(capture([&] { grid->PopulateGrid(); }).number, int(ErrInvalidGridIndex));

    view->setRows(1); // header only: nothing is written
    grid->PopulateGrid();
    QCOMPARE(view->Rows(), 1);
}

QTEST_MAIN(tst_gridcontrol_paging)
#include "tst_gridcontrol_paging.moc"
