#include "b2client.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include "cloud/cloudconfig.h"
#include "cloud/containerparams/base.h"
#include "cloud/info/backblaze.h"
#include "cloud/listingobject.h"
#include "listingpager.h"
#include "providererrors.h"

namespace NVL::Cloud {

namespace {

namespace B2 = Config::BackBlaze;

OperationResult failureOf(const HttpExchange& exchange, const QString& subject)
{
    const QJsonObject error = QJsonDocument::fromJson(exchange.body).object();
    return ProviderErrors::answer(ProviderErrors::Protocol::B2, exchange.status,
        error.value(QStringLiteral("code")).toString(), error.value(QStringLiteral("message")).toString(), subject);
}

} // namespace

QString B2Client::nameError(const QString& name)
{
    static const QRegularExpression rule(QStringLiteral("^(?!b2-)[0-9A-Za-z-]{6,50}$"));
    if (name.isEmpty())
        return QStringLiteral("Bucket name is empty");
    if (!rule.match(name).hasMatch())
        return QStringLiteral("Bucket name \"%1\" must be 6 to 50 letters, digits and hyphens, not starting with "
                              "\"b2-\"")
            .arg(name);
    return QString();
}

OperationResult B2Client::authorize(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    m_token.clear();
    const QString keyId = config.value(B2::AccountId).toString().trimmed();
    const QString key = config.value(B2::ApplicationKey).toString().trimmed();
    if (keyId.isEmpty() || key.isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Key ID or application key is empty"));
    // Our own key: another API host (a test double); the public one otherwise.
    QString endpoint = config.value(Api::Config::Http::Endpoint).toString().trimmed();
    QUrl base = endpoint.isEmpty()
        ? Info::BackBlaze().defaultEndpoint()
        : QUrl(QStringLiteral("%1://%2").arg(
            config.value(Api::Config::Http::UseSsl, true).toBool() ? "https" : "http", endpoint));
    HttpExchange exchange;
    exchange.url = QUrl(base.toString(QUrl::StripTrailingSlash) + QStringLiteral("/b2api/v2/b2_authorize_account"));
    exchange.requestHeaders = {{"Authorization", "Basic " + (keyId + QLatin1Char(':') + key).toUtf8().toBase64()}};
    if (!http(config).perform(exchange, cancel))
        return transportFailure(exchange, config);
    if (exchange.status != 200)
        return failureOf(exchange, QString());
    const QJsonObject answer = QJsonDocument::fromJson(exchange.body).object();
    m_token = answer.value(QStringLiteral("authorizationToken")).toString().toUtf8();
    m_apiUrl = QUrl(answer.value(QStringLiteral("apiUrl")).toString());
    m_accountId = answer.value(QStringLiteral("accountId")).toString();
    if (m_token.isEmpty() || !m_apiUrl.isValid() || m_accountId.isEmpty())
        return OperationResult::failure(
            OperationError::InternalError, QStringLiteral("The server's authorization answer is incomplete"));
    m_authorizedWith = config;
    return {};
}

OperationResult B2Client::call(const QMap<QString, QVariant>& config, const QString& name, const QJsonObject& body,
    QJsonObject* answer, const CancelToken& cancel, const QString& subject)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (m_token.isEmpty() || m_authorizedWith != config) {
            OperationResult result = authorize(config, cancel);
            if (result.isError())
                return result;
        }
        QJsonObject request = body;
        if (request.contains(QStringLiteral("accountId")))
            request.insert(QStringLiteral("accountId"), m_accountId);
        HttpExchange exchange;
        exchange.method = "POST";
        exchange.url = QUrl(m_apiUrl.toString(QUrl::StripTrailingSlash) + QStringLiteral("/b2api/v2/") + name);
        exchange.requestHeaders = {{"Authorization", m_token}, {"Content-Type", "application/json"}};
        exchange.requestBody = QJsonDocument(request).toJson(QJsonDocument::Compact);
        if (!http(config).perform(exchange, cancel))
            return transportFailure(exchange, config);
        if (exchange.status == 401 && attempt == 0
            && QJsonDocument::fromJson(exchange.body).object().value(QStringLiteral("code")).toString()
                == QLatin1String("expired_auth_token")) {
            m_token.clear();
            continue;
        }
        if (exchange.status != 200)
            return failureOf(exchange, subject);
        *answer = QJsonDocument::fromJson(exchange.body).object();
        return {};
    }
    return OperationResult::failure(
        OperationError::AuthenticationFailed, QStringLiteral("The session's token has expired"));
}

