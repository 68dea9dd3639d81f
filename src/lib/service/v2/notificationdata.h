#pragma once

#include <QByteArray>
#include <QUuid>

namespace NVB::Common::Communication::V2 {

// The common base of V2 notification payloads, so that a message can be built
// from any of them by hand (NotificationMessage::setData) and the engine can
// send them.
class NotificationData
{
public:
    virtual ~NotificationData() = default;
    virtual QUuid typeId() const = 0;
    // The bytes that the payload's static from() reads back.
    virtual QByteArray toBytes() const = 0;
};

} // namespace NVB::Common::Communication::V2
