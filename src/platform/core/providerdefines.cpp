#include "providerdefines.h"

#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"

namespace NVB::defines {

QString ProviderDefines::BuildVersion()
{
    return QStringLiteral(NVB_VERSION);
}

QString ProviderDefines::DisplayName()
{
    return NVB::Defines::Rebranding::instance()->value(NVB::Defines::RebrandingKeys::General::ProductName).toString();
}

} // namespace NVB::defines
