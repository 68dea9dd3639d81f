#include "inusecheck.h"

#include <cerrno>
#include <fcntl.h>

namespace NVB::Engine {

bool InUseCheck::isInUse(int fd)
{
    // A read lease is refused while any other descriptor has the file open
    // for writing: the kernel's own answer, without walking /proc.
    if (::fcntl(fd, F_SETLEASE, F_RDLCK) == 0) {
        ::fcntl(fd, F_SETLEASE, F_UNLCK);
    } else if (errno == EAGAIN || errno == EBUSY) {
        return true;
    }
    // Leases need the file's owner (or CAP_LEASE) and a local file system;
    // a lock is visible to everyone.
    struct flock probe
    {
    };
    probe.l_type = F_RDLCK;
    probe.l_whence = SEEK_SET;
    probe.l_start = 0;
    probe.l_len = 0;
    // A probe for a read lock conflicts only with another's write lock.
    return ::fcntl(fd, F_OFD_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
}

} // namespace NVB::Engine
