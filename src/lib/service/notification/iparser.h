#pragma once

#include <QMap>
#include <QString>
#include <QUuid>
#include <QVariant>

namespace NVB::Common::Communication::Notification {

// A V1 notification taken apart: its type and the content of "Message".
class IParser
{
public:
    virtual ~IParser() = default;
    virtual QUuid type() const = 0;
    virtual QMap<QString, QVariant> message() const = 0;
};

} // namespace NVB::Common::Communication::Notification
