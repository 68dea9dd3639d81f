#pragma once

#include <QList>
#include <QString>

namespace NVL::Network {

// One address of one network interface of this machine.
class Interface
{
public:
    Interface(const QString& name, const QString& address, int protocol, bool loopback);

    // Every address of every interface that is up, in the system's order.
    static QList<Interface> allInterfaces();

    QString name() const { return m_name; }
    QString address() const { return m_address; }
    // 0 for IPv4, 1 for IPv6, -1 for anything else.
    int protocol() const { return m_protocol; }
    bool isLoopback() const { return m_loopback; }

private:
    QString m_name;
    QString m_address;
    int m_protocol;
    bool m_loopback;
};

} // namespace NVL::Network
