// The grid's data store: copies in and out, single-cell reads and writes, totals, and the
// typed values and row statuses that committed edits leave for the host to save.
#include "data/datatestsupport.h"
#include "gridtestsupport.h"

#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;
using DataTest::capture;

class tst_gridcontrol_store : public QObject
{
    Q_OBJECT

private slots:
    void init() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { settle(); }

    void checkedCellWrite_data();
    void checkedCellWrite();
    void hostCellAccess();
    void committedEditValues_data();
    void committedEditValues();
    void statusesThroughEdits();
    void refusedValueHoldsTheCell();
    void loadedTextsThroughGridChanges_data();
    void loadedTextsThroughGridChanges();
};

// vSetGridRowColValue on a grid of 5 rows (4 data rows) and 8 columns.
void tst_gridcontrol_store::checkedCellWrite_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("col");
    QTest::addColumn<int>("rowAfter");
    QTest::addColumn<int>("colAfter");
    QTest::addColumn<QString>("message");

    QTest::newRow("inside") << 4 << 2 << 4 << 2 << "";
    QTest::newRow("row past the end") << 5 << 2 << -1 << 2 << "Trying to assign a Row that is Invalid for the Grid.";
    QTest::newRow("column past the end") << 1 << 8 << 1 << -1 << "Trying to assign a Column that is Invalid for the Grid.";
    QTest::newRow("both past the end") << 9 << 9 << 9 << -1 << "Trying to assign a Column that is Invalid for the Grid.";
}

void tst_gridcontrol_store::checkedCellWrite()
{
    QFETCH(int, row);
    QFETCH(int, col);
    QFETCH(QString, message);
    LinesGrid lines(4, QStringLiteral("SELECT * FROM lines"));
    auto &grid = lines.grid;
    MessageLog log;

    qint16 iRow = qint16(row), iCol = qint16(col);
    QVERIFY(grid->vSetGridRowColValue(iRow, iCol, QStringLiteral("WRITTEN")));
    QTEST(int(iRow), "rowAfter");
    QTEST(int(iCol), "colAfter");
    if (message.isEmpty()) {
        QVERIFY(log.prompts.isEmpty());
        QCOMPARE(grid->vColumnValue(iRow, iCol).toString(), QStringLiteral("WRITTEN"));
        QCOMPARE(grid->DataArray()(col - 1, row - 1).toString(), QStringLiteral("WRITTEN"));
        QCOMPARE(grid->RowStatusArray().at(row - 1), QString());
    } else {
        QCOMPARE(log.prompts, QStringList{message});
        QCOMPARE(log.titles, QStringList{QStringLiteral("Formdeck")});
    }
}

void tst_gridcontrol_store::hostCellAccess()
{
    LinesGrid lines(2, QStringLiteral("SELECT * FROM lines"));
    auto &grid = lines.grid;
    QLineEdit *editor = GridInternals::editor(*grid);
    grid->TopRow(); // places the editor on the first cell
    QVERIFY(editor->isVisible());

    QCOMPARE(grid->vColumnValue(1, 3).toString(), QStringLiteral("1"));
    QVERIFY(editor->isVisible()); // reading this way leaves the editor open
    QCOMPARE(grid->GetColumnValue(3, 1).toString(), QStringLiteral("1"));
    QVERIFY(!editor->isVisible());

    grid->SetColumnValue(42, 3, 2); // a host write: no status change
    QCOMPARE(grid->vColumnValue(2, 3).toString(), QStringLiteral("42"));
    QCOMPARE(grid->DataArray()(2, 1).toInt(), 42);
    QCOMPARE(grid->RowStatusArray(), QStringList({"", ""}));
    QCOMPARE(capture([&] { grid->SetColumnValue(Null(), 3, 2); }).number, int(ErrInvalidUseOfNull));
    QCOMPARE(grid->CurrentRowNumber(), 1);
    QCOMPARE(grid->MaxRowNumber(), 3);

    grid->SetColumnValue(12.5, 4, 1);
    grid->SetColumnValue(QStringLiteral("7"), 4, 2);
    QCOMPARE(grid->ColTotal(4), 19.5);
    QCOMPARE(grid->ColTotal(1), 0.0); // letters only count as 0

    // The data array goes in and out as copies, and is shown only when the host repaints.
    VariantMatrix copy = grid->DataArray();
    copy(0, 0) = QStringLiteral("CHANGED");
    QCOMPARE(grid->DataArray()(0, 0).toString(), QStringLiteral("IT001"));
    VariantMatrix replacement(0, 6, 0, 1);
    replacement(0, 1) = QStringLiteral("NEW");
    grid->setDataArray(replacement);
    replacement(0, 1) = QStringLiteral("LATER");
    QCOMPARE(grid->DataArray()(0, 1).toString(), QStringLiteral("NEW"));
    QCOMPARE(grid->vColumnValue(2, 1).toString(), QStringLiteral("IT002"));
    grid->PopulateGrid();
    QCOMPARE(grid->vColumnValue(2, 1).toString(), QStringLiteral("NEW"));
}

