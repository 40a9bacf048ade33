#pragma once

// What every late-bound call shares, by name on a host form or by dispatch number on a
// control: finding members by name, the argument conversions to a member's parameter types, the
// call itself and the run-time errors they raise.

#include <QList>
#include <QMetaMethod>
#include <QVariant>
#include <vector>

class QObject;

namespace PanelKestrin {

// Throws RuntimeError `number` with its standard description followed by `detail`.
[[noreturn]] void raise(int number, const QString &detail);

// Whether a declared name is `name`, in any case, as names match in late binding.
bool sameName(const char *declared, const QString &name);

// Public members of the kind named `name`, most derived first, declared at or after method index
// `from`: callable methods (slots and Q_INVOKABLEs) for QMetaMethod::Method, else signals.
QList<QMetaMethod> methodsNamed(const QMetaObject *mo, const QString &name, int from = 0,
                                QMetaMethod::MethodType kind = QMetaMethod::Method);

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
