#include "providererrors.h"

#include <curl/curl.h>

#include "cloud/cloudconfig.h"

namespace NVL::Cloud {

namespace {

struct Row
{
    ProviderErrors::Protocol protocol;
    const char* code;
    int error;
    const char* text; // %1: the bucket or container
};

using P = ProviderErrors::Protocol;
namespace E = OperationError;

const Row rows[] = {
    {P::S3, "InvalidAccessKeyId", E::AuthenticationFailed, "The access key is not known to the server"},
    {P::S3, "SignatureDoesNotMatch", E::AuthenticationFailed,
        "The server refused the request's signature: check the secret key"},
    {P::S3, "RequestTimeTooSkewed", E::AuthenticationFailed,
        "The clock of this computer differs too much from the server's"},
    {P::S3, "AuthorizationHeaderMalformed", E::InvalidConfig,
        "The server refused the request's region: check the region or endpoint"},
    {P::S3, "PermanentRedirect", E::InvalidConfig, "Bucket \"%1\" is in another region: use that region's endpoint"},
    {P::S3, "AccessDenied", E::AccessDenied, "Access denied"},
    {P::S3, "AllAccessDisabled", E::AccessDenied, "Access to bucket \"%1\" is disabled"},
    {P::S3, "InvalidBucketName", E::InvalidName, "The server refuses the bucket name \"%1\""},
    {P::S3, "InvalidLocationConstraint", E::InvalidConfig, "The server refuses the region of bucket \"%1\""},
    {P::S3, "NoSuchBucket", E::NotFound, "Bucket \"%1\" does not exist"},
    {P::S3, "NoSuchKey", E::NotFound, "\"%1\" does not exist"},
    {P::S3, "BucketAlreadyExists", E::AlreadyExists,
        "Bucket name \"%1\" is taken: bucket names are shared by every user of the service"},
    {P::S3, "BucketAlreadyOwnedByYou", E::AlreadyExists, "Bucket \"%1\" already exists"},
    {P::S3, "TooManyBuckets", E::AccessDenied, "The account has as many buckets as the server allows"},
    {P::S3, "MalformedXML", E::InvalidConfig, "The server refused the document as malformed"},
    {P::S3, "NotImplemented", E::NotSupported, "The server does not support this request"},
    {P::S3, "MethodNotAllowed", E::NotSupported, "The server does not support this request"},
    {P::Azure, "AuthenticationFailed", E::AuthenticationFailed,
        "The server refused the request's signature: check the account name and shared key"},
    {P::Azure, "InvalidAuthenticationInfo", E::AuthenticationFailed, "The server refused the shared key"},
    {P::Azure, "AccountIsDisabled", E::AccessDenied, "The storage account is disabled"},
    {P::Azure, "AuthorizationFailure", E::AccessDenied, "Access denied"},
    {P::Azure, "InvalidResourceName", E::InvalidName, "The server refuses the container name \"%1\""},
    {P::Azure, "OutOfRangeInput", E::InvalidName, "The server refuses the container name \"%1\""},
    {P::Azure, "ContainerNotFound", E::NotFound, "Container \"%1\" does not exist"},
    {P::Azure, "ResourceNotFound", E::NotFound, "The storage account or \"%1\" does not exist"},
    {P::Azure, "ContainerAlreadyExists", E::AlreadyExists, "Container \"%1\" already exists"},
    {P::B2, "unauthorized", E::AuthenticationFailed, "The server refused the key ID or application key"},
    {P::B2, "bad_auth_token", E::AuthenticationFailed, "The server refused the session's token"},
    {P::B2, "expired_auth_token", E::AuthenticationFailed, "The session's token has expired"},
    {P::B2, "duplicate_bucket_name", E::AlreadyExists,
        "Bucket name \"%1\" is taken: bucket names are shared by every user of the service"},
    {P::B2, "too_many_buckets", E::AccessDenied, "The account has as many buckets as the server allows"},
    {P::B2, "invalid_bucket_name", E::InvalidName, "The server refuses the bucket name \"%1\""},
    {P::B2, "bad_bucket_id", E::NotFound, "Bucket \"%1\" does not exist"},
    {P::B2, "cap_exceeded", E::AccessDenied, "The account's usage cap is reached"},
    {P::Google, "invalid_grant", E::AuthenticationFailed,
        "Google refused the sign-in: the code, the refresh token or the service account's key is not valid (any "
        "more)"},
    {P::Google, "invalid_client", E::AuthenticationFailed, "Google does not know this program's OAuth client"},
    {P::Google, "unauthorized_client", E::AuthenticationFailed,
        "The service account may not sign in this way: check its e-mail and key"},
    {P::Google, "authError", E::AuthenticationFailed, "Google refused the access token"},
    {P::Google, "conflict", E::AlreadyExists,
        "Bucket name \"%1\" is taken: bucket names are shared by every user of the service"},
    {P::Google, "invalidBucketName", E::InvalidName, "The server refuses the bucket name \"%1\""},
    {P::Google, "notFound", E::NotFound, "Bucket \"%1\" does not exist"},
    {P::Google, "forbidden", E::AccessDenied, "Access denied: the account may not use bucket \"%1\" or the project"},
    {P::Azure, "ContainerBeingDeleted", E::AlreadyExists, "Container \"%1\" is being deleted; try again later"},
};

QString statusText(long status, const QString& subject, int* code)
{
    switch (status) {
    case 400:
        *code = E::InvalidConfig;
        return QStringLiteral("The server refused the request as malformed");
    case 401:
        *code = E::AuthenticationFailed;
        return QStringLiteral("The server refused the credentials");
    case 403:
        *code = E::AccessDenied;
        return QStringLiteral("Access denied");
    case 404:
        *code = E::NotFound;
        return subject.isEmpty() ? QStringLiteral("Not found on the server")
                                 : QStringLiteral("\"%1\" does not exist").arg(subject);
    case 405:
    case 501:
        *code = E::NotSupported;
        return QStringLiteral("The server does not support this request");
    case 409:
        *code = E::AlreadyExists;
        return QStringLiteral("\"%1\" already exists").arg(subject);
    default:
        *code = status >= 500 ? E::ConnectionFailed : E::InternalError;
        return QStringLiteral("The server answered HTTP %1").arg(status);
    }
}

} // namespace

OperationResult ProviderErrors::transport(
    const HttpExchange& exchange, const QMap<QString, QVariant>& config, int timeoutSeconds)
{
    const QString host = exchange.url.host();
    if (!exchange.peerCertificateErrors.isEmpty() && !exchange.peerCertificate.isEmpty()) {
        OperationResult result = OperationResult::failure(E::SslUntrusted,
            QStringLiteral("The certificate of %1 is not trusted: %2")
                .arg(host, exchange.peerCertificateErrors.join(QStringLiteral("; "))));
        result.config = config;
        result.config.insert(Api::Config::Http::PeerCertificate, QString::fromLatin1(exchange.peerCertificate));
        result.config.insert(Api::Config::Http::PeerCertificateErrors, exchange.peerCertificateErrors);
        return result;
    }
    switch (exchange.curlCode) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return OperationResult::failure(E::HostNotFound, QStringLiteral("Host \"%1\" not found").arg(host));
    case CURLE_COULDNT_RESOLVE_PROXY:
        return OperationResult::failure(E::HostNotFound, QStringLiteral("The proxy's host was not found"));
    case CURLE_COULDNT_CONNECT:
        return OperationResult::failure(E::ConnectionFailed,
            QStringLiteral("Can't connect to %1:%2 (%3)")
                .arg(host)
                .arg(exchange.url.port())
                .arg(exchange.transportError));
    case CURLE_OPERATION_TIMEDOUT:
        return OperationResult::failure(E::Timeout,
            QStringLiteral("The server %1 did not answer within %2 s; the connection was closed")
                .arg(host)
                .arg(timeoutSeconds));
    case CURLE_ABORTED_BY_CALLBACK:
        return OperationResult::failure(E::Cancelled, QStringLiteral("Operation cancelled"));
    default:
        return OperationResult::failure(
            E::ConnectionFailed, QStringLiteral("Connection to %1 failed: %2").arg(host, exchange.transportError));
    }
}

OperationResult ProviderErrors::answer(
    Protocol protocol, long status, const QString& providerCode, const QString& providerMessage, const QString& subject)
{
    for (const Row& row : rows) {
        if (row.protocol == protocol && providerCode == QLatin1String(row.code)) {
            QString text = QString::fromLatin1(row.text);
            if (text.contains(QLatin1String("%1")))
                text = text.arg(subject);
            return OperationResult::failure(row.error, text);
        }
    }
    int code = E::InternalError;
    QString text = statusText(status, subject, &code);
    if (!providerCode.isEmpty() || !providerMessage.isEmpty())
        text += QStringLiteral(" (%1)").arg(
            providerMessage.isEmpty() ? providerCode : providerCode + QStringLiteral(": ") + providerMessage);
    return OperationResult::failure(code, text);
}

} // namespace NVL::Cloud
