#pragma once

#include "data/columninfo_p.h"

#include <QString>

namespace PanelKestrin {

// The classic type of a column declared with the given SQLite type text ("VARCHAR(30)",
// "NUMERIC(10,2)", "DOUBLE PRECISION" ...). A declaration SQLite would give no type to,
// or a name this library does not know, makes the column typed by its values.
void setTypeFromDeclaration(ColumnInfo &column, const QString &declaredType);

} // namespace PanelKestrin
