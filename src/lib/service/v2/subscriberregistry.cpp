#include "subscriberregistry.h"

#include "core/nvldebug.h"
#include "service/v2/notificationevent.h"
#include "service/v2/notificationmessage.h"
#include "service/v2/notificationsubscriber.h"

namespace NVB::Common::Communication::V2 {

SubscriberRegistry& SubscriberRegistry::instance()
{
    static SubscriberRegistry registry;
    return registry;
}

void SubscriberRegistry::add(NotificationSubscriber* subscriber, const QList<QUuid>& types)
{
    const quint64 serial = m_nextSerial++;
    m_serials.insert(subscriber, serial);
    QList<QUuid> seen;
    for (const QUuid& type : types) {
        if (seen.contains(type))
            continue;
        seen.append(type);
        m_byType[type].append(Entry {subscriber, serial});
    }
}

void SubscriberRegistry::remove(NotificationSubscriber* subscriber)
{
    const quint64 serial = m_serials.take(subscriber);
    if (!serial)
        return;
    for (auto it = m_byType.begin(); it != m_byType.end();) {
        QList<Entry>& entries = it.value();
        for (int i = entries.size() - 1; i >= 0; --i)
            if (entries.at(i).subscriber == subscriber)
                entries.removeAt(i);
        if (entries.isEmpty())
            it = m_byType.erase(it);
        else
            ++it;
    }
}

void SubscriberRegistry::deliver(const QSharedPointer<NotificationMessage>& message)
{
    const QList<Entry> entries = m_byType.value(message->type());
    if (entries.isEmpty())
        return;
    NotificationEvent event(message);
    for (const Entry& entry : entries) {
        if (m_serials.value(entry.subscriber) != entry.serial)
            continue;
        try {
            entry.subscriber->handleNotificationEvent(&event);
        } catch (const QString& text) {
            // Handlers catch their own failures; this keeps one stray throw
            // from starving the other subscribers.
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        }
    }
}

int SubscriberRegistry::subscriberCount(const QUuid& type) const
{
    return m_byType.value(type).size();
}

} // namespace NVB::Common::Communication::V2
