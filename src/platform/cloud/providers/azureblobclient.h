#pragma once

#include <QUrl>

#include "httpproviderclient.h"

namespace NVL::Cloud {

// Azure Blob storage with a storage account's shared key: the account's own
// host for the public clouds, or an Azure Stack endpoint (an emulator on an
// IP address or "localhost" is addressed by path, as Azurite wants).
class AzureBlobClient : public HttpProviderClient
{
public:
    // One request below the account (path not encoded: "" for the account,
    // "container", "container/blob"); query items are not encoded either.
    struct Request
    {
        QByteArray method = QByteArrayLiteral("GET");
        QString path;
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

    // Signs (SharedKey) and sends one request; an error answer goes through
    // the error table.
    OperationResult request(const QMap<QString, QVariant>& config, const Request& request, HttpExchange* exchange,
        const CancelToken& cancel);

    // The canonical string a SharedKey signature covers.
    static QByteArray stringToSign(const HttpExchange& exchange, const QString& account, bool pathStyle);
    // A container name Azure takes: 3 to 63 lower-case letters, digits and
    // single hyphens, starting and ending with a letter or digit.
    static QString nameError(const QString& name);

private:
    OperationResult accountUrl(const QMap<QString, QVariant>& config, QUrl* url, bool* pathStyle) const;
};

} // namespace NVL::Cloud
