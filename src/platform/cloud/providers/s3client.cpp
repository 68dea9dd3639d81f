#include "s3client.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/containerparams/base.h"
#include "cloud/endpointhelper.h"
#include "cloud/info/amazons3like.h"
#include "cloud/info/infofactory.h"
#include "listingpager.h"
#include "providererrors.h"
#include "s3xml.h"

namespace NVL::Cloud {

namespace {

const QString DefaultRegion = QStringLiteral("us-east-1");

const QString GoogleHost = QStringLiteral("storage.googleapis.com");
// Google's XML API takes any region in a Version 4 scope as "auto".
const QString GoogleRegion = QStringLiteral("auto");

bool isAmazonType(Type type)
{
    return type == Type::AmazonS3 || type == Type::AmazonS3Chinese || type == Type::NvlUbAmazonS3;
}

// A bucket that can stand in a host name, and in a TLS wildcard's one label.
bool isDnsBucket(const QString& bucket)
{
    static const QRegularExpression label(QStringLiteral("^[a-z0-9][a-z0-9-]{1,61}[a-z0-9]$"));
    return label.match(bucket).hasMatch();
}

// "s3.eu-west-1.amazonaws.com" -> "eu-west-1"; "s3.amazonaws.com" -> "".
QString regionOfAmazonHost(const QString& host)
{
    static const QRegularExpression pattern(QStringLiteral("^s3[.-]([a-z0-9-]+)\\.amazonaws\\.com(\\.cn)?$"));
    const QRegularExpressionMatch match = pattern.match(host);
    return match.hasMatch() ? match.captured(1) : QString();
}

} // namespace

OperationResult S3Client::settings(const QMap<QString, QVariant>& config, Settings* settings) const
{
    bool known = false;
    const Type type = typeFromName(config.value(Config::Type).toString(), &known);
    settings->amazon = known && isAmazonType(type);
    const QString accessKey = config.value(Config::AmazonS3Like::AccessKey).toString().trimmed();
    const QString secretKey = config.value(Config::AmazonS3Like::SecretKey).toString().trimmed();
    if (accessKey.isEmpty() || secretKey.isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Access key or secret key is empty"));

    Info::AmazonS3Like info(known ? type : Type::S3Compatible);
    QString region = config.value(Config::AmazonS3Like::Region).toString().trimmed();
    QString endpoint = config.value(Api::Config::Http::Endpoint).toString().trimmed();
    bool useSsl = config.value(Api::Config::Http::UseSsl, true).toBool();
    const bool google = known && type == Type::GoogleStorage;
    if (endpoint.isEmpty() && google)
        endpoint = GoogleHost;
    if (endpoint.isEmpty()) {
        const QMap<QString, QPair<QString, QString>> regions = info.regions();
        if (!region.isEmpty() && regions.contains(region)) {
            endpoint = regions.value(region).second;
        } else {
            const QUrl preset = info.defaultEndpoint();
            if (preset.isEmpty())
                return OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("Endpoint is empty"));
            endpoint = preset.host();
            useSsl = preset.scheme() != QLatin1String("http");
        }
    }
    Utitlity::EndpointHelper helper(endpoint, useSsl);
    if (helper.hasError())
        return OperationResult::failure(OperationError::InvalidConfig, helper.lastErrorMessage());
    settings->endpoint = QUrl(helper.endpointWithScheme());
    if (!settings->endpoint.isValid() || settings->endpoint.host().isEmpty())
        return OperationResult::failure(
            OperationError::InvalidConfig, QStringLiteral("Endpoint \"%1\" is not valid").arg(endpoint));
    if (region.isEmpty())
        region = regionOfAmazonHost(settings->endpoint.host());
    if (region.isEmpty())
        region = google ? GoogleRegion : DefaultRegion;

    const QString style = config.value(Config::AmazonS3Like::AddressingStyle).toString();
    settings->pathStyle = style.isEmpty() ? !settings->amazon : style != QLatin1String("VirtualHost");
    const QString signature = config.value(Config::AmazonS3Like::Signature::Key).toString();
    S3Signer::Version version
        = info.defaultSignature() == Info::AmazonS3Like::V2 ? S3Signer::Version::V2 : S3Signer::Version::V4;
    if (signature == Config::AmazonS3Like::Signature::Value::V2)
        version = S3Signer::Version::V2;
    else if (signature == Config::AmazonS3Like::Signature::Value::V4)
        version = S3Signer::Version::V4;
    settings->signer.emplace(version, accessKey, secretKey, region);
    const int timeout = config.value(Api::Config::Http::Timeout).toInt();
    settings->timeoutSeconds = timeout > 0 ? timeout : 30;
    settings->useProxy = config.value(Config::Network::UseProxy).toBool();
    return {};
}

QString S3Client::bucketOf(const QMap<QString, QVariant>& config, OperationResult* failure) const
{
    const QString bucket = config.value(OperationConfig::ContainerName).toString().trimmed();
    if (bucket.isEmpty())
        *failure = OperationResult::failure(OperationError::InvalidConfig, QStringLiteral("No bucket is chosen"));
    return bucket;
}

QUrl S3Client::urlOf(const Settings& settings, const Request& request, QByteArray* v2Resource) const
{
    QUrl url = settings.endpoint;
    const bool virtualHost = !request.bucket.isEmpty() && !settings.pathStyle
        && (isDnsBucket(request.bucket) || settings.endpoint.scheme() == QLatin1String("http"));
    QByteArray path = S3Signer::uriEncode(settings.endpoint.path().toUtf8(), true);
    if (path.endsWith('/'))
        path.chop(1);
    const QByteArray bucket = S3Signer::uriEncode(request.bucket.toUtf8(), false);
    const QByteArray key = S3Signer::uriEncode(request.key.toUtf8(), true);
    // Version 2 signs "/bucket/key" whichever way the bucket is addressed.
    QByteArray resource;
    if (request.bucket.isEmpty()) {
        path += '/';
        resource = "/";
    } else if (virtualHost) {
        url.setHost(request.bucket + QLatin1Char('.') + settings.endpoint.host());
        path += '/' + key;
        resource = '/' + bucket + '/' + key;
    } else {
        path += '/' + bucket;
        resource = '/' + bucket;
        if (!key.isEmpty()) {
            path += '/' + key;
            resource += '/' + key;
        }
    }
    QByteArrayList query;
    QByteArrayList subresources;
    for (const auto& item : request.query) {
        const QByteArray name = S3Signer::uriEncode(item.first.toUtf8(), false);
        if (item.second.isNull()) {
            query.append(name);
            subresources.append(name);
        } else {
            query.append(name + '=' + S3Signer::uriEncode(item.second.toUtf8(), false));
        }
    }
    std::sort(subresources.begin(), subresources.end());
    if (!subresources.isEmpty())
        resource += '?' + subresources.join('&');
    *v2Resource = resource;
    QByteArray encoded = url.toEncoded(QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment) + path;
    if (!query.isEmpty())
        encoded += '?' + query.join('&');
    return QUrl::fromEncoded(encoded, QUrl::StrictMode);
}

void S3Client::useRegion(Settings* settings, const QString& region) const
{
    settings->signer->setRegion(region);
    if (settings->amazon && regionOfAmazonHost(settings->endpoint.host()) != region) {
        const QString domain = settings->endpoint.host().endsWith(QLatin1String(".cn"))
            ? QStringLiteral("amazonaws.com.cn")
            : QStringLiteral("amazonaws.com");
        settings->endpoint.setHost(QStringLiteral("s3.%1.%2").arg(region, domain));
    }
}

OperationResult S3Client::request(
    const QMap<QString, QVariant>& config, const Request& request, const CancelToken& cancel, HttpExchange* answer)
{
    if (!m_settings || m_settingsConfig != config) {
        Settings made;
        OperationResult failure = settings(config, &made);
        if (failure.isError())
            return failure;
        m_settings = made;
        m_settingsConfig = config;
        m_http.reset();
    }
    if (!m_http) {
        CurlHttp::Options options;
        options.timeoutSeconds = m_settings->timeoutSeconds;
        options.useProxy = m_settings->useProxy;
        m_http = std::make_unique<CurlHttp>(options);
    }
    HttpExchange local;
    HttpExchange& exchange = answer ? *answer : local;
    for (int attempt = 0; attempt < 2; ++attempt) {
        QByteArray resource;
        exchange.method = request.method;
        exchange.url = urlOf(*m_settings, request, &resource);
        exchange.requestHeaders = request.headers;
        exchange.requestBody = request.body;
        m_settings->signer->sign(exchange, resource, QDateTime::currentDateTimeUtc());
        if (!m_http->perform(exchange, cancel)) {
            OperationResult failure = ProviderErrors::transport(exchange, config, m_settings->timeoutSeconds);
            return failure;
        }
        if (exchange.status < 300)
            return {};
        const S3Xml::Error error = S3Xml::error(exchange.body);
        // A bucket in another region than the one signed for: the server
        // names the right one; sign for it and try once more.
        QString region = QString::fromLatin1(exchange.header("x-amz-bucket-region"));
        if (region.isEmpty())
            region = error.region;
        const bool regionError = error.code == QLatin1String("AuthorizationHeaderMalformed")
            || error.code == QLatin1String("PermanentRedirect") || exchange.status == 301;
        if (attempt == 0 && regionError && !region.isEmpty() && region != m_settings->signer->region()) {
            useRegion(&*m_settings, region);
            continue;
        }
        QString code = error.code;
        if (code.isEmpty() && exchange.status == 404 && request.method == "HEAD")
            code = request.key.isEmpty() ? QStringLiteral("NoSuchBucket") : QStringLiteral("NoSuchKey");
        return ProviderErrors::answer(ProviderErrors::Protocol::S3, exchange.status, code, error.message,
            request.key.isEmpty() ? request.bucket : request.key);
    }
    return OperationResult::failure(OperationError::InternalError, QStringLiteral("S3 request was not sent"));
}

OperationResult S3Client::checkConfig(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    const QString bucket = config.value(OperationConfig::ContainerName).toString().trimmed();
    HttpExchange exchange;
    Request probe;
    if (!bucket.isEmpty()) {
        probe.bucket = bucket;
        probe.query = {{QStringLiteral("location"), QString()}};
    }
    OperationResult result = request(config, probe, cancel, &exchange);
    if (result.isError())
        return result;
    result.config = config;
    if (m_settings->signer->version() == S3Signer::Version::V4)
        result.config.insert(Config::AmazonS3Like::Region, m_settings->signer->region());
    return result;
}

OperationResult S3Client::listContainers(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    HttpExchange exchange;
    OperationResult result = request(config, Request(), cancel, &exchange);
    if (result.isError())
        return result;
    bool ok = true;
    const QVector<S3Xml::Bucket> buckets = S3Xml::buckets(exchange.body, &ok);
    if (!ok)
        return OperationResult::failure(
            OperationError::InternalError, QStringLiteral("The server's bucket list could not be read"));
    for (const S3Xml::Bucket& bucket : buckets) {
        QJsonObject object {{QStringLiteral("Name"), bucket.name}};
        if (bucket.created.isValid())
            object.insert(QStringLiteral("CreationDate"), bucket.created.toString(Qt::ISODate));
        result.data.append(object);
    }
    return result;
}

OperationResult S3Client::createContainer(
    const QMap<QString, QVariant>& config, const QJsonObject& params, const CancelToken& cancel)
{
    const QString name = params.value(ContainerParams::Key::Name).toString().trimmed();
    const QString nameError = containerNameError(name);
    if (!nameError.isEmpty())
        return OperationResult::failure(OperationError::InvalidName, nameError);
    const QString location = params.value(ContainerParams::Key::Location).toString().trimmed();
    Request create;
    create.method = "PUT";
    create.bucket = name;
    // us-east-1 is the one region that is named by leaving it out.
    if (!location.isEmpty() && location != DefaultRegion) {
        create.body = S3Xml::createBucketConfiguration(location);
        create.headers.append(qMakePair(QByteArray("Content-Type"), QByteArray("application/xml")));
    }
    return request(config, create, cancel);
}

OperationResult S3Client::listing(
    const QMap<QString, QVariant>& config, const ListingRequest& listing, const CancelToken& cancel)
{
    OperationResult result;
    const QString bucket = bucketOf(config, &result);
    if (result.isError())
        return result;
    QString prefix = listing.prefix;
    while (prefix.startsWith(QLatin1Char('/')))
        prefix.remove(0, 1);
    Request list;
    list.bucket = bucket;
    const int maxKeys = listing.maxKeys ? listing.maxKeys : ListingPager::DefaultMaxKeys;
    list.query = {{QStringLiteral("max-keys"), QString::number(maxKeys)}};
    if (!prefix.isEmpty())
        list.query.append({QStringLiteral("prefix"), prefix});
    if (!listing.delimiter.isEmpty())
        list.query.append({QStringLiteral("delimiter"), listing.delimiter});
    if (!listing.marker.isEmpty())
        list.query.append({QStringLiteral("marker"), listing.marker});
    HttpExchange exchange;
    result = request(config, list, cancel, &exchange);
    if (result.isError())
        return result;
    bool ok = true;
    const S3Xml::Listing page = S3Xml::listing(exchange.body, prefix, listing.delimiter, &ok);
    if (!ok)
        return OperationResult::failure(OperationError::InternalError,
            QStringLiteral("The server's listing of \"%1\" could not be read").arg(bucket));
    for (const Api::ListingObject& object : page.objects)
        result.data.append(object.json());
    if (page.truncated)
        result.marker = page.nextMarker.isEmpty() ? page.lastKey : page.nextMarker;
    return result;
}

OperationResult S3Client::loadLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    OperationResult result;
    Request load;
    load.bucket = bucketOf(config, &result);
    if (result.isError())
        return result;
    load.query = {{QStringLiteral("lifecycle"), QString()}};
    HttpExchange exchange;
    result = request(config, load, cancel, &exchange);
    // A bucket without rules answers an error, which to us is an empty policy.
    if (result.isError() && S3Xml::error(exchange.body).code == QLatin1String("NoSuchLifecycleConfiguration"))
        return {};
    if (result.isError())
        return result;
    // Servers that do not know the sub-resource ignore it and answer for the
    // bucket itself (OpenStack Swift lists it): that is no policy at all.
    if (!S3Xml::isLifecycleConfiguration(exchange.body))
        return OperationResult::failure(OperationError::NotSupported,
            QStringLiteral("The server of bucket \"%1\" does not support lifecycle rules").arg(load.bucket));
    result.payload = exchange.body;
    return result;
}

OperationResult S3Client::saveLifecyclePolicy(
    const QMap<QString, QVariant>& config, const QByteArray& xml, const CancelToken& cancel)
{
    // Such a server would take the PUT for "create bucket": ask first.
    OperationResult result = loadLifecyclePolicy(config, cancel);
    if (result.isError())
        return result;
    Request save;
    save.method = "PUT";
    save.bucket = bucketOf(config, &result);
    save.query = {{QStringLiteral("lifecycle"), QString()}};
    save.body = xml;
    save.headers.append(qMakePair(QByteArray("Content-Type"), QByteArray("application/xml")));
    return request(config, save, cancel);
}

OperationResult S3Client::deleteLifecyclePolicy(const QMap<QString, QVariant>& config, const CancelToken& cancel)
{
    // ... and the DELETE for "delete bucket".
    OperationResult result = loadLifecyclePolicy(config, cancel);
    if (result.isError())
        return result;
    Request remove;
    remove.method = "DELETE";
    remove.bucket = bucketOf(config, &result);
    remove.query = {{QStringLiteral("lifecycle"), QString()}};
    return request(config, remove, cancel);
}

} // namespace NVL::Cloud
