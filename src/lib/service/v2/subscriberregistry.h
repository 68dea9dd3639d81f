#pragma once

#include <QHash>
#include <QList>
#include <QSharedPointer>
#include <QUuid>

namespace NVB::Common::Communication::V2 {

class NotificationMessage;
class NotificationSubscriber;

// Who wants which V2 notification type. Delivery walks a snapshot of the
// subscribers of a type and checks before each call that the subscriber is
// still registered, so a subscriber may come or go (even be destroyed) from
// inside a handler: one that has gone is not called, one that has just come
// hears from the next notification on.
class SubscriberRegistry
{
public:
    static SubscriberRegistry& instance();

    void add(NotificationSubscriber* subscriber, const QList<QUuid>& types);
    void remove(NotificationSubscriber* subscriber);
    void deliver(const QSharedPointer<NotificationMessage>& message);

    int subscriberCount(const QUuid& type) const;

private:
    SubscriberRegistry() = default;

    struct Entry
    {
        NotificationSubscriber* subscriber;
        quint64 serial;
    };

    QHash<QUuid, QList<Entry>> m_byType;
    // Registration serials tell a live subscriber from a new one that happens
    // to reuse the address of one destroyed during the same delivery.
    QHash<NotificationSubscriber*, quint64> m_serials;
    quint64 m_nextSerial = 1;
};

} // namespace NVB::Common::Communication::V2
