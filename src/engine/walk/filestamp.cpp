#include "filestamp.h"

namespace NVB::Engine::FileStamp {

qint64 nanoseconds(const struct timespec& time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

bool sameFile(const struct stat& a, const struct stat& b)
{
    return a.st_size == b.st_size && a.st_ino == b.st_ino && a.st_dev == b.st_dev
        && nanoseconds(a.st_mtim) == nanoseconds(b.st_mtim) && nanoseconds(a.st_ctim) == nanoseconds(b.st_ctim);
}

} // namespace NVB::Engine::FileStamp
