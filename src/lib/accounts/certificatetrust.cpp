#include "certificatetrust.h"

#include <QJsonDocument>
#include <QScopedPointer>
#include <QSslCertificate>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include "cloud/certificatepins.h"
#include "cloud/cloudconfig.h"
#include "cloud/info/amazons3like.h"
#include "cloud/info/azureblob.h"
#include "cloud/info/backblaze.h"
#include "cloud/info/googlestorage.h"
#include "cloud/info/infofactory.h"
#include "cloud/ioperation.h"
#include "core/nvldebug.h"
#include "service/commands/header.h"
#include "service/commands/system.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "sslcertmaketrustdialog.h"

namespace NVB::GUI::Settings::Account {

namespace Communication = NVB::Common::Communication;
namespace Format = NVB::Common::Communication::Commands::Format;

CertificateTrust::CertificateTrust(QWidget* dialog)
    : QObject(dialog)
    , m_dialog(dialog)
{ }

bool CertificateTrust::offer(const NVL::Cloud::IOperation& operation, NVL::Cloud::Type type)
{
    const QMap<QString, QVariant> config = operation.cloudConfig();
    namespace Http = NVL::Cloud::Api::Config::Http;
    QString endpoint = config.value(Http::Endpoint).toString();
    if (endpoint.isEmpty()) {
        const auto info = NVL::Cloud::Info::InfoFactory::create(config);
        if (const auto* azure = dynamic_cast<NVL::Cloud::Info::AzureBlob*>(info.data()))
            endpoint = azure->defaultEndpoint().toString();
        else if (const auto* s3 = dynamic_cast<NVL::Cloud::Info::AmazonS3Like*>(info.data());
                 s3 && type == NVL::Cloud::Type::AmazonS3)
            endpoint = s3->defaultEndpoint().toString();
        else if (const auto* google = dynamic_cast<NVL::Cloud::Info::GoogleStorage*>(info.data()))
            endpoint = google->defaultEndpoint().toString();
        else if (const auto* b2 = dynamic_cast<NVL::Cloud::Info::BackBlaze*>(info.data()))
            endpoint = b2->defaultEndpoint().toString();
        else
            NVL::NvlDebug(QStringLiteral("NVB")).debug() << QStringLiteral("Default endpoint is not set");
    }
    if (operation.errorCode() != 5 || endpoint.isEmpty())
        return false;
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Error code: %1").arg(operation.errorCode());
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Error message: %1").arg(operation.errorMessage());
    // The certificate to ask about is the one the failed connection saw;
    // only a client that could not keep it makes us fetch it.
    const QString seen = config.value(Http::PeerCertificate).toString();
    if (seen.isEmpty()) {
        fetchAndAsk(endpoint);
    } else {
        const QStringList reasons = config.value(Http::PeerCertificateErrors).toStringList();
        QTimer::singleShot(0, this, [this, seen, endpoint, reasons] {
            emit fetched();
            ask(seen, endpoint, reasons);
        });
    }
    return true;
}

void CertificateTrust::setParams(Communication::ICommand* command, const QJsonObject& params)
{
    QJsonObject request = command->request().object();
    request.insert(QLatin1String(Format::Header::Params), params);
    command->setRequest(QJsonDocument(request));
}

QJsonObject CertificateTrust::replyData(Communication::ICommand* command)
{
    if (!command->isComplite() || command->isError() || command->isTimeout() || command->reply().isNull()
        || !command->reply().isObject())
        throw QObject::tr("Local command reply format error");
    if (command->isReplyError())
        throw command->replyErrorString();
    return command->reply().object().value(QLatin1String(Format::Header::Data)).toObject();
}

void CertificateTrust::fetchAndAsk(const QString& endpoint)
{
    const auto manager = Communication::Manager::instance();
    Communication::ICommand* command
        = manager ? manager->commandFactory(QString::fromLatin1(Format::System::GetPeerSslCertificate::Name)) : nullptr;
    if (!command) {
        emit failed(QStringLiteral("Commnunication command don't registrate"));
        return;
    }
    setParams(command, {{QLatin1String(Format::System::GetPeerSslCertificate::Request::EndPoint), endpoint}});
    command->setProperty("endpoint", endpoint);
    connect(command, &Communication::ICommand::complite, this, &CertificateTrust::onFetched);
    connect(command, &Communication::ICommand::error, this, &CertificateTrust::onFetched);
    connect(command, &Communication::ICommand::timeout, this, &CertificateTrust::onFetched);
    command->exec();
}

void CertificateTrust::onFetched()
{
    emit fetched();
    auto* command = qobject_cast<Communication::ICommand*>(sender());
    if (!command)
        return;
    QScopedPointer<Communication::ICommand, QScopedPointerDeleteLater> holder(command);
    try {
        const QJsonObject data = replyData(command);
        ask(data.value(QLatin1String(Format::System::GetPeerSslCertificate::Reply::Pem)).toString(),
            command->property("endpoint").toString(), QStringList());
    } catch (const QString& text) {
        emit failed(text);
    }
}

void CertificateTrust::ask(const QString& pem, const QString& endpoint, const QStringList& reasons)
{
    try {
        const QSslCertificate certificate(pem.toUtf8(), QSsl::Pem);
        if (certificate.isNull())
            throw tr("Peer certificate is empty");
        SslCertMakeTrustDialog dialog(certificate, endpoint, reasons, m_dialog);
        if (dialog.exec() != SslCertMakeTrustDialog::Trust) {
            emit declined();
            return;
        }
        const auto manager = Communication::Manager::instance();
        Communication::ICommand* append = manager
            ? manager->commandFactory(QString::fromLatin1(Format::System::AppendToSslStorage::Name))
            : nullptr;
        if (!append)
            throw QStringLiteral("Commnunication command don't registrate");
        setParams(append,
            {{QLatin1String(Format::System::AppendToSslStorage::Request::Pem), pem},
                {QLatin1String(Format::System::AppendToSslStorage::Request::EndPoint), endpoint}});
        auto answered = [this, append, endpoint, certificate] {
            append->deleteLater();
            try {
                replyData(append);
                const QUrl url(
                    endpoint.contains(QLatin1String("://")) ? endpoint : QStringLiteral("https://") + endpoint);
                NVL::Cloud::CertificatePins::instance().add(
                    {url.host(), url.port(url.scheme() == QLatin1String("http") ? 80 : 443),
                        NVL::Cloud::CertificatePins::fingerprint(certificate)});
                emit trusted();
            } catch (const QString& text) {
                emit failed(text);
            }
        };
        connect(append, &Communication::ICommand::complite, this, answered);
        connect(append, &Communication::ICommand::error, this, answered);
        connect(append, &Communication::ICommand::timeout, this, answered);
        append->exec();
    } catch (const QString& text) {
        emit failed(text);
    }
}

} // namespace NVB::GUI::Settings::Account
