#pragma once

#include <sys/types.h>

#include <optional>

namespace NVB::Engine {

// Who is at the other end of a connected Unix socket, as the kernel says.
class PeerCredentials
{
public:
    static std::optional<uid_t> peerUid(int socketDescriptor);
};

} // namespace NVB::Engine
