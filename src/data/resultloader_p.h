#pragma once

#include "data/columninfo_p.h"

#include <PanelKestrin/variantmatrix.h>

#include <QString>
#include <QVector>

namespace PanelKestrin {

struct ConnectionPrivate;

// A statement's whole result, read once.
struct LoadedResult {
    QVector<ColumnInfo> columns;
    VariantMatrix rows; // (field, row) from (0, 0)
    int rowCount = 0;
    bool returnedRows = false; // false for a statement that produces no result set
};

// Runs one statement on an open connection and reads every row straight into the matrix,
// each column's values converted by the converter chosen for it once. A statement the
// database rejects raises -2147217900 with the database's message and the statement; so
// does text holding more than one statement, which is not run at all.
LoadedResult loadResult(ConnectionPrivate &connection, const QString &statement);

} // namespace PanelKestrin
