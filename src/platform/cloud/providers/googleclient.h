#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QUrl>

#include "httpproviderclient.h"

namespace NVL::Cloud {

// Google Cloud Storage through its JSON API with an OAuth 2.0 access token
// (AuthType 1 and 2; HMAC keys go through S3Client). The token comes either
// from a service account's signed assertion (RS256 JWT, RFC 7523) or from an
// installed application's refresh token, which the first call obtains from
// the authorization code (RFC 6749 with PKCE, RFC 7636) and hands back in
// the result's configuration so that the account keeps it.
class GoogleClient : public HttpProviderClient
{
public:
    OperationResult checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel) override;
    OperationResult createContainer(
        const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel) override;
    OperationResult listing(
        const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel) override;

    // Trades an installed application's authorization code (with the
    // configuration's CodeVerifier and RedirectUri) for its refresh token,
    // answered in the result's configuration under RefreshToken. A code is
    // good for one trade.
    OperationResult refreshTokenFor(
        const QMap<QString, QVariant>& config, const QByteArray& code, const CancelToken& cancel);

    // Google's bucket name rule: 3 to 63 lower-case letters, digits, "-",
    // "_" and ".", starting and ending with a letter or digit.
    static QString nameError(const QString& name);

private:
    // A valid access token in m_token; an installed application's first
    // call trades its code for a refresh token, which lands in *obtained.
    OperationResult authorize(
        const QMap<QString, QVariant>& config, QMap<QString, QVariant>* obtained, const CancelToken& cancel);
    // The token endpoint's whole answer in *answer, the refresh token also
    // in the result's configuration.
    OperationResult exchangeCode(
        const QMap<QString, QVariant>& config, const QString& code, QJsonObject* answer, const CancelToken& cancel);
    OperationResult postToken(const QMap<QString, QVariant>& config, const QUrl& tokenUri, const QByteArray& form,
        QJsonObject* answer, const CancelToken& cancel);
    // One JSON API request; an access token the server no longer takes is
    // renewed once.
    OperationResult call(const QMap<QString, QVariant>& config, const QByteArray& method, const QString& path,
        const QList<QPair<QString, QString>>& query, const QJsonObject& body, QJsonObject* answer,
        QMap<QString, QVariant>* obtained, const CancelToken& cancel, const QString& subject = QString());
    QString projectId(const QMap<QString, QVariant>& config) const;

    QByteArray m_token;
    QDateTime m_tokenExpires;
    QString m_keyProjectId;
    QMap<QString, QVariant> m_authorizedWith;
};

} // namespace NVL::Cloud
