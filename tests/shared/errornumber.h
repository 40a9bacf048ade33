#pragma once

#include <PanelKestrin/runtimeerror.h>

#include <QMetaType>

#include <functional>

// A call kept in a data table, and the run-time error number it raises (0 when none), so
// that tables can list a call next to the error a host would see.
using Call = std::function<void()>;
Q_DECLARE_METATYPE(Call)

inline int errorNumberOf(const Call &call)
{
    try {
        call();
    } catch (const PanelKestrin::RuntimeError &error) {
        return error.Number();
    }
    return 0;
}
