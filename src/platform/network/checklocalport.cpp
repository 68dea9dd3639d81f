#include "checklocalport.h"

#include <QHostAddress>
#include <QTcpServer>

namespace NVL::Network {

CheckLocalPort::CheckLocalPort(int port)
    : m_port(port)
{ }

bool CheckLocalPort::check() const
{
    if (m_port <= 0 || m_port > 65535)
        return false;
    // Binding the wildcard address fails while any address holds the port in
    // the listening state, loopback included, which is what a server of ours
    // would do.
    for (const QHostAddress& address : {QHostAddress(QHostAddress::AnyIPv4), QHostAddress(QHostAddress::Any)}) {
        QTcpServer probe;
        if (probe.listen(address, quint16(m_port))) {
            probe.close();
            continue;
        }
        // A machine without IPv6 cannot answer for the dual-stack address.
        if (address == QHostAddress(QHostAddress::Any)
            && probe.serverError() == QAbstractSocket::UnsupportedSocketOperationError)
            continue;
        return false;
    }
    return true;
}

} // namespace NVL::Network
