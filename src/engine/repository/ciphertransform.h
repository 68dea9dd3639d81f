#pragma once

#include <memory>

#include "chunktransform.h"

namespace NVB::Engine {

class ObjectKey;

// Enciphers chunks and pack trailers with AES-GCM under a key derived from
// the plan's password, in the same authenticated format as the legacy
// format's objects. Every encoded piece names its salt, so pieces written
// under an earlier salt of the same password still decode. Stateless after
// construction, so safe to share between threads.
class CipherTransform : public ChunkTransform
{
public:
    // `bytes` is the key length: 16, 24 or 32. The key is derived once, here.
    CipherTransform(const QString& password, int bytes);

    // False when the key could not be made (a bad length).
    bool isValid() const { return m_key != nullptr; }

    QString name() const override;
    TransformResult encode(const QByteArray& raw) const override;
    TransformResult decode(const QByteArray& stored) const override;

private:
    QString m_password;
    int m_bytes;
    std::shared_ptr<const ObjectKey> m_key;
};

} // namespace NVB::Engine
