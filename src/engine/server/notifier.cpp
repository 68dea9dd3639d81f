#include "notifier.h"

#include "service/envelope.h"

namespace NVB::Engine {

using NVB::Common::Communication::Envelope;

void Notifier::notify(const QUuid& type, const QJsonObject& message) const
{
    if (m_sink)
        m_sink(Envelope::notification(type, message));
}

void Notifier::notifyV2(const NVB::Common::Communication::V2::NotificationData& data) const
{
    if (m_sink)
        m_sink(Envelope::notificationV2(data));
}

} // namespace NVB::Engine
