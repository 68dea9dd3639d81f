#include "progressitem.h"

#include "core/nvldebug.h"
#include "records/plan/planobject.h"
#include "service/progress/iprogressitem.h"
#include "service/v2/notification/planprogress.h"
#include "service/v2/notificationevent.h"

namespace NVB::GUI::Progress {

using namespace NVB::Common::Communication::V2;

ProgressItem::ProgressItem(QSharedPointer<NVB::Info::Plan::PlanObject> plan, QObject* parent)
    : QObject(parent)
    , NotificationSubscriber({Notification::PlanProgress::TypeId})
    , m_plan(std::move(plan))
{ }

bool ProgressItem::handleNotificationEvent(NotificationEvent* event)
{
    if (event && !event->message().isNull() && event->message()->type() == Notification::PlanProgress::TypeId)
        onNotificationProgress(event->message());
    return true;
}

void ProgressItem::onNotificationProgress(const QSharedPointer<NotificationMessage>& message)
{
    try {
        const auto data = message->data<Notification::PlanProgress>();
        if (data.isNull())
            throw QStringLiteral("Internal error: invalid notification payload");
        if (!m_plan || data->planId() != m_plan->id())
            return;
        m_subType = data->subType();
        m_percent = data->progressData() ? data->progressData()->progress() : -1;
        QString text;
        for (const auto& item : data->progressItemList()) {
            if (item)
                text += item->toString() + QLatin1Char('\n');
        }
        m_text = text;
        emit updated(m_text);
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

} // namespace NVB::GUI::Progress
