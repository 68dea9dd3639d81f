#include "identitytransform.h"

namespace NVB::Engine {

QString IdentityTransform::name() const
{
    return QStringLiteral("identity");
}

TransformResult IdentityTransform::encode(const QByteArray& raw) const
{
    return {QString(), raw};
}

TransformResult IdentityTransform::decode(const QByteArray& stored) const
{
    return {QString(), stored};
}

} // namespace NVB::Engine
