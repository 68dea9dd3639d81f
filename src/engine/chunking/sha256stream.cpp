#include "sha256stream.h"

#include <openssl/evp.h>

namespace NVB::Engine {

Sha256Stream::Sha256Stream()
    : m_context(EVP_MD_CTX_new())
{
    EVP_DigestInit_ex(m_context, EVP_sha256(), nullptr);
}

Sha256Stream::~Sha256Stream()
{
    EVP_MD_CTX_free(m_context);
}

void Sha256Stream::add(const char* data, qint64 size)
{
    EVP_DigestUpdate(m_context, data, size_t(size));
}

QByteArray Sha256Stream::result()
{
    QByteArray digest(EVP_MAX_MD_SIZE, Qt::Uninitialized);
    unsigned int length = 0;
    EVP_DigestFinal_ex(m_context, reinterpret_cast<unsigned char*>(digest.data()), &length);
    digest.truncate(int(length));
    EVP_DigestInit_ex(m_context, EVP_sha256(), nullptr);
    return digest;
}

} // namespace NVB::Engine
