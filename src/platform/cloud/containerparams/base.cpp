#include "base.h"

namespace NVL::Cloud::ContainerParams {

Base::Base(const QString& name)
    : m_name(name.trimmed())
{ }

Base::~Base() = default;

QJsonObject Base::json() const
{
    return QJsonObject {{Key::Name, m_name}};
}

} // namespace NVL::Cloud::ContainerParams
