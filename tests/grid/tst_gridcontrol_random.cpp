// Thousands of random user actions on a real grid: typing, move keys, clicks, adds, deletes and
// finds. After every step the store and the statuses have the same rows, the grid keeps at
// least one data row, and nothing was thrown into the event loop.
#include "gridtestsupport.h"

#include <PanelKestrin/errorreporter.h>

#include <QRandomGenerator>
#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;

class tst_gridcontrol_random : public QObject
{
    Q_OBJECT

private slots:
    void init() { QStandardPaths::setTestModeEnabled(true); }
    void cleanup() { settle(); }
    void randomActionsKeepTheGridConsistent_data();
    void randomActionsKeepTheGridConsistent();
};

void tst_gridcontrol_random::randomActionsKeepTheGridConsistent_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<QString>("disabled");
    QTest::addColumn<QString>("mandatory");
    QTest::newRow("open columns") << 20261121u << "" << "";
    QTest::newRow("rules") << 7u << "2,4" << "1,3";
}

void tst_gridcontrol_random::randomActionsKeepTheGridConsistent()
{
    QFETCH(quint32, seed);
    QFETCH(QString, disabled);
    QFETCH(QString, mandatory);
    QList<RuntimeError> reported;
    const ErrorReporter previous = setErrorReporter([&](const RuntimeError &e) { reported << e; });
    MessageLog messages;
    int hostCancels = 0;

    Database db;
    db.fillLines(12);
    auto rs = db.open(QStringLiteral("SELECT item, descr, qty, price, due FROM lines"));
    auto grid = makeGrid(*rs, 3000);
    grid->bShowMenu = true;
    grid->gColToFix = 5;
    grid->gValue = QStringLiteral("*");
    grid->setDisableCol(disabled);
    grid->setMandatoryCol(mandatory);
    grid->MakeGridStructure();
    // A host that refuses some values, and some new rows.
    connect(grid.get(), &gridcontrol::ValidateRow, grid.get(), [&](qint32 &, qint16 &, QVariant &value, bool &Cancel) {
        Cancel = value.toString().startsWith(QLatin1Char('Q'));
        hostCancels += Cancel;
    });
    connect(grid.get(), &gridcontrol::RowLevelValidate, grid.get(),
            [&](qint32 &Row, bool &Cancel) { Cancel = Row % 7 == 6; });

    FlexGrid *view = gridcontrolAccess::grid(*grid);
    QLineEdit *editor = gridcontrolAccess::editor(*grid);
    auto *find = grid->findChild<QLineEdit *>(QStringLiteral("TxtFind"));
    QRandomGenerator rng(seed);
    const Qt::Key moves[] = {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
                             Qt::Key_End, Qt::Key_F1, Qt::Key_Left, Qt::Key_Backspace};
    const QString typing = QStringLiteral("abcQ019.(&- ");

    for (int step = 0; step < 3000; ++step) {
        const int action = int(rng.bounded(100));
        QString what;
        if (action < 35) {
            const QChar c = typing.at(int(rng.bounded(typing.size())));
            what = QStringLiteral("type %1").arg(c);
            QTest::keyClick(editor, c.toLatin1());
        } else if (action < 65) {
            const Qt::Key key = moves[rng.bounded(int(std::size(moves)))];
            const Qt::KeyboardModifiers mods = rng.bounded(4) == 0 ? Qt::ShiftModifier : Qt::NoModifier;
            what = QStringLiteral("key %1 %2").arg(key).arg(mods);
            QTest::keyClick(rng.bounded(5) == 0 ? static_cast<QWidget *>(view->view()) : editor, key, mods);
        } else if (action < 80) {
            const int row = 1 + int(rng.bounded(view->Rows() - 1));
            const int col = 1 + int(rng.bounded(view->Cols() - 1));
            what = QStringLiteral("click %1,%2").arg(row).arg(col);
            QTableView *table = view->view();
            table->scrollTo(table->model()->index(row - 1, col - 1));
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                              table->visualRect(table->model()->index(row - 1, col - 1)).center());
        } else if (action < 88) {
            what = QStringLiteral("add");
            if (rng.bounded(2))
                grid->GridRowAddnew();
            else
                grid->pop_Click(0); // the add button's and the menu's path
        } else if (action < 95) {
            what = QStringLiteral("delete");
            grid->GridRowDelete();
        } else {
            what = QStringLiteral("find");
            grid->CmdGridFind_Click();
            QTest::keyClicks(find, QString(typing.at(int(rng.bounded(4)))));
        }
        const QString context = QStringLiteral("step %1 (%2)").arg(step).arg(what);
        QVERIFY2(reported.isEmpty(), qPrintable(context + QStringLiteral(": ") + (reported.isEmpty() ? QString() : reported.first().Description())));
        QCOMPARE(grid->DataArray().UBound(2) + 1, grid->RowStatusArray().size());
        QVERIFY2(view->Rows() >= 2, qPrintable(context));
        QVERIFY2(grid->DataArray().UBound(2) + 2 == view->Rows(), qPrintable(context));
    }
    QVERIFY(hostCancels > 0);
    setErrorReporter(previous);
}

QTEST_MAIN(tst_gridcontrol_random)
#include "tst_gridcontrol_random.moc"
