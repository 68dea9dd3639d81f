#include "googlestorage.h"

namespace NVL::Cloud::ContainerParams {

GoogleStorage::GoogleStorage(const QString& name, const QString& location, const QString& storageClass)
    : Base(name)
    , m_location(location.trimmed())
    , m_storageClass(storageClass.trimmed())
{ }

QJsonObject GoogleStorage::json() const
{
    QJsonObject object = Base::json();
    object.insert(Key::Location, m_location);
    object.insert(Key::StorageClass, m_storageClass);
    return object;
}

} // namespace NVL::Cloud::ContainerParams
