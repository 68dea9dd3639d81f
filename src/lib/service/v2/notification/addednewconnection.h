#pragma once

#include <QByteArray>
#include <QSharedPointer>
#include <QUuid>

#include "service/v2/notification/typeids.h"
#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2::Notification {

class AddedNewConnection : public NotificationData
{
public:
    static constexpr QUuid TypeId = TypeIds::AddedNewConnection;

    // Null when the bytes are not a JSON object or a value has the wrong type;
    // a missing key reads as an empty value.
    static QSharedPointer<AddedNewConnection> from(const QByteArray& bytes);

    QUuid typeId() const override { return TypeId; }
    QByteArray toBytes() const override;

    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& value) { m_connectionId = value; }

private:
    QUuid m_connectionId;
};

} // namespace NVB::Common::Communication::V2::Notification
