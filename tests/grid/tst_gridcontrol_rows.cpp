// Rows: removing a row keeps the store, the statuses and the grid aligned and never leaves the
// grid without a row; adding one checks the last row first; the trim before a save.
#include "data/datatestsupport.h"
#include "gridtestsupport.h"

#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;
using DataTest::capture;

class tst_gridcontrol_rows : public QObject
{
    Q_OBJECT

private slots:
    void init() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { settle(); }

    void removeRow_data();
    void removeRow();
    void addRow_data();
    void addRow();
    void saveLastColDropsTrailingBlankRow_data();
    void saveLastColDropsTrailingBlankRow();
    void saveLastColHeldCell();
    void editsAfterSaveLastColReachTheStore_data();
    void editsAfterSaveLastColReachTheStore();
    void resetColRow();
};

void tst_gridcontrol_rows::removeRow_data()
{
    QTest::addColumn<QStringList>("statuses");
    QTest::addColumn<int>("removed"); // grid row
    QTest::addColumn<QStringList>("statusesAfter");
    QTest::addColumn<int>("rowsAfter");
    QTest::addColumn<int>("currentAfter");

    QTest::newRow("middle row") << QStringList{"", "E", "A"} << 2 << QStringList{"", "A"} << 3 << 2;
    QTest::newRow("first row") << QStringList{"E", "", "A"} << 1 << QStringList{"", "A"} << 3 << 1;
    QTest::newRow("last of four") << QStringList{"", "", "E", "A"} << 4 << QStringList{"", "", "E"} << 4 << 3;
    QTest::newRow("only row") << QStringList{"E"} << 1 << QStringList{"A"} << 2 << 1;
}

