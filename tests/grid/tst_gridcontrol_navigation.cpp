// The grid outside its editor and the grid's commands: clicks and the mark column, the grid
// view's own keys, the hold on a blank mandatory cell, scrolling and focus, the pop-up menu,
// and the find box.
#include "gridtestsupport.h"

#include <PanelKestrin/beep.h>
#include <PanelKestrin/dialog.h>

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;

class tst_gridcontrol_navigation : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QStandardPaths::setTestModeEnabled(true);
        previousBeep = setBeepHandler([] {});
        rs = db.open(QStringLiteral("SELECT * FROM lines ORDER BY qty"));
        grid = makeGrid(*rs);
        grid->bShowMenu = true;
        view = GridInternals::grid(*grid);
        editor = GridInternals::editor(*grid);
    }
    void cleanup()
    {
        settle();
        grid.reset();
        setBeepHandler(previousBeep);
    }
    void initTestCase() { db.fillLines(5); }

    void clickAndMarkColumn();
    void gridViewKeys_data();
    void gridViewKeys();
    void blankMandatoryCellHolds();
    void scrollAndFocusHideTheEditor();
    void popupMenuRunsTheCommands();
    void find_data();
    void find();
    void findInAnEmptyGrid();

private:
    void click(int row, int col, Qt::MouseButton button = Qt::LeftButton)
    {
        QTableView *table = view->view();
        QTest::mouseClick(table->viewport(), button, {}, table->visualRect(table->model()->index(row - 1, col - 1)).center());
    }

    Database db;
    std::unique_ptr<Recordset> rs;
    std::unique_ptr<gridcontrol> grid;
    FlexGrid *view = nullptr;
    QLineEdit *editor = nullptr;
    std::function<void()> previousBeep;
};

void tst_gridcontrol_navigation::clickAndMarkColumn()
{
    QStringList events;
    connect(grid.get(), &gridcontrol::ColClick, grid.get(), [&](qint16 &iCol) { events << QStringLiteral("Col %1").arg(iCol); });
    connect(grid.get(), &gridcontrol::GridClick, grid.get(),
            [&](qint16 &iCol, qint16 &iRow) { events << QStringLiteral("Grid %1,%2").arg(iCol).arg(iRow); });
    grid->gColToFix = 2;
    grid->gValue = QStringLiteral("*");

    click(3, 2);
    QCOMPARE(events, QStringList({"Col 2", "Grid 2,3"})); // grid coordinates
    QCOMPARE(view->TextMatrix(3, 2), QStringLiteral("*"));
    QCOMPARE(grid->DataArray()(1, 2).toString(), QStringLiteral("X"));
    click(3, 2); // a second click unmarks: nothing shown, a blank stored
    QCOMPARE(view->TextMatrix(3, 2), QString());
    QCOMPARE(grid->DataArray()(1, 2).toString(), QStringLiteral(" "));
    click(3, 3);
    QCOMPARE(view->TextMatrix(3, 3), QStringLiteral("3")); // other columns do not toggle
}

// Keys pressed while the grid view itself has the focus.
void tst_gridcontrol_navigation::gridViewKeys_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<bool>("noAddRow");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QPoint>("cell");
    QTest::addColumn<int>("rows");

    QTest::newRow("Enter moves right") << QPoint(2, 2) << false << int(Qt::Key_Return) << 0 << QPoint(2, 3) << 6;
    QTest::newRow("Enter wraps") << QPoint(2, 7) << false << int(Qt::Key_Return) << 0 << QPoint(3, 1) << 6;
    QTest::newRow("Enter on the last cell adds") << QPoint(5, 7) << false << int(Qt::Key_Return) << 0 << QPoint(6, 1) << 7;
    QTest::newRow("Shift+Enter wraps up") << QPoint(3, 1) << false << int(Qt::Key_Return) << int(Qt::ShiftModifier)
                                          << QPoint(2, 7) << 6;
    QTest::newRow("Shift+Enter on the first cell") << QPoint(1, 1) << false << int(Qt::Key_Return)
                                                   << int(Qt::ShiftModifier) << QPoint(1, 1) << 6;
    QTest::newRow("nothing with NoAddRow") << QPoint(5, 7) << true << int(Qt::Key_Return) << 0 << QPoint(5, 7) << 6;
}

