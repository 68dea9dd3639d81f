#pragma once

#include <QJsonArray>
#include <QUrl>
#include <QVector>

#include "httpproviderclient.h"

namespace NVL::Cloud {

// OpenStack Swift (and the providers built on it): logs in with auth v1.0
// (user and key in headers) or Keystone v2.0 / v3 (a token and a service
// catalog), then talks to the object-store endpoint of the chosen region.
class SwiftClient : public HttpProviderClient
{
public:
    // One object-store endpoint of the catalog.
    struct Endpoint
    {
        QString region;
        QUrl publicUrl;
        QUrl internalUrl;
    };

    OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel) override;
    OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel) override;

    // Sends one request to the storage URL (path below it, not encoded),
    // logging in first when this client has no token yet; a token the server
    // no longer takes is renewed once.
    OperationResult request(const QMap<QString, QVariant>& config, const QByteArray& method, const QString& path,
        const QList<QPair<QString, QString>>& query, HttpExchange* exchange, const CancelToken& cancel);

    // A container name Swift takes: not empty, no slash, at most 256 bytes.
    static QString nameError(const QString& name);

private:
    OperationResult login(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    OperationResult loginV1(const QMap<QString, QVariant>& config, const QUrl& url, const CancelToken& cancel);
    OperationResult loginKeystone(
        const QMap<QString, QVariant>& config, const QUrl& url, int version, const CancelToken& cancel);
    // The storage URL of a region (the configured one, or the first).
    OperationResult storageUrl(const QMap<QString, QVariant>& config, const QString& region, QUrl* url) const;

    QByteArray m_token;
    QVector<Endpoint> m_endpoints;
    QMap<QString, QVariant> m_loggedInWith;
};

} // namespace NVL::Cloud
