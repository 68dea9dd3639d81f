#include "certificatepins.h"

#include <QCryptographicHash>
#include <QMutexLocker>

namespace NVL::Cloud {

CertificatePins& CertificatePins::instance()
{
    static CertificatePins pins;
    return pins;
}

QByteArray CertificatePins::fingerprint(const QSslCertificate& certificate)
{
    return certificate.isNull() ? QByteArray() : certificate.digest(QCryptographicHash::Sha256);
}

QString CertificatePins::fingerprintText(const QByteArray& sha256)
{
    const QByteArray hex = sha256.toHex().toUpper();
    QStringList pairs;
    for (int i = 0; i < hex.size(); i += 2)
        pairs.append(QString::fromLatin1(hex.mid(i, 2)));
    return pairs.join(QLatin1Char(':'));
}

QString CertificatePins::normalHost(const QString& host)
{
    QString result = host.trimmed().toLower();
    if (result.startsWith(QLatin1Char('[')) && result.endsWith(QLatin1Char(']')))
        result = result.mid(1, result.size() - 2);
    return result;
}

void CertificatePins::add(const CertificatePin& pin)
{
    QMutexLocker locker(&m_mutex);
    const QString host = normalHost(pin.host);
    for (CertificatePin& kept : m_pins) {
        if (kept.host == host && kept.port == pin.port) {
            kept.sha256 = pin.sha256;
            return;
        }
    }
    m_pins.append({host, pin.port, pin.sha256});
}

void CertificatePins::remove(const QString& host, int port)
{
    QMutexLocker locker(&m_mutex);
    const QString wanted = normalHost(host);
    m_pins.erase(std::remove_if(m_pins.begin(), m_pins.end(),
                     [&](const CertificatePin& pin) { return pin.host == wanted && pin.port == port; }),
        m_pins.end());
}

void CertificatePins::set(const QList<CertificatePin>& pins)
{
    QMutexLocker locker(&m_mutex);
    m_pins.clear();
    for (const CertificatePin& pin : pins)
        m_pins.append({normalHost(pin.host), pin.port, pin.sha256});
}

QList<CertificatePin> CertificatePins::pins() const
{
    QMutexLocker locker(&m_mutex);
    return m_pins;
}

bool CertificatePins::isPinned(const QString& host, int port, const QSslCertificate& leaf) const
{
    const QByteArray sha256 = fingerprint(leaf);
    if (sha256.isEmpty())
        return false;
    const QString wanted = normalHost(host);
    QMutexLocker locker(&m_mutex);
    for (const CertificatePin& pin : m_pins) {
        if (pin.host == wanted && pin.port == port)
            return pin.sha256 == sha256;
    }
    return false;
}

bool CertificatePins::accepts(
    const QString& host, int port, const QList<QSslError>& errors, const QList<QSslCertificate>& chain) const
{
    if (chain.isEmpty() || !isPinned(host, port, chain.first()))
        return false;
    // Each error must be about the pinned leaf itself; a revoked or
    // blacklisted certificate stays refused even when pinned.
    for (const QSslError& error : errors) {
        switch (error.error()) {
        case QSslError::CertificateRevoked:
        case QSslError::CertificateBlacklisted:
            return false;
        default:
            break;
        }
        if (!error.certificate().isNull() && error.certificate() != chain.first())
            return false;
    }
    return true;
}

} // namespace NVL::Cloud
