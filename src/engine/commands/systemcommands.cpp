#include "systemcommands.h"

#include <memory>

#include <QFutureWatcher>
#include <QJsonArray>
#include <QSslCertificate>
#include <QUrl>
#include <QtConcurrent>

#include "cloud/certificatepins.h"
#include "cloud/tlspeercheck.h"
#include "core/engine.h"
#include "core/nvldebug.h"
#include "paramreader.h"
#include "server/notifier.h"
#include "service/notification/format.h"
#include "service/commands/system.h"
#include "store/certificatepinstore.h"
#include "store/enginestore.h"
#include "store/storefile.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

namespace System = NVB::Common::Communication::Commands::Format::System;

namespace {

QString key(const char* text)
{
    return QString::fromLatin1(text);
}

// Reads "host", "host:port" or a URL; a missing port is the HTTPS one.
// What the pins of this process are: the stored ones.
void reloadPins(CertificatePinStore* store)
{
    QString error;
    const auto pins = store->pins(&error);
    if (!pins) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return;
    }
    QList<NVL::Cloud::CertificatePin> loaded;
    for (const CertificatePinStore::Pin& pin : *pins)
        loaded.append({pin.host, pin.port, pin.sha256});
    NVL::Cloud::CertificatePins::instance().set(loaded);
}

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
    // The certificate is what the user is asked to trust, so it is read even
    // when nothing vouches for it.
    const NVL::Cloud::TlsPeerCheck::Result seen
        = NVL::Cloud::TlsPeerCheck::run(host, port, SystemCommands::PeerTimeout);
    if (seen.leaf.isNull()) {
        const QString reason = seen.error.isEmpty() ? QStringLiteral("the server sent no certificate") : seen.error;
        return Outcome::failure(
            QStringLiteral("Can't get the certificate of %1:%2: %3").arg(host).arg(port).arg(reason));
    }
    return Outcome::success({{key(System::GetPeerSslCertificate::Reply::Pem), QString::fromUtf8(seen.leaf.toPem())},
        {key(System::GetPeerSslCertificate::Reply::Success), true}});
}

Outcome pinCertificate(CertificatePinStore* store, const QString& endpoint, const QString& pem)
{
    QString host;
    quint16 port = 0;
    if (!parseEndpoint(endpoint, &host, &port))
        return Outcome::failure(QStringLiteral("\"%1\" is no endpoint").arg(endpoint));
    const QList<QSslCertificate> given = QSslCertificate::fromData(pem.toUtf8(), QSsl::Pem);
    if (given.isEmpty() || given.first().isNull())
        return Outcome::failure(QStringLiteral("The text is no PEM certificate"));
    // Trust is for the one certificate the user looked at, not a bundle that
    // could slip an authority in.
    if (given.size() != 1)
        return Outcome::failure(QStringLiteral("Exactly one certificate can be trusted, not %1").arg(given.size()));
    QString error;
    if (!store->pin(host, port, given.first(), &error))
        return Outcome::failure(error);
    NVL::Cloud::CertificatePins::instance().add({host, port, NVL::Cloud::CertificatePins::fingerprint(given.first())});
    return Outcome::success({{key(System::AppendToSslStorage::Reply::Success), true}});
}

Outcome listPins(CertificatePinStore* store)
{
    QString error;
    const auto pins = store->pins(&error);
    if (!pins)
        return Outcome::failure(error);
    QJsonArray certificates;
    for (const CertificatePinStore::Pin& pin : *pins) {
        const QString host = pin.host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(pin.host) : pin.host;
        certificates.append(QJsonObject {{QStringLiteral("pem"), QString::fromLatin1(pin.certificate.toPem())},
            {QStringLiteral("endpoint"), QStringLiteral("%1:%2").arg(host).arg(pin.port)},
            {QStringLiteral("sha256"), NVL::Cloud::CertificatePins::fingerprintText(pin.sha256)},
            {QStringLiteral("added"), pin.addedUtc.toString(Qt::ISODate)}});
    }
    return Outcome::success({{key(System::ReadFromSslStorage::Reply::Certificates), certificates}});
}

Outcome removePins(CertificatePinStore* store, const QString& pems)
{
    const QList<QSslCertificate> given = QSslCertificate::fromData(pems.toUtf8(), QSsl::Pem);
    if (given.isEmpty())
        return Outcome::failure(QStringLiteral("The text is no PEM certificate"));
    QString error;
    for (const QSslCertificate& certificate : given) {
        if (store->removeCertificate(NVL::Cloud::CertificatePins::fingerprint(certificate), &error) < 0)
            return Outcome::failure(error);
    }
    reloadPins(store);
    return Outcome::success({{key(System::RemoveFromSslStorage::Reply::Success), true}});
}

Outcome moveDatabase(Engine* engine, std::unique_ptr<CertificatePinStore>* pins, const QString& path)
{
    EngineStore* store = engine->store();
    for (const StoredPlan& plan : store->plans()) {
        if (engine->isRunning(plan.id)) {
            return Outcome::failure(
                QStringLiteral("The database cannot be moved while the plan \"%1\" runs; stop it or wait for it to end")
                    .arg(plan.name));
        }
    }
    const QString from = store->filePath();
    pins->reset();
    QString error;
    const bool moved = StoreFile::move(store, path, [](const QString& file) {
        return NVB::DefaultSettings::instance()->setValue(QStringLiteral("DatabasePath"), file);
    }, &error);
    *pins = std::make_unique<CertificatePinStore>(store->filePath());
    if (!moved)
        return Outcome::failure(error);
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("The database moved from %1 to %2").arg(from, store->filePath());
    // The engine wrote the key itself, so the settings watcher sees no change
    // to announce; consoles still need to read it again.
    namespace Note = NVB::Common::Communication::Notification::Format::System::DefaultSettingsChanged;
    engine->notifier()->notify(Note::Type, {{QLatin1String(Note::Property), QStringLiteral("DatabasePath")}});
    return Outcome::success();
}

} // namespace

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
    // One store for all handlers; its pins are this process's from the start.
    // It has a connection of its own, which follows the database when it moves.
    auto pins = std::make_shared<std::unique_ptr<CertificatePinStore>>(
        std::make_unique<CertificatePinStore>(engine->store()->filePath()));
    reloadPins(pins->get());
    handlers->insert(key(System::AppendToSslStorage::Name), [pins](const QJsonObject& params) {
        ParamReader args(params);
        const QString pem = args.string(System::AppendToSslStorage::Request::Pem);
        const QString endpoint = args.string(System::AppendToSslStorage::Request::EndPoint);
        if (!args.ok())
            return Outcome::failure(args.error());
        return pinCertificate(pins->get(), endpoint, pem);
    });
    handlers->insert(
        key(System::ReadFromSslStorage::Name), [pins](const QJsonObject&) { return listPins(pins->get()); });
    handlers->insert(key(System::RemoveFromSslStorage::Name), [pins](const QJsonObject& params) {
        ParamReader args(params);
        const QString pems = args.string(System::RemoveFromSslStorage::Request::Pems);
        if (!args.ok())
            return Outcome::failure(args.error());
        return removePins(pins->get(), pems);
    });
    handlers->insert(key(System::MoveDatabase::Name), [engine, pins](const QJsonObject& params) {
        ParamReader args(params);
        const QString path = args.string(System::MoveDatabase::Request::Path);
        if (!args.ok())
            return Outcome::failure(args.error());
        return moveDatabase(engine, pins.get(), path);
    });
}

} // namespace NVB::Engine
