// Thousands of random user actions and host calls on a real grid: typing, move keys, clicks,
// adds, deletes, finds, and on some runs the host's cell writes and its save trim (SaveLastCol)
// with deletes after it. After every step the store and the statuses have the same rows, the
// grid keeps at least one data row, every row on screen shows what the store holds for it, and
// nothing was thrown into the event loop.
//
// PK_GRID_RANDOM_STEPS sets the steps per run (default 4000); PK_GRID_RANDOM_SEED replaces
// every run's seed, to repeat or widen a run.
#include "gridtestsupport.h"

#include <PanelKestrin/errorreporter.h>

#include <QRandomGenerator>
#include <QTest>

using namespace PanelKestrin;
using namespace GridTest;

namespace {

int stepCount()
{
    bool ok = false;
    const int steps = qEnvironmentVariableIntValue("PK_GRID_RANDOM_STEPS", &ok);
    return ok && steps > 0 ? steps : 4000;
}

quint32 seedFor(quint32 rowSeed)
{
    bool ok = false;
    const quint32 seed = quint32(qEnvironmentVariable("PK_GRID_RANDOM_SEED").toULong(&ok));
    return ok ? seed : rowSeed;
}

} // namespace

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
    QTest::addColumn<QString>("fields");
    QTest::addColumn<bool>("hostCalls"); // the host's cell writes and SaveLastCol join in
    const QString lines = QStringLiteral("item, descr, qty, price, due");
    // A date first: an added row's first cell commits as "", so blank rows reach SaveLastCol.
    const QString dateFirst = QStringLiteral("due, item, qty, price, descr");
    QTest::newRow("open columns") << 20261121u << "" << "" << lines << false;
    QTest::newRow("rules") << 7u << "2,4" << "1,3" << lines << false;
    QTest::newRow("saves, open columns") << 20261123u << "" << "" << dateFirst << true;
    QTest::newRow("saves, rules") << 11u << "3" << "2" << dateFirst << true;
}

void tst_gridcontrol_random::randomActionsKeepTheGridConsistent()
{
    QFETCH(QString, disabled);
    QFETCH(QString, mandatory);
    QFETCH(QString, fields);
    QFETCH(bool, hostCalls);
    QFETCH(quint32, seed);
    seed = seedFor(seed);
    const int steps = stepCount();
    qInfo("seed %u, %d steps", seed, steps);
    QList<RuntimeError> reported;
    const ErrorReporter previous = setErrorReporter([&](const RuntimeError &e) { reported << e; });
    MessageLog messages;
    int hostCancels = 0;
    int trims = 0;

    LinesGrid lines(12, QStringLiteral("SELECT %1 FROM lines").arg(fields), 3000);
    auto &grid = lines.grid;
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

    FlexGrid *view = GridInternals::grid(*grid);
    QLineEdit *editor = GridInternals::editor(*grid);
    auto *find = grid->findChild<QLineEdit *>(QStringLiteral("TxtFind"));
    QRandomGenerator rng(seed);
    const Qt::Key moves[] = {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
                             Qt::Key_End, Qt::Key_F1, Qt::Key_Left, Qt::Key_Backspace};
    const QString typing = QStringLiteral("abcQ019.(&- ");
    const QStringList hostValues{QString(), QStringLiteral("HOST"), QStringLiteral("7"), QStringLiteral(" ")};
    QStringList recent; // the last actions, for the failure message

    for (int step = 0; step < steps; ++step) {
        const int action = int(rng.bounded(hostCalls ? 112 : 100));
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
        } else if (action < 100) {
            what = QStringLiteral("find");
            grid->CmdGridFind_Click();
            QTest::keyClicks(find, QString(typing.at(int(rng.bounded(4)))));
        } else if (action < 106) {
            // The host writes a cell, the blank row SaveLastCol left included.
            qint16 row = qint16(1 + rng.bounded(view->Rows() - 1));
            qint16 col = qint16(1 + rng.bounded(view->Cols() - 1));
            const QString value = hostValues.at(int(rng.bounded(hostValues.size())));
            what = QStringLiteral("host writes \"%1\" at %2,%3").arg(value).arg(row).arg(col);
            if (rng.bounded(2))
                grid->SetColumnValue(value, col, row);
            else
                grid->vSetGridRowColValue(row, col, value);
        } else {
            // The host saves: the trim, then often a delete, as a user tidying up would.
            what = QStringLiteral("SaveLastCol");
            const int before = grid->DataArray().UBound(2);
            grid->SaveLastCol();
            trims += grid->DataArray().UBound(2) < before;
            if (rng.bounded(2)) {
                what += QStringLiteral(", delete");
                if (rng.bounded(2))
                    view->setRow(1 + int(rng.bounded(view->Rows() - 1)));
                grid->GridRowDelete();
            }
        }
        recent << what;
        if (recent.size() > 8)
            recent.removeFirst();
        const QString context = QStringLiteral("seed %1, step %2 (%3)").arg(seed).arg(step).arg(recent.join(QStringLiteral("; ")));
        QVERIFY2(reported.isEmpty(), qPrintable(context + QStringLiteral(": ") + (reported.isEmpty() ? QString() : reported.first().Description())));
        QCOMPARE(grid->DataArray().UBound(2) + 1, grid->RowStatusArray().size());
        QVERIFY2(view->Rows() >= 2, qPrintable(context));
        if (!hostCalls)
            QVERIFY2(grid->DataArray().UBound(2) + 2 == view->Rows(), qPrintable(context));
        const QString mismatch = screenStoreMismatch(*grid);
        QVERIFY2(mismatch.isEmpty(), qPrintable(context + QStringLiteral(": ") + mismatch));
    }
    QVERIFY(hostCancels > 0);
    if (hostCalls)
        QVERIFY(trims > 0); // the runs do reach the row SaveLastCol leaves
    setErrorReporter(previous);
}

QTEST_MAIN(tst_gridcontrol_random)
#include "tst_gridcontrol_random.moc"
