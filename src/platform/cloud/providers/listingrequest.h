#pragma once

#include <QString>

namespace NVL::Cloud {

// The arguments of one Listing, as the worker gets them.
struct ListingRequest
{
    QString prefix;
    QString delimiter;
    QString marker;
    unsigned short maxKeys = 0;
};

} // namespace NVL::Cloud
