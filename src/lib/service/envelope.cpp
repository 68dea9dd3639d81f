#include "envelope.h"

#include <QJsonDocument>

#include "service/commands/header.h"
#include "service/notification/format.h"
#include "service/v2/notificationdata.h"
#include "service/v2/wire.h"

namespace NVB::Common::Communication {

namespace Header = Commands::Format::Header;
namespace NHeader = Notification::Format::Header;

namespace {
QString key(const char* text)
{
    return QString::fromLatin1(text);
}
} // namespace

QJsonObject Envelope::reply(const QJsonObject& request, const QJsonObject& data)
{
    return {{key(Header::Command), request.value(key(Header::Command))},
        {key(Header::Id), request.value(key(Header::Id))}, {key(Header::Type::Key), key(Header::Type::Reply)},
        {key(Header::Status::Key), key(Header::Status::Value::Success)}, {key(Header::Data), data}};
}

QJsonObject Envelope::errorReply(const QJsonObject& request, const QString& errorString)
{
    return {{key(Header::Command), request.value(key(Header::Command))},
        {key(Header::Id), request.value(key(Header::Id))}, {key(Header::Type::Key), key(Header::Type::Reply)},
        {key(Header::Status::Key), key(Header::Status::Value::Error)}, {key(Header::Status::ErrorString), errorString},
        {key(Header::Data), QJsonObject()}};
}

QJsonObject Envelope::replyV2(
    const QJsonObject& request, int status, const QJsonObject& response, const QString& errorMessage)
{
    return {{key(V2::Wire::Type::Key), key(V2::Wire::Type::Reply)},
        {key(V2::Wire::Id), request.value(key(V2::Wire::Id))},
        {key(V2::Wire::CommandId), request.value(key(V2::Wire::CommandId))}, {key(V2::Wire::Status), status},
        {key(V2::Wire::ErrorMessage), errorMessage}, {key(V2::Wire::Response), response}};
}

QJsonObject Envelope::notification(const QUuid& type, const QJsonObject& message, const QUuid& senderId)
{
    return {{key(NHeader::Id), QUuid::createUuid().toString()}, {key(NHeader::SenderId), senderId.toString()},
        {key(NHeader::Receiver), QString()}, {key(NHeader::Type), type.toString()}, {key(NHeader::Message), message}};
}

QJsonObject Envelope::notificationV2(const V2::NotificationData& data)
{
    return notificationV2(data.typeId(), QJsonDocument::fromJson(data.toBytes()).object());
}

QJsonObject Envelope::notificationV2(const QUuid& typeId, const QJsonObject& payload)
{
    return {{key(V2::Wire::Type::Key), key(V2::Wire::Type::Notification)}, {key(V2::Wire::TypeId), typeId.toString()},
        {key(V2::Wire::Payload), payload}};
}

} // namespace NVB::Common::Communication
