#include "objectkey.h"

#include <map>
#include <mutex>
#include <tuple>

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

namespace NVB::Engine {

namespace {

// Keys derived in this process, by password digest, salt, iterations and
// length. Only digests of passwords are kept as map keys.
using CacheKey = std::tuple<QByteArray, QByteArray, int, int>;

std::mutex& cacheMutex()
{
    static std::mutex mutex;
    return mutex;
}

std::map<CacheKey, std::shared_ptr<const ObjectKey>>& cache()
{
    static std::map<CacheKey, std::shared_ptr<const ObjectKey>> keys;
    return keys;
}

QByteArray passwordDigest(const QString& password, const QByteArray& salt)
{
    QByteArray digest(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    const QByteArray utf8 = password.toUtf8();
    HMAC(EVP_sha256(), salt.constData(), salt.size(), reinterpret_cast<const unsigned char*>(utf8.constData()),
        size_t(utf8.size()), reinterpret_cast<unsigned char*>(digest.data()), &size);
    digest.resize(int(size));
    return digest;
}

} // namespace

QByteArray ObjectKey::objectName(const QString& path) const
{
    QByteArray message("nvb object name");
    message.append('\0');
    message.append(path.toUtf8());
    QByteArray mac(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    HMAC(EVP_sha256(), m_key.constData(), m_key.size(), reinterpret_cast<const unsigned char*>(message.constData()),
        size_t(message.size()), reinterpret_cast<unsigned char*>(mac.data()), &size);
    mac.resize(int(size));
    return mac.toHex();
}

QString ObjectKey::wrongPasswordMessage()
{
    return QStringLiteral("wrong password: the encryption password does not open this backup");
}

std::shared_ptr<const ObjectKey> ObjectKey::derive(
    const QString& password, const QByteArray& salt, int iterations, int bytes)
{
    if (bytes != 16 && bytes != 24 && bytes != 32)
        return nullptr;
    if (iterations < 1 || iterations > 100000000)
        return nullptr;
    auto made = std::make_shared<ObjectKey>();
    made->m_salt = salt;
    made->m_iterations = iterations;
    made->m_key.resize(bytes);
    const QByteArray utf8 = password.toUtf8();
    if (PKCS5_PBKDF2_HMAC(utf8.constData(), utf8.size(), reinterpret_cast<const unsigned char*>(salt.constData()),
            salt.size(), iterations, EVP_sha256(), bytes, reinterpret_cast<unsigned char*>(made->m_key.data()))
        != 1)
        return nullptr;
    // The check is a MAC under the key, not the key: it tells a wrong
    // password without giving anything towards the key.
    static const char label[] = "nvb object key check";
    QByteArray mac(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    HMAC(EVP_sha256(), made->m_key.constData(), made->m_key.size(), reinterpret_cast<const unsigned char*>(label),
        sizeof(label) - 1, reinterpret_cast<unsigned char*>(mac.data()), &size);
    made->m_check = mac.left(CheckSize);
    return made;
}

std::shared_ptr<const ObjectKey> ObjectKey::create(const QString& password, int bytes)
{
    QByteArray salt(SaltSize, '\0');
    if (RAND_bytes(reinterpret_cast<unsigned char*>(salt.data()), SaltSize) != 1)
        return nullptr;
    auto made = derive(password, salt, Iterations, bytes);
    if (made) {
        const std::lock_guard<std::mutex> lock(cacheMutex());
        cache()[CacheKey {passwordDigest(password, salt), salt, Iterations, bytes}] = made;
    }
    return made;
}

std::shared_ptr<const ObjectKey> ObjectKey::open(
    const QString& password, const QByteArray& salt, int iterations, int bytes, const QByteArray& check, QString* error)
{
    const CacheKey wanted {passwordDigest(password, salt), salt, iterations, bytes};
    std::shared_ptr<const ObjectKey> key;
    {
        const std::lock_guard<std::mutex> lock(cacheMutex());
        const auto found = cache().find(wanted);
        if (found != cache().end())
            key = found->second;
    }
    if (!key) {
        key = derive(password, salt, iterations, bytes);
        if (!key) {
            if (error)
                *error = QStringLiteral("the encryption header is damaged");
            return nullptr;
        }
        const std::lock_guard<std::mutex> lock(cacheMutex());
        cache()[wanted] = key;
    }
    if (check.size() != CheckSize || CRYPTO_memcmp(check.constData(), key->check().constData(), CheckSize) != 0) {
        if (error)
            *error = wrongPasswordMessage();
        return nullptr;
    }
    return key;
}

} // namespace NVB::Engine
