#include "platform/latebinding_p.h"

#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/variant.h>

#include <limits>
#include <optional>

namespace PanelKestrin {

namespace {

// Checks a whole number against the range of the integral parameter type it is passed to,
// where the plain conversion would silently wrap.
void checkRange(const QVariant &value, QMetaType target, const QString &what)
{
    auto limits = [&]() -> std::optional<std::pair<double, double>> {
        switch (target.id()) {
        case QMetaType::Short: return std::pair<double, double>(std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
        case QMetaType::UShort: return std::pair<double, double>(0, std::numeric_limits<quint16>::max());
        case QMetaType::Int: return std::pair<double, double>(std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
        case QMetaType::UInt: return std::pair<double, double>(0, std::numeric_limits<quint32>::max());
        default: return std::nullopt;
        }
    }();
    bool numeric = false;
    const double d = value.toDouble(&numeric);
    if (limits && numeric && (d < limits->first - 0.5 || d >= limits->second + 0.5))
        raise(ErrOverflow, what);
}

} // namespace

void raise(int number, const QString &detail)
{
    throw RuntimeError(number, RuntimeError::standardDescription(number) + QStringLiteral(": ") + detail);
}

bool sameName(const char *declared, const QString &name)
{
    return QString::fromLatin1(declared).compare(name, Qt::CaseInsensitive) == 0;
}

QList<QMetaMethod> methodsNamed(const QMetaObject *mo, const QString &name, int from, QMetaMethod::MethodType kind)
{
    QList<QMetaMethod> found;
    for (int i = mo->methodCount() - 1; i >= from; --i) {
        const QMetaMethod m = mo->method(i);
        const bool kindMatches = kind == QMetaMethod::Signal
            ? m.methodType() == QMetaMethod::Signal
            : (m.methodType() == QMetaMethod::Method || m.methodType() == QMetaMethod::Slot);
        if (kindMatches && m.access() == QMetaMethod::Public && sameName(m.name().constData(), name))
            found.append(m);
    }
    return found;
}

QVariant convertArgument(const QVariant &arg, QMetaType target, const QString &what)
{
    if (target.id() == QMetaType::QVariant || arg.metaType() == target)
        return arg;
    if (isEmpty(arg))
        return QVariant(target);
    if (isNull(arg))
        raise(ErrInvalidUseOfNull, what);
    QVariant converted = arg;
    if (!converted.canConvert(target) || !converted.convert(target))
        raise(ErrTypeMismatch, what);
    checkRange(arg, target, what);
    return converted;
}

QMetaType parameterType(const QMetaMethod &method, int index)
{
    const QMetaType type = method.parameterMetaType(index);
    if (type.isValid())
        return type;
    QByteArray name = method.parameterTypes().value(index);
    if (name.endsWith('&'))
        name.chop(1);
    return QMetaType::fromName(name);
}

QVariant invokeMethod(QObject *object, const QMetaMethod &method, std::vector<QVariant> &args)
{
    std::vector<void *> argv(args.size() + 1, nullptr);
    QVariant result;
    const QMetaType returnType = method.returnMetaType();
    if (returnType.id() == QMetaType::QVariant) {
        argv[0] = &result;
    } else if (returnType.isValid() && returnType.id() != QMetaType::Void) {
        result = QVariant(returnType);
        argv[0] = result.data();
    }
    for (size_t i = 0; i < args.size(); ++i) {
        const bool asVariant = parameterType(method, int(i)).id() == QMetaType::QVariant;
        argv[i + 1] = asVariant ? static_cast<void *>(&args[i]) : args[i].data();
    }
    QMetaObject::metacall(object, QMetaObject::InvokeMetaMethod, method.methodIndex(), argv.data());
    return result;
}

} // namespace PanelKestrin
