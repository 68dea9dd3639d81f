#pragma once

#include "providerclient.h"

namespace NVL::Cloud {

// The answer of providers whose client has not been written yet.
class UnsupportedClient : public ProviderClient
{
public:
    UnsupportedClient(const QString& providerName, bool knownType);

    OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel) override;
    OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel) override;
    OperationResult loadLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult saveLifecyclePolicy(
        const QMap<QString, QVariant>& config, const QByteArray& xml, const CancelToken& cancel) override;
    OperationResult deleteLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;

private:
    OperationResult failure() const;

    QString m_providerName;
    bool m_knownType;
};

} // namespace NVL::Cloud