OperationResult B2Client::bucketId(
    const QMap<QString, QVariant>& config, QString* id, QString* name, const CancelToken& cancel)
{
    const QString bucket = config.value(OperationConfig::ContainerName).toString().trimmed();
    const int bar = bucket.indexOf(QLatin1Char('|'));
    *id = bar < 0 ? QString() : bucket.left(bar);
    *name = bar < 0 ? bucket : bucket.mid(bar + 1);
    if (name->isEmpty())
        return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No bucket is chosen"));
    if (!id->isEmpty())
        return {};
    QJsonObject answer;
    OperationResult result = call(config, QStringLiteral("b2_list_buckets"),
        {{QStringLiteral("accountId"), QString()}, {QStringLiteral("bucketName"), *name}}, &answer, cancel, *name);
    if (result.isError())
        return result;
    const QJsonArray buckets = answer.value(QStringLiteral("buckets")).toArray();
    for (const QJsonValue& value : buckets) {
        if (value.toObject().value(QStringLiteral("bucketName")).toString() == *name)
            *id = value.toObject().value(QStringLiteral("bucketId")).toString();
    }
    if (id->isEmpty())
        return OperationResult::failure(
            OperationError::NotFound, QStringLiteral("Bucket \"%1\" does not exist").arg(*name));
    return {};
}

OperationResult B2Client::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result;
    if (config.value(OperationConfig::ContainerName).toString().trimmed().isEmpty()) {
        result = authorize(config, cancel);
    } else {
        QString id, name;
        result = bucketId(config, &id, &name, cancel);
        if (!result.isError()) {
            QJsonObject answer;
            result = call(config, QStringLiteral("b2_list_file_names"),
                {{QStringLiteral("bucketId"), id}, {QStringLiteral("maxFileCount"), 1}}, &answer, cancel, name);
        }
    }
    if (!result.isError())
        result.config = config;
    return result;
}

OperationResult B2Client::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    QJsonObject answer;
    OperationResult result
        = call(config, QStringLiteral("b2_list_buckets"), {{QStringLiteral("accountId"), QString()}}, &answer, cancel);
    if (result.isError())
        return result;
    const QJsonArray buckets = answer.value(QStringLiteral("buckets")).toArray();
    for (const QJsonValue& value : buckets) {
        const QJsonObject bucket = value.toObject();
        result.data.append(QJsonObject {{QStringLiteral("Name"), bucket.value(QStringLiteral("bucketName")).toString()},
            {QStringLiteral("Id"), bucket.value(QStringLiteral("bucketId")).toString()},
            {QStringLiteral("Type"), bucket.value(QStringLiteral("bucketType")).toString()}});
    }
    return result;
}

OperationResult B2Client::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(ContainerParams::Key::Name).toString().trimmed();
    const QString error = nameError(name);
    if (!error.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, error);
    QString type = params.value(ContainerParams::Key::Access).toString();
    if (type != QLatin1String("allPublic"))
        type = QStringLiteral("allPrivate");
    QJsonObject answer;
    OperationResult result = call(config, QStringLiteral("b2_create_bucket"),
        {{QStringLiteral("accountId"), QString()}, {QStringLiteral("bucketName"), name},
            {QStringLiteral("bucketType"), type}},
        &answer, cancel, name);
    if (!result.isError())
        result.data.append(QJsonObject {{QStringLiteral("Name"), name},
            {QStringLiteral("Id"), answer.value(QStringLiteral("bucketId")).toString()}});
    return result;
}

OperationResult B2Client::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& request, const CancelToken& cancel)
{
    QString id, name;
    OperationResult result = bucketId(config, &id, &name, cancel);
    if (result.isError())
        return result;
    QString prefix = request.prefix;
    while (prefix.startsWith(QLatin1Char('/')))
        prefix.remove(0, 1);
    QJsonObject body {{QStringLiteral("bucketId"), id},
        {QStringLiteral("maxFileCount"), request.maxKeys ? int(request.maxKeys) : ListingPager::DefaultMaxKeys}};
    if (!prefix.isEmpty())
        body.insert(QStringLiteral("prefix"), prefix);
    if (!request.delimiter.isEmpty())
        body.insert(QStringLiteral("delimiter"), request.delimiter);
    if (!request.marker.isEmpty())
        body.insert(QStringLiteral("startFileName"), request.marker);
    QJsonObject answer;
    result = call(config, QStringLiteral("b2_list_file_names"), body, &answer, cancel, name);
    if (result.isError())
        return result;
    const QJsonArray files = answer.value(QStringLiteral("files")).toArray();
    for (const QJsonValue& value : files) {
        const QJsonObject file = value.toObject();
        QString key = file.value(QStringLiteral("fileName")).toString();
        const bool folder = file.value(QStringLiteral("action")).toString() == QLatin1String("folder");
        if (folder && !request.delimiter.isEmpty() && key.endsWith(request.delimiter))
            key.chop(request.delimiter.size());
        const qint64 stamp = file.value(QStringLiteral("uploadTimestamp")).toVariant().toLongLong();
        result.data.append(Api::ListingObject(key, folder,
            folder ? 0 : file.value(QStringLiteral("contentLength")).toVariant().toLongLong(),
            folder ? QDateTime() : QDateTime::fromMSecsSinceEpoch(stamp, Qt::UTC))
                               .json());
    }
    // B2 names the first file of the next page, which is where our marker
    // starts the next page too.
    result.marker = answer.value(QStringLiteral("nextFileName")).toString();
    return result;
}

} // namespace NVL::Cloud
