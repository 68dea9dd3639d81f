#pragma once

#include <QJsonDocument>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>

#include "service/v2/notificationmessage.h"

namespace NVB::Common::Communication {

// Hands every notification from the engine to the console. V1 notifications
// go to every listener of notification(); V2 notifications go to the
// subscribers registered for their type, then to listeners of
// notificationV2(). Creating the centre starts the engine connection.
class NotificationCenter : public QObject
{
    Q_OBJECT
public:
    static QPointer<NotificationCenter> instance();

    // Entry points of the channel; also used to replay a notification by hand.
    void deliver(const QJsonDocument& document);
    void deliverV2(const QSharedPointer<V2::NotificationMessage>& message);

signals:
    void notification(const QJsonDocument& document);
    void notificationV2(QSharedPointer<NVB::Common::Communication::V2::NotificationMessage> message);

private:
    NotificationCenter();
    static NotificationCenter* s_instance;
};

} // namespace NVB::Common::Communication
