#pragma once

#include <QList>
#include <QUuid>

namespace NVB::Common::Communication::V2 {

class NotificationEvent;

// A second base for objects that want V2 notifications of given types. The
// object is registered for its types from construction to destruction and is
// called only for those types, on the GUI thread. The first subscriber brings
// up the notification centre and with it the engine link.
class NotificationSubscriber
{
public:
    explicit NotificationSubscriber(const QList<QUuid>& types);
    virtual ~NotificationSubscriber();

    NotificationSubscriber(const NotificationSubscriber&) = delete;
    NotificationSubscriber& operator=(const NotificationSubscriber&) = delete;

    QList<QUuid> subscribedTypes() const { return m_types; }

    // True when the event was taken.
    virtual bool handleNotificationEvent(NotificationEvent* event) = 0;

private:
    QList<QUuid> m_types;
};

} // namespace NVB::Common::Communication::V2
