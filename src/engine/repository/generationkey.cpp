#include "generationkey.h"

#include <cstring>

#include <openssl/evp.h>
#include <openssl/hmac.h>

#include "encryption/objectkey.h"

namespace NVB::Engine {

namespace {

const QString Kdf = QStringLiteral("pbkdf2-hmac-sha256");

QByteArray subkey(const ObjectKey& key, const char* label)
{
    QByteArray mac(EVP_MAX_MD_SIZE, '\0');
    unsigned int size = 0;
    HMAC(EVP_sha256(), key.key().constData(), key.key().size(), reinterpret_cast<const unsigned char*>(label),
        std::strlen(label), reinterpret_cast<unsigned char*>(mac.data()), &size);
    mac.resize(int(size));
    return mac;
}

} // namespace

QString GenerationKey::cipherName(int bytes)
{
    return QStringLiteral("aes-%1-gcm").arg(bytes * 8);
}

std::shared_ptr<const ObjectKey> GenerationKey::create(const QString& password, int bytes)
{
    return ObjectKey::create(password, bytes);
}

QJsonObject GenerationKey::describe(const ObjectKey& key)
{
    return {{QStringLiteral("kdf"), Kdf}, {QStringLiteral("iterations"), key.iterations()},
        {QStringLiteral("length"), key.key().size()},
        {QStringLiteral("salt"), QString::fromLatin1(key.salt().toBase64())},
        {QStringLiteral("check"), QString::fromLatin1(key.check().toBase64())}};
}

std::shared_ptr<const ObjectKey> GenerationKey::open(const QJsonObject& record, const QString& password, QString* error)
{
    const QByteArray salt = QByteArray::fromBase64(record.value(QStringLiteral("salt")).toString().toLatin1());
    const QByteArray check = QByteArray::fromBase64(record.value(QStringLiteral("check")).toString().toLatin1());
    const int iterations = record.value(QStringLiteral("iterations")).toInt();
    const int length = record.value(QStringLiteral("length")).toInt();
    // A record lowered to a cheap derivation would make guessing cheap: a
    // count below the one this engine writes is damage, not a choice.
    if (record.value(QStringLiteral("kdf")).toString() != Kdf || salt.size() != ObjectKey::SaltSize
        || check.size() != ObjectKey::CheckSize || iterations < ObjectKey::Iterations) {
        *error = QStringLiteral("the generation's key record is damaged");
        return nullptr;
    }
    return ObjectKey::open(password, salt, iterations, length, check, error);
}

QByteArray GenerationKey::chunkIdKey(const ObjectKey& key)
{
    return subkey(key, "nvb chunk id");
}

quint64 GenerationKey::chunkerSeed(const ObjectKey& key)
{
    const QByteArray mac = subkey(key, "nvb chunker seed");
    quint64 seed = 0;
    std::memcpy(&seed, mac.constData(), sizeof seed);
    return seed;
}

} // namespace NVB::Engine