void tst_gridcontrol_navigation::gridViewKeys()
{
    QFETCH(QPoint, start);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(bool, noAddRow);
    grid->NoAddRow = noAddRow;
    view->setRow(start.x());
    view->setCol(start.y());
    int help = 0;
    connect(grid.get(), &gridcontrol::InvokeHelp, grid.get(), [&] { ++help; });
    QTest::keyClick(view->view(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QTest::keyClick(view->view(), Qt::Key_F1);
    QTEST(QPoint(view->Row(), view->Col()), "cell");
    QTEST(view->Rows(), "rows");
    QCOMPARE(help, grid->NoAddRow ? 0 : 1);
}

void tst_gridcontrol_navigation::blankMandatoryCellHolds()
{
    db.cn.Execute(QStringLiteral("CREATE TABLE m (code VARCHAR(4) NOT NULL, note VARCHAR(4))"));
    db.cn.Execute(QStringLiteral("INSERT INTO m VALUES ('A', NULL), ('B', NULL)"));
    auto rsm = db.open(QStringLiteral("SELECT * FROM m"));
    grid->setGridHeader(QStringLiteral("Code,Note"));
    grid->MakeStruct(rsm.get());
    grid->MakeGridStructure();
    grid->TopRow();
    editor->setText(QString()); // the user blanks the mandatory code
    click(2, 2);
    QVERIFY(!GridInternals::holdCell(*grid)); // the note may be blank
    view->setCol(1);
    editor->setText(QString());
    click(1, 1);
    QVERIFY(GridInternals::holdCell(*grid)); // a blank code holds the cell
    QTest::keyClick(editor, Qt::Key_Return); // Enter does not leave a held cell
    QCOMPARE(QPoint(view->Row(), view->Col()), QPoint(1, 1));
}

void tst_gridcontrol_navigation::scrollAndFocusHideTheEditor()
{
    grid->TopRow();
    QVERIFY(editor->isVisible());
    view->view()->verticalScrollBar()->setValue(2);
    QVERIFY(!editor->isVisible());

    // Focus entering the control shows the command buttons; leaving it hides them and the editor.
    QLineEdit outside;
    const auto activate = [](QWidget *window) {
        window->show();
        window->activateWindow();
        return QTest::qWaitForWindowActive(window);
    };
    QVERIFY(activate(&outside));
    QVERIFY(activate(grid.get()));
    grid->TopRow();
    for (auto *name : {"CmdGridAdd", "CmdGridDelete", "CmdGridFind"})
        QTRY_VERIFY(grid->findChild<QPushButton *>(QLatin1String(name))->isVisible());
    QVERIFY(activate(&outside));
    QTRY_VERIFY(!grid->findChild<QPushButton *>(QStringLiteral("CmdGridFind"))->isVisible());
    QVERIFY(!editor->isVisible());
}

void tst_gridcontrol_navigation::popupMenuRunsTheCommands()
{
    auto *popup = grid->findChild<QMenu *>(QStringLiteral("popup"));
    QStringList texts;
    for (QAction *action : popup->actions())
        texts << action->text();
    QCOMPARE(texts, QStringList({"&Add", "&Delete", "&Find"}));

    grid->TopRow();
    QTest::mouseClick(editor, Qt::RightButton);
    QTRY_VERIFY(popup->isVisible());
    popup->actions().at(1)->trigger(); // Delete the current row
    QCOMPARE(view->Rows(), 5);
    grid->bShowMenu = false; // then the commands do nothing
    popup->actions().at(1)->trigger();
    QCOMPARE(view->Rows(), 5);
    popup->close();
}

void tst_gridcontrol_navigation::find_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QPoint>("cell"); // (0, 0): no move

    QTest::newRow("prefix, any case") << "it003" << QPoint(3, 1);
    QTest::newRow("first match by rows then columns") << "item 2" << QPoint(2, 2);
    QTest::newRow("no value begins so") << "ZQ" << QPoint(0, 0);
    QTest::newRow("empty text matches the first value") << " " << QPoint(1, 1);
}

void tst_gridcontrol_navigation::find()
{
    QFETCH(QString, typed);
    QFETCH(QPoint, cell);
    view->setRow(4);
    view->setCol(3);
    grid->CmdGridFind_Click();
    auto *box = grid->findChild<QLineEdit *>(QStringLiteral("TxtFind"));
    QVERIFY(box->isVisible());
    QTest::keyClicks(box, typed);
    QCOMPARE(QPoint(view->Row(), view->Col()), cell.isNull() ? QPoint(4, 3) : cell);
    QVERIFY(!Dialog::current());
    QVERIFY(box->hasFocus() || !box->window()->isActiveWindow()); // the move leaves the focus in the box
    grid->pop_Click(0); // the next command hides the box
    QVERIFY(!box->isVisible());
}

void tst_gridcontrol_navigation::findInAnEmptyGrid()
{
    Database empty;
    empty.fillLines(0);
    auto rsEmpty = empty.open(QStringLiteral("SELECT * FROM lines"));
    grid->MakeStruct(rsEmpty.get());
    grid->CmdGridFind_Click();
    QTest::keyClicks(grid->findChild<QLineEdit *>(QStringLiteral("TxtFind")), QStringLiteral("A"));
    QVERIFY(Dialog::current());
    QCOMPARE(Dialog::current()->findChild<QLabel *>(QStringLiteral("Label1"))->text(),
             QStringLiteral("No Matching Value Found"));
    Dialog::current()->Timer1_Timer();
}

QTEST_MAIN(tst_gridcontrol_navigation)
#include "tst_gridcontrol_navigation.moc"
