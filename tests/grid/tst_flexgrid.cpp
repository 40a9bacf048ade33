#include <PanelKestrin/errorreporter.h>
#include <PanelKestrin/flexgrid.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QtTest>

#include <functional>
#include <memory>

using namespace PanelKestrin;

using GridAction = std::function<void(FlexGrid &)>;
Q_DECLARE_METATYPE(GridAction)

// A shown form with a 20 x 4 grid and a line edit that can take the focus from it. Every
// notification is logged with the current cell at the time it was raised.
class Form : public QWidget
{
public:
    FlexGrid *grid = new FlexGrid(this);
    QLineEdit *edit = new QLineEdit(this);
    QStringList log;

    Form()
    {
        grid->setGeometry(0, 0, 600, 300);
        edit->setGeometry(0, 310, 100, 20);
        grid->setRows(21);
        grid->setCols(5);
        const auto at = [this](const char *what) {
            return [this, what] { log << QStringLiteral("%1 %2,%3").arg(QLatin1String(what)).arg(grid->Row()).arg(grid->Col()); };
        };
        const auto mouse = [this](const char *what) {
            return [this, what](qint16 &Button, qint16 &, float &X, float &Y) {
                log << QStringLiteral("%1 %2 %3,%4 at %5,%6").arg(QLatin1String(what)).arg(Button).arg(grid->Row())
                           .arg(grid->Col()).arg(X).arg(Y);
            };
        };
        connect(grid, &FlexGrid::LeaveCell, grid, at("Leave"));
        connect(grid, &FlexGrid::EnterCell, grid, at("Enter"));
        connect(grid, &FlexGrid::Click, grid, at("Click"));
        connect(grid, &FlexGrid::MouseDown, grid, mouse("MouseDown"));
        connect(grid, &FlexGrid::MouseUp, grid, mouse("MouseUp"));
        connect(grid, &FlexGrid::Scroll, grid, [this] { log << QStringLiteral("Scroll"); });
        connect(grid, &FlexGrid::LostFocus, grid, [this] { log << QStringLiteral("LostFocus"); });
        connect(grid, &FlexGrid::KeyDown, grid, [this](qint16 &KeyCode, qint16 &Shift) {
            log << QStringLiteral("KeyDown %1 %2").arg(KeyCode).arg(Shift);
        });
    }
    // Closing the window takes the focus from the grid: nothing may be logged once the log is gone.
    ~Form() override { grid->disconnect(); }

    QTableView *view() const { return grid->view(); }
    QModelIndex cell(int row, int col) const { return view()->model()->index(row - 1, col - 1); }
    QPoint centre(int row, int col) const { return view()->visualRect(cell(row, col)).center(); }
    void click(int row, int col, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(view()->viewport(), button, {}, centre(row, col));
    }
    QPoint current() const { return QPoint(grid->Row(), grid->Col()); }
    // The view shows the grid's current cell, and only that cell is selected.
    bool viewInSync() const
    {
        const QModelIndex expected = grid->Row() && grid->Col() ? cell(grid->Row(), grid->Col()) : QModelIndex();
        const QModelIndexList selected = view()->selectionModel()->selectedIndexes();
        return view()->currentIndex() == expected
            && (expected.isValid() ? selected == QModelIndexList{expected} : selected.isEmpty());
    }
};

class tst_flexgrid : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void indexErrors_data();
    void indexErrors();
    void moves_data();
    void moves();
    void shapeChangesRaiseNothing_data();
    void shapeChangesRaiseNothing();
    void textInCellsAndHeaders();
    void topRowAndScroll();
    void cellGeometry_data();
    void cellGeometry();
    void mouseButtons_data();
    void mouseButtons();
    void headerClick_data();
    void headerClick();
    void lostFocus();
    void userEventErrorsAreReported_data();
    void userEventErrorsAreReported();
    void codeMovesPassHandlerErrorsOn();
    void millionRows();

private:
    std::unique_ptr<Form> form;
    QList<RuntimeError> reported;
};

