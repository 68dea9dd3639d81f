#include "applicationeventcontroller.h"

#include <memory>

#include <QCoreApplication>

#include "core/nvldebug.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI {

using namespace NVB::Common::Communication;

ApplicationEventController::ApplicationEventController(QObject* parent)
    : QObject(parent)
    , m_inited(false)
{ }

void ApplicationEventController::init()
{
    if (m_inited)
        return;
    if (QPointer<NotificationCenter> center = NotificationCenter::instance()) {
        // Queued, so that a CloseAll quits from the event loop and never in
        // the middle of delivering a notification.
        connect(center, &NotificationCenter::notification, this, &ApplicationEventController::onNotification,
            Qt::QueuedConnection);
    }
    if (QPointer<ConnectionManager> connection = ConnectionManager::instance()) {
        connect(connection, &ConnectionManager::localManagmentConnected, this,
            &ApplicationEventController::onLocalManagmentStatusChanged);
        connect(connection, &ConnectionManager::localManagmentDisconnected, this,
            &ApplicationEventController::onLocalManagmentStatusChanged);
        onLocalManagmentStatusChanged();
    }
    m_inited = true;
}

void ApplicationEventController::onNotification(const QJsonDocument& document)
{
    std::unique_ptr<Notification::IParser> parser(Notification::ParserFactory::instance().create(document));
    if (!parser) {
        NVL::NvlDebug(QStringLiteral("NVB")).debug() << QStringLiteral("Notiifcation is 0x00");
        return;
    }
    if (parser->type() == Notification::Format::System::CloseAll::Type) {
        QCoreApplication::quit();
    } else if (parser->type() == Notification::Format::System::UpdateStart::Type) {
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Notification to start update...");
        emit updateStarted();
    } else if (parser->type() == Notification::Format::System::DefaultSettingsChanged::Type) {
        // The engine writes some keys itself ("DatabasePath" when it moves
        // its store); the console's copy must not go on with the old value.
        NVB::DefaultSettings::instance()->reload();
    }
}

void ApplicationEventController::onLocalManagmentStatusChanged()
{
    QPointer<ConnectionManager> connection = ConnectionManager::instance();
    if (connection.isNull())
        return;
    if (connection->isLocalManagmentConnected())
        emit localManagmentConnected();
    else
        emit localManagmentDisconnected();
}

} // namespace NVB::GUI
