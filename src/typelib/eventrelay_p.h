#pragma once

// Carries a control's signals to a host's event sink by dispatch number. One relay per sink,
// a child of the control; deleting it ends the delivery.

#include <PanelKestrin/dispatch.h>
#include <PanelKestrin/typelibrary.h>

#include <QList>
#include <QMetaMethod>
#include <QObject>

namespace PanelKestrin {

class EventRelay : public QObject
{
public:
    EventRelay(QObject *control, const TypeLibInterface &events, Dispatch::EventSink sink);

    // Each connected signal arrives here as a slot numbered after QObject's own methods.
    int qt_metacall(QMetaObject::Call call, int id, void **argv) override;

private:
    void deliver(int index, void **argv);

    struct Event
    {
        qint32 dispId;
        QMetaMethod signal;
        QString what;
    };
    QList<Event> m_events;
    Dispatch::EventSink m_sink;
};

} // namespace PanelKestrin