// The editor's text as each column type stores it when the user leaves the cell.
void tst_gridcontrol_store::committedEditValues_data()
{
    QTest::addColumn<int>("col");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QVariant>("stored");

    QTest::newRow("character padded to its width") << 2 << " ab " << QVariant(QStringLiteral("ab") + QString(28, QLatin1Char(' ')));
    QTest::newRow("character longer than its width") << 1 << "  ABCDEFGHIJKL " << QVariant(QStringLiteral("ABCDEFGHIJKL"));
    QTest::newRow("number from its leading digits") << 4 << "12.5kg" << QVariant(12.5);
    QTest::newRow("number without digits") << 3 << "abc" << QVariant(0.0);
    QTest::newRow("date as mm/dd/yyyy") << 5 << "2026-07-04" << QVariant(QStringLiteral("07/04/2026"));
    QTest::newRow("boolean column keeps nothing") << 6 << "True" << QVariant();
}

void tst_gridcontrol_store::committedEditValues()
{
    QFETCH(int, col);
    QFETCH(QString, typed);
    LinesGrid lines(2, QStringLiteral("SELECT * FROM lines"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);

    view->setCol(col);
    GridInternals::editor(*grid)->setText(typed);
    view->setRow(2); // leaving the cell commits it
    QTEST(grid->DataArray()(col - 1, 0), "stored");
    QCOMPARE(view->TextMatrix(1, col), typed);
    QCOMPARE(view->TextMatrix(1, 0), QString()); // the old row's marker is cleared
    QCOMPARE(view->TextMatrix(2, 0), QStringLiteral(">"));
}

void tst_gridcontrol_store::statusesThroughEdits()
{
    LinesGrid lines(0, QStringLiteral("SELECT * FROM lines"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);
    QLineEdit *editor = GridInternals::editor(*grid);

    // The blank row of an empty table is "A" and stays "A" when edited.
    editor->setText(QStringLiteral("NEW"));
    view->setCol(2);
    QCOMPARE(grid->RowStatusArray(), QStringList{QStringLiteral("A")});

    Database db2;
    db2.fillLines(3);
    auto rs2 = db2.open(QStringLiteral("SELECT * FROM lines"));
    grid->MakeStruct(rs2.get());
    grid->MakeGridStructure();
    view->setRow(2);
    view->setCol(2);
    GridInternals::editor(*grid)->setText(QStringLiteral("CHANGED"));
    view->setRow(3);
    // Every committed cell counts, changed or not: rows 1 and 2 were left, row 3 was not.
    QCOMPARE(grid->RowStatusArray(), QStringList({"E", "E", ""}));
}

void tst_gridcontrol_store::refusedValueHoldsTheCell()
{
    LinesGrid lines(3, QStringLiteral("SELECT * FROM lines"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);
    view->setCol(3);
    QList<QPair<int, int>> validated;
    connect(grid.get(), &gridcontrol::ValidateRow, grid.get(),
            [&](qint32 &Row, qint16 &Col, QVariant &value, bool &Cancel) {
                validated << qMakePair(int(Row), int(Col));
                Cancel = value.toDouble() > 100;
            });

    GridInternals::editor(*grid)->setText(QStringLiteral("500"));
    QTest::mouseClick(view->view()->viewport(), Qt::LeftButton, {},
                      view->view()->visualRect(view->view()->model()->index(2, 0)).center());
    // Refused: the store keeps the old value, and the cell is entered again.
    QCOMPARE(validated.first(), qMakePair(1, 2));
    QCOMPARE(grid->DataArray()(2, 0).toInt(), 1);
    QCOMPARE(view->Row(), 1);
    QCOMPARE(view->Col(), 3);
    // Releasing the button re-decides the hold from the cell now entered, which holds a value.
    QVERIFY(!GridInternals::holdCell(*grid));

    GridInternals::editor(*grid)->setText(QStringLiteral("50"));
    view->setRow(3);
    QCOMPARE(grid->DataArray()(2, 0).toDouble(), 50.0);
    QCOMPARE(view->Row(), 3);
    QVERIFY(!GridInternals::holdCell(*grid));
}

// The loaded cells' texts come from the shared rows when they are read; whatever the grid or
// the host does afterwards, each cell reads as if its text had been written at load.
enum class GridChange { None, CellWritten, RowRemoved, RowsCutAndRegrown, ColsCutAndRegrown, StoreWritten,
                        Repainted, RepaintFailsOnNull };
Q_DECLARE_METATYPE(GridChange)

void tst_gridcontrol_store::loadedTextsThroughGridChanges_data()
{
    QTest::addColumn<GridChange>("change");
    QTest::addColumn<QStringList>("row2");  // grid row 2, columns 0 to 7
    QTest::addColumn<QStringList>("lastRow"); // the last grid row, columns 0 to 7

    const QStringList line2{"", "IT002", "ITEM 2", "2", "2.5", "01/03/2026", "True", "2"};
    const QStringList line3{"", "IT003", "ITEM 3", "3", "3.5", "01/04/2026", "False", "3"};
    const QStringList blanks{"", "IT009", "", "9", "", "", "", "9"}; // NULLs load as ""
    const QStringList empty(8);
    QTest::newRow("as loaded") << GridChange::None << line2 << blanks;
    QTest::newRow("one cell written")
        << GridChange::CellWritten << QStringList{">", "IT002", "typed", "2", "2.5", "01/03/2026", "True", "2"}
        << blanks;
    QTest::newRow("row removed") << GridChange::RowRemoved << line3 << blanks;
    QTest::newRow("rows cut and regrown") << GridChange::RowsCutAndRegrown << line2 << empty;
    QTest::newRow("columns cut and regrown")
        << GridChange::ColsCutAndRegrown << QStringList{"", "IT002", "ITEM 2", "", "", "", "", ""}
        << QStringList{"", "IT009", "", "", "", "", "", ""};
    QTest::newRow("store written, not repainted") << GridChange::StoreWritten << line2 << blanks;
    QTest::newRow("repainted from a new array")
        << GridChange::Repainted << QStringList{">", "A2", "", "", "", "", "", ""}
        << QStringList{"", "A4", "", "", "", "", "", ""};
    // Repainting runs column by column and stops at the Null: the first column is new, the
    // rest as loaded.
    QTest::newRow("repaint stops at a Null")
        << GridChange::RepaintFailsOnNull
        << QStringList{">", "A2", "ITEM 2", "2", "2.5", "01/03/2026", "True", "2"} << QStringList{"", "A4", "", "9", "", "", "", "9"};
}

void tst_gridcontrol_store::loadedTextsThroughGridChanges()
{
    QFETCH(GridChange, change);
    Database db;
    db.fillLines(3);
    db.cn.Execute(QStringLiteral("INSERT INTO lines VALUES ('IT009', NULL, 9, NULL, NULL, NULL, 9)"));
    auto rs = db.open(QStringLiteral("SELECT * FROM lines"));
    auto grid = makeGrid(*rs);
    FlexGrid *view = GridInternals::grid(*grid);
    VariantMatrix store = grid->DataArray();
    VariantMatrix fresh(0, 6, 0, 3);
    for (int r = 0; r < 4; ++r)
        fresh(0, r) = QStringLiteral("A%1").arg(r + 1);

    switch (change) {
    case GridChange::None:
        break;
    case GridChange::CellWritten:
        view->setTextMatrix(2, 0, QStringLiteral(">"));
        view->setTextMatrix(2, 2, QStringLiteral("typed"));
        break;
    case GridChange::RowRemoved:
        view->RemoveItem(2);
        break;
    case GridChange::RowsCutAndRegrown:
        view->setRows(3);
        view->setRows(5);
        break;
    case GridChange::ColsCutAndRegrown:
        view->setCols(3);
        view->setCols(8);
        break;
    case GridChange::StoreWritten:
        store(1, 1) = QStringLiteral("OTHER");
        grid->setDataArray(store);
        break;
    case GridChange::Repainted:
        view->setTextMatrix(2, 0, QStringLiteral(">"));
        grid->setDataArray(fresh);
        grid->PopulateGrid();
        break;
    case GridChange::RepaintFailsOnNull:
        view->setTextMatrix(2, 0, QStringLiteral(">"));
        fresh(1, 0) = Null();
        grid->setDataArray(fresh);
        QCOMPARE(capture([&] { grid->PopulateGrid(); }).number, int(ErrInvalidUseOfNull));
        break;
    }
    QStringList row2, lastRow;
    for (int c = 0; c < 8; ++c) {
        row2 << view->TextMatrix(2, c);
        lastRow << view->TextMatrix(view->Rows() - 1, c);
    }
    QTEST(row2, "row2");
    QTEST(lastRow, "lastRow");
    // The view draws what TextMatrix reads.
    QCOMPARE(view->view()->model()->index(1, 1).data().toString(), row2.at(2));
}

QTEST_MAIN(tst_gridcontrol_store)
#include "tst_gridcontrol_store.moc"
