#include "providerclient.h"

#include <QMutex>
#include <QMutexLocker>

#include "azureblobclient.h"
#include "b2client.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "filesystemclient.h"
#include "googleclient.h"
#include "s3client.h"
#include "sftpclient.h"
#include "swiftclient.h"
#include "unsupportedclient.h"

namespace NVL::Cloud {

namespace {

QMutex factoryMutex;
ProviderClient::Factory& factoryOverride()
{
    static ProviderClient::Factory factory;
    return factory;
}

} // namespace

ProviderClient::~ProviderClient() = default;

void ProviderClient::setFactory(const Factory& factory)
{
    QMutexLocker locker(&factoryMutex);
    factoryOverride() = factory;
}

std::unique_ptr<ProviderClient> ProviderClient::create(const QMap<QString, QVariant>& config)
{
    {
        QMutexLocker locker(&factoryMutex);
        if (factoryOverride()) {
            if (std::unique_ptr<ProviderClient> client = factoryOverride()(config))
                return client;
        }
    }
    bool ok = false;
    const QString name = config.value(Config::Type).toString();
    const Type type = typeFromName(name, &ok);
    if (!ok)
        return std::make_unique<UnsupportedClient>(name, false);
    switch (type) {
    case Type::FileSystem:
        return std::make_unique<FileSystemClient>();
    case Type::Sftp:
        return std::make_unique<SftpClient>();
    case Type::AzureBlob:
        return std::make_unique<AzureBlobClient>();
    case Type::BackBlaze:
        return std::make_unique<B2Client>();
    case Type::GoogleStorage:
        // HMAC keys speak Google's S3-compatible XML API; the OAuth modes
        // its JSON API.
        if (config.value(Config::GoogleStorage::AuthType, 0).toInt() == 0)
            return std::make_unique<S3Client>();
        return std::make_unique<GoogleClient>();
    default: {
        if (S3Compatible.contains(type) || AmazonS3.contains(type))
            return std::make_unique<S3Client>();
        if (OpenStack.contains(type))
            return std::make_unique<SwiftClient>();
        const QString display = displayNameSource(type);
        return std::make_unique<UnsupportedClient>(display.isEmpty() ? name : display, true);
    }
    }
}

OperationResult ProviderClient::loadLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken&)
{
    return OperationResult::failure(OperationError::NotSupported,
        QStringLiteral("%1 destinations have no lifecycle policies").arg(config.value(Config::Type).toString()));
}

OperationResult ProviderClient::saveLifecyclePolicy(
    const QMap<QString, QVariant>& config, const QByteArray&, const CancelToken& cancel)
{
    return loadLifecyclePolicy(config, cancel);
}

OperationResult ProviderClient::deleteLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    return loadLifecyclePolicy(config, cancel);
}

QString ProviderClient::containerNameError(const QString& name)
{
    if (name.trimmed().isEmpty())
        return QStringLiteral("Container name is empty");
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\0')))
        return QStringLiteral("Container name \"%1\" must not contain a slash").arg(name);
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return QStringLiteral("Container name \"%1\" is not allowed").arg(name);
    return QString();
}

} // namespace NVL::Cloud
