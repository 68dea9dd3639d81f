#include "notificationsubscriber.h"

#include "service/v2/subscriberregistry.h"

namespace NVB::Common::Communication::V2 {

NotificationSubscriber::NotificationSubscriber(const QList<QUuid>& types)
    : m_types(types)
{
    SubscriberRegistry::instance().add(this, m_types);
}

NotificationSubscriber::~NotificationSubscriber()
{
    SubscriberRegistry::instance().remove(this);
}

} // namespace NVB::Common::Communication::V2
