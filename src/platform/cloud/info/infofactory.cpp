#include "infofactory.h"

#include "alibabacloud.h"
#include "amazons3.h"
#include "azureblob.h"
#include "backblaze.h"
#include "cloud/cloudconfig.h"
#include "core/nvldebug.h"
#include "googlestorage.h"
#include "openstack.h"

namespace NVL::Cloud::Info {

QSharedPointer<Base> InfoFactory::create(NVL::Cloud::Type type)
{
    if (!NVL::Cloud::TypeName.contains(type)) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Unknown cloud type %1, no presets").arg(static_cast<int>(type));
        return {};
    }
    if (NVL::Cloud::AmazonS3.contains(type))
        return QSharedPointer<AmazonS3>::create(type);
    if (type == NVL::Cloud::Type::AlibabaCloud)
        return QSharedPointer<AlibabaCloud>::create();
    if (NVL::Cloud::S3Compatible.contains(type))
        return QSharedPointer<AmazonS3Like>::create(type);
    if (NVL::Cloud::OpenStack.contains(type))
        return QSharedPointer<OpenStack>::create(type);
    switch (type) {
    case NVL::Cloud::Type::AzureBlob:
        return QSharedPointer<AzureBlob>::create();
    case NVL::Cloud::Type::GoogleStorage:
        return QSharedPointer<GoogleStorage>::create();
    case NVL::Cloud::Type::BackBlaze:
        return QSharedPointer<BackBlaze>::create();
    default:
        return QSharedPointer<Base>::create(type);
    }
}

QSharedPointer<Base> InfoFactory::create(const QMap<QString, QVariant>& config)
{
    bool ok = false;
    const QString name = config.value(NVL::Cloud::Config::Type).toString();
    const NVL::Cloud::Type type = NVL::Cloud::typeFromName(name, &ok);
    if (!ok) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Cloud configuration has no known type: \"%1\"").arg(name);
        return {};
    }
    return create(type);
}

} // namespace NVL::Cloud::Info
