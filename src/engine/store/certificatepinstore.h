#pragma once

#include <QDateTime>
#include <QList>
#include <QSqlDatabase>
#include <QSslCertificate>
#include <QString>

#include <optional>

namespace NVB::Engine {

// The certificates the user trusted, one leaf per host:port (see
// NVL::Cloud::CertificatePins). Kept in the engine's store, in a table of its
// own, through a connection of its own to the same file.
class CertificatePinStore
{
public:
    struct Pin
    {
        QString host;
        int port = 0;
        QByteArray sha256;
        QSslCertificate certificate;
        QDateTime addedUtc;
    };

    explicit CertificatePinStore(const QString& databaseFile);
    ~CertificatePinStore();
    CertificatePinStore(const CertificatePinStore&) = delete;
    CertificatePinStore& operator=(const CertificatePinStore&) = delete;

    // Replaces the endpoint's earlier pin, if any.
    bool pin(const QString& host, int port, const QSslCertificate& leaf, QString* error);
    std::optional<QList<Pin>> pins(QString* error);
    // Removes every pin of that certificate; answers how many went, or -1.
    int removeCertificate(const QByteArray& sha256, QString* error);

private:
    QSqlDatabase database(QString* error);

    QString m_file;
    QString m_connection;
};

} // namespace NVB::Engine
