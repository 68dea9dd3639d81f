#pragma once

#include <QMap>
#include <QSharedPointer>
#include <QVariant>

#include "base.h"

namespace NVL::Cloud::Info {

class InfoFactory
{
public:
    // Null for a number that is no provider type.
    static QSharedPointer<Base> create(NVL::Cloud::Type type);
    // The type is read from Config::Type; null when it is missing or unknown.
    static QSharedPointer<Base> create(const QMap<QString, QVariant>& config);
};

} // namespace NVL::Cloud::Info
