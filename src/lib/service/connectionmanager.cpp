#include "connectionmanager.h"

#include <QCoreApplication>

#include "service/servicelink.h"

namespace NVB::Common::Communication {

ConnectionManager* ConnectionManager::s_instance = nullptr;

QPointer<ConnectionManager> ConnectionManager::instance()
{
    if (!s_instance)
        s_instance = new ConnectionManager;
    return s_instance;
}

ConnectionManager::ConnectionManager()
{
    if (QCoreApplication* application = QCoreApplication::instance())
        moveToThread(application->thread());
    QPointer<ServiceLink> link = ServiceLink::instance();
    connect(link, &ServiceLink::connected, this, &ConnectionManager::localManagmentConnected);
    connect(link, &ServiceLink::disconnected, this, &ConnectionManager::localManagmentDisconnected);
}

bool ConnectionManager::isLocalManagmentConnected() const
{
    QPointer<ServiceLink> link = ServiceLink::instance();
    return link && link->isConnected();
}

} // namespace NVB::Common::Communication
