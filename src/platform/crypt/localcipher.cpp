#include "localcipher.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace SHARED::cryptNS {

namespace {

const QByteArray Prefix = QByteArrayLiteral("nvb1:");
constexpr int TagSize = 16;
// SIV in OpenSSL 3.0 does not produce a tag for an empty message, and an empty
// password is a real secret to store; a leading format byte keeps the message
// from ever being empty.
constexpr char FormatByte = 0x01;

struct CipherFree
{
    void operator()(EVP_CIPHER* cipher) const { EVP_CIPHER_free(cipher); }
};
struct ContextFree
{
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

std::unique_ptr<EVP_CIPHER, CipherFree> sivCipher()
{
    return std::unique_ptr<EVP_CIPHER, CipherFree>(EVP_CIPHER_fetch(nullptr, "AES-256-SIV", nullptr));
}

QByteArray readKey(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace

LocalCipher::LocalCipher(const QByteArray& key)
    : m_key(key)
{
}

LocalCipher LocalCipher::forKeyFile(const QString& path)
{
    return LocalCipher(loadOrCreateKey(path));
}

QByteArray LocalCipher::loadOrCreateKey(const QString& path)
{
    QByteArray key = readKey(path);
    if (key.size() == KeySize)
        return key;
    if (!key.isEmpty())
        throw QStringLiteral("The cipher key file %1 is damaged; stored secrets cannot be read").arg(path);

    QDir().mkpath(QFileInfo(path).absolutePath());
    key.resize(KeySize);
    if (RAND_bytes(reinterpret_cast<unsigned char*>(key.data()), KeySize) != 1)
        throw QStringLiteral("No random numbers for a new cipher key");

    // Write beside the target, then link it in place: link() fails if another
    // process got there first, and then its key is the one to use.
    const QByteArray target = QFile::encodeName(path);
    const QByteArray temporary = target + ".tmp." + QByteArray::number(::getpid());
    const int fd = ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        throw QStringLiteral("Cannot create the cipher key file %1").arg(path);
    const bool written = ::write(fd, key.constData(), size_t(key.size())) == KeySize && ::fsync(fd) == 0;
    ::close(fd);
    const bool linked = written && ::link(temporary.constData(), target.constData()) == 0;
    ::unlink(temporary.constData());
    if (linked)
        return key;

    key = readKey(path);
    if (key.size() != KeySize)
        throw QStringLiteral("Cannot create the cipher key file %1").arg(path);
    return key;
}

QString LocalCipher::encrypt(const QString& text) const
{
    const auto cipher = sivCipher();
    std::unique_ptr<EVP_CIPHER_CTX, ContextFree> context(EVP_CIPHER_CTX_new());
    if (!cipher || !context || m_key.size() != KeySize)
        throw QStringLiteral("The cipher is not available");

    const QByteArray plain = FormatByte + text.toUtf8();
    QByteArray out(TagSize + plain.size(), Qt::Uninitialized);
    auto* sealed = reinterpret_cast<unsigned char*>(out.data()) + TagSize;
    int length = 0;
    int finalLength = 0;
    const bool ok = EVP_EncryptInit_ex2(context.get(), cipher.get(),
                                        reinterpret_cast<const unsigned char*>(m_key.constData()), nullptr, nullptr)
                        == 1
                    && EVP_EncryptUpdate(context.get(), sealed, &length,
                                         reinterpret_cast<const unsigned char*>(plain.constData()), plain.size())
                           == 1
                    && EVP_EncryptFinal_ex(context.get(), sealed + length, &finalLength) == 1
                    && EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_GET_TAG, TagSize, out.data()) == 1;
    if (!ok)
        throw QStringLiteral("Encryption failed");
    return QString::fromLatin1(Prefix + out.toBase64());
}

QString LocalCipher::decrypt(const QString& text) const
{
    const QByteArray encoded = text.toLatin1();
    if (!encoded.startsWith(Prefix))
        throw QStringLiteral("The text is not an enciphered secret");
    const auto decoded = QByteArray::fromBase64Encoding(encoded.mid(Prefix.size()),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.size() < TagSize)
        throw QStringLiteral("The enciphered secret is damaged");

    const auto cipher = sivCipher();
    std::unique_ptr<EVP_CIPHER_CTX, ContextFree> context(EVP_CIPHER_CTX_new());
    if (!cipher || !context || m_key.size() != KeySize)
        throw QStringLiteral("The cipher is not available");

    QByteArray tag = decoded.decoded.left(TagSize);
    const QByteArray sealed = decoded.decoded.mid(TagSize);
    QByteArray plain(sealed.size(), Qt::Uninitialized);
    int length = 0;
    int finalLength = 0;
    // SIV checks the tag inside the update call; a mismatch fails there.
    const bool ok = EVP_DecryptInit_ex2(context.get(), cipher.get(),
                                        reinterpret_cast<const unsigned char*>(m_key.constData()), nullptr, nullptr)
                        == 1
                    && EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_AEAD_SET_TAG, TagSize, tag.data()) == 1
                    && EVP_DecryptUpdate(context.get(), reinterpret_cast<unsigned char*>(plain.data()), &length,
                                         reinterpret_cast<const unsigned char*>(sealed.constData()), sealed.size())
                           == 1
                    && EVP_DecryptFinal_ex(context.get(), reinterpret_cast<unsigned char*>(plain.data()) + length,
                                           &finalLength)
                           == 1;
    plain.truncate(length + finalLength);
    if (!ok || !plain.startsWith(FormatByte))
        throw QStringLiteral("The secret cannot be deciphered: it was changed or made with another key");
    return QString::fromUtf8(plain.mid(1));
}

} // namespace SHARED::cryptNS
