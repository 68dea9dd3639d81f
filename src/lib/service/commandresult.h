#pragma once

#include <QJsonObject>

namespace NVB::Common::Communication {

class ICommand;

// The checks every V1 result slot makes, in their order.
class CommandResult
{
public:
    // The reply's "data" object. Throws QString "Local command reply format
    // error" when the command failed, timed out or has no object reply, and
    // the engine's own text when the reply's status is "error".
    static QJsonObject data(const ICommand* command);
    // The arguments the command was sent with, for slots that serve many
    // requests.
    static QJsonObject params(const ICommand* command);
};

} // namespace NVB::Common::Communication
