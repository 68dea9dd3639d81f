#include "webcertificate.h"

#include <memory>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509v3.h>

#include <QFile>
#include <QHostInfo>
#include <QSaveFile>

namespace NVB::Engine {

namespace {

template<typename T, void (*Free)(T*)> struct Deleter
{
    void operator()(T* value) const { Free(value); }
};
using Key = std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY, EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Deleter<X509, X509_free>>;
using Bio = std::unique_ptr<BIO, Deleter<BIO, BIO_free_all>>;

QByteArray drain(BIO* bio)
{
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    return QByteArray(data, int(size));
}

bool addExtension(X509* certificate, int nid, const QByteArray& value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value.constData());
    if (!extension)
        return false;
    const bool added = X509_add_ext(certificate, extension, -1) == 1;
    X509_EXTENSION_free(extension);
    return added;
}

bool writeFile(const QString& path, const QByteArray& data, QFileDevice::Permissions permissions, QString* error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(permissions) || file.write(data) != data.size()
        || !file.commit()) {
        *error = QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace

bool WebCertificate::ensure(const QString& folder, QByteArray* certificatePem, QByteArray* keyPem, QString* error)
{
    const QString certificatePath = folder + QStringLiteral("/web-certificate.pem");
    const QString keyPath = folder + QStringLiteral("/web-key.pem");
    QFile certificateFile(certificatePath);
    QFile keyFile(keyPath);
    if (certificateFile.open(QIODevice::ReadOnly) && keyFile.open(QIODevice::ReadOnly)) {
        *certificatePem = certificateFile.readAll();
        *keyPem = keyFile.readAll();
        if (!certificatePem->isEmpty() && !keyPem->isEmpty())
            return true;
    }
    if (!make(certificatePem, keyPem, error))
        return false;
    // The key first: a certificate without its key would be kept forever.
    return writeFile(keyPath, *keyPem, QFileDevice::ReadOwner | QFileDevice::WriteOwner, error)
        && writeFile(certificatePath, *certificatePem,
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther, error);
}

bool WebCertificate::make(QByteArray* certificatePem, QByteArray* keyPem, QString* error)
{
    const Key key(EVP_RSA_gen(2048));
    const Certificate certificate(X509_new());
    if (!key || !certificate) {
        *error = QStringLiteral("Cannot make a key for the web interface");
        return false;
    }
    const QByteArray host = QHostInfo::localHostName().toUtf8();
    X509_set_version(certificate.get(), 2);
    // A random serial: a browser refuses two certificates of one issuer with
    // the same serial, and a new one is made whenever the files are lost.
    ASN1_INTEGER* serial = X509_get_serialNumber(certificate.get());
    BIGNUM* random = BN_new();
    BN_rand(random, 64, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY);
    BN_to_ASN1_INTEGER(random, serial);
    BN_free(random);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 10L * 365 * 24 * 3600);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* name = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
        reinterpret_cast<const unsigned char*>(host.isEmpty() ? "localhost" : host.constData()), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    QByteArray names = "DNS:localhost,IP:127.0.0.1,IP:::1";
    if (!host.isEmpty() && host != "localhost")
        names += ",DNS:" + host;
    if (!addExtension(certificate.get(), NID_subject_alt_name, names)
        || !addExtension(certificate.get(), NID_basic_constraints, "critical,CA:FALSE")
        || !addExtension(certificate.get(), NID_ext_key_usage, "serverAuth")
        || X509_sign(certificate.get(), key.get(), EVP_sha256()) == 0) {
        *error = QStringLiteral("Cannot make the certificate of the web interface");
        return false;
    }
    const Bio certificateBio(BIO_new(BIO_s_mem()));
    const Bio keyBio(BIO_new(BIO_s_mem()));
    if (!PEM_write_bio_X509(certificateBio.get(), certificate.get())
        || !PEM_write_bio_PrivateKey(keyBio.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr)) {
        *error = QStringLiteral("Cannot write the certificate of the web interface");
        return false;
    }
    *certificatePem = drain(certificateBio.get());
    *keyPem = drain(keyBio.get());
    return true;
}

} // namespace NVB::Engine