void tst_flexgrid::init()
{
    reported.clear();
    setErrorReporter([this](const RuntimeError &e) { reported.append(e); });
    form = std::make_unique<Form>();
    form->show();
    form->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(form.get()));
    form->grid->setFocus();
    form->log.clear();
}

void tst_flexgrid::cleanup()
{
    form.reset();
    setErrorReporter({});
}

void tst_flexgrid::indexErrors_data()
{
    QTest::addColumn<GridAction>("action");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("description");
    const auto add = [](const char *name, GridAction action, int number, const char *description) {
        QTest::newRow(name) << action << number << QString::fromLatin1(description);
    };
    add("Rows 0", [](FlexGrid &g) { g.setRows(0); }, 381, "Invalid Rows value: 0 (1 or more)");
    add("Cols 0", [](FlexGrid &g) { g.setCols(0); }, 381, "Invalid Cols value: 0 (1 or more)");
    add("Row = Rows", [](FlexGrid &g) { g.setRow(21); }, 381, "Invalid Row value: 21 (0 To 20)");
    add("Col -1", [](FlexGrid &g) { g.setCol(-1); }, 381, "Invalid Col value: -1 (0 To 4)");
    add("TextMatrix", [](FlexGrid &g) { g.TextMatrix(21, 0); }, 381, "Invalid Row value: 21 (0 To 20)");
    add("setTextMatrix", [](FlexGrid &g) { g.setTextMatrix(0, 5, {}); }, 381, "Invalid Col value: 5 (0 To 4)");
    add("ColWidth", [](FlexGrid &g) { g.ColWidth(5); }, 381, "Invalid Col value: 5 (0 To 4)");
    add("ColAlignment code", [](FlexGrid &g) { g.setColAlignment(1, 10); }, 380, "Invalid ColAlignment value: 10 (0 To 9)");
    add("RemoveItem 0", [](FlexGrid &g) { g.RemoveItem(0); }, 381, "Invalid Row value: 0 (1 To 20)");
    add("RemoveItem Rows", [](FlexGrid &g) { g.RemoveItem(21); }, 381, "Invalid Row value: 21 (1 To 20)");
    add("fixed cells are cells", [](FlexGrid &g) { g.setTextMatrix(0, 0, {}); g.setRow(0); g.setCol(4); }, 0, "");
}

void tst_flexgrid::indexErrors()
{
    QFETCH(GridAction, action);
    QFETCH(int, number);
    QFETCH(QString, description);
    int caught = 0;
    try {
        action(*form->grid);
    } catch (const RuntimeError &e) {
        caught = e.Number();
        QCOMPARE(e.Description(), description);
        QCOMPARE(e.Source(), QStringLiteral("FlexGrid"));
    }
    QCOMPARE(caught, number);
    QCOMPARE(QPoint(form->grid->Rows(), form->grid->Cols()), QPoint(21, 5));
}

