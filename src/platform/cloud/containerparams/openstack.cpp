#include "openstack.h"

namespace NVL::Cloud::ContainerParams {

OpenStack::OpenStack(const QString& name)
    : Base(name)
{ }

} // namespace NVL::Cloud::ContainerParams
