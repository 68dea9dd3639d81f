#pragma once

#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QSharedPointer>
#include <QUuid>

#include "service/progress/iprogressitem.h"
#include "service/progress/progressmanagerdata.h"
#include "service/v2/notificationmessage.h"
#include "service/v2/notificationsubscriber.h"

namespace NVB::GUI {

// The latest typed progress of each running plan. Kept for the main window;
// an entry goes when its plan stops.
class PlanProgressList : public QObject, public NVB::Common::Communication::V2::NotificationSubscriber
{
    Q_OBJECT
public:
    using Progress = QPair<QSharedPointer<NVB::System::Progress::ProgressManagerData>,
        QList<QSharedPointer<NVB::System::Progress::IProgressItem>>>;

    static QPointer<PlanProgressList> instance();

    // An empty pair for a plan without progress.
    Progress value(const QUuid& id) const;

    bool handleNotificationEvent(NVB::Common::Communication::V2::NotificationEvent* event) override;

signals:
    void updated(QUuid id);
    void planStarted(QUuid id);
    void planStopped(QUuid id);

private:
    PlanProgressList();
    ~PlanProgressList() override;

    using Message = QSharedPointer<NVB::Common::Communication::V2::NotificationMessage>;
    void onNotificationPlanProgress(const Message& message);
    void onNotificationStoppedPlan(const Message& message);
    void onNotificationStartedPlan(const Message& message);

    QMap<QUuid, Progress> m_progress;
};

} // namespace NVB::GUI
