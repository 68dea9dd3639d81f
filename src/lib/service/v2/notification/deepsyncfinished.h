#pragma once

#include <QByteArray>
#include <QSharedPointer>
#include <QUuid>

#include "service/v2/notification/typeids.h"
#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2::Notification {

class DeepSyncFinished : public NotificationData
{
public:
    static constexpr QUuid TypeId = TypeIds::DeepSyncFinished;

    // Null when the bytes are not a JSON object or a value has the wrong type;
    // a missing key reads as an empty value.
    static QSharedPointer<DeepSyncFinished> from(const QByteArray& bytes);

    QUuid typeId() const override { return TypeId; }
    QByteArray toBytes() const override;

    QUuid bunchId() const { return m_bunchId; }
    void setBunchId(const QUuid& value) { m_bunchId = value; }
    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& value) { m_connectionId = value; }
    QUuid generationId() const { return m_generationId; }
    void setGenerationId(const QUuid& value) { m_generationId = value; }

private:
    QUuid m_bunchId;
    QUuid m_connectionId;
    QUuid m_generationId;
};

} // namespace NVB::Common::Communication::V2::Notification
