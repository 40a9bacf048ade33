#pragma once

#include <QString>

namespace PanelKestrin {

// True when the text (blanks around it ignored) is a bare table name such as orders or
// sales.orders, which a recordset reads as every row of that table.
bool isBareTableName(const QString &text);

// The text with each '?' marker for a bound value replaced by $1, $2 ... in order, as the
// PostgreSQL driver numbers them before it prepares a statement: a '?' between single quotes,
// double quotes or backquotes stays as it is.
QString numberedMarkers(const QString &text);

} // namespace PanelKestrin
