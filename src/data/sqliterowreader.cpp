#include "data/sqliterowreader_p.h"

#include <PanelKestrin/variant.h>

#include <QByteArray>

#include <sqlite3.h>

namespace PanelKestrin {

namespace {

// True when the text begins with the keyword SELECT or WITH (any case, after blanks).
bool startsAsQuery(const QString &statement)
{
    const QStringView text = QStringView(statement).trimmed();
    const auto keyword = [&text](QLatin1String word) {
        return text.startsWith(word, Qt::CaseInsensitive)
            && (text.size() == word.size() || !text.at(word.size()).isLetterOrNumber());
    };
    return keyword(QLatin1String("SELECT")) || keyword(QLatin1String("WITH"));
}

class SqliteRowReader final : public RowReader
{
public:
    explicit SqliteRowReader(sqlite3_stmt *stmt) : m_stmt(stmt) {}
    ~SqliteRowReader() override { sqlite3_finalize(m_stmt); }
    SqliteRowReader(const SqliteRowReader &) = delete;
    SqliteRowReader &operator=(const SqliteRowReader &) = delete;

    bool next() override
    {
        m_rc = sqlite3_step(m_stmt);
        return m_rc == SQLITE_ROW;
    }

    void read(int field, QVariant &value) const override
    {
        switch (sqlite3_column_type(m_stmt, field)) {
        case SQLITE_INTEGER:
            value = QVariant(qlonglong(sqlite3_column_int64(m_stmt, field)));
            break;
        case SQLITE_FLOAT:
            value = QVariant(sqlite3_column_double(m_stmt, field));
            break;
        case SQLITE_NULL:
            value = Null();
            break;
        case SQLITE_BLOB:
            value = QVariant(QByteArray(static_cast<const char *>(sqlite3_column_blob(m_stmt, field)),
                                        sqlite3_column_bytes(m_stmt, field)));
            break;
        default: {
            // The byte count is asked after the text, as SQLite wants it.
            const char *text = reinterpret_cast<const char *>(sqlite3_column_text(m_stmt, field));
            value = QVariant(QString::fromUtf8(text, sqlite3_column_bytes(m_stmt, field)));
            break;
        }
        }
    }

    QString error() const override
    {
        return m_rc == SQLITE_ROW || m_rc == SQLITE_DONE ? QString()
                                                         : QString::fromUtf8(sqlite3_errmsg(sqlite3_db_handle(m_stmt)));
    }

private:
    sqlite3_stmt *m_stmt;
    int m_rc = SQLITE_OK;
};

} // namespace

std::unique_ptr<RowReader> openSqliteRows(sqlite3 *handle, const QString &statement, int fieldCount)
{
    if (!handle || !startsAsQuery(statement))
        return nullptr;
    const QByteArray sql = statement.toUtf8();
    sqlite3_stmt *stmt = nullptr;
    const char *tail = nullptr;
    if (sqlite3_prepare_v2(handle, sql.constData(), int(sql.size()), &stmt, &tail) != SQLITE_OK || !stmt
        || !sqlite3_stmt_readonly(stmt) || sqlite3_column_count(stmt) != fieldCount
        || !QByteArray(tail).trimmed().isEmpty()) {
        sqlite3_finalize(stmt);
        return nullptr;
    }
    return std::make_unique<SqliteRowReader>(stmt);
}

} // namespace PanelKestrin
