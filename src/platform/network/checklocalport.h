#pragma once

namespace NVL::Network {

// Whether a TCP port of this machine is free to listen on. The check looks at
// the port only, not at who holds it: a port our own engine already serves
// counts as busy like any other.
class CheckLocalPort
{
public:
    explicit CheckLocalPort(int port);

    // True when nothing listens on the port, on any local address.
    bool check() const;

private:
    int m_port;
};

} // namespace NVL::Network
