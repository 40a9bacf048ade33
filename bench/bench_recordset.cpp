// Reading a whole table through Recordset::Open + GetRows(-1, 1) against a raw sqlite3_step
// loop that copies every value into QVariants. Budget: the library path within 2x the raw one.
#include <PanelKestrin/connection.h>
#include <PanelKestrin/recordset.h>
#include <PanelKestrin/runtimeerror.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QVector>

#include <sqlite3.h>

#include <cstdio>
#include <functional>
#include <limits>

using namespace PanelKestrin;

namespace {

constexpr int kRows = 100000;
constexpr int kRuns = 5;
constexpr double kBudget = 2.0;

bool check(int rc, sqlite3 *db, const char *what)
{
    if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW)
        return true;
    std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
    return false;
}

bool createDatabase(const QByteArray &path)
{
    sqlite3 *db = nullptr;
    bool ok = check(sqlite3_open(path.constData(), &db), db, "open");
    ok = ok && check(sqlite3_exec(db,
                                  "CREATE TABLE bench (id INTEGER PRIMARY KEY, name VARCHAR(40) NOT NULL, "
                                  "price NUMERIC(10,2), due DATE, qty SMALLINT, active BOOLEAN, "
                                  "ratio DOUBLE, note VARCHAR(80));"
                                  "BEGIN",
                                  nullptr, nullptr, nullptr),
                     db, "create");
    sqlite3_stmt *insert = nullptr;
    ok = ok && check(sqlite3_prepare_v2(db, "INSERT INTO bench VALUES (?, ?, ?, ?, ?, ?, ?, ?)", -1, &insert, nullptr),
                     db, "prepare insert");
    for (int i = 1; ok && i <= kRows; ++i) {
        const QByteArray name = "Customer " + QByteArray::number(i);
        const QByteArray due = QDate(2020, 1, 1).addDays(i % 2000).toString(Qt::ISODate).toLatin1();
        const QByteArray note = "Order note number " + QByteArray::number(i * 7) + " for the bench";
        sqlite3_bind_int(insert, 1, i);
        sqlite3_bind_text(insert, 2, name.constData(), int(name.size()), SQLITE_TRANSIENT);
        sqlite3_bind_double(insert, 3, (i % 100000) / 100.0 + 0.25);
        sqlite3_bind_text(insert, 4, due.constData(), int(due.size()), SQLITE_TRANSIENT);
        sqlite3_bind_int(insert, 5, i % 300);
        sqlite3_bind_int(insert, 6, i % 2);
        sqlite3_bind_double(insert, 7, i / 3.0);
        sqlite3_bind_text(insert, 8, note.constData(), int(note.size()), SQLITE_TRANSIENT);
        ok = check(sqlite3_step(insert), db, "insert");
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    ok = ok && check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db, "commit");
    sqlite3_close(db);
    return ok;
}

// The raw read: every value of every row copied into a QVariant of the matching type.
qsizetype rawRead(sqlite3 *db)
{
    QVector<QVariant> values;
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, "SELECT * FROM bench", -1, &stmt, nullptr);
    const int columns = sqlite3_column_count(stmt);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int c = 0; c < columns; ++c) {
            switch (sqlite3_column_type(stmt, c)) {
            case SQLITE_INTEGER: {
                const sqlite3_int64 v = sqlite3_column_int64(stmt, c);
                if (v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max())
                    values.append(QVariant(int(v)));
                else
                    values.append(QVariant(qlonglong(v)));
                break;
            }
            case SQLITE_FLOAT:
                values.append(QVariant(sqlite3_column_double(stmt, c)));
                break;
            case SQLITE_TEXT:
                values.append(QVariant(QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, c)),
                                                         sqlite3_column_bytes(stmt, c))));
                break;
            default:
                values.append(QVariant());
                break;
            }
        }
    }
    sqlite3_finalize(stmt);
    return values.size();
}

qsizetype libraryRead(Connection &connection)
{
    Recordset rs;
    rs.Open(QStringLiteral("SELECT * FROM bench"), &connection);
    const VariantMatrix rows = rs.GetRows(-1, 1);
    return qsizetype(rows.count(1)) * rows.count(2);
}

// Best of kRuns, in milliseconds; the work's own result is checked by the caller.
double best(const std::function<qsizetype()> &work, qsizetype &cells)
{
    double bestMs = std::numeric_limits<double>::max();
    for (int run = 0; run < kRuns; ++run) {
        QElapsedTimer timer;
        timer.start();
        cells = work();
        bestMs = qMin(bestMs, timer.nsecsElapsed() / 1e6);
    }
    return bestMs;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bench.sqlite"));
    if (!dir.isValid() || !createDatabase(path.toUtf8()))
        return 2;

    sqlite3 *raw = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &raw, SQLITE_OPEN_READONLY, nullptr);
    qsizetype rawCells = 0, libraryCells = 0;
    const double rawMs = best([raw] { return rawRead(raw); }, rawCells);
    sqlite3_close(raw);

    double libraryMs = 0;
    try {
        Connection connection;
        connection.Open(QStringLiteral("Provider=SQLite;Data Source=") + path);
        libraryMs = best([&connection] { return libraryRead(connection); }, libraryCells);
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
