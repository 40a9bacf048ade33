#include "typelib/eventrelay_p.h"
#include "platform/latebinding_p.h"
#include "typelib/dispatchbinding_p.h"

namespace PanelKestrin {

EventRelay::EventRelay(QObject *control, const TypeLibInterface &events, Dispatch::EventSink sink)
    : QObject(control), m_sink(std::move(sink))
{
    const int firstSlot = QObject::staticMetaObject.methodCount();
    for (const TypeLibMember &event : events.members) {
        const DispatchBinding b = bindMember(control->metaObject(), event);
        if (b.methods.size() != 1)
            continue; // an event the control does not declare is never raised
        const int slot = firstSlot + int(m_events.size());
        m_events.append({event.dispId, b.methods.first(), QStringLiteral("'%1' of %2").arg(event.name, events.name)});
        QMetaObject::connect(control, b.methods.first().methodIndex(), this, slot, Qt::DirectConnection);
    }
}

int EventRelay::qt_metacall(QMetaObject::Call call, int id, void **argv)
{
    id = QObject::qt_metacall(call, id, argv);
    if (id < 0 || call != QMetaObject::InvokeMetaMethod)
        return id;
    if (id < m_events.size())
        deliver(id, argv);
    return id - int(m_events.size());
}

// The signal's arguments are the control's own variables (every parameter is a reference):
// they are read into the list the sink sees, and what the sink leaves there is written back
// before the control reads them.
void EventRelay::deliver(int index, void **argv)
{
    const Event &event = m_events.at(index);
    QVariantList args;
    for (int i = 0; i < event.signal.parameterCount(); ++i) {
        const QMetaType type = parameterType(event.signal, i);
        args.append(type.id() == QMetaType::QVariant ? *static_cast<QVariant *>(argv[i + 1])
                                                     : QVariant(type, argv[i + 1]));
    }
    m_sink(event.dispId, args);
    for (int i = 0; i < event.signal.parameterCount() && i < args.size(); ++i) {
        const QMetaType type = parameterType(event.signal, i);
        if (type.id() == QMetaType::QVariant) {
            *static_cast<QVariant *>(argv[i + 1]) = args.at(i);
            continue;
        }
        const QVariant value = convertArgument(args.at(i), type, event.what);
        type.destruct(argv[i + 1]);
        type.construct(argv[i + 1], value.constData());
    }
}

} // namespace PanelKestrin
