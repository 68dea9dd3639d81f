#include "plans/planstatuslist.h"

#include <QCoreApplication>
#include <QScopedPointer>

#include "core/nvldebug.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;
namespace Format = Notification::Format;

namespace {
QPointer<PlanStatusList> g_instance;
bool g_created = false;
} // namespace

PlanStatusList::PlanStatusList()
{
    if (QCoreApplication* app = QCoreApplication::instance())
        connect(app, &QCoreApplication::aboutToQuit, this, &QObject::deleteLater);
    if (QPointer<NotificationCenter> center = NotificationCenter::instance(); !center.isNull())
        connect(center, &NotificationCenter::notification, this, &PlanStatusList::onNotification);
}

PlanStatusList::~PlanStatusList() = default;

QPointer<PlanStatusList> PlanStatusList::instance()
{
    if (!g_created) {
        g_created = true;
        g_instance = new PlanStatusList();
    }
    return g_instance;
}

QMap<QString, QVariant> PlanStatusList::status(const QUuid& id) const
{
    return m_statuses.value(id);
}

void PlanStatusList::removeStatus(const QUuid& id)
{
    m_statuses.remove(id);
}

void PlanStatusList::onNotification(const QJsonDocument& document)
{
    QScopedPointer<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
    if (!parser) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug() << QStringLiteral("Notiifcation is 0x00");
        return;
    }
    const QUuid type = parser->type();
    if (type == Format::Plan::StateChange::Type) {
        const QMap<QString, QVariant> message = parser->message();
        const QUuid id(message.value(QLatin1String(Format::Plan::StateChange::Id)).toString());
        if (message.value(QLatin1String(Format::Plan::StateChange::State)).toInt() == 1)
            m_statuses.remove(id);
    } else if (type == Format::Worker::ReportProgress::Type) {
        const QMap<QString, QVariant> message = parser->message();
        const QUuid id(message.value(QLatin1String(Format::Worker::ReportProgress::PlanID)).toString());
        m_statuses.insert(id, message);
        emit updated(id, message);
    }
}

} // namespace NVB::GUI
