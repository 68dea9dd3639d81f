#include "objectsealer.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

namespace NVB::Engine {

const char ObjectSealer::Magic[4] = {'N', 'V', 'B', 'C'};

namespace {

void appendBigEndian(QByteArray* out, quint32 value)
{
    const char bytes[4] = {char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
    out->append(bytes, 4);
}

const EVP_CIPHER* cipherFor(int bytes)
{
    switch (bytes) {
    case 16:
        return EVP_aes_128_gcm();
    case 24:
        return EVP_aes_192_gcm();
    default:
        return EVP_aes_256_gcm();
    }
}

} // namespace

ObjectSealer::ObjectSealer(std::shared_ptr<const ObjectKey> key)
    : m_key(std::move(key))
    , m_noncePrefix(NoncePrefixSize, '\0')
{
    RAND_bytes(reinterpret_cast<unsigned char*>(m_noncePrefix.data()), NoncePrefixSize);
}

bool ObjectSealer::add(const char* data, size_t size, QByteArray* out)
{
    while (size > 0) {
        const size_t take = qMin(size, size_t(ChunkSize - m_pending.size()));
        m_pending.append(data, int(take));
        data += take;
        size -= take;
        // A full chunk waits for more data: only finish() knows which is last.
        if (m_pending.size() == ChunkSize && size > 0 && !seal(false, out))
            return false;
    }
    return true;
}

bool ObjectSealer::finish(QByteArray* out)
{
    return seal(true, out);
}

bool ObjectSealer::seal(bool last, QByteArray* out)
{
    if (!m_key)
        return false;
    if (!m_headerWritten) {
        m_header.append(Magic, 4);
        m_header.append(char(1));
        m_header.append(char(m_key->key().size()));
        m_header.append(2, '\0');
        appendBigEndian(&m_header, quint32(m_key->iterations()));
        m_header.append(m_key->salt());
        m_header.append(m_key->check());
        m_header.append(m_noncePrefix);
        out->append(m_header);
        m_headerWritten = true;
    }
    QByteArray length;
    appendBigEndian(&length, quint32(m_pending.size()) | (last ? LastFlag : 0));
    QByteArray nonce = m_noncePrefix;
    appendBigEndian(&nonce, m_chunk++);

    std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    int written = 0;
    QByteArray sealed(m_pending.size(), '\0');
    QByteArray tag(TagSize, '\0');
    auto* bytes = reinterpret_cast<unsigned char*>(sealed.data());
    const bool ok = context
        && EVP_EncryptInit_ex(context.get(), cipherFor(m_key->key().size()), nullptr,
               reinterpret_cast<const unsigned char*>(m_key->key().constData()),
               reinterpret_cast<const unsigned char*>(nonce.constData()))
            == 1
        && EVP_EncryptUpdate(context.get(), nullptr, &written,
               reinterpret_cast<const unsigned char*>(m_header.constData()), m_header.size())
            == 1
        && EVP_EncryptUpdate(context.get(), nullptr, &written,
               reinterpret_cast<const unsigned char*>(length.constData()), length.size())
            == 1
        && EVP_EncryptUpdate(context.get(), bytes, &written,
               reinterpret_cast<const unsigned char*>(m_pending.constData()), m_pending.size())
            == 1
        && EVP_EncryptFinal_ex(context.get(), bytes + written, &written) == 1
        && EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, TagSize, tag.data()) == 1;
    if (!ok)
        return false;
    out->append(length);
    out->append(sealed);
    out->append(tag);
    m_pending.clear();
    return true;
}

} // namespace NVB::Engine
