#include "notificationevent.h"

namespace NVB::Common::Communication::V2 {

NotificationEvent::NotificationEvent(QSharedPointer<NotificationMessage> message)
    : m_message(std::move(message))
{ }

} // namespace NVB::Common::Communication::V2
