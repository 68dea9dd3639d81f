#include "objectopener.h"

#include <cstring>
#include <unistd.h>

#include <openssl/evp.h>

#include "objectsealer.h"

namespace NVB::Engine {

namespace {

quint32 readBigEndian(const char* data)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(data);
    return quint32(bytes[0]) << 24 | quint32(bytes[1]) << 16 | quint32(bytes[2]) << 8 | quint32(bytes[3]);
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

ObjectOpener::ObjectOpener(QString password)
    : m_password(std::move(password))
{ }

bool ObjectOpener::feed(const char* data, size_t size, QByteArray* plain)
{
    if (!m_error.isEmpty())
        return false;
    m_buffer.append(data, int(size));
    if (!m_key) {
        if (m_buffer.size() < ObjectSealer::HeaderSize)
            return true;
        if (!readHeader())
            return false;
    }
    for (bool progressed = true; progressed;) {
        progressed = false;
        if (!openChunk(plain, &progressed))
            return false;
    }
    return true;
}

QString ObjectOpener::wrongPassword(int fd, const QString& password)
{
    QByteArray header(ObjectSealer::HeaderSize, '\0');
    if (::pread(fd, header.data(), size_t(header.size()), 0) != header.size())
        return QString();
    ObjectOpener opener(password);
    QByteArray plain;
    if (opener.feed(header.constData(), size_t(header.size()), &plain)
        || opener.error() != ObjectKey::wrongPasswordMessage())
        return QString();
    return opener.error();
}

std::shared_ptr<const ObjectKey> ObjectOpener::keyOf(int fd, const QString& password)
{
    QByteArray header(ObjectSealer::HeaderSize, '\0');
    if (::pread(fd, header.data(), size_t(header.size()), 0) != header.size())
        return nullptr;
    ObjectOpener opener(password);
    QByteArray plain;
    if (!opener.feed(header.constData(), size_t(header.size()), &plain))
        return nullptr;
    return opener.m_key;
}

bool ObjectOpener::finish()
{
    if (!m_error.isEmpty())
        return false;
    if (!m_ended || !m_buffer.isEmpty()) {
        m_error = m_ended ? QStringLiteral("the enciphered data has bytes after its end")
                          : QStringLiteral("the enciphered data ends too early");
        return false;
    }
    return true;
}

bool ObjectOpener::readHeader()
{
    const char* header = m_buffer.constData();
    if (std::memcmp(header, ObjectSealer::Magic, 4) != 0 || header[4] != 1) {
        m_error = QStringLiteral("the data is not enciphered by this engine or its header is damaged");
        return false;
    }
    const int bytes = static_cast<unsigned char>(header[5]);
    const int iterations = int(readBigEndian(header + 8));
    const QByteArray salt(header + 12, ObjectKey::SaltSize);
    const QByteArray check(header + 12 + ObjectKey::SaltSize, ObjectKey::CheckSize);
    m_key = ObjectKey::open(m_password, salt, iterations, bytes, check, &m_error);
    if (!m_key)
        return false;
    m_header = m_buffer.left(ObjectSealer::HeaderSize);
    m_buffer.remove(0, ObjectSealer::HeaderSize);
    return true;
}

bool ObjectOpener::openChunk(QByteArray* plain, bool* progressed)
{
    if (m_buffer.size() < 4)
        return true;
    if (m_ended) {
        m_error = QStringLiteral("the enciphered data has bytes after its end");
        return false;
    }
    const quint32 word = readBigEndian(m_buffer.constData());
    const int size = int(word & ~ObjectSealer::LastFlag);
    if (size > ObjectSealer::ChunkSize) {
        m_error = QStringLiteral("the enciphered data is damaged (a chunk is too long)");
        return false;
    }
    if (m_buffer.size() < 4 + size + ObjectSealer::TagSize)
        return true;
    QByteArray nonce = m_header.mid(ObjectSealer::HeaderSize - ObjectSealer::NoncePrefixSize);
    const quint32 index = m_chunk;
    const char counter[4] = {char(index >> 24), char(index >> 16), char(index >> 8), char(index)};
    nonce.append(counter, 4);

    std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    QByteArray opened(size, '\0');
    QByteArray tag = m_buffer.mid(4 + size, ObjectSealer::TagSize);
    int written = 0;
    auto* bytes = reinterpret_cast<unsigned char*>(opened.data());
    const auto* in = reinterpret_cast<const unsigned char*>(m_buffer.constData());
    const bool ok = context
        && EVP_DecryptInit_ex(context.get(), cipherFor(m_key->key().size()), nullptr,
               reinterpret_cast<const unsigned char*>(m_key->key().constData()),
               reinterpret_cast<const unsigned char*>(nonce.constData()))
            == 1
        && EVP_DecryptUpdate(context.get(), nullptr, &written,
               reinterpret_cast<const unsigned char*>(m_header.constData()), m_header.size())
            == 1
        && EVP_DecryptUpdate(context.get(), nullptr, &written, in, 4) == 1
        && EVP_DecryptUpdate(context.get(), bytes, &written, in + 4, size) == 1
        && EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, ObjectSealer::TagSize, tag.data()) == 1
        && EVP_DecryptFinal_ex(context.get(), bytes + written, &written) == 1;
    if (!ok) {
        m_error = QStringLiteral("the enciphered data is damaged or out of order (chunk %1 fails its check)")
                      .arg(index + 1);
        return false;
    }
    plain->append(opened);
    m_buffer.remove(0, 4 + size + ObjectSealer::TagSize);
    ++m_chunk;
    m_ended = (word & ObjectSealer::LastFlag) != 0;
    *progressed = true;
    return true;
}

} // namespace NVB::Engine
