#pragma once

// How a published member is bound to the C++ member that stands for it: a variable to its
// Q_PROPERTY, a property's get and put to its Q_PROPERTY or to the Q_INVOKABLE reader and
// "set<Name>" writer, a method to its Q_INVOKABLE overloads, an event to its signal.

#include <PanelKestrin/typelibrary.h>

#include <QList>
#include <QMetaMethod>
#include <QMetaProperty>
#include <optional>

namespace PanelKestrin {

struct DispatchBinding
{
    std::optional<QMetaProperty> property;
    std::optional<QMetaMethod> getter;
    std::optional<QMetaMethod> setter;
    // A method's overloads taking an allowed number of arguments; an event's signal.
    QList<QMetaMethod> methods;

    bool canGet() const { return (property && property->isReadable()) || getter; }
    bool canPut() const { return (property && property->isWritable()) || setter; }
};

// The published class a meta-object stands for (itself or a base); null for none.
const TypeLibClass *publishedClass(const QMetaObject *mo);

// Binds what the member's kind and accessors need; parts that the class lacks stay empty.
DispatchBinding bindMember(const QMetaObject *mo, const TypeLibMember &member);

// Whether the binding offers everything the member publishes.
bool isComplete(const DispatchBinding &binding, const TypeLibMember &member);

} // namespace PanelKestrin
