#pragma once

#include <QPair>
#include <QVector>

#include "base.h"

namespace NVL::Cloud::Info {

// Presets of the Swift-style providers.
class OpenStack : public Base
{
public:
    explicit OpenStack(NVL::Cloud::Type type);

    // (display name, authentication URL) for the endpoint menu, in menu order;
    // empty for providers where the user names the server.
    QVector<QPair<QString, QString>> endpoints() const;
};

} // namespace NVL::Cloud::Info
