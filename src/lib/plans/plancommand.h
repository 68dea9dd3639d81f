#pragma once

#include <QJsonObject>
#include <QString>

namespace NVB::Common::Communication {
class ICommand;
}

namespace NVB::GUI {

// The way every plan view sends a V1 command: make it, let the caller wire
// its three ending signals, then put the arguments under "params" and send.
class PlanCommand
{
public:
    // A new command owned by the caller. Throws the channel's QString when
    // there is no manager or the name isn't registered.
    static NVB::Common::Communication::ICommand* create(const QString& name);
    // Puts the arguments under "params" of the prepared request.
    static void setParams(NVB::Common::Communication::ICommand* command, const QJsonObject& params);
    // setParams, then sends.
    static void exec(NVB::Common::Communication::ICommand* command, const QJsonObject& params);
    // The operating-system user every plan request is made for.
    static QString profile();
};

} // namespace NVB::GUI
