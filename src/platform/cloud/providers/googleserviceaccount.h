#pragma once

#include <QByteArray>
#include <QString>

namespace NVL::Cloud {

// A service account's private key, as the console imports it: either the
// JSON key file (with "private_key", "client_email", "project_id" and
// "token_uri") or the PKCS #12 file, whose password is always "notasecret".
// It signs the RS256 assertion that the token endpoint exchanges for an
// access token.
class GoogleServiceAccount
{
public:
    // False with the reason in error when the bytes hold no usable RSA key.
    bool load(const QByteArray& keyFile, QString* error);

    // What the JSON key file names; empty for a PKCS #12 file.
    QString email() const { return m_email; }
    QString projectId() const { return m_projectId; }
    QString tokenUri() const { return m_tokenUri; }

    // The signed JWT ("header.claims.signature", base64url) asking for scope
    // at audience, valid for an hour from issuedAt (seconds since the epoch).
    // Empty with the reason in error when signing fails.
    QByteArray assertion(
        const QString& issuer, const QString& scope, const QString& audience, qint64 issuedAt, QString* error) const;

private:
    // The key as unencrypted PKCS #8 PEM, whatever form it came in.
    QByteArray m_pem;
    QString m_email;
    QString m_projectId;
    QString m_tokenUri;
};

} // namespace NVL::Cloud
