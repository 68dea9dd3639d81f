#pragma once

#include <QByteArray>

// Fuzz inputs into the new format's readers of what lies on the storage,
// shared by the libFuzzer targets and the test that replays kept inputs:
// a point's tree and an index object, both as a damaged or hostile storage
// could hold them once the transform has let them through.
class ArchiveRecordsFuzz
{
public:
    // PointTree::parse; a tree it accepts must come back the same through
    // serialize() and parse() again.
    static void feedTree(const QByteArray& input);
    // Repository::readIndexObject on an object holding the input; the first
    // byte picks the transform (even: stored as is, odd: zstd).
    static void feedIndex(const QByteArray& input);
};
