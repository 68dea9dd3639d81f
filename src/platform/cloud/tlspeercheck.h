#pragma once

#include <QSslCertificate>
#include <QStringList>

#include "operationresult.h"

namespace NVL::Cloud {

// One TLS handshake with a server, verified by the system's authorities or,
// failing that, by a pin (CertificatePins). It answers the certificate the
// very connection saw and why verification failed, so that what the user is
// asked to trust is what was refused, never a second fetch. Blocking: for
// worker threads.
class TlsPeerCheck
{
public:
    struct Result
    {
        bool trusted = false;
        // The server's leaf certificate, as this handshake saw it.
        QSslCertificate leaf;
        // Why the system's verification failed; empty when it passed.
        QStringList reasons;
        // A failure before any certificate was seen (no connection).
        QString error;

        // The operation's answer: no error, SslUntrusted with the leaf's PEM
        // and the reasons in its configuration (Api::Config::Http::
        // PeerCertificate, PeerCertificateErrors), or ConnectionFailed.
        OperationResult toOperationResult(const QMap<QString, QVariant>& config) const;
    };

    static Result run(const QString& host, int port, int timeoutMsecs);
};

} // namespace NVL::Cloud