void tst_flexgrid::moves_data()
{
    QTest::addColumn<GridAction>("action");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QPoint>("cell");
    const auto key = [this](Qt::Key k) { return [this, k](FlexGrid &) { QTest::keyClick(form->view(), k); }; };
    // A handler sending the cell back from EnterCell, as the editable grid does with a refused cell.
    const auto sendBack = [](FlexGrid &g) {
        QObject::connect(&g, &FlexGrid::EnterCell, &g, [&g] {
            if (g.Row() == 3)
                g.setRow(1);
        });
    };
    QTest::newRow("Row") << GridAction([](FlexGrid &g) { g.setRow(3); }) << QStringList{"Leave 1,1", "Enter 3,1"}
                         << QPoint(3, 1);
    QTest::newRow("Col") << GridAction([](FlexGrid &g) { g.setCol(4); }) << QStringList{"Leave 1,1", "Enter 1,4"}
                         << QPoint(1, 4);
    QTest::newRow("same cell") << GridAction([](FlexGrid &g) { g.setRow(1); g.setCol(1); }) << QStringList{}
                               << QPoint(1, 1);
    QTest::newRow("fixed row") << GridAction([](FlexGrid &g) { g.setRow(0); })
                               << QStringList{"Leave 1,1", "Enter 0,1"} << QPoint(0, 1);
    QTest::newRow("click") << GridAction([this](FlexGrid &) { form->click(2, 3); })
                           << QStringList{"Leave 1,1", "Enter 2,3", "Click 2,3"} << QPoint(2, 3);
    QTest::newRow("Down") << GridAction(key(Qt::Key_Down)) << QStringList{"KeyDown 40 0", "Leave 1,1", "Enter 2,1"}
                          << QPoint(2, 1);
    // Modifier keys raise KeyDown of their own (Ctrl 17); the view scrolls as it moves.
    QTest::newRow("Ctrl+End") << GridAction([this](FlexGrid &) {
        QTest::keyClick(form->view(), Qt::Key_End, Qt::ControlModifier);
    }) << QStringList{"KeyDown 17 2", "KeyDown 35 2", "Scroll", "Leave 1,1", "Enter 20,4"} << QPoint(20, 4);
    QTest::newRow("KeyCode = 0 swallows") << GridAction([this](FlexGrid &g) {
        QObject::connect(&g, &FlexGrid::KeyDown, &g, [](qint16 &KeyCode, qint16 &) { KeyCode = 0; });
        QTest::keyClick(form->view(), Qt::Key_PageDown);
    }) << QStringList{"KeyDown 34 0"} << QPoint(1, 1);
    QTest::newRow("sent back from code") << GridAction([sendBack](FlexGrid &g) { sendBack(g); g.setRow(3); })
                                         << QStringList{"Leave 1,1", "Enter 3,1", "Leave 3,1", "Enter 1,1"}
                                         << QPoint(1, 1);
    QTest::newRow("sent back from a click") << GridAction([sendBack, this](FlexGrid &g) {
        sendBack(g);
        QTest::mousePress(form->view()->viewport(), Qt::LeftButton, {}, form->centre(3, 2));
        QVERIFY(form->viewInSync()); // already while the button is down
        QTest::mouseRelease(form->view()->viewport(), Qt::LeftButton, {}, form->centre(3, 2));
    }) << QStringList{"Leave 1,1", "Enter 3,2", "Leave 3,2", "Enter 1,2", "Click 1,2"} << QPoint(1, 2);
}

void tst_flexgrid::moves()
{
    QFETCH(GridAction, action);
    QFETCH(QStringList, log);
    QFETCH(QPoint, cell);
    action(*form->grid);
    form->log.removeIf([](const QString &line) { return line.startsWith("Mouse"); });
    QCOMPARE(form->log, log);
    QCOMPARE(form->current(), cell);
    QVERIFY(form->viewInSync());
    QVERIFY(reported.isEmpty());
}

void tst_flexgrid::shapeChangesRaiseNothing_data()
{
    QTest::addColumn<GridAction>("action");
    QTest::addColumn<QPoint>("cell");
    QTest::newRow("Rows below the row") << GridAction([](FlexGrid &g) { g.setRows(6); }) << QPoint(5, 3);
    QTest::newRow("Cols below the col") << GridAction([](FlexGrid &g) { g.setCols(2); }) << QPoint(8, 1);
    QTest::newRow("no data rows") << GridAction([](FlexGrid &g) { g.setRows(1); }) << QPoint(0, 3);
    QTest::newRow("remove the row") << GridAction([](FlexGrid &g) { g.RemoveItem(8); }) << QPoint(8, 3);
    QTest::newRow("remove a row above") << GridAction([](FlexGrid &g) { g.RemoveItem(2); }) << QPoint(8, 3);
    QTest::newRow("remove the last row") << GridAction([](FlexGrid &g) { g.setRows(9); g.RemoveItem(8); })
                                         << QPoint(7, 3);
}

void tst_flexgrid::shapeChangesRaiseNothing()
{
    QFETCH(GridAction, action);
    QFETCH(QPoint, cell);
    form->grid->setRow(8);
    form->grid->setCol(3);
    form->log.clear();
    action(*form->grid);
    QCOMPARE(form->log.filter(QRegularExpression("Leave|Enter")), QStringList());
    QCOMPARE(form->current(), cell);
    QVERIFY(form->viewInSync());
}

