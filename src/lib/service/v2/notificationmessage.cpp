#include "notificationmessage.h"

namespace NVB::Common::Communication::V2 {

NotificationMessage::NotificationMessage(QObject* parent)
    : QObject(parent)
{ }

NotificationMessage::NotificationMessage(const QUuid& type, const QByteArray& bytes, QObject* parent)
    : QObject(parent)
    , m_type(type)
    , m_bytes(bytes)
{ }

void NotificationMessage::setData(const Data& data)
{
    m_type = data.typeId();
    m_bytes = data.toBytes();
}

} // namespace NVB::Common::Communication::V2
