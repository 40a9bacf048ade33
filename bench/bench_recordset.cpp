// Reading a whole table through Recordset::Open + GetRows(-1, 1) against a raw sqlite3_step
// loop that copies every value into QVariants. Budget: the library path within 1.5x the raw one.
#include "benchsupport.h"

#include <PanelKestrin/connection.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdio>

using namespace PanelKestrin;

namespace {

constexpr int kRows = 100000;
constexpr int kRuns = 5;
constexpr double kBudget = 1.5;

qsizetype libraryRead(Connection &connection)
{
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM bench"), &connection);
    const VariantMatrix rows = rs.GetRows(-1, 1);
    return qsizetype(rows.count(1)) * rows.count(2);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.sqlite"));
    if (!dir.isValid() || !BenchSupport::createDatabase(path.toUtf8(), kRows))
        return 2;

    sqlite3 *raw = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READONLY, nullptr);
    qsizetype rawCells = 0, libraryCells = 0;
    const double rawMs = BenchSupport::bestOfMs(kRuns, [&] { rawCells = BenchSupport::rawRead(raw); });
    sqlite3_close(raw);

    double libraryMs = 0;
    try {
        Connection connection;
        connection.Open(QStringLiteral("Provider=SQLite;Data Source=") + path);
        libraryMs = BenchSupport::bestOfMs(kRuns, [&] { libraryCells = libraryRead(connection); });
    } catch (const RuntimeError &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
    if (rawCells != libraryCells || rawCells != qsizetype(kRows) * 8) {
        std::fprintf(stderr, "read %lld and %lld values, expected %d\n", qlonglong(rawCells), qlonglong(libraryCells),
                     kRows * 8);
        return 2;
    }
    const double ratio = libraryMs / rawMs;
    std::printf("bench_recordset: %d rows x 8 columns, best of %d\n", kRows, kRuns);
    std::printf("  raw sqlite3_step copy into QVariants   %8.1f ms\n", rawMs);
    std::printf("  Recordset::Open + GetRows(-1, 1)      %8.1f ms\n", libraryMs);
    std::printf("  ratio %.2f (budget %.1f): %s\n", ratio, kBudget, ratio <= kBudget ? "within budget" : "OVER BUDGET");
    return ratio <= kBudget ? 0 : 1;
}
