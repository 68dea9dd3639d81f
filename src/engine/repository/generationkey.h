#pragma once

#include <memory>

#include <QByteArray>
#include <QJsonObject>
#include <QString>

namespace NVB::Engine {

class ObjectKey;

// The key material of an enciphered generation. The password derives one
// key per generation (PBKDF2-HMAC-SHA256 over a salt of the generation's
// own); the salt, the iteration count, the key length and a key check are
// recorded in the generation's record, so a wrong password is refused from
// that record alone, before anything is read or written. Chunk ids and the
// chunker's seed come from subkeys of that key, never from the key itself.
class GenerationKey
{
public:
    static QString cipherName(int bytes);

    // A fresh salt and the key of `bytes` length; null on a bad length.
    static std::shared_ptr<const ObjectKey> create(const QString& password, int bytes);
    // What the generation's record keeps of the key: never the key.
    static QJsonObject describe(const ObjectKey& key);
    // The key `record` describes under `password`; null with `error` set on a
    // wrong password ("wrong password: ...") or a damaged record.
    static std::shared_ptr<const ObjectKey> open(const QJsonObject& record, const QString& password, QString* error);

    // The HMAC key of the generation's chunk ids.
    static QByteArray chunkIdKey(const ObjectKey& key);
    // The chunker's gear seed, so boundaries do not betray a known file.
    static quint64 chunkerSeed(const ObjectKey& key);
};

} // namespace NVB::Engine
