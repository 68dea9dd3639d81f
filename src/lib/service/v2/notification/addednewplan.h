#pragma once

#include <QByteArray>
#include <QSharedPointer>
#include <QUuid>

#include "service/v2/notification/typeids.h"
#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2::Notification {

class AddedNewPlan : public NotificationData
{
public:
    static constexpr QUuid TypeId = TypeIds::AddedNewPlan;

    // Null when the bytes are not a JSON object or a value has the wrong type;
    // a missing key reads as an empty value.
    static QSharedPointer<AddedNewPlan> from(const QByteArray& bytes);

    QUuid typeId() const override { return TypeId; }
    QByteArray toBytes() const override;

    QUuid planId() const { return m_planId; }
    void setPlanId(const QUuid& value) { m_planId = value; }
    int subType() const { return m_subType; }
    void setSubType(int value) { m_subType = value; }

private:
    QUuid m_planId;
    int m_subType = 0;
};

} // namespace NVB::Common::Communication::V2::Notification
