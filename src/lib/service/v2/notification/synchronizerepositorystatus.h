#pragma once

#include <QByteArray>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

#include "service/v2/notification/typeids.h"
#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2::Notification {

class SynchronizeRepositoryStatus : public NotificationData
{
public:
    static constexpr QUuid TypeId = TypeIds::SynchronizeRepositoryStatus;

    // Null when the bytes are not a JSON object or a value has the wrong type;
    // a missing key reads as an empty value.
    static QSharedPointer<SynchronizeRepositoryStatus> from(const QByteArray& bytes);

    QUuid typeId() const override { return TypeId; }
    QByteArray toBytes() const override;

    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& value) { m_connectionId = value; }
    QString message() const { return m_message; }
    void setMessage(const QString& value) { m_message = value; }

private:
    QUuid m_connectionId;
    QString m_message;
};

} // namespace NVB::Common::Communication::V2::Notification
