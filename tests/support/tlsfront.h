#pragma once

#include <QByteArray>
#include <QProcess>
#include <QTemporaryDir>

namespace NvbTest {

// A TLS front (servers/tls_front.py) with a self-signed certificate before a
// plain test server on 127.0.0.1, for the untrusted-certificate path and
// pins of the object-store clients. Stopped by its pid on destruction.
class TlsFront
{
public:
    ~TlsFront();

    // Starts it before 127.0.0.1:targetPort; false when it does not come up.
    bool start(int targetPort);
    int port() const { return m_port; }
    // The front's certificate (PEM).
    QByteArray certificate() const;

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    int m_port = 0;
};

} // namespace NvbTest
