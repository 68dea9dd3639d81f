#include "tlspeercheck.h"

#include <QSslSocket>

#include "certificatepins.h"
#include "cloudconfig.h"

namespace NVL::Cloud {

TlsPeerCheck::Result TlsPeerCheck::run(const QString& host, int port, int timeoutMsecs)
{
    Result result;
    if (!QSslSocket::supportsSsl()) {
        result.error = QStringLiteral("This program has no TLS support");
        return result;
    }
    QSslSocket socket;
    socket.setPeerVerifyMode(QSslSocket::VerifyPeer);
    socket.setPeerVerifyName(CertificatePins::normalHost(host));
    bool pinned = false;
    // Direct: decided inside the handshake, before any byte is trusted.
    QObject::connect(
        &socket, QOverload<const QList<QSslError>&>::of(&QSslSocket::sslErrors), &socket,
        [&](const QList<QSslError>& errors) {
            const QList<QSslCertificate> chain = socket.peerCertificateChain();
            result.leaf = chain.isEmpty() ? QSslCertificate() : chain.first();
            for (const QSslError& error : errors)
                result.reasons.append(error.errorString());
            if (CertificatePins::instance().accepts(host, port, errors, chain)) {
                pinned = true;
                socket.ignoreSslErrors(errors);
            }
        },
        Qt::DirectConnection);
    socket.connectToHostEncrypted(CertificatePins::normalHost(host), quint16(port));
    const bool encrypted = socket.waitForEncrypted(timeoutMsecs);
    if (result.leaf.isNull())
        result.leaf = socket.peerCertificate();
    result.trusted = encrypted;
    if (encrypted && !pinned)
        result.reasons.clear();
    if (!encrypted && result.reasons.isEmpty())
        result.error = socket.errorString();
    socket.abort();
    return result;
}

OperationResult TlsPeerCheck::Result::toOperationResult(const QMap<QString, QVariant>& config) const
{
    if (trusted)
        return {};
    if (leaf.isNull() || reasons.isEmpty())
        return OperationResult::failure(
            OperationError::ConnectionFailed, error.isEmpty() ? QStringLiteral("The TLS connection failed") : error);
    OperationResult result = OperationResult::failure(OperationError::SslUntrusted,
        QStringLiteral("The server's certificate is not trusted: %1").arg(reasons.join(QStringLiteral("; "))));
    result.config = config;
    result.config.insert(Api::Config::Http::PeerCertificate, QString::fromLatin1(leaf.toPem()));
    result.config.insert(Api::Config::Http::PeerCertificateErrors, reasons);
    return result;
}

} // namespace NVL::Cloud