void tst_gridcontrol_rows::removeRow()
{
    QFETCH(QStringList, statuses);
    QFETCH(int, removed);
    QFETCH(int, rowsAfter);
    LinesGrid lines(int(statuses.size()), QStringLiteral("SELECT * FROM lines ORDER BY qty"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);
    grid->bShowMenu = true;
    view->setRow(removed); // commits the cell left, so the statuses are set after the move
    GridInternals::statuses(*grid) = statuses;
    const QString below = removed < int(statuses.size()) ? view->TextMatrix(removed + 1, 1) : QString();

    grid->GridRowDelete();
    QTEST(grid->RowStatusArray(), "statusesAfter");
    QCOMPARE(view->Rows(), rowsAfter);
    QCOMPARE(grid->DataArray().UBound(2), rowsAfter - 2);
    QTEST(view->Row(), "currentAfter");
    QCOMPARE(view->Col(), 1);
    if (rowsAfter == 2 && statuses.size() == 1) {
        QCOMPARE(view->TextMatrix(1, 1), QString()); // the only row is emptied, not removed
        QVERIFY(isEmpty(grid->DataArray()(0, 0)));
    } else if (!below.isEmpty()) {
        QCOMPARE(view->TextMatrix(removed, 1), below);
        // The rows below were re-read from the grid's text: numbers come back as text.
        QCOMPARE(grid->DataArray()(2, removed - 1), QVariant(QString::number(removed + 1)));
    }
    QCOMPARE(capture([&] { GridInternals::removeRow(*grid, rowsAfter); }).number, int(ErrInvalidGridIndex));
    QCOMPARE(grid->DataArray().UBound(2), rowsAfter - 2); // a bad row changes nothing
}

// The add command on a grid whose last row is set up as given (item, qty, price).
void tst_gridcontrol_rows::addRow_data()
{
    QTest::addColumn<QVariantList>("lastRow");
    QTest::addColumn<QString>("mandatory");
    QTest::addColumn<bool>("hostCancels");
    QTest::addColumn<bool>("added");

    QTest::newRow("row with data") << QVariantList{"IT1", 2, 3.5} << "" << false << true;
    QTest::newRow("blank row") << QVariantList{"  ", 0, QVariant()} << "" << false << false;
    QTest::newRow("mandatory number zero") << QVariantList{"IT1", 0, 3.5} << "2" << false << false;
    QTest::newRow("mandatory filled") << QVariantList{"IT1", 1, 0} << "1,2" << false << true;
    QTest::newRow("host refuses") << QVariantList{"IT1", 2, 3.5} << "" << true << false;
}

void tst_gridcontrol_rows::addRow()
{
    QFETCH(QVariantList, lastRow);
    QFETCH(bool, hostCancels);
    QFETCH(bool, added);
    QFETCH(QString, mandatory);
    LinesGrid lines(2, QStringLiteral("SELECT item, qty, price FROM lines ORDER BY qty"));
    auto &grid = lines.grid;
    grid->bShowMenu = true;
    grid->setMandatoryCol(mandatory);
    grid->MakeGridStructure();
    for (int c = 0; c < lastRow.size(); ++c)
        grid->SetColumnValue(lastRow.at(c), qint16(c + 1), 2);
    int validated = 0, afterAdd = 0;
    connect(grid.get(), &gridcontrol::RowLevelValidate, grid.get(), [&](qint32 &, bool &Cancel) {
        ++validated;
        Cancel = hostCancels;
    });
    connect(grid.get(), &gridcontrol::GridAfterRowAdd, grid.get(), [&] { ++afterAdd; });
    FlexGrid *view = GridInternals::grid(*grid);

    grid->GridRowAddnew();
    QCOMPARE(afterAdd, added ? 1 : 0);
    QCOMPARE(view->Rows(), added ? 4 : 3);
    QCOMPARE(grid->RowStatusArray().size(), added ? 3 : 2);
    QCOMPARE(grid->DataArray().UBound(2), added ? 2 : 1);
    if (added) {
        QCOMPARE(grid->RowStatusArray().last(), QStringLiteral("A"));
        QCOMPARE(view->Row(), 3);
        QCOMPARE(view->Col(), 1);
        QCOMPARE(view->TextMatrix(3, 0), QStringLiteral(">"));
        QCOMPARE(GridInternals::editor(*grid)->text(), QString());
    }
    grid->bShowMenu = false; // the commands are offered only with the menu
    grid->GridRowAddnew();
    QCOMPARE(view->Rows(), added ? 4 : 3);
}

void tst_gridcontrol_rows::saveLastColDropsTrailingBlankRow_data()
{
    QTest::addColumn<QVariant>("blankValue");
    QTest::newRow("empty text") << QVariant(QString());
    QTest::newRow("empty values") << QVariant();
}

void tst_gridcontrol_rows::saveLastColDropsTrailingBlankRow()
{
    QFETCH(QVariant, blankValue);
    LinesGrid lines(2, QStringLiteral("SELECT item, qty FROM lines"));
    auto &grid = lines.grid;
    GridInternals::statuses(*grid)[1] = QStringLiteral("A");
    for (qint16 c = 1; c <= 2; ++c)
        grid->SetColumnValue(blankValue, c, 2);

    QVERIFY(grid->SaveLastCol());
    QCOMPARE(grid->DataArray().UBound(2), 0);
    // Saving commits the current cell first, so its row counts as edited.
    QCOMPARE(grid->RowStatusArray(), QStringList{QStringLiteral("E")});
    QCOMPARE(GridInternals::grid(*grid)->Rows(), 3); // the view keeps its row

    // A row with data is kept; a grid of one blank row reports its error and stays.
    QVERIFY(grid->SaveLastCol());
    QCOMPARE(grid->DataArray().UBound(2), 0);
    Database empty;
    empty.fillLines(0);
    auto rsEmpty = empty.open(QStringLiteral("SELECT due, urgent FROM lines")); // an empty date commits as ""
    auto blankGrid = makeGrid(*rsEmpty);
    MessageLog log;
    QVERIFY(blankGrid->SaveLastCol());
    QCOMPARE(log.prompts, QStringList{QStringLiteral("Error Found in Cformdeck")});
    QCOMPARE(blankGrid->DataArray().UBound(2), 0);
}

void tst_gridcontrol_rows::saveLastColHeldCell()
{
    LinesGrid lines(2, QStringLiteral("SELECT item, qty FROM lines"));
    auto &grid = lines.grid;
    connect(grid.get(), &gridcontrol::ValidateRow, grid.get(),
            [](qint32 &, qint16 &, QVariant &, bool &Cancel) { Cancel = true; });
    QLineEdit *editor = GridInternals::editor(*grid);
    editor->setText(QStringLiteral("REFUSED"));
    editor->hide();

    QVERIFY(!grid->SaveLastCol());
    QVERIFY(editor->isVisible());
    QCOMPARE(grid->DataArray()(0, 0).toString(), QStringLiteral("IT001"));
}

// SaveLastCol leaves a blank grid row without a data row. Whatever the user or the host does
// next, the store keeps up with the screen.
void tst_gridcontrol_rows::editsAfterSaveLastColReachTheStore_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QStringList>("items");    // the store's first column afterwards
    QTest::addColumn<QStringList>("statuses");
    QTest::addColumn<int>("rows");             // the grid's Rows afterwards

    QTest::newRow("delete the blank row") << "delete" << QStringList{"IT001", "IT002"} << QStringList{"", ""} << 3;
    QTest::newRow("delete a row above it") << "delete first" << QStringList{"IT002"} << QStringList{""} << 3;
    QTest::newRow("type into the blank row") << "type" << QStringList{"IT001", "IT002", "NEW"}
                                             << QStringList{"", "", "A"} << 4;
    QTest::newRow("type, then delete the row") << "type and delete" << QStringList{"IT001", "IT002"}
                                               << QStringList{"", ""} << 3;
    QTest::newRow("add a row") << "add" << QStringList{"IT001", "IT002", ""} << QStringList{"", "", "A"} << 4;
    QTest::newRow("host writes the blank row") << "host" << QStringList{"IT001", "IT002", "HOST"}
                                               << QStringList{"", "", "A"} << 4;
    QTest::newRow("save again") << "save" << QStringList{"IT001", "IT002"} << QStringList{"", ""} << 4;
}

