#pragma once

#include "base.h"

namespace NVL::Cloud::ContainerParams {

// A container; Swift needs no more than its name.
class OpenStack : public Base
{
public:
    explicit OpenStack(const QString& name);
};

} // namespace NVL::Cloud::ContainerParams
