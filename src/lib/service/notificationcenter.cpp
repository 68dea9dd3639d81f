#include "notificationcenter.h"

#include <QCoreApplication>

#include "service/servicelink.h"
#include "service/v2/subscriberregistry.h"

namespace NVB::Common::Communication {

NotificationCenter* NotificationCenter::s_instance = nullptr;

QPointer<NotificationCenter> NotificationCenter::instance()
{
    if (!s_instance) {
        s_instance = new NotificationCenter;
        ServiceLink::instance();
    }
    return s_instance;
}

NotificationCenter::NotificationCenter()
{
    if (QCoreApplication* application = QCoreApplication::instance())
        moveToThread(application->thread());
    qRegisterMetaType<QSharedPointer<V2::NotificationMessage>>();
}

void NotificationCenter::deliver(const QJsonDocument& document)
{
    emit notification(document);
}

void NotificationCenter::deliverV2(const QSharedPointer<V2::NotificationMessage>& message)
{
    if (!message)
        return;
    V2::SubscriberRegistry::instance().deliver(message);
    emit notificationV2(message);
}

} // namespace NVB::Common::Communication
