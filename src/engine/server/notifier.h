#pragma once

#include <functional>

#include <QJsonObject>
#include <QUuid>

namespace NVB::Common::Communication::V2 {
class NotificationData;
}

namespace NVB::Engine {

// Tells every connected console what changed. The engine's logic speaks to
// this; the server gives it the way out.
class Notifier
{
public:
    using Sink = std::function<void(const QJsonObject& frame)>;

    void setSink(Sink sink) { m_sink = std::move(sink); }

    void notify(const QUuid& type, const QJsonObject& message) const;
    void notifyV2(const NVB::Common::Communication::V2::NotificationData& data) const;

private:
    Sink m_sink;
};

} // namespace NVB::Engine
