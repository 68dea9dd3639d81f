#include "peercredentials.h"

#include <sys/socket.h>

namespace NVB::Engine {

std::optional<uid_t> PeerCredentials::peerUid(int socketDescriptor)
{
    struct ucred credentials{};
    socklen_t length = sizeof credentials;
    if (::getsockopt(socketDescriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &length) != 0)
        return std::nullopt;
    return credentials.uid;
}

} // namespace NVB::Engine
