#pragma once

namespace NVB::Engine {

// Tells whether another process is using a file: has it open for writing or
// holds a lock on it. A plan that skips files in use leaves those out rather
// than store a copy taken in the middle of a write.
class InUseCheck
{
public:
    // `fd` is the file opened read-only by the caller.
    static bool isInUse(int fd);
};

} // namespace NVB::Engine
