#pragma once

#include <QString>

namespace NVB::defines {

class ProviderDefines
{
public:
    // The version this build was made from, "major.minor.patch".
    static QString BuildVersion();
    // The product name a user sees, from the rebranding values.
    static QString DisplayName();
};

} // namespace NVB::defines
