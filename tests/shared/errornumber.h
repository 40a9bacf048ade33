#pragma once

#include <PanelKestrin/runtimeerror.h>

#include <QMetaType>
#include <QString>

#include <functional>

// What a call raised: the run-time error's number (0 when nothing was thrown), description
// and source.
struct Caught {
    int number = 0;
    QString description;
    QString source;
};

template <typename F>
Caught capture(F &&f)
{
    try {
        f();
    } catch (const PanelKestrin::RuntimeError &error) {
        return {error.Number(), error.Description(), error.Source()};
    }
    return {};
}

// A call kept in a data table, so that tables can list a call next to the error a host would see.
using Call = std::function<void()>;
Q_DECLARE_METATYPE(Call)

inline int errorNumberOf(const Call &call)
{
    return capture(call).number;
}