void tst_flexgrid::textInCellsAndHeaders()
{
    FlexGrid &g = *form->grid;
    const QAbstractItemModel *model = form->view()->model();
    for (int r = 0; r < g.Rows(); ++r)
        for (int c = 0; c < g.Cols(); ++c)
            g.setTextMatrix(r, c, QStringLiteral("%1.%2").arg(r).arg(c));
    QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), "0.2");
    QCOMPARE(model->headerData(2, Qt::Vertical).toString(), "3.0");
    QCOMPARE(form->cell(3, 2).data().toString(), "3.2");
    QCOMPARE(g.TextMatrix(0, 0), "0.0");
    g.setRow(3);
    g.setText(QStringLiteral("new"));
    QCOMPARE(form->cell(3, 1).data().toString(), "new");
    g.setCol(0);
    QCOMPARE(g.Text(), "3.0");
    // Removing a row moves the text below it up, the fixed column's too.
    g.RemoveItem(3);
    QCOMPARE(g.Rows(), 20);
    QCOMPARE(g.TextMatrix(2, 4), "2.4");
    QCOMPARE(g.TextMatrix(3, 4), "4.4");
    QCOMPARE(g.TextMatrix(19, 1), "20.1");
    QCOMPARE(model->headerData(2, Qt::Vertical).toString(), "4.0");
    QCOMPARE(g.Text(), "4.0");
    // Alignment codes: 0-8 fixed, 9 general (numbers right, other text left).
    g.setColAlignment(2, FlexGrid::flexAlignRightBottom);
    QCOMPARE(form->cell(1, 2).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignBottom));
    g.setTextMatrix(1, 3, QStringLiteral(" -12.50"));
    g.setTextMatrix(2, 3, QStringLiteral("12 boxes"));
    QCOMPARE(form->cell(1, 3).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
    QCOMPARE(form->cell(2, 3).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignLeft | Qt::AlignVCenter));
}

void tst_flexgrid::topRowAndScroll()
{
    FlexGrid &g = *form->grid;
    g.setRows(201);
    const int page = form->view()->viewport()->height() / form->view()->rowHeight(0);
    g.setTopRow(50);
    QCOMPARE(g.TopRow(), 50);
    QCOMPARE(form->log, QStringList{"Scroll"});
    g.setTopRow(500); // clamped at the last row, which may stand at the top
    QCOMPARE(g.TopRow(), 200);
    g.setTopRow(1);
    form->log.clear();
    g.setRow(120); // brought into view at the bottom, scrolling before EnterCell
    QCOMPARE(g.TopRow(), 120 - page + 1);
    QCOMPARE(form->log, (QStringList{"Leave 1,1", "Scroll", "Enter 120,1"}));
    form->log.clear();
    form->view()->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(form->log, QStringList{"Scroll"});
}

void tst_flexgrid::cellGeometry_data()
{
    QTest::addColumn<QPoint>("cell");
    QTest::addColumn<int>("width"); // ColWidth set first, in twips; -1 the default
    QTest::addColumn<int>("expected");
    QTest::newRow("scrolled out") << QPoint(1, 1) << 1000 << 1005; // whole pixels
    QTest::newRow("data cell") << QPoint(4, 3) << 1500 << 1500;
    QTest::newRow("header") << QPoint(0, 2) << -1 << 1200;
    QTest::newRow("marker") << QPoint(5, 0) << 450 << 450;
    QTest::newRow("corner") << QPoint(0, 0) << -1 << 300;
}

