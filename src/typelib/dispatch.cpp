#include <PanelKestrin/conversions.h>
#include <PanelKestrin/dispatch.h>
#include <PanelKestrin/runtimeerror.h>
#include <PanelKestrin/typelibrary.h>
#include <PanelKestrin/variant.h>
#include "platform/latebinding_p.h"
#include "typelib/dispatchbinding_p.h"
#include "typelib/eventrelay_p.h"
#include "typelib/olecolor_p.h"

#include <QColor>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPalette>
#include <QWidget>

namespace PanelKestrin {

namespace {

QString describe(const QString &className, const QString &member)
{
    return QCoreApplication::translate("PanelKestrin::Dispatch", "'%1' of %2").arg(member, className);
}

const TypeLibClass &classOf(const QObject *control, const QString &member)
{
    if (!control)
        raise(ErrObjectNotSet, member);
    const TypeLibClass *c = publishedClass(control->metaObject());
    if (!c)
        raise(ErrMemberNotSupported, describe(QString::fromLatin1(control->metaObject()->className()), member));
    return *c;
}

// The class's member that `key` (a dispatch number or a name) stands for; `spelled` is how the
// error names it.
template <typename Key>
const TypeLibMember &memberOf(const TypeLibClass &c, const Key &key, const QString &spelled)
{
    if (const TypeLibMember *m = c.defaultInterface.member(key))
        return *m;
    raise(ErrMemberNotSupported, describe(c.name, spelled));
}

// Colours travel as OLE_COLOR numbers and are QColor on the control.
bool isColour(const TypeLibMember &m)
{
    return m.type == QLatin1String("OLE_COLOR");
}

// A host's value for a parameter of the declared type, read as the host's own conversions read
// it: a date text or serial number is the date, a Boolean text "True", "False" or a number, a
// colour number the colour (a system colour taken from the control's palette). Anything else is
// left to the plain conversion to the member's C++ type.
QVariant toControl(const QObject *control, const QString &type, const QVariant &value, const QString &what)
{
    const int given = value.metaType().id();
    if (isEmpty(value) || isNull(value))
        return value;
    if (type == QLatin1String("DATE") && given != QMetaType::QDate && given != QMetaType::QDateTime)
        return CDate(value);
    if (type == QLatin1String("VARIANT_BOOL") && given == QMetaType::QString)
        return CBool(value);
    if (type != QLatin1String("OLE_COLOR") || given == QMetaType::QColor)
        return value;
    bool numeric = false;
    value.toLongLong(&numeric);
    if (!numeric)
        return value;
    const auto *widget = qobject_cast<const QWidget *>(control);
    return colourFromOleColor(value, widget ? widget->palette() : QGuiApplication::palette(), what);
}

QVariant toHost(const TypeLibMember &m, const QVariant &value)
{
    if (isColour(m) && value.metaType().id() == QMetaType::QColor)
        return oleColorFromColour(value.value<QColor>());
    return value;
}

QVariant readMember(QObject *control, const TypeLibMember &m, const DispatchBinding &b, const QString &what)
{
    if (b.property && b.property->isReadable())
        return toHost(m, b.property->read(control));
    std::vector<QVariant> none;
    if (b.getter)
        return toHost(m, invokeMethod(control, *b.getter, none));
    raise(ErrMemberNotSupported, what);
}

void writeMember(QObject *control, const TypeLibMember &m, const DispatchBinding &b, QVariant &value,
                 const QString &what)
{
    const QVariant given = toControl(control, m.type, value, what);
    if (!b.setter && b.property && b.property->isWritable()) {
        const QVariant converted = convertArgument(given, b.property->metaType(), what);
        if (!b.property->write(control, converted))
            raise(ErrTypeMismatch, what);
        if (m.params.value(0).byRef)
            value = toHost(m, converted);
        return;
    }
    if (!b.setter)
        raise(ErrMemberNotSupported, what);
    std::vector<QVariant> args{convertArgument(given, parameterType(*b.setter, 0), what)};
    invokeMethod(control, *b.setter, args);
    if (m.params.value(0).byRef)
        value = toHost(m, args.front());
}

QVariant callMethod(QObject *control, const TypeLibMember &m, const DispatchBinding &b, QVariantList &args,
                    const QString &what)
{
    const int fixed = m.varArg ? int(m.params.size()) - 1 : int(args.size());
    if (args.size() < m.requiredArguments() || (m.maximumArguments() >= 0 && args.size() > m.maximumArguments()))
        raise(ErrWrongArgumentCount, what);
    const int passed = m.varArg ? fixed + 1 : int(args.size());
    const QMetaMethod *method = nullptr;
    for (const QMetaMethod &candidate : b.methods) {
        if (candidate.parameterCount() == passed)
            method = &candidate;
    }
    if (!method)
        raise(ErrWrongArgumentCount, what);

    std::vector<QVariant> converted;
    for (int i = 0; i < fixed; ++i)
        converted.push_back(
            convertArgument(toControl(control, m.params.at(i).type, args.at(i), what), parameterType(*method, i), what));
    if (m.varArg)
        converted.push_back(QVariant(args.mid(fixed)));
    const QVariant result = invokeMethod(control, *method, converted);
    for (int i = 0; i < fixed; ++i) {
        if (m.params.at(i).byRef)
            args[i] = converted.at(size_t(i));
    }
    return result;
}

QVariant invokeMember(QObject *control, const TypeLibClass &c, const TypeLibMember &m,
                      Dispatch::InvokeKind kind, QVariantList &args)
{
    const QString what = describe(c.name, m.name);
    const DispatchBinding b = bindMember(control->metaObject(), m);
    if (m.kind == TypeLibMember::Method) {
        if (kind != Dispatch::Method && kind != Dispatch::PropertyGet)
            raise(ErrMemberNotSupported, what);
        return callMethod(control, m, b, args, what);
    }
    switch (kind) {
    case Dispatch::Method:
    case Dispatch::PropertyGet:
        if (!m.get)
            raise(ErrMemberNotSupported, what);
        if (!args.isEmpty())
            raise(ErrWrongArgumentCount, what);
        return readMember(control, m, b, what);
    case Dispatch::PropertyPut:
    case Dispatch::PropertyPutRef:
        if (!(kind == Dispatch::PropertyPut ? m.put : m.putRef))
            raise(ErrMemberNotSupported, what);
        if (args.size() != 1)
            raise(ErrWrongArgumentCount, what);
        writeMember(control, m, b, args[0], what);
        return QVariant();
    }
    raise(ErrInvalidProcedureCall, what);
}

} // namespace

const TypeLibClass *Dispatch::ClassOf(const QObject *control)
{
    return control ? publishedClass(control->metaObject()) : nullptr;
}

qint32 Dispatch::GetIDOfName(const QObject *control, const QString &name)
{
    return memberOf(classOf(control, name), name, name).dispId;
}

QVariant Dispatch::Invoke(QObject *control, qint32 dispId, InvokeKind kind, QVariantList &args)
{
    const QString number = QStringLiteral("0x%1").arg(quint32(dispId), 8, 16, QLatin1Char('0'));
    const TypeLibClass &c = classOf(control, number);
    return invokeMember(control, c, memberOf(c, dispId, number), kind, args);
}

QVariant Dispatch::Invoke(QObject *control, const QString &name, InvokeKind kind, QVariantList &args)
{
    const TypeLibClass &c = classOf(control, name);
    return invokeMember(control, c, memberOf(c, name, name), kind, args);
}

QVariant Dispatch::Invoke(QObject *control, qint32 dispId, InvokeKind kind, const QVariantList &args)
{
    QVariantList copy = args;
    return Invoke(control, dispId, kind, copy);
}

QVariant Dispatch::Invoke(QObject *control, const QString &name, InvokeKind kind, const QVariantList &args)
{
    QVariantList copy = args;
    return Invoke(control, name, kind, copy);
}

QObject *Dispatch::Advise(QObject *control, EventSink sink)
{
    const TypeLibClass &c = classOf(control, QStringLiteral("events"));
    return new EventRelay(control, c.eventInterface, std::move(sink));
}

} // namespace PanelKestrin
