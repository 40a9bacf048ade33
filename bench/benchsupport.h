#pragma once

// What the benchmarks share: the table they read, the raw reading loop they compare against,
// and best-of-N timing.

#include <QByteArray>
#include <QtGlobal>

#include <functional>

struct sqlite3;

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

} // namespace BenchSupport
