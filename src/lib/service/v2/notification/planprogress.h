#pragma once

#include <QByteArray>
#include <QList>
#include <QSharedPointer>
#include <QUuid>

#include "service/progress/iprogressitem.h"
#include "service/progress/progressmanagerdata.h"
#include "service/v2/notification/typeids.h"
#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2::Notification {

class PlanProgress : public NotificationData
{
public:
    static constexpr QUuid TypeId = TypeIds::PlanProgress;

    // Null when the bytes are not a JSON object or a value has the wrong type;
    // a missing key reads as an empty value.
    static QSharedPointer<PlanProgress> from(const QByteArray& bytes);

    QUuid typeId() const override { return TypeId; }
    QByteArray toBytes() const override;

    QUuid planId() const { return m_planId; }
    void setPlanId(const QUuid& value) { m_planId = value; }
    QSharedPointer<NVB::System::Progress::ProgressManagerData> progressData() const { return m_progressData; }
    void setProgressData(const QSharedPointer<NVB::System::Progress::ProgressManagerData>& value)
    {
        m_progressData = value;
    }
    QList<QSharedPointer<NVB::System::Progress::IProgressItem>> progressItemList() const { return m_progressItemList; }
    void setProgressItemList(const QList<QSharedPointer<NVB::System::Progress::IProgressItem>>& value)
    {
        m_progressItemList = value;
    }
    int subType() const { return m_subType; }
    void setSubType(int value) { m_subType = value; }

private:
    QUuid m_planId;
    QSharedPointer<NVB::System::Progress::ProgressManagerData> m_progressData;
    QList<QSharedPointer<NVB::System::Progress::IProgressItem>> m_progressItemList;
    int m_subType = 0;
};

} // namespace NVB::Common::Communication::V2::Notification
