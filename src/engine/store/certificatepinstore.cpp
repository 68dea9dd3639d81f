#include "certificatepinstore.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

#include "cloud/certificatepins.h"

namespace NVB::Engine {

CertificatePinStore::CertificatePinStore(const QString& databaseFile)
    : m_file(databaseFile)
    , m_connection(QStringLiteral("pins-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
{ }

CertificatePinStore::~CertificatePinStore()
{
    if (!QSqlDatabase::contains(m_connection))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

QSqlDatabase CertificatePinStore::database(QString* error)
{
    if (QSqlDatabase::contains(m_connection))
        return QSqlDatabase::database(m_connection, false);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(m_file);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open()) {
        if (error)
            *error = QStringLiteral("Cannot open the store %1: %2").arg(m_file, db.lastError().text());
        return QSqlDatabase();
    }
    return db;
}

bool CertificatePinStore::pin(const QString& host, int port, const QSslCertificate& leaf, QString* error)
{
    QSqlDatabase db = database(error);
    if (!db.isOpen())
        return false;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("INSERT INTO certificate_pins(host, port, sha256, pem, added_utc) VALUES(?,?,?,?,?) "
                             "ON CONFLICT(host, port) DO UPDATE SET sha256=excluded.sha256, pem=excluded.pem, "
                             "added_utc=excluded.added_utc"));
    q.addBindValue(NVL::Cloud::CertificatePins::normalHost(host));
    q.addBindValue(port);
    q.addBindValue(QString::fromLatin1(NVL::Cloud::CertificatePins::fingerprint(leaf).toHex()));
    q.addBindValue(QString::fromLatin1(leaf.toPem()));
    q.addBindValue(QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    if (q.exec())
        return true;
    if (error)
        *error = QStringLiteral("Cannot keep the certificate: %1").arg(q.lastError().text());
    return false;
}

std::optional<QList<CertificatePinStore::Pin>> CertificatePinStore::pins(QString* error)
{
    QSqlDatabase db = database(error);
    if (!db.isOpen())
        return std::nullopt;
    QSqlQuery q(db);
    if (!q.exec(
            QStringLiteral("SELECT host, port, sha256, pem, added_utc FROM certificate_pins ORDER BY host, port"))) {
        if (error)
            *error = QStringLiteral("Cannot read the certificate pins: %1").arg(q.lastError().text());
        return std::nullopt;
    }
    QList<Pin> result;
    while (q.next()) {
        Pin pin;
        pin.host = q.value(0).toString();
        pin.port = q.value(1).toInt();
        pin.sha256 = QByteArray::fromHex(q.value(2).toString().toLatin1());
        pin.certificate = QSslCertificate(q.value(3).toString().toLatin1(), QSsl::Pem);
        pin.addedUtc = QDateTime::fromString(q.value(4).toString(), Qt::ISODate);
        result.append(pin);
    }
    return result;
}

int CertificatePinStore::removeCertificate(const QByteArray& sha256, QString* error)
{
    QSqlDatabase db = database(error);
    if (!db.isOpen())
        return -1;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("DELETE FROM certificate_pins WHERE sha256 = ?"));
    q.addBindValue(QString::fromLatin1(sha256.toHex()));
    if (!q.exec()) {
        if (error)
            *error = QStringLiteral("Cannot remove the certificate: %1").arg(q.lastError().text());
        return -1;
    }
    return q.numRowsAffected();
}

} // namespace NVB::Engine
