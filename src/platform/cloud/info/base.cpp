#include "base.h"

namespace NVL::Cloud::Info {

Base::Base(NVL::Cloud::Type type)
    : m_type(type)
{ }

Base::~Base() = default;

QString Base::typeName() const
{
    return NVL::Cloud::TypeName.value(m_type);
}

} // namespace NVL::Cloud::Info
