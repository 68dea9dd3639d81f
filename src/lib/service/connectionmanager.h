#pragma once

#include <QObject>
#include <QPointer>

namespace NVB::Common::Communication {

// The state of the connection to the local engine ("local management").
class ConnectionManager : public QObject
{
    Q_OBJECT
public:
    static QPointer<ConnectionManager> instance();

    bool isLocalManagmentConnected() const;

signals:
    void localManagmentConnected();
    void localManagmentDisconnected();

private:
    ConnectionManager();
    static ConnectionManager* s_instance;
};

} // namespace NVB::Common::Communication
