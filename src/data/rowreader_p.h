#pragma once

#include <QString>
#include <QVariant>

namespace PanelKestrin {

// Reads the rows of a statement's result straight from the engine's own interface, one row at
// a time, each value as the Qt driver would give it (so that the same conversions apply).
class RowReader
{
public:
    virtual ~RowReader() = default;
    // Moves to the next row; false after the last one or when reading failed (see error()).
    virtual bool next() = 0;
    // The value of field (from 0) of the current row.
    virtual void read(int field, QVariant &value) const = 0;
    // The engine's message when reading stopped on a failure, else empty.
    virtual QString error() const = 0;
};

} // namespace PanelKestrin
