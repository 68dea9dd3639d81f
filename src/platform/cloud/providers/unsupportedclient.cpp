#include "unsupportedclient.h"

namespace NVL::Cloud {

UnsupportedClient::UnsupportedClient(const QString& providerName, bool knownType)
    : m_providerName(providerName)
    , m_knownType(knownType)
{ }

OperationResult UnsupportedClient::failure() const
{
    if (!m_knownType)
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Unknown cloud type \"%1\"").arg(m_providerName));
    return OperationResult::failure(
        OperationError::NotSupported, QStringLiteral("%1 accounts are not supported yet").arg(m_providerName));
}

OperationResult UnsupportedClient::checkConfig(const QMap<QString, QVariant>&, const CancelToken&)
{
    return failure();
}

OperationResult UnsupportedClient::listContainers(const QMap<QString, QVariant>&, const CancelToken&)
{
    return failure();
}

OperationResult UnsupportedClient::createContainer(
    const QMap<QString, QVariant>&, const QJsonObject&, const CancelToken&)
{
    return failure();
}

OperationResult UnsupportedClient::listing(const QMap<QString, QVariant>&, const ListingRequest&, const CancelToken&)
{
    return failure();
}

OperationResult UnsupportedClient::loadLifecyclePolicy(const QMap<QString, QVariant>&, const CancelToken&)
{
    return failure();
}

OperationResult UnsupportedClient::saveLifecyclePolicy(
    const QMap<QString, QVariant>&, const QByteArray&, const CancelToken&)
{
    return failure();
}

OperationResult UnsupportedClient::deleteLifecyclePolicy(const QMap<QString, QVariant>&, const CancelToken&)
{
    return failure();
}

} // namespace NVL::Cloud
