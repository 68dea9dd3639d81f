#pragma once

#include <sys/stat.h>

#include <QtGlobal>

namespace NVB::Engine::FileStamp {

// A stat time as one number, the way the store keeps it.
qint64 nanoseconds(const struct timespec& time);

// What must not move while a file is read for its copy to be good.
bool sameFile(const struct stat& a, const struct stat& b);

} // namespace NVB::Engine::FileStamp
