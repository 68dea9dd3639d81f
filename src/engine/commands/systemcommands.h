#pragma once

#include "v1handler.h"

namespace NVB::Engine {

class Engine;

// The engine's V1 system commands, by wire name: fetching a server's
// certificate for the console's trust question, and keeping the certificates
// the user trusted.
class SystemCommands
{
public:
    static void add(Engine* engine, V1Handlers* handlers, V1DeferredHandlers* deferred);

    // How long the certificate fetch waits for the server, in milliseconds.
    static constexpr int PeerTimeout = 10000;
    // The file in the data directory that holds the trusted certificates, one
    // PEM block after the other; the cloud operations read it.
    static QString trustedCertificatesFile(Engine* engine);
};

} // namespace NVB::Engine
