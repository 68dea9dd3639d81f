#pragma once

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

// The block hashes of one full version of a file, kept in the store beside
// the restore points that name the version's object. A later run compares a
// changed file against them and stores only the blocks that differ.
struct BlockMap
{
    static constexpr int HashSize = 16; // SHA-256 cut to 128 bits

    QString object; // the full version's object below the account's folder
    QByteArray checksum; // SHA-256 of the whole version: a map never meets another version
    int encoding = 0; // how the full version's object holds the data
    quint32 blockSize = 0;
    qint64 size = 0;
    QByteArray hashes; // HashSize bytes a block, in file order

    int count() const { return hashes.size() / HashSize; }
    const char* hash(int index) const { return hashes.constData() + qsizetype(index) * HashSize; }
};

} // namespace NVB::Engine
