#pragma once

#include <QByteArray>
#include <QSharedPointer>
#include <QUuid>

#include "service/v2/notification/typeids.h"
#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2::Notification {

class StartedPlan : public NotificationData
{
public:
    static constexpr QUuid TypeId = TypeIds::StartedPlan;

    // Null when the bytes are not a JSON object or a value has the wrong type;
    // a missing key reads as an empty value.
    static QSharedPointer<StartedPlan> from(const QByteArray& bytes);

    QUuid typeId() const override { return TypeId; }
    QByteArray toBytes() const override;

    QUuid planId() const { return m_planId; }
    void setPlanId(const QUuid& value) { m_planId = value; }

private:
    QUuid m_planId;
};

} // namespace NVB::Common::Communication::V2::Notification
