#pragma once

#include "data/columninfo_p.h"

#include <QDate>
#include <QDateTime>
#include <QStringView>
#include <QVariant>

namespace PanelKestrin {

// Brings one value, as the Qt driver delivered it, to the type of its column, in place. A
// database NULL becomes Null(). A value of an unexpected kind (text stored in an INTEGER
// column of SQLite) is left as it is.
using ValueConverter = void (*)(QVariant &value);

// Chosen once per column before the rows are read.
ValueConverter valueConverter(ValueKind kind);

// "yyyy-MM-dd", optionally followed by a time, which is ignored.
bool parseIsoDate(QStringView text, QDate &date);
// "yyyy-MM-dd", optionally followed by ' ' or 'T' and "hh:mm[:ss[.fff]]" and a zone
// ("Z" or "+hh[:mm]"); hasTime tells whether a time was there. Without a zone the result is
// in local time, as the PostgreSQL driver gives a TIMESTAMP.
bool parseIsoDateTime(QStringView text, QDateTime &dateTime, bool &hasTime);

} // namespace PanelKestrin