// At 96 DPI a pixel is 15 twips; every row is 285 twips high.
void tst_flexgrid::cellGeometry()
{
    QFETCH(QPoint, cell);
    QFETCH(int, width);
    QFETCH(int, expected);
    FlexGrid &g = *form->grid;
    const QTableView *view = form->view();
    g.setColWidth(cell.y(), width);
    QCOMPARE(g.ColWidth(cell.y()), expected);
    g.setTopRow(3);
    g.setRow(cell.x());
    g.setCol(cell.y());
    const QPoint viewport = view->viewport()->mapTo(&g, QPoint());
    const int fixedLeft = view->verticalHeader()->mapTo(&g, QPoint()).x();
    const int fixedTop = view->horizontalHeader()->mapTo(&g, QPoint()).y();
    const QRect data = view->visualRect(form->cell(qMax(cell.x(), 1), qMax(cell.y(), 1))).translated(viewport);
    QCOMPARE(g.CellLeft(), (cell.y() ? data.left() : fixedLeft) * 15);
    QCOMPARE(g.CellTop(), (cell.x() ? data.top() : fixedTop) * 15);
    QCOMPARE(g.CellWidth(), (cell.y() ? view->columnWidth(cell.y() - 1) : view->verticalHeader()->width()) * 15);
    QCOMPARE(g.CellWidth(), expected);
    QCOMPARE(g.CellHeight(), 285);
}

void tst_flexgrid::mouseButtons_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<QStringList>("log");
    // %1 stands for the pointer's position in twips relative to the grid.
    QTest::newRow("left") << int(Qt::LeftButton)
                          << QStringList{"MouseDown 1 1,1 at %1", "Leave 1,1", "Enter 2,3", "MouseUp 1 2,3 at %1",
                                         "Click 2,3"};
    QTest::newRow("right moves nothing") << int(Qt::RightButton)
                                         << QStringList{"MouseDown 2 1,1 at %1", "MouseUp 2 1,1 at %1"};
}

void tst_flexgrid::mouseButtons()
{
    QFETCH(int, button);
    QFETCH(QStringList, log);
    const QPoint inGrid = form->view()->viewport()->mapTo(form->grid, form->centre(2, 3));
    log.replaceInStrings("%1", QStringLiteral("%1,%2").arg(inGrid.x() * 15).arg(inGrid.y() * 15));
    form->click(2, 3, Qt::MouseButton(button));
    QCOMPARE(form->log, log);
    QVERIFY(form->viewInSync());
}

void tst_flexgrid::headerClick_data()
{
    QTest::addColumn<bool>("allow");
    QTest::addColumn<Qt::Orientation>("header");
    QTest::addColumn<QPoint>("cell");
    QTest::addColumn<int>("selected");
    QTest::newRow("row") << true << Qt::Vertical << QPoint(4, 1) << 4;
    QTest::newRow("column") << true << Qt::Horizontal << QPoint(1, 3) << 20;
    QTest::newRow("not allowed") << false << Qt::Vertical << QPoint(1, 1) << 1;
}

void tst_flexgrid::headerClick()
{
    QFETCH(bool, allow);
    QFETCH(Qt::Orientation, header);
    QFETCH(QPoint, cell);
    QFETCH(int, selected);
    form->grid->setAllowBigSelection(allow);
    const QHeaderView *h = header == Qt::Vertical ? form->view()->verticalHeader() : form->view()->horizontalHeader();
    const int section = header == Qt::Vertical ? 3 : 2;
    const QPoint at = header == Qt::Vertical ? QPoint(5, h->sectionViewportPosition(section) + 5)
                                             : QPoint(h->sectionViewportPosition(section) + 5, 5);
    QTest::mouseClick(h->viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(form->current(), cell);
    QCOMPARE(form->log.filter("Enter").size(), allow ? 1 : 0);
    QCOMPARE(form->view()->selectionModel()->selectedIndexes().size(), selected);
    QVERIFY(form->view()->selectionModel()->isSelected(form->cell(cell.x(), cell.y())));
}

void tst_flexgrid::lostFocus()
{
    QTRY_VERIFY(form->view()->hasFocus());
    form->edit->setFocus();
    QTRY_VERIFY(form->edit->hasFocus());
    QCOMPARE(form->log, QStringList{"LostFocus"});
}

void tst_flexgrid::userEventErrorsAreReported_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QPoint>("cell");
    // A failing LeaveCell stops the move; later failures leave it done.
    QTest::newRow("LeaveCell") << "Leave" << QPoint(1, 1);
    QTest::newRow("EnterCell") << "Enter" << QPoint(2, 3);
    QTest::newRow("MouseDown") << "MouseDown" << QPoint(2, 3);
    QTest::newRow("Click") << "Click" << QPoint(2, 3);
}

