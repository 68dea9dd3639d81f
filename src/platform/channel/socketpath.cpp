#include "socketpath.h"

#include "core/apppath.h"

namespace NVB::Channel {

QString SocketPath::engine()
{
    const QString overridden = qEnvironmentVariable(EnvironmentVariable);
    if (!overridden.isEmpty())
        return overridden;
    return NVB::Defines::AppPath::to().runtime() + QStringLiteral("/engine.sock");
}

} // namespace NVB::Channel
