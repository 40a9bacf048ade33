// The editable grid's costs, each against a baseline measured in the same run:
//  - load: Recordset::Open + MakeStruct of 100,000 rows x 8 columns on a shown grid against a raw
//    sqlite3_step copy into QVariants (budget 1.8x), and against a QTableWidget filled with the
//    same texts (the grid at least 1.5x faster); every timed load starts with the heap's free
//    pages handed back, so each pays for the memory it touches as a form's first load does;
//  - paging: Nextpage, LastRow/TopRow and a mixed sequence per call at 1,000,000 rows against
//    1,000 rows (budget 1.5x: the cost must not grow with the row count);
//  - 1,000,000 rows loaded once: Open + MakeStruct within 2.5 s, and the resident memory per
//    loaded cell (budget 80 bytes), split into the recordset's share and the data array's and
//    grid text's share.
#include "benchsupport.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/flexgrid.h>
#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/twips.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTemporaryDir>

#include <sqlite3.h>
#include <unistd.h>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>

using namespace PanelKestrin;
using BenchSupport::BenchFailure;
using BenchSupport::elapsedMs;
using BenchSupport::require;

namespace {

constexpr int kColumns = 8;
constexpr int kLoadRows = 100000;
constexpr int kSmallRows = 1000;
constexpr int kLargeRows = 1000000;
constexpr int kLoadRuns = 5;
constexpr int kReferenceRuns = 3;
constexpr int kPagingRuns = 15;
constexpr int kCalls = 40;
constexpr double kLoadBudget = 1.8;
constexpr double kReferenceSpeedup = 1.5; // the QTableWidget load over the grid load, at least
constexpr double kLargeLoadBudgetMs = 2500;
constexpr double kBytesPerCellBudget = 80;
constexpr double kPagingBudget = 1.5;
constexpr int kGridWidthTwips = 9600;
constexpr int kGridHeightTwips = 3600;
const char *const kCaptions = "Id,Name,Price,Due,Qty,Active,Ratio,Note";
const char *const kSelect = "SELECT * FROM bench";

// A temporary SQLite file holding the bench table, and a connection to it.
struct BenchTable {
    QString path;
    Connection connection;

