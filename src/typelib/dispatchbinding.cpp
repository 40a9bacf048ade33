#include "typelib/dispatchbinding_p.h"
#include "platform/latebinding_p.h"

#include <utility>

namespace PanelKestrin {

namespace {

// A property of that name, the exact spelling first, then any case; most derived first.
std::optional<QMetaProperty> propertyNamed(const QMetaObject *mo, const QString &name)
{
    for (int i = mo->propertyCount() - 1; i >= 0; --i) {
        if (QLatin1String(mo->property(i).name()) == name)
            return mo->property(i);
    }
    for (int i = mo->propertyCount() - 1; i >= 0; --i) {
        if (sameName(mo->property(i).name(), name))
            return mo->property(i);
    }
    return std::nullopt;
}

std::optional<QMetaMethod> methodTaking(const QMetaObject *mo, const QString &name, int count)
{
    for (const QMetaMethod &m : methodsNamed(mo, name)) {
        if (m.parameterCount() == count)
            return m;
    }
    return std::nullopt;
}

// The parameter counts, least and most, of the C++ overloads a method binds to: one per allowed
// argument count, a vararg method's one overload taking its remaining arguments as one list.
std::pair<int, int> parameterCounts(const TypeLibMember &method)
{
    if (method.varArg)
        return {int(method.params.size()), int(method.params.size())};
    return {method.requiredArguments(), method.maximumArguments()};
}

} // namespace

const TypeLibClass *publishedClass(const QMetaObject *mo)
{
    for (; mo; mo = mo->superClass()) {
        const QString name = QString::fromLatin1(mo->className()).section(QLatin1String("::"), -1);
        if (const TypeLibClass *c = PublishedTypeLibrary().findClass(name);
            c && c->name == name)
            return c;
    }
    return nullptr;
}

DispatchBinding bindMember(const QMetaObject *mo, const TypeLibMember &member)
{
    DispatchBinding b;
    switch (member.kind) {
    case TypeLibMember::Variable:
    case TypeLibMember::Property:
        b.property = propertyNamed(mo, member.name);
        if (member.get && !(b.property && b.property->isReadable()))
            b.getter = methodTaking(mo, member.name, 0);
        // A run-time assignment prefers the invokable setter: where a class has both, the
        // property's writer is the design-time one that form files use (cmdenable).
        if (member.put || member.putRef)
            b.setter = methodTaking(mo, QStringLiteral("set") + member.name, 1);
        break;
    case TypeLibMember::Method: {
        const auto [least, most] = parameterCounts(member);
        for (const QMetaMethod &m : methodsNamed(mo, member.name)) {
            if (m.parameterCount() >= least && m.parameterCount() <= most)
                b.methods.append(m);
        }
        break;
    }
    case TypeLibMember::Event:
        for (const QMetaMethod &m : methodsNamed(mo, member.name, 0, QMetaMethod::Signal)) {
            if (m.parameterCount() == member.params.size())
                b.methods.append(m);
        }
        break;
    }
    return b;
}

bool isComplete(const DispatchBinding &binding, const TypeLibMember &member)
{
    switch (member.kind) {
    case TypeLibMember::Variable:
        return binding.property && binding.property->isReadable() && binding.property->isWritable();
    case TypeLibMember::Property:
        return (!member.get || binding.canGet()) && (!(member.put || member.putRef) || binding.canPut());
    case TypeLibMember::Method: {
        // Every allowed argument count has an overload.
        const auto [least, most] = parameterCounts(member);
        for (int n = least; n <= most; ++n) {
            bool found = false;
            for (const QMetaMethod &m : binding.methods)
                found = found || m.parameterCount() == n;
            if (!found)
                return false;
        }
        return true;
    }
    case TypeLibMember::Event:
        return binding.methods.size() == 1;
    }
    return false;
}

} // namespace PanelKestrin
