#include "interface.h"

#include <QNetworkInterface>

namespace NVL::Network {

Interface::Interface(const QString& name, const QString& address, int protocol, bool loopback)
    : m_name(name)
    , m_address(address)
    , m_protocol(protocol)
    , m_loopback(loopback)
{ }

QList<Interface> Interface::allInterfaces()
{
    QList<Interface> result;
    for (const QNetworkInterface& nic : QNetworkInterface::allInterfaces()) {
        if (!nic.flags().testFlag(QNetworkInterface::IsUp))
            continue;
        for (const QNetworkAddressEntry& entry : nic.addressEntries()) {
            const QHostAddress ip = entry.ip();
            int protocol = -1;
            if (ip.protocol() == QAbstractSocket::IPv4Protocol)
                protocol = 0;
            else if (ip.protocol() == QAbstractSocket::IPv6Protocol)
                protocol = 1;
            result.append(Interface(nic.name(), ip.toString(), protocol, ip.isLoopback()));
        }
    }
    return result;
}

} // namespace NVL::Network
