#include "systemcommands.h"

#include <QFile>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QSaveFile>
#include <QSslCertificate>
#include <QSslSocket>
#include <QUrl>
#include <QtConcurrent>

#include "core/engine.h"
#include "paramreader.h"
#include "service/commands/system.h"
#include "store/enginestore.h"

namespace NVB::Engine {

namespace System = NVB::Common::Communication::Commands::Format::System;

namespace {

QString key(const char* text)
{
    return QString::fromLatin1(text);
}

// Reads "host", "host:port" or a URL; a missing port is the HTTPS one.
bool parseEndpoint(const QString& endpoint, QString* host, quint16* port)
{
    QString text = endpoint.trimmed();
    if (text.isEmpty())
        return false;
    if (!text.contains(QLatin1String("://")))
        text.prepend(QLatin1String("https://"));
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return false;
    *host = url.host();
    const int defaultPort = url.scheme() == QLatin1String("http") ? 80 : 443;
    const int value = url.port(defaultPort);
    if (value <= 0 || value > 65535)
        return false;
    *port = quint16(value);
    return true;
}

Outcome peerCertificate(const QString& endpoint)
{
    QString host;
    quint16 port = 0;
    if (!parseEndpoint(endpoint, &host, &port))
        return Outcome::failure(QStringLiteral("\"%1\" is no endpoint").arg(endpoint));
    if (!QSslSocket::supportsSsl())
        return Outcome::failure(QStringLiteral("This engine has no SSL support"));
    QSslSocket socket;
    // The certificate is what the user is asked to trust, so it must be read
    // even when nothing vouches for it.
    socket.setPeerVerifyMode(QSslSocket::QueryPeer);
    socket.connectToHostEncrypted(host, port);
    const bool encrypted = socket.waitForEncrypted(SystemCommands::PeerTimeout);
    const QSslCertificate certificate = socket.peerCertificate();
    socket.abort();
    if (certificate.isNull()) {
        const QString reason = encrypted ? QStringLiteral("the server sent no certificate") : socket.errorString();
        return Outcome::failure(
            QStringLiteral("Can't get the certificate of %1:%2: %3").arg(host).arg(port).arg(reason));
    }
    return Outcome::success({{key(System::GetPeerSslCertificate::Reply::Pem), QString::fromUtf8(certificate.toPem())},
        {key(System::GetPeerSslCertificate::Reply::Success), true}});
}

Outcome appendCertificate(const QString& filePath, const QString& pem)
{
    const QList<QSslCertificate> given = QSslCertificate::fromData(pem.toUtf8(), QSsl::Pem);
    if (given.isEmpty() || given.first().isNull())
        return Outcome::failure(QStringLiteral("The text is no PEM certificate"));
    QList<QSslCertificate> kept = QSslCertificate::fromPath(filePath, QSsl::Pem);
    bool changed = false;
    for (const QSslCertificate& certificate : given) {
        if (!kept.contains(certificate)) {
            kept.append(certificate);
            changed = true;
        }
    }
    if (changed) {
        QSaveFile file(filePath);
        if (!file.open(QIODevice::WriteOnly))
            return Outcome::failure(QStringLiteral("Can't write %1: %2").arg(filePath, file.errorString()));
        for (const QSslCertificate& certificate : qAsConst(kept))
            file.write(certificate.toPem());
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        if (!file.commit())
            return Outcome::failure(QStringLiteral("Can't write %1: %2").arg(filePath, file.errorString()));
    }
    return Outcome::success({{key(System::AppendToSslStorage::Reply::Success), true}});
}

} // namespace

QString SystemCommands::trustedCertificatesFile(Engine* engine)
{
    return QFileInfo(engine->store()->filePath()).absolutePath() + QStringLiteral("/trusted-certificates.pem");
}

void SystemCommands::add(Engine* engine, V1Handlers* handlers, V1DeferredHandlers* deferred)
{
    deferred->insert(key(System::GetPeerSslCertificate::Name), [](const QJsonObject& params, V1Done done) {
        ParamReader args(params);
        const QString endpoint = args.string(System::GetPeerSslCertificate::Request::EndPoint);
        if (!args.ok()) {
            done(Outcome::failure(args.error()));
            return;
        }
        // Connecting and the handshake may take the whole timeout; they run
        // on a worker and the answer comes back to this thread.
        auto* watcher = new QFutureWatcher<Outcome>();
        QObject::connect(watcher, &QFutureWatcherBase::finished, watcher, [watcher, done] {
            done(watcher->result());
            watcher->deleteLater();
        });
        watcher->setFuture(QtConcurrent::run(&peerCertificate, endpoint));
    });
    handlers->insert(key(System::AppendToSslStorage::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QString pem = args.string(System::AppendToSslStorage::Request::Pem);
        if (!args.ok())
            return Outcome::failure(args.error());
        return appendCertificate(trustedCertificatesFile(engine), pem);
    });
}

} // namespace NVB::Engine
