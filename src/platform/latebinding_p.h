#pragma once

// What every late-bound call shares, by name on a host form or by dispatch number on a
// control: the argument conversions to a member's parameter types and the call itself.

#include <QMetaMethod>
#include <QVariant>
#include <vector>

class QObject;

namespace PanelKestrin {

// The argument as a value of the parameter's type. Empty becomes the type's default value,
// as an unassigned variable passed to a typed parameter does. Raises RuntimeError 94 for Null,
// 13 for a value that does not convert and 6 for a number out of the type's range; `what`
// names the member in the description.
QVariant convertArgument(const QVariant &arg, QMetaType target, const QString &what);

// The type a parameter takes. A by-reference parameter ("int &") has no meta type of its own;
// it takes a value of the referenced type.
QMetaType parameterType(const QMetaMethod &method, int index);

// Calls the method with arguments already of its parameter types and returns its result
// (Empty for none). A by-reference parameter is bound to its element of args, so what the
// method writes back is there afterwards.
QVariant invokeMethod(QObject *object, const QMetaMethod &method, std::vector<QVariant> &args);

} // namespace PanelKestrin
