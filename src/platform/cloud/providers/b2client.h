#pragma once

#include <QJsonObject>
#include <QUrl>

#include "httpproviderclient.h"

namespace NVL::Cloud {

// Backblaze B2 through its native API (v2): b2_authorize_account with the
// key ID and application key, then JSON calls to the API URL it names with
// the session's token. A bucket is "<bucket id>|<bucket name>" in the
// configuration, as the account record keeps both.
class B2Client : public HttpProviderClient
{
public:
    OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel) override;
    OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel) override;

    // One API call ("b2_list_buckets", ...) with a JSON body, authorizing
    // first; an expired token is renewed once. subject names the bucket in
    // error texts.
    OperationResult call(const QMap<QString, QVariant>& config, const QString& name, const QJsonObject& body,
        QJsonObject* answer, const CancelToken& cancel, const QString& subject = QString());

    // 6 to 50 letters, digits and hyphens, not starting with "b2-".
    static QString nameError(const QString& name);

private:
    OperationResult authorize(const QMap<QString, QVariant>& config, const CancelToken& cancel);
    // The bucket's id, looked up by name when the configuration has no id.
    OperationResult bucketId(
        const QMap<QString, QVariant>& config, QString* id, QString* name, const CancelToken& cancel);

    QByteArray m_token;
    QUrl m_apiUrl;
    QString m_accountId;
    QMap<QString, QVariant> m_authorizedWith;
};

} // namespace NVL::Cloud
