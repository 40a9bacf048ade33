#pragma once

#include <PanelKestrin/panelkestrin_export.h>

#include <QString>
#include <QVariant>
#include <QVariantList>

#include <functional>

class QObject;

namespace PanelKestrin {

struct TypeLibClass;

// Late binding over the published controls: any member of a live control's default interface
// reached by its dispatch number or its name, and its events delivered by their numbers.
// What a host that knows the controls only through the type description calls.
class PANELKESTRIN_EXPORT Dispatch
{
public:
    // How a member is reached, with the classic flag values.
    enum InvokeKind : int {
        Method = 1,
        PropertyGet = 2,
        PropertyPut = 4,
        PropertyPutRef = 8,
    };

    // Receives a control's events: the event's dispatch number and its arguments, every one by
    // reference: what the sink writes into args is read back by the control (Cancel above all).
    using EventSink = std::function<void(qint32 dispId, QVariantList &args)>;

    // The published class of a control (TrnControl, gridcontrol ...); null for any other object.
    static const TypeLibClass *ClassOf(const QObject *control);

    // The dispatch number of a member of the control's default interface, the name matched
    // case-insensitively. RuntimeError 438 for a name the interface does not have.
    static qint32 GetIDOfName(const QObject *control, const QString &name);

    // Calls a method, reads a property or variable (Method or PropertyGet), or assigns one
    // (PropertyPut by value, PropertyPutRef an object reference). Arguments are converted to
    // the member's parameter types; after the call, each by-reference argument holds what the
    // member left in it. Returns the result or the value read (Empty for none).
    // Raises RuntimeError 91 for no control, 438 for a number or name the control's interface
    // lacks (or an access it does not offer), 450 for a wrong argument count, 13 for an
    // argument that does not convert. Errors of the member itself reach the caller unchanged.
    static QVariant Invoke(QObject *control, qint32 dispId, InvokeKind kind, QVariantList &args);
    static QVariant Invoke(QObject *control, const QString &name, InvokeKind kind, QVariantList &args);
    // The same for arguments the caller does not read back.
    static QVariant Invoke(QObject *control, qint32 dispId, InvokeKind kind, const QVariantList &args = {});
    static QVariant Invoke(QObject *control, const QString &name, InvokeKind kind,
                           const QVariantList &args = {});

    // Delivers every event of the control's event interface to sink, from now until the
    // returned connection is deleted. The connection is a child of the control and goes with
    // it (hold it in a QPointer when the control may go first). Raises RuntimeError 91 for no
    // control and 438 for an object that is not a published control.
    static QObject *Advise(QObject *control, EventSink sink);
};

} // namespace PanelKestrin
