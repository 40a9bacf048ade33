#pragma once

// What the benchmarks share: the table they read, the raw reading loop they compare against,
// best-of-N timing, the failure a benchmark raises when a measured step went wrong, and the
// grid a host shows before loading it.

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>
#include <QtGlobal>

#include <functional>
#include <memory>
#include <stdexcept>

class QTemporaryDir;
struct sqlite3;

namespace PanelKestrin {
class gridcontrol;
}

namespace BenchSupport {

// Creates the SQLite file at path with table bench of the given number of rows and 8 columns
// (id, name, price, due, qty, active, ratio, note: integers, doubles and texts). Reports an
// error on stderr and returns false when it cannot.
bool createDatabase(const QByteArray &path, int rows);

// The raw read of SELECT * FROM bench: every value of every row copied into a QVariant of the
// matching type. Returns the number of values read.
qsizetype rawRead(sqlite3 *db);

// The shortest of runs runs of work, in milliseconds.
double bestOfMs(int runs, const std::function<void()> &work);

// A failed check of what a measured step produced: the figures would mean nothing.
struct BenchFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline void require(bool condition, const QString &what)
{
    if (!condition)
        throw BenchFailure(what.toStdString());
}

inline double elapsedMs(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

// An SQLite call that did not succeed raises BenchFailure with the engine's message.
void requireSqlite(int rc, sqlite3 *db, const char *what);

// A grid of the given size in twips with its captions set (comma-separated), shown and active
// as on a host form, ready for MakeStruct.
std::unique_ptr<PanelKestrin::gridcontrol> shownGrid(int widthTwips, int heightTwips, const char *captions);

// The column rules a host sets after MakeStruct (none of each kind), then MakeGridStructure.
void finishStructure(PanelKestrin::gridcontrol &grid);

// Runs a widget benchmark as they all run: offscreen unless a display is set, a QApplication, a
// message-box handler that reports any box as unexpected (a benchmark that shows one fails), and
// a temporary folder for run. Returns run's status (0 within budget, 1 over), or 2 when a
// measured step failed (RuntimeError, BenchFailure) or a message box came up.
int runWidgetBenchmark(int argc, char **argv, const std::function<int(const QTemporaryDir &)> &run);

} // namespace BenchSupport
