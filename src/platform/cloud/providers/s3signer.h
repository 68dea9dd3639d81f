#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QPair>
#include <QString>

#include "httpexchange.h"

namespace NVL::Cloud {

// Signs S3 requests: Signature Version 4 (AWS4-HMAC-SHA256, with the region
// in its scope) or the older Version 2 (HMAC-SHA1) that many compatible
// servers still want.
class S3Signer
{
public:
    enum class Version { V2, V4 };

    S3Signer(Version version, const QString& accessKey, const QString& secretKey, const QString& region);

    Version version() const { return m_version; }
    QString region() const { return m_region; }
    void setRegion(const QString& region) { m_region = region; }

    // Adds the date, payload hash and Authorization headers to a request
    // whose URL is final. v2Resource is Version 2's canonical resource
    // ("/bucket/key" plus a sub-resource such as "?lifecycle").
    void sign(HttpExchange& exchange, const QByteArray& v2Resource, const QDateTime& now) const;

    // RFC 3986 encoding as both versions want it: unreserved characters stay,
    // and so does "/" when keepSlash.
    static QByteArray uriEncode(const QByteArray& text, bool keepSlash);

private:
    void signV2(HttpExchange& exchange, const QByteArray& resource, const QDateTime& now) const;
    void signV4(HttpExchange& exchange, const QDateTime& now) const;

    Version m_version;
    QByteArray m_accessKey;
    QByteArray m_secretKey;
    QString m_region;
};

} // namespace NVL::Cloud
