#pragma once

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

struct TransformResult
{
    QString error;
    QByteArray data;
    bool ok() const { return error.isEmpty(); }
};

// The one place where chunk bytes change form between the repository and the
// storage: compression, then encryption, once they exist. Every chunk and
// every pack trailer passes through it, so a repository layer that only sees
// raw bytes above and a driver that only sees opaque objects below never need
// to know which steps a plan uses. Implementations are stateless or
// internally synchronised: packs are written and read from several threads.
class ChunkTransform
{
public:
    virtual ~ChunkTransform() = default;

    // Recorded with the repository so a new engine knows how to read it back.
    virtual QString name() const = 0;
    virtual TransformResult encode(const QByteArray& raw) const = 0;
    // Fails with a reason on data it cannot take back (wrong key, damage that
    // an authenticated cipher detects, a corrupt compressed stream).
    virtual TransformResult decode(const QByteArray& stored) const = 0;
};

} // namespace NVB::Engine
