#pragma once

#include <QString>

namespace NVB::Defines {

// Values the managed edition's service writes into the installation's
// configuration file when it sets the machine up.
class MNS
{
public:
    // The backup prefix under which the service files this computer's data:
    // the attribute "mnsPrefix" of the installation config file, trimmed.
    // Empty where the service gave none, or in a standalone installation.
    static QString prefix();
};

} // namespace NVB::Defines
