#include <PanelKestrin/hostform.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/twips.h>
#include <PanelKestrin/variant.h>
#include "platform/latebinding_p.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QWidget>
#include <optional>
#include <vector>

namespace PanelKestrin {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("PanelKestrin::CallByName", text);
}

QString memberOf(const QObject *object, const QString &name)
{
    return tr("'%1' of %2").arg(name, QString::fromLatin1(object->metaObject()->className()));
}

std::optional<QMetaProperty> propertyNamed(const QMetaObject *mo, const QString &name, int from = 0)
{
    for (int i = mo->propertyCount() - 1; i >= from; --i) {
        if (sameName(mo->property(i).name(), name))
            return mo->property(i);
    }
    return std::nullopt;
}

// Calls the first candidate with as many parameters as there are arguments and to whose
// parameter types the arguments convert.
QVariant callMatching(QObject *object, const QList<QMetaMethod> &candidates, const QVariantList &args,
                      const QString &what)
{
    std::optional<RuntimeError> conversionError;
    for (const QMetaMethod &m : candidates) {
        if (m.parameterCount() != args.size())
            continue;
        std::vector<QVariant> converted;
        try {
            for (int i = 0; i < args.size(); ++i)
                converted.push_back(convertArgument(args.at(i), parameterType(m, i), what));
        } catch (const RuntimeError &e) {
            if (!conversionError)
                conversionError = e;
            continue;
        }
        return invokeMethod(object, m, converted);
    }
    if (conversionError)
        throw *conversionError;
    raise(ErrWrongArgumentCount, what);
}

void writeProperty(QObject *object, const QMetaProperty &property, const QVariant &value, const QString &what)
{
    if (!property.isWritable())
        raise(ErrReadOnlyProperty, what);
    if (!property.write(object, convertArgument(value, property.metaType(), what)))
        raise(ErrTypeMismatch, what);
}

// The frame geometry of a widget in twips, standing in for the extender's position and size.
enum class Edge { None, Left, Top, Width, Height };

Edge geometryMember(const QString &name)
{
    static const std::pair<const char *, Edge> names[] = {
        {"Left", Edge::Left}, {"Top", Edge::Top}, {"Width", Edge::Width}, {"Height", Edge::Height}};
    for (const auto &[n, edge] : names) {
        if (sameName(n, name))
            return edge;
    }
    return Edge::None;
}

// True when the widget's own class (below QWidget) declares a member of that name.
bool declaredBelowQWidget(const QObject *object, const QString &name)
{
    const QMetaObject *mo = object->metaObject();
    return propertyNamed(mo, name, QWidget::staticMetaObject.propertyCount())
        || !methodsNamed(mo, name, QWidget::staticMetaObject.methodCount()).isEmpty();
}

QVariant geometryCall(QWidget *w, Edge edge, CallType call, const QVariantList &args, const QString &what)
{
    const QRect frame = w->frameGeometry();
    if (call == VbGet || call == VbMethod) {
        if (!args.isEmpty())
            raise(ErrWrongArgumentCount, what);
        switch (edge) {
        case Edge::Left: return PixelsToTwipsX(frame.x(), w);
        case Edge::Top: return PixelsToTwipsY(frame.y(), w);
        case Edge::Width: return PixelsToTwipsX(frame.width(), w);
        default: return PixelsToTwipsY(frame.height(), w);
        }
    }
    if (args.size() != 1)
        raise(ErrWrongArgumentCount, what);
    const double twips = convertArgument(args.first(), QMetaType::fromType<double>(), what).toDouble();
    switch (edge) {
    case Edge::Left: w->move(TwipsToPixelsX(twips, w), frame.y()); break;
    case Edge::Top: w->move(frame.x(), TwipsToPixelsY(twips, w)); break;
    case Edge::Width:
        w->resize(TwipsToPixelsX(twips, w) - (frame.width() - w->width()), w->height());
        break;
    default:
        w->resize(w->width(), TwipsToPixelsY(twips, w) - (frame.height() - w->height()));
        break;
    }
    return QVariant();
}

} // namespace

QVariant CallByName(QObject *Object, const QString &ProcName, CallType Call, const QVariantList &Args)
{
    if (!Object)
        throw RuntimeError(ErrObjectNotSet, RuntimeError::standardDescription(ErrObjectNotSet)
                                                + QStringLiteral(": ") + ProcName);
    const QString what = memberOf(Object, ProcName);
    if (auto *widget = qobject_cast<QWidget *>(Object)) {
        const Edge edge = geometryMember(ProcName);
        if (edge != Edge::None && !declaredBelowQWidget(Object, ProcName))
            return geometryCall(widget, edge, Call, Args, what);
    }

    const QMetaObject *mo = Object->metaObject();
    const std::optional<QMetaProperty> property = propertyNamed(mo, ProcName);
    switch (Call) {
    case VbMethod:
    case VbGet: {
        if (Args.isEmpty() && property && (Call == VbGet || methodsNamed(mo, ProcName).isEmpty()))
            return property->read(Object);
        const QList<QMetaMethod> methods = methodsNamed(mo, ProcName);
        if (!methods.isEmpty())
            return callMatching(Object, methods, Args, what);
        if (property)
            raise(ErrWrongArgumentCount, what);
        break;
    }
    case VbLet:
    case VbSet: {
        // A run-time assignment goes through the class's invokable setter when it has one;
        // the property's own writer may be the design-time one that form files use.
        const QList<QMetaMethod> setters = methodsNamed(mo, QStringLiteral("set") + ProcName);
        if (!setters.isEmpty())
            return callMatching(Object, setters, Args, what);
        if (Args.size() == 1 && property) {
            writeProperty(Object, *property, Args.first(), what);
            return QVariant();
        }
        if (property)
            raise(ErrWrongArgumentCount, what);
        break;
    }
    default:
        raise(ErrInvalidProcedureCall, what);
    }
    raise(ErrMemberNotSupported, what);
}

QWidget *HostForm(const QWidget *control)
{
    return control ? control->window() : nullptr;
}

bool UnloadForm(QWidget *form)
{
    if (!form)
        throw RuntimeError(ErrObjectNotSet);
    return form->close();
}

} // namespace PanelKestrin
