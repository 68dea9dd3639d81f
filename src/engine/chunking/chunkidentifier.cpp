#include "chunkidentifier.h"

#include <openssl/core_names.h>
#include <openssl/evp.h>

#include <memory>

namespace NVB::Engine {

namespace {

QByteArray macOf(const QByteArray& key, const char* data, qint64 size)
{
    std::unique_ptr<EVP_MAC, decltype(&EVP_MAC_free)> mac(EVP_MAC_fetch(nullptr, "HMAC", nullptr), EVP_MAC_free);
    if (!mac)
        return {};
    std::unique_ptr<EVP_MAC_CTX, decltype(&EVP_MAC_CTX_free)> context(EVP_MAC_CTX_new(mac.get()), EVP_MAC_CTX_free);
    char digest[] = "SHA256";
    const OSSL_PARAM params[]
        = {OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest, 0), OSSL_PARAM_construct_end()};
    QByteArray out(ChunkIdentifier::IdSize, '\0');
    size_t written = 0;
    if (!context
        || EVP_MAC_init(context.get(), reinterpret_cast<const uchar*>(key.constData()), size_t(key.size()), params) != 1
        || EVP_MAC_update(context.get(), reinterpret_cast<const uchar*>(data), size_t(size)) != 1
        || EVP_MAC_final(context.get(), reinterpret_cast<uchar*>(out.data()), &written, size_t(out.size())) != 1
        || written != size_t(out.size()))
        return {};
    return out;
}

QByteArray digestOf(const char* data, qint64 size)
{
    QByteArray out(ChunkIdentifier::IdSize, '\0');
    unsigned int written = 0;
    if (EVP_Digest(data, size_t(size), reinterpret_cast<uchar*>(out.data()), &written, EVP_sha256(), nullptr) != 1
        || written != uint(out.size()))
        return {};
    return out;
}

} // namespace

ChunkIdentifier::ChunkIdentifier(const QByteArray& key)
    : m_key(key)
{ }

// An empty result means OpenSSL failed (out of memory or a crippled
// provider); callers treat it as an error, never as an id.
QByteArray ChunkIdentifier::id(const char* data, qint64 size) const
{
    return isKeyed() ? macOf(m_key, data, size) : digestOf(data, size);
}

} // namespace NVB::Engine
