#include "backblaze.h"

namespace NVL::Cloud::ContainerParams {

BackBlaze::BackBlaze(const QString& name, const QString& access)
    : Base(name)
    , m_access(access.trimmed())
{ }

QJsonObject BackBlaze::json() const
{
    QJsonObject object = Base::json();
    object.insert(Key::Access, m_access);
    return object;
}

} // namespace NVL::Cloud::ContainerParams
