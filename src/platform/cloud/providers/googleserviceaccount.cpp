#include "googleserviceaccount.h"

#include <memory>

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/pkcs12.h>
#include <openssl/provider.h>
#include <openssl/x509.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace NVL::Cloud {

namespace {

using Bio = std::unique_ptr<BIO, decltype(&BIO_free)>;
using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

QString lastOpenSslError()
{
    char text[256] = {};
    ERR_error_string_n(ERR_get_error(), text, sizeof text);
    ERR_clear_error();
    return QString::fromLatin1(text);
}

Key fromPkcs12(const QByteArray& bytes)
{
    Bio in(BIO_new_mem_buf(bytes.constData(), bytes.size()), &BIO_free);
    std::unique_ptr<PKCS12, decltype(&PKCS12_free)> p12(d2i_PKCS12_bio(in.get(), nullptr), &PKCS12_free);
    if (!p12)
        return Key(nullptr, &EVP_PKEY_free);
    EVP_PKEY* key = nullptr;
    X509* certificate = nullptr;
    STACK_OF(X509)* chain = nullptr;
    if (PKCS12_parse(p12.get(), "notasecret", &key, &certificate, &chain) != 1) {
        // The provider's files use RC2 and 3DES, which OpenSSL 3 keeps in its
        // legacy provider; load it only when a file needs it.
        ERR_clear_error();
        static OSSL_PROVIDER* legacy = OSSL_PROVIDER_load(nullptr, "legacy");
        static OSSL_PROVIDER* fallback = OSSL_PROVIDER_load(nullptr, "default");
        if (!legacy || !fallback || PKCS12_parse(p12.get(), "notasecret", &key, &certificate, &chain) != 1)
            key = nullptr;
    }
    X509_free(certificate);
    sk_X509_pop_free(chain, X509_free);
    return Key(key, &EVP_PKEY_free);
}

QByteArray base64Url(const QByteArray& bytes)
{
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace

bool GoogleServiceAccount::load(const QByteArray& keyFile, QString* error)
{
    m_pem.clear();
    m_email.clear();
    m_projectId.clear();
    m_tokenUri.clear();
    Key key(nullptr, &EVP_PKEY_free);
    const QJsonObject json = QJsonDocument::fromJson(keyFile).object();
    if (!json.isEmpty()) {
        const QByteArray pem = json.value(QStringLiteral("private_key")).toString().toUtf8();
        Bio in(BIO_new_mem_buf(pem.constData(), pem.size()), &BIO_free);
        key.reset(PEM_read_bio_PrivateKey(in.get(), nullptr, nullptr, nullptr));
        m_email = json.value(QStringLiteral("client_email")).toString();
        m_projectId = json.value(QStringLiteral("project_id")).toString();
        m_tokenUri = json.value(QStringLiteral("token_uri")).toString();
    } else {
        key = fromPkcs12(keyFile);
    }
    if (!key || EVP_PKEY_get_base_id(key.get()) != EVP_PKEY_RSA) {
        ERR_clear_error();
        *error = keyFile.isEmpty() ? QStringLiteral("No private key is imported")
                                   : QStringLiteral("The private key file holds no RSA key (a JSON key file, or a "
                                                    "PKCS #12 file with the password \"notasecret\", is needed)");
        return false;
    }
    Bio out(BIO_new(BIO_s_mem()), &BIO_free);
    if (PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1) {
        *error = QStringLiteral("Cannot read the private key: %1").arg(lastOpenSslError());
        return false;
    }
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    m_pem = QByteArray(data, int(size));
    return true;
}

QByteArray GoogleServiceAccount::assertion(
    const QString& issuer, const QString& scope, const QString& audience, qint64 issuedAt, QString* error) const
{
    const QByteArray header = QJsonDocument(
        QJsonObject {{QStringLiteral("alg"), QStringLiteral("RS256")}, {QStringLiteral("typ"), QStringLiteral("JWT")}})
                                  .toJson(QJsonDocument::Compact);
    const QByteArray claims = QJsonDocument(
        QJsonObject {{QStringLiteral("iss"), issuer}, {QStringLiteral("scope"), scope},
            {QStringLiteral("aud"), audience}, {QStringLiteral("iat"), issuedAt},
            {QStringLiteral("exp"),
                issuedAt + 3600}}).toJson(QJsonDocument::Compact);
    const QByteArray signingInput = base64Url(header) + '.' + base64Url(claims);

    Bio in(BIO_new_mem_buf(m_pem.constData(), m_pem.size()), &BIO_free);
    Key key(PEM_read_bio_PrivateKey(in.get(), nullptr, nullptr, nullptr), &EVP_PKEY_free);
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    size_t length = 0;
    if (!key || !context || EVP_DigestSignInit(context.get(), nullptr, EVP_sha256(), nullptr, key.get()) != 1
        || EVP_DigestSign(context.get(), nullptr, &length,
               reinterpret_cast<const unsigned char*>(signingInput.constData()), signingInput.size())
            != 1) {
        *error = QStringLiteral("Cannot sign with the private key: %1").arg(lastOpenSslError());
        return {};
    }
    QByteArray signature(int(length), Qt::Uninitialized);
    if (EVP_DigestSign(context.get(), reinterpret_cast<unsigned char*>(signature.data()), &length,
            reinterpret_cast<const unsigned char*>(signingInput.constData()), signingInput.size())
        != 1) {
        *error = QStringLiteral("Cannot sign with the private key: %1").arg(lastOpenSslError());
        return {};
    }
    signature.resize(int(length));
    return signingInput + '.' + base64Url(signature);
}

} // namespace NVL::Cloud