void tst_gridcontrol_rows::editsAfterSaveLastColReachTheStore()
{
    QFETCH(QString, action);
    // The date column first: the added row's open cell commits as "", so the row stays blank.
    LinesGrid lines(2, QStringLiteral("SELECT due, item, qty FROM lines ORDER BY qty"));
    auto &grid = lines.grid;
    grid->bShowMenu = true;
    FlexGrid *view = GridInternals::grid(*grid);
    QLineEdit *editor = GridInternals::editor(*grid);
    grid->GridRowAddnew();
    QVERIFY(grid->SaveLastCol());
    QCOMPARE(view->Rows(), 4);
    QCOMPARE(grid->DataArray().UBound(2), 1);
    QCOMPARE(view->Row(), 3);

    if (action == QLatin1String("delete")) {
        grid->GridRowDelete();
    } else if (action == QLatin1String("delete first")) {
        view->setRow(1);
        grid->GridRowDelete();
    } else if (action.startsWith(QLatin1String("type"))) {
        QTest::keyClick(editor, Qt::Key_Return);
        QTest::keyClicks(editor, QStringLiteral("new"));
        QTest::keyClick(editor, Qt::Key_Return);
        if (action.endsWith(QLatin1String("delete"))) {
            view->setRow(3);
            grid->GridRowDelete();
        }
    } else if (action == QLatin1String("add")) {
        view->setRow(1);
        grid->GridRowAddnew();
        QCOMPARE(view->Row(), 3); // the new row is the blank one already on screen
    } else if (action == QLatin1String("host")) {
        grid->SetColumnValue(QStringLiteral("HOST"), 2, 3);
    } else if (action == QLatin1String("save")) {
        QVERIFY(grid->SaveLastCol());
        QVERIFY(grid->SaveLastCol());
    }

    QStringList items;
    for (int r = 0; r <= grid->DataArray().UBound(2); ++r)
        items << Trim(CStr(grid->DataArray()(1, r)));
    QTEST(items, "items");
    QTEST(grid->RowStatusArray(), "statuses");
    QTEST(view->Rows(), "rows");
    QCOMPARE(screenStoreMismatch(*grid), QString());
}

void tst_gridcontrol_rows::resetColRow()
{
    LinesGrid lines(3, QStringLiteral("SELECT * FROM lines ORDER BY qty"));
    auto &grid = lines.grid;
    FlexGrid *view = GridInternals::grid(*grid);
    view->setCol(4);
    int validated = 0;
    connect(grid.get(), &gridcontrol::ValidateRow, grid.get(), [&] { ++validated; });

    QVERIFY(!grid->ResetColRow());
    QCOMPARE(view->Row(), 3);
    QCOMPARE(view->Col(), 1);
    QCOMPARE(GridInternals::editor(*grid)->text(), QStringLiteral("IT003"));
    QCOMPARE(validated, 0); // the control's own move is not validated
}

QTEST_MAIN(tst_gridcontrol_rows)
#include "tst_gridcontrol_rows.moc"
