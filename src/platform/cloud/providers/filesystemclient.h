#pragma once

#include "providerclient.h"

namespace NVL::Cloud {

// A destination that is a local folder (Config::FileSystem::Path); its
// sub-folders are the containers.
class FileSystemClient : public ProviderClient
{
public:
    OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel) override;
    OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel) override;

private:
    // The root folder, or a failure for a missing or relative path.
    static OperationResult root(const QMap<QString, QVariant>& config, QString* path);
    static OperationResult existingRoot(const QMap<QString, QVariant>& config, QString* path);
};

} // namespace NVL::Cloud