    BenchTable(const QTemporaryDir &dir, int rows)
        : path(dir.filePath(QStringLiteral("bench_%1.sqlite").arg(rows)))
    {
        require(BenchSupport::createDatabase(path.toUtf8(), rows), QStringLiteral("cannot create %1").arg(path));
        connection.Open(QStringLiteral("Provider=SQLite;Data Source=") + path);
    }
};

// A shown, active grid of a fixed size in twips with its 8 captions set, ready for MakeStruct.
std::unique_ptr<gridcontrol> newGrid()
{
    return BenchSupport::shownGrid(kGridWidthTwips, kGridHeightTwips, kCaptions);
}

FlexGrid &viewOf(gridcontrol &grid)
{
    auto *view = grid.findChild<FlexGrid *>(QStringLiteral("flexgrid"));
    require(view != nullptr, QStringLiteral("the grid has no flexgrid child"));
    return *view;
}

// What the host does to load a grid: open, describe and load, and let queued work run.
void openAndLoad(gridcontrol &grid, Recordset &rs, Connection &connection)
{
    rs.Open(QString::fromLatin1(kSelect), &connection);
    grid.MakeStruct(&rs);
    QApplication::processEvents();
}

// The column rules, set after the timed part as a host sets them after MakeStruct.
void finishStructure(gridcontrol &grid, int rows)
{
    BenchSupport::finishStructure(grid);
    FlexGrid &view = viewOf(grid);
    require(view.Rows() == rows + 1 && view.Cols() == kColumns + 1,
            QStringLiteral("grid is %1 x %2 after loading %3 rows").arg(view.Rows()).arg(view.Cols()).arg(rows));
    require(view.TextMatrix(rows, 2) == QStringLiteral("Customer %1").arg(rows),
            QStringLiteral("last row shows \"%1\"").arg(view.TextMatrix(rows, 2)));
}

// Returns the heap's free pages to the system. Every timed load starts this way, so that each
// one pays for the fresh memory it touches, as the first load of a form does, whatever the
// previous run left free.
void releaseFreeHeap()
{
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
}

// ---- 1. Load ----------------------------------------------------------------------------------

struct LoadFigures {
    double rawMs = 0;
    double gridMs = 0;
    double referenceMs = 0;
};

// One raw read of the whole table; checks that every value came.
double timeRawRead(sqlite3 *db)
{
    releaseFreeHeap();
    QElapsedTimer timer;
    timer.start();
    const qsizetype values = BenchSupport::rawRead(db);
    const double ms = elapsedMs(timer);
    require(values == qsizetype(kLoadRows) * kColumns, QStringLiteral("raw read gave %1 values").arg(values));
    return ms;
}

// One grid load on a new grid. When texts is given it receives the loaded cell texts, row after
// row, for the reference table.
double timeGridLoad(BenchTable &table, QVector<QString> *texts)
{
    auto grid = newGrid();
    auto rs = std::make_unique<Recordset>();
    releaseFreeHeap();
    QElapsedTimer timer;
    timer.start();
    openAndLoad(*grid, *rs, table.connection);
    const double ms = elapsedMs(timer);
    finishStructure(*grid, kLoadRows);
    if (texts) {
        const FlexGrid &view = viewOf(*grid);
        texts->clear();
        texts->reserve(qsizetype(kLoadRows) * kColumns);
        for (int r = 1; r <= kLoadRows; ++r)
            for (int c = 1; c <= kColumns; ++c)
                texts->append(view.TextMatrix(r, c));
    }
    return ms;
}

// A plain item-based table filled with the same texts: one QTableWidgetItem per cell.
double timeReferenceTable(const QVector<QString> &texts)
{
    const QStringList captions = QString::fromLatin1(kCaptions).split(QLatin1Char(','));
    double best = std::numeric_limits<double>::max();
    for (int run = 0; run < kReferenceRuns; ++run) {
        auto table = std::make_unique<QTableWidget>();
        table->resize(TwipsToPixelsX(kGridWidthTwips, table.get()), TwipsToPixelsY(kGridHeightTwips, table.get()));
        table->show();
        QApplication::processEvents();
        releaseFreeHeap();
        QElapsedTimer timer;
        timer.start();
        table->setRowCount(kLoadRows);
        table->setColumnCount(kColumns);
        table->setHorizontalHeaderLabels(captions);
        qsizetype i = 0;
        for (int r = 0; r < kLoadRows; ++r)
            for (int c = 0; c < kColumns; ++c)
                table->setItem(r, c, new QTableWidgetItem(texts.at(i++)));
        QApplication::processEvents();
        best = std::min(best, elapsedMs(timer));
        require(table->item(kLoadRows - 1, 1)->text() == QStringLiteral("Customer %1").arg(kLoadRows),
                QStringLiteral("reference table's last row is wrong"));
    }
    return best;
}

// The raw read and the grid load take turns, so that other work on the machine slows both alike.
LoadFigures measureLoad(const QTemporaryDir &dir)
{
    BenchTable table(dir, kLoadRows);
    sqlite3 *db = nullptr;
    sqlite3_open_v2(table.path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    const auto closeRaw = qScopeGuard([db] { sqlite3_close(db); });
    LoadFigures figures;
    figures.rawMs = figures.gridMs = std::numeric_limits<double>::max();
    QVector<QString> texts;
    for (int run = 0; run < kLoadRuns; ++run) {
        figures.rawMs = std::min(figures.rawMs, timeRawRead(db));
        figures.gridMs = std::min(figures.gridMs, timeGridLoad(table, run == 0 ? &texts : nullptr));
    }
    figures.referenceMs = timeReferenceTable(texts);
    return figures;
}

// ---- 2. Paging and 3. memory --------------------------------------------------------------

// Resident set size of this process in bytes.
qint64 residentBytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    require(statm.open(QIODevice::ReadOnly), QStringLiteral("cannot read /proc/self/statm"));
    const QList<QByteArray> fields = statm.readAll().split(' ');
    require(fields.size() > 1, QStringLiteral("unexpected /proc/self/statm"));
    return fields.at(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

struct LoadedGrid {
    std::unique_ptr<BenchTable> table;
    std::unique_ptr<gridcontrol> grid;
    std::unique_ptr<Recordset> rs;
    qint32 pageSize = 0;
};

struct MemoryFigures {
    qint64 recordsetBytes = 0;
    qint64 gridBytes = 0;
    double openMs = 0;
    double makeStructMs = 0;
};

// Loads a grid from a table of rows rows, measuring the resident memory the recordset and then
// MakeStruct add.
LoadedGrid loadForPaging(const QTemporaryDir &dir, int rows, MemoryFigures *memory)
{
    LoadedGrid loaded;
    loaded.table = std::make_unique<BenchTable>(dir, rows);
    loaded.grid = newGrid();
    loaded.rs = std::make_unique<Recordset>();
    // Freed heap goes back first, so that the figures count only what the load holds.
    releaseFreeHeap();
    const qint64 before = residentBytes();
    QElapsedTimer timer;
    timer.start();
    loaded.rs->Open(QString::fromLatin1(kSelect), &loaded.table->connection);
    const double openMs = elapsedMs(timer);
    const qint64 afterOpen = residentBytes();
    timer.restart();
    loaded.grid->MakeStruct(loaded.rs.get());
    QApplication::processEvents();
    const double makeStructMs = elapsedMs(timer);
    const qint64 afterLoad = residentBytes();
    finishStructure(*loaded.grid, rows);
    if (memory)
        *memory = MemoryFigures{afterOpen - before, afterLoad - afterOpen, openMs, makeStructMs};
    // One page is the grid's height in rows of 285 twips, as MakeStruct computed it.
    loaded.pageSize = PixelsToTwipsY(loaded.grid->height(), loaded.grid.get()) / FlexGrid::DefaultRowHeight;
    require(loaded.pageSize > 0 && 1 + qint64(kCalls) * loaded.pageSize < rows,
            QStringLiteral("%1 pages of %2 rows do not fit %3 rows").arg(kCalls).arg(loaded.pageSize).arg(rows));
    return loaded;
}

// Microseconds per call of each sequence, each sequence starting from the top: the call alone,
// and the call with the events it leaves queued (layout and repaint) run after it.
constexpr int kSequences = 3;
struct PagingTimes {
    std::array<double, 2 * kSequences> perCallUs{};
};
const char *const kTimingNames[2 * kSequences] = {
    "Nextpage from the top", "  with repaint", "LastRow/TopRow alternating", "  with repaint",
    "mixed page and end moves", "  with repaint"};

void timeCalls(gridcontrol &grid, const std::function<void(int)> &call, PagingTimes &times, int sequence)
{
    grid.TopRow();
    QApplication::processEvents();
    qint64 callNs = 0, totalNs = 0;
    QElapsedTimer timer;
    for (int k = 0; k < kCalls; ++k) {
        timer.start();
        call(k);
        callNs += timer.nsecsElapsed();
        QApplication::processEvents();
        totalNs += timer.nsecsElapsed();
    }
    times.perCallUs[2 * sequence] = callNs / 1e3 / kCalls;
    times.perCallUs[2 * sequence + 1] = totalNs / 1e3 / kCalls;
}

PagingTimes timePaging(LoadedGrid &loaded)
{
    gridcontrol &grid = *loaded.grid;
    FlexGrid &view = viewOf(grid);
    PagingTimes times;
    timeCalls(grid, [&](int) { grid.Nextpage(); }, times, 0);
    require(view.Row() == 1 + kCalls * loaded.pageSize && view.TopRow() == view.Row(),
            QStringLiteral("Nextpage stopped at row %1, top row %2").arg(view.Row()).arg(view.TopRow()));
    timeCalls(
        grid,
        [&](int k) {
            if (k % 2 == 0)
                grid.LastRow();
            else
                grid.TopRow();
        },
        times, 1);
    require(view.Row() == 1, QStringLiteral("TopRow left row %1").arg(view.Row()));
    timeCalls(
        grid,
        [&](int k) {
            switch (k % 8) {
            case 0: case 1: case 7: grid.Nextpage(); break;
            case 2: case 4: case 5: grid.Prevpage(); break;
            case 3: grid.LastRow(); break;
            default: grid.TopRow(); break;
            }
        },
        times, 2);
    return times;
}

double bytesPerCell(qint64 bytes, int rows)
{
    return double(bytes) / (double(rows) * kColumns);
}

int run(const QTemporaryDir &dir)
{
    bool withinBudget = true;
    const auto verdict = [&withinBudget](double ratio, double budget) {
        withinBudget = withinBudget && ratio <= budget;
        return ratio <= budget ? "within budget" : "OVER BUDGET";
    };

    const LoadFigures load = measureLoad(dir);
    std::printf("bench_grid: load of %d rows x %d columns, best of %d (reference best of %d)\n", kLoadRows, kColumns,
                kLoadRuns, kReferenceRuns);
    std::printf("  (a) raw sqlite3_step copy into QVariants          %9.1f ms\n", load.rawMs);
    std::printf("  (b) Recordset::Open + MakeStruct on a shown grid  %9.1f ms\n", load.gridMs);
    std::printf("  (c) QTableWidget, one item per cell (reference)   %9.1f ms\n", load.referenceMs);
    const double loadRatio = load.gridMs / load.rawMs;
    std::printf("  b/a %.2f (budget %.1f): %s\n", loadRatio, kLoadBudget, verdict(loadRatio, kLoadBudget));
    const double speedup = load.referenceMs / load.gridMs;
    withinBudget = withinBudget && speedup >= kReferenceSpeedup;
    std::printf("  c/b %.2f (budget at least %.1f): %s\n", speedup, kReferenceSpeedup,
                speedup >= kReferenceSpeedup ? "within budget" : "OVER BUDGET");
    std::fflush(stdout);

    MemoryFigures memory;
    LoadedGrid large = loadForPaging(dir, kLargeRows, &memory);
    LoadedGrid small = loadForPaging(dir, kSmallRows, nullptr);
    const double largeLoadMs = memory.openMs + memory.makeStructMs;
    std::printf("bench_grid: %d rows x %d columns loaded once: Open %.0f ms, MakeStruct %.0f ms\n", kLargeRows,
                kColumns, memory.openMs, memory.makeStructMs);
    std::printf("  total %.0f ms (budget %.0f ms): %s\n", largeLoadMs, kLargeLoadBudgetMs,
                verdict(largeLoadMs, kLargeLoadBudgetMs));
    const double cellBytes = bytesPerCell(memory.recordsetBytes + memory.gridBytes, kLargeRows);
    std::printf("  resident memory per cell: %.1f bytes (recordset %.1f, data array and grid text %.1f)"
                " (budget %.0f): %s\n",
                cellBytes, bytesPerCell(memory.recordsetBytes, kLargeRows), bytesPerCell(memory.gridBytes, kLargeRows),
                kBytesPerCellBudget, verdict(cellBytes, kBytesPerCellBudget));
    std::fflush(stdout);

    // The two sizes take turns, so that drift in the machine's speed hits both alike.
    PagingTimes bestSmall, bestLarge;
    bestSmall.perCallUs.fill(std::numeric_limits<double>::max());
    bestLarge.perCallUs.fill(std::numeric_limits<double>::max());
    for (int r = 0; r < kPagingRuns; ++r) {
        const PagingTimes s = timePaging(small);
        const PagingTimes l = timePaging(large);
        for (size_t i = 0; i < s.perCallUs.size(); ++i) {
            bestSmall.perCallUs[i] = std::min(bestSmall.perCallUs[i], s.perCallUs[i]);
            bestLarge.perCallUs[i] = std::min(bestLarge.perCallUs[i], l.perCallUs[i]);
        }
    }
    std::printf("bench_grid: paging, %d calls per sequence, page %d rows, best of %d, per call\n", kCalls,
                large.pageSize, kPagingRuns);
    std::printf("  %-28s %12s %12s %8s\n", "sequence", "1k rows", "1M rows", "1M/1k");
    for (size_t i = 0; i < bestSmall.perCallUs.size(); ++i) {
        const double ratio = bestLarge.perCallUs[i] / bestSmall.perCallUs[i];
        std::printf("  %-28s %9.1f us %9.1f us %8.2f (budget %.1f): %s\n", kTimingNames[i], bestSmall.perCallUs[i],
                    bestLarge.perCallUs[i], ratio, kPagingBudget, verdict(ratio, kPagingBudget));
    }
    return withinBudget ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    return BenchSupport::runWidgetBenchmark(argc, argv, run);
}
