#pragma once

#include "data/rowreader_p.h"

#include <QString>

#include <memory>

struct sqlite3;

namespace PanelKestrin {

// A reader of the rows of statement on connection handle, or null when statement is anything
// but one query (SELECT or WITH) that changes nothing, or does not have fieldCount columns:
// such a statement's rows are read through QtSql, which has run it already, as it alone may.
// Values come as the Qt driver gives them: integers as qlonglong, reals as double, text as
// QString, blobs as QByteArray, NULL as Null().
std::unique_ptr<RowReader> openSqliteRows(sqlite3 *handle, const QString &statement, int fieldCount);

} // namespace PanelKestrin
