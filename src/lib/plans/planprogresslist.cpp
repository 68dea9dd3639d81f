#include "plans/planprogresslist.h"

#include <QCoreApplication>

#include "core/nvldebug.h"
#include "service/v2/notification/planprogress.h"
#include "service/v2/notification/startedplan.h"
#include "service/v2/notification/stoppedplan.h"
#include "service/v2/notificationevent.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication::V2;

namespace {
QPointer<PlanProgressList> g_instance;
bool g_created = false;
} // namespace

PlanProgressList::PlanProgressList()
    : NotificationSubscriber(
        {Notification::PlanProgress::TypeId, Notification::StoppedPlan::TypeId, Notification::StartedPlan::TypeId})
{
    if (QCoreApplication* app = QCoreApplication::instance())
        connect(app, &QCoreApplication::aboutToQuit, this, &QObject::deleteLater);
}

PlanProgressList::~PlanProgressList() = default;

QPointer<PlanProgressList> PlanProgressList::instance()
{
    if (!g_created) {
        g_created = true;
        g_instance = new PlanProgressList();
    }
    return g_instance;
}

PlanProgressList::Progress PlanProgressList::value(const QUuid& id) const
{
    return m_progress.value(id);
}

bool PlanProgressList::handleNotificationEvent(NotificationEvent* event)
{
    if (!event || event->message().isNull())
        return true;
    const Message message = event->message();
    const QUuid type = message->type();
    if (type == Notification::PlanProgress::TypeId)
        onNotificationPlanProgress(message);
    else if (type == Notification::StoppedPlan::TypeId)
        onNotificationStoppedPlan(message);
    else if (type == Notification::StartedPlan::TypeId)
        onNotificationStartedPlan(message);
    return true;
}

void PlanProgressList::onNotificationPlanProgress(const Message& message)
{
    try {
        const auto data = message->data<Notification::PlanProgress>();
        if (data.isNull())
            throw QStringLiteral("Internal error: notification data is 0x00");
        m_progress.insert(data->planId(), qMakePair(data->progressData(), data->progressItemList()));
        emit updated(data->planId());
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

void PlanProgressList::onNotificationStoppedPlan(const Message& message)
{
    try {
        const auto data = message->data<Notification::StoppedPlan>();
        if (data.isNull())
            throw QStringLiteral("Internal error: notification data is 0x00");
        m_progress.remove(data->planId());
        emit planStopped(data->planId());
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

void PlanProgressList::onNotificationStartedPlan(const Message& message)
{
    try {
        const auto data = message->data<Notification::StartedPlan>();
        if (data.isNull())
            throw QStringLiteral("Internal error: notification data is 0x00");
        emit planStarted(data->planId());
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

} // namespace NVB::GUI
