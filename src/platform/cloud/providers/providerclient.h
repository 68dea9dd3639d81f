#pragma once

#include <functional>
#include <memory>

#include <QJsonObject>
#include <QMap>
#include <QVariant>

#include "cloud/canceltoken.h"
#include "cloud/operationresult.h"
#include "listingrequest.h"

namespace NVL::Cloud {

// Talks to one kind of provider. A client is made on the worker thread for one
// job and used only there, so it may hold a connection without locking.
class ProviderClient
{
public:
    virtual ~ProviderClient();

    // The client for the configuration's type; unknown or not yet supported
    // types get a client that answers every call with an error.
    static std::unique_ptr<ProviderClient> create(const QMap<QString, QVariant>& config);

    // Answers a client in place of create()'s when it gives one; lets tests
    // stand in a misbehaving provider. An empty function restores the real ones.
    using Factory = std::function<std::unique_ptr<ProviderClient>(const QMap<QString, QVariant>&)>;
    static void setFactory(const Factory& factory);

    virtual OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) = 0;
    virtual OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) = 0;
    virtual OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
        = 0;
    virtual OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
        = 0;

    // Bucket lifecycle rules, which only Amazon S3 has; the payload is the
    // policy's XML. The base answers that the provider has none.
    virtual OperationResult loadLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    virtual OperationResult saveLifecyclePolicy(
        const QMap<QString, QVariant>& config, const QByteArray& xml, const CancelToken& cancel);
    virtual OperationResult deleteLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel);

protected:
    // A folder name a user may create: not empty, no slash, not "." or "..".
    static QString containerNameError(const QString& name);
};

} // namespace NVL::Cloud
