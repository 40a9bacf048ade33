#pragma once

#include <PanelKestrin/runtimeerror.h>

#include <QString>

namespace PanelKestrin {

// The grid's arrays are indexed from 0; an index outside them is the classic "Subscript out of
// range" (error 9), raised with the array's name, the index and the bounds it missed.
inline void checkSubscript(qsizetype index, qsizetype size, const QString &name)
{
    if (index < 0 || index >= size)
        throw RuntimeError(ErrSubscriptOutOfRange,
                           QStringLiteral("Subscript out of range: %1(%2) outside 0 To %3").arg(name).arg(index).arg(size - 1),
                           QStringLiteral("gridcontrol"));
}

// Element index of array, checked as above.
template <typename Array>
const auto &checkedAt(const Array &array, qsizetype index, const QString &name)
{
    checkSubscript(index, array.size(), name);
    return array.at(index);
}

} // namespace PanelKestrin
