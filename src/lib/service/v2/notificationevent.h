#pragma once

#include <QSharedPointer>

#include "service/v2/notificationmessage.h"

namespace NVB::Common::Communication::V2 {

// What a subscriber is handed: one message, shared by every subscriber of
// its type.
class NotificationEvent
{
public:
    explicit NotificationEvent(QSharedPointer<NotificationMessage> message);

    QSharedPointer<NotificationMessage> message() const { return m_message; }

private:
    QSharedPointer<NotificationMessage> m_message;
};

} // namespace NVB::Common::Communication::V2
