#pragma once

#include <memory>
#include <optional>

#include <QList>
#include <QPair>
#include <QUrl>

#include "curlhttp.h"
#include "providerclient.h"
#include "s3signer.h"

namespace NVL::Cloud {

// Amazon S3 and every server that speaks its protocol. The requests of all
// operations (and of object transfer, which builds on request()) go through
// one signed, retried path, and every failure through ProviderErrors.
class S3Client : public ProviderClient
{
public:
    // One request, before the endpoint and signature are applied. key is the
    // object's name (not encoded); query items are not encoded either.
    struct Request
    {
        QByteArray method = QByteArrayLiteral("GET");
        QString bucket;
        QString key;
        QList<QPair<QString, QString>> query;
        QList<QPair<QByteArray, QByteArray>> headers;
        QByteArray body;
    };

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

    // Sends one request; an HTTP error answer becomes the failure of the
    // error table, a wrong region is corrected once. exchange (when given)
    // receives the answer.
    OperationResult request(const QMap<QString, QVariant>& config, const Request& request, const CancelToken& cancel,
        HttpExchange* exchange = nullptr);

private:
    struct Settings
    {
        QUrl endpoint; // scheme, host, port and an optional base path
        bool pathStyle = true;
        bool amazon = false;
        int timeoutSeconds = 30;
        bool useProxy = false;
        std::optional<S3Signer> signer;
    };

    OperationResult settings(const QMap<QString, QVariant>& config, Settings* settings) const;
    QString bucketOf(const QMap<QString, QVariant>& config, OperationResult* failure) const;
    QUrl urlOf(const Settings& settings, const Request& request, QByteArray* v2Resource) const;
    void useRegion(Settings* settings, const QString& region) const;

    std::unique_ptr<CurlHttp> m_http;
    std::optional<Settings> m_settings;
    // Which configuration m_settings was made from.
    QMap<QString, QVariant> m_settingsConfig;
};

} // namespace NVL::Cloud
