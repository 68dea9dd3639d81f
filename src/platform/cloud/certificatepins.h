#pragma once

#include <QByteArray>
#include <QList>
#include <QMutex>
#include <QSslCertificate>
#include <QSslError>
#include <QString>

namespace NVL::Cloud {

// Trust the user gave to one TLS server whose certificate nothing vouches
// for: the SHA-256 of its leaf certificate, for exactly one host:port. A pin
// never makes a certificate an authority, so it cannot vouch for any other
// server or certificate. The engine stores the pins; every process that talks
// TLS (the engine, the console) holds them here, and every TLS client asks
// accepts() when the system's verification fails.
struct CertificatePin
{
    QString host;
    int port = 0;
    QByteArray sha256;
};

class CertificatePins
{
public:
    static CertificatePins& instance();

    static QByteArray fingerprint(const QSslCertificate& certificate);
    // "AB:CD:...", as the trust dialog shows it.
    static QString fingerprintText(const QByteArray& sha256);
    // Host names compare without case; an IPv6 address may come bracketed.
    static QString normalHost(const QString& host);

    void add(const CertificatePin& pin);
    void remove(const QString& host, int port);
    void set(const QList<CertificatePin>& pins);
    QList<CertificatePin> pins() const;

    bool isPinned(const QString& host, int port, const QSslCertificate& leaf) const;
    // Whether a handshake with these verification errors may go on: only when
    // the leaf (chain's first) is pinned for this very host:port.
    bool accepts(
        const QString& host, int port, const QList<QSslError>& errors, const QList<QSslCertificate>& chain) const;

private:
    CertificatePins() = default;

    mutable QMutex m_mutex;
    QList<CertificatePin> m_pins;
};

} // namespace NVL::Cloud
