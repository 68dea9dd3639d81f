#pragma once

#include <memory>

#include "chunktransform.h"

namespace NVB::Engine {

class ObjectKey;

// Enciphers chunks, pack trailers, index objects and trees with AES-GCM under
// a key derived from the plan's password, in the same authenticated format as
// the legacy format's objects, after an inner transform (compression or
// none): compressed then enciphered, since ciphertext does not compress.
// Stateless after construction, so safe to share between threads.
class CipherTransform : public ChunkTransform
{
public:
    // `bytes` is the key length: 16, 24 or 32. The key is derived once, here,
    // under a fresh salt.
    CipherTransform(const QString& password, int bytes);
    // A generation's transform: `key` is the generation's opened key, and
    // every piece must carry that key's salt and check.
    CipherTransform(std::unique_ptr<ChunkTransform> inner, std::shared_ptr<const ObjectKey> key,
        const QString& password);
    ~CipherTransform() override;

    // False when the key could not be made (a bad length).
    bool isValid() const { return m_key != nullptr; }

    // "aes-256-gcm", or "zstd-3+aes-256-gcm" after compression.
    QString name() const override;
    TransformResult encode(const QByteArray& raw) const override;
    TransformResult decode(const QByteArray& stored) const override;

private:
    std::unique_ptr<ChunkTransform> m_inner;
    QString m_password;
    int m_bytes;
    std::shared_ptr<const ObjectKey> m_key;
    bool m_pinned = false;
};

} // namespace NVB::Engine
