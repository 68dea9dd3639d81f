#pragma once

#include <QByteArray>

namespace NVB::Engine {

// Names chunks. With a repository key the id is HMAC-SHA-256 under that key,
// so ids of an enciphered repository reveal nothing about the content (no
// one can confirm a guessed file by hashing it); without a key it is plain
// SHA-256. Both are 32 bytes. Safe to use from several threads at once.
class ChunkIdentifier
{
public:
    static constexpr int IdSize = 32;

    explicit ChunkIdentifier(const QByteArray& key = {});

    bool isKeyed() const { return !m_key.isEmpty(); }
    QByteArray id(const char* data, qint64 size) const;
    QByteArray id(const QByteArray& data) const { return id(data.constData(), data.size()); }

private:
    QByteArray m_key;
};

} // namespace NVB::Engine
