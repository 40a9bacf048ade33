#include "benchsupport.h"

#include <PanelKestrin/gridcontrol.h>
#include <PanelKestrin/msgbox.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/twips.h>

#include <QApplication>

#include <QDate>
#include <QElapsedTimer>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>
#include <QVector>

#include <sqlite3.h>

#include <cstdio>
#include <limits>

namespace BenchSupport {

namespace {

bool check(int rc, sqlite3 *db, const char *what)
{
    if (rc == SQLITE_OK || rc == SQLITE_DONE || rc == SQLITE_ROW)
        return true;
    std::fprintf(stderr, "%s: %s\n", what, sqlite3_errmsg(db));
    return false;
}

} // namespace

bool createDatabase(const QByteArray &path, int rows)
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
    const QDate firstDue(2020, 1, 1);
    for (int i = 1; ok && i <= rows; ++i) {
        const QByteArray name = "Customer " + QByteArray::number(i);
        const QByteArray due = firstDue.addDays(i % 2000).toString(Qt::ISODate).toLatin1();
        const QByteArray note = "Order note number " + QByteArray::number(qint64(i) * 7) + " for the bench";
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

qsizetype rawRead(sqlite3 *db)
{
    QVector<QVariant> values;
    sqlite3_stmt *stmt = nullptr;
    if (!check(sqlite3_prepare_v2(db, "SELECT * FROM bench", -1, &stmt, nullptr), db, "prepare select"))
        return 0;
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

double bestOfMs(int runs, const std::function<void()> &work)
{
    double best = std::numeric_limits<double>::max();
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        best = qMin(best, timer.nsecsElapsed() / 1e6);
    }
    return best;
}

void requireSqlite(int rc, sqlite3 *db, const char *what)
{
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW)
        throw BenchFailure(std::string(what) + ": " + sqlite3_errmsg(db));
}

std::unique_ptr<PanelKestrin::gridcontrol> shownGrid(int widthTwips, int heightTwips, const char *captions)
{
    using namespace PanelKestrin;
    auto grid = std::make_unique<gridcontrol>();
    grid->resize(TwipsToPixelsX(widthTwips, grid.get()), TwipsToPixelsY(heightTwips, grid.get()));
    grid->setGridHeader(QString::fromLatin1(captions));
    grid->show();
    grid->activateWindow();
    QApplication::processEvents();
    return grid;
}

void finishStructure(PanelKestrin::gridcontrol &grid)
{
    grid.setDisableCol(QString());
    grid.setInvokeHelpCol(QString());
    grid.setMandatoryCol(QString());
    grid.MakeGridStructure();
}

int runWidgetBenchmark(int argc, char **argv, const std::function<int(const QTemporaryDir &)> &run)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    bool messageShown = false;
    PanelKestrin::setMessageBoxHandler([&messageShown](const QString &prompt, int, const QString &) {
        std::fprintf(stderr, "unexpected message box: %s\n", qPrintable(prompt));
        messageShown = true;
        return int(PanelKestrin::vbOK);
    });
    QTemporaryDir dir;
    if (!dir.isValid()) {
        std::fprintf(stderr, "cannot create a temporary folder\n");
        return 2;
    }
    try {
        const int status = run(dir);
        return messageShown ? 2 : status;
    } catch (const PanelKestrin::RuntimeError &e) {
        std::fprintf(stderr, "run-time error: %s\n", e.what());
    } catch (const BenchFailure &e) {
        std::fprintf(stderr, "bench check failed: %s\n", e.what());
    }
    return 2;
}

} // namespace BenchSupport
