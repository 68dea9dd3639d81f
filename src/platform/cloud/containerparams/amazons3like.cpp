#include "amazons3like.h"

namespace NVL::Cloud::ContainerParams {

AmazonS3Like::AmazonS3Like(const QString& name, const QString& location)
    : Base(name)
    , m_location(location.trimmed())
{ }

QJsonObject AmazonS3Like::json() const
{
    QJsonObject object = Base::json();
    object.insert(Key::Location, m_location);
    return object;
}

} // namespace NVL::Cloud::ContainerParams