void tst_flexgrid::userEventErrorsAreReported()
{
    QFETCH(QString, failing);
    QFETCH(QPoint, cell);
    FlexGrid *g = form->grid;
    const auto fail = [failing](const char *signal) {
        if (failing == QLatin1String(signal))
            throw RuntimeError(ErrInvalidProcedureCall, QStringLiteral("handler failed"), QStringLiteral("host"));
    };
    QObject::connect(g, &FlexGrid::LeaveCell, g, [fail] { fail("Leave"); });
    QObject::connect(g, &FlexGrid::EnterCell, g, [fail] { fail("Enter"); });
    QObject::connect(g, &FlexGrid::MouseDown, g, [fail](qint16 &, qint16 &, float &, float &) { fail("MouseDown"); });
    QObject::connect(g, &FlexGrid::Click, g, [fail] { fail("Click"); });
    form->click(2, 3);
    QCOMPARE(reported.size(), 1);
    QCOMPARE(reported.first().Number(), int(ErrInvalidProcedureCall));
    QCOMPARE(reported.first().Source(), QStringLiteral("host"));
    QCOMPARE(form->current(), cell);
    QVERIFY(form->viewInSync());
}

// A Scroll handler runs inside Qt's scrolling; its failure still reaches the program that
// scrolled, once Qt has returned.
void tst_flexgrid::codeMovesPassHandlerErrorsOn()
{
    FlexGrid *g = form->grid;
    g->setRows(201);
    QObject::connect(g, &FlexGrid::Scroll, g, [] { throw RuntimeError(ErrOverflow); });
    QVERIFY_THROWS_EXCEPTION(RuntimeError, g->setTopRow(100));
    QCOMPARE(g->TopRow(), 100);
    QVERIFY_THROWS_EXCEPTION(RuntimeError, g->setRow(5));
    QCOMPARE(g->Row(), 5);
    QVERIFY(form->viewInSync());
    QVERIFY(reported.isEmpty());
}

// A million rows filled with Redraw off (no notification per cell), then a jump to the end and
// paging: the cost follows the visible rows, so this takes well under a second.
void tst_flexgrid::millionRows()
{
    FlexGrid &g = *form->grid;
    QSignalSpy changed(form->view()->model(), &QAbstractItemModel::dataChanged);
    g.setRedraw(false);
    QVERIFY(!form->view()->updatesEnabled());
    g.setCols(9);
    g.setRows(1000001);
    for (int r = 1; r < g.Rows(); ++r) {
        const QString text = QString::number(r);
        for (int c = 1; c < 9; ++c)
            g.setTextMatrix(r, c, text);
    }
    QCOMPARE(changed.size(), 0);
    g.setRedraw(true); // one notification for everything
    QVERIFY(form->view()->updatesEnabled());
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().at(1).value<QModelIndex>(), form->cell(1000000, 8));
    g.setTextMatrix(1, 1, QString());
    QCOMPARE(changed.size(), 2);
    g.setRow(g.Rows() - 1);
    QCOMPARE(g.TextMatrix(1000000, 8), "1000000");
    QVERIFY(g.TopRow() > 999980);
    QVERIFY(g.CellTop() > 0 && g.CellTop() < 300 * 15);
    const int firstRowTop = form->view()->viewport()->mapTo(&g, QPoint()).y() * 15;
    for (int row = 500000; row < 501000; row += 10) {
        g.setRow(row);
        g.setTopRow(g.Row());
        QCOMPARE(g.TopRow(), row);
        QCOMPARE(g.CellTop(), firstRowTop);
    }
    QVERIFY(form->viewInSync());
}

QTEST_MAIN(tst_flexgrid)
#include "tst_flexgrid.moc"
