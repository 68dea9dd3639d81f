#include "notificationsubscriber.h"

#include <QCoreApplication>

#include "service/notificationcenter.h"
#include "service/v2/subscriberregistry.h"

namespace NVB::Common::Communication::V2 {

NotificationSubscriber::NotificationSubscriber(const QList<QUuid>& types)
    : m_types(types)
{
    SubscriberRegistry::instance().add(this, m_types);
    // Notifications only flow while the centre and its engine link exist.
    if (QCoreApplication::instance())
        NotificationCenter::instance();
}

NotificationSubscriber::~NotificationSubscriber()
{
    SubscriberRegistry::instance().remove(this);
}

} // namespace NVB::Common::Communication::V2
