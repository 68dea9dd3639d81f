#pragma once

#include <QString>

namespace NVB::Channel {

// Where the engine listens: the environment variable NVB_ENGINE_SOCKET when it
// is set and not empty, else "engine.sock" in the runtime directory.
class SocketPath
{
public:
    static constexpr char EnvironmentVariable[] = "NVB_ENGINE_SOCKET";
    static QString engine();
};

} // namespace NVB::Channel
