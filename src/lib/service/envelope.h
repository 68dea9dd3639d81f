#pragma once

#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace NVB::Common::Communication {

namespace V2 {
class NotificationData;
}

// Builds the frames an engine sends, so that the engine and the test peer
// answer in exactly the form the console reads.
class Envelope
{
public:
    // A V1 reply to a request frame: its "command" and "id" echoed, "type"
    // "reply", "status" "success" and the data under "data".
    static QJsonObject reply(const QJsonObject& request, const QJsonObject& data);
    // The same with "status" "error" and the text under "error_string".
    static QJsonObject errorReply(const QJsonObject& request, const QString& errorString);

    // A V2 reply to a request frame.
    static QJsonObject replyV2(
        const QJsonObject& request, int status, const QJsonObject& response = {}, const QString& errorMessage = {});

    // A V1 notification; senderId may be null.
    static QJsonObject notification(const QUuid& type, const QJsonObject& message, const QUuid& senderId = {});
    // A V2 notification carrying a payload.
    static QJsonObject notificationV2(const V2::NotificationData& data);
    static QJsonObject notificationV2(const QUuid& typeId, const QJsonObject& payload);
};

} // namespace NVB::Common::Communication
