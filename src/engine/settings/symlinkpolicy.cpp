#include "symlinkpolicy.h"

namespace NVB::Engine {

SymlinkPolicy SymlinkPolicy::fromSetting(const QString& value)
{
    const QString text = value.trimmed().toLower();
    SymlinkPolicy policy;
    if (text == QLatin1String("2") || text == QLatin1String("true"))
        policy.followFileLinks = true;
    else if (text == QLatin1String("1") || text == QLatin1String("4"))
        policy.keepLinks = false;
    return policy;
}

} // namespace NVB::Engine
