#pragma once

#include "v1handler.h"

namespace NVB::Engine {

class Engine;

// The engine's V1 system commands, by wire name: fetching a server's
// certificate for the console's trust question, and keeping the trust the
// user gave: one pinned leaf certificate per host:port, never an authority.
class SystemCommands
{
public:
    static void add(Engine* engine, V1Handlers* handlers, V1DeferredHandlers* deferred);

    // How long the certificate fetch waits for the server, in milliseconds.
    static constexpr int PeerTimeout = 10000;
};

} // namespace NVB::Engine
