#include "azureblob.h"

namespace NVL::Cloud::ContainerParams {

AzureBlob::AzureBlob(const QString& name, const QString& access)
    : Base(name)
    , m_access(access.trimmed())
{ }

QJsonObject AzureBlob::json() const
{
    QJsonObject object = Base::json();
    object.insert(Key::Access, m_access);
    return object;
}

} // namespace NVL::Cloud::ContainerParams
