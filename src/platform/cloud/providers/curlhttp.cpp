#include "curlhttp.h"

#include <mutex>

#include <curl/curl.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>

#include <QElapsedTimer>
#include <QHostAddress>
#include <QSslCertificate>
#include <QThread>

#include "cloud/certificatepins.h"
#include "cloud/cloudconfig.h"
#include "cloud/networksettings.h"

namespace NVL::Cloud {

namespace {

// What the handshake of one request decided, reachable from OpenSSL's
// verification callback through the SSL_CTX that curl made for it.
struct TlsState
{
    QString host;
    int port = 0;
    QByteArray leafPem;
    QStringList errors;
    bool ignoreErrors = false;
};

int tlsStateIndex()
{
    static const int index = SSL_CTX_get_ex_new_index(0, nullptr, nullptr, nullptr, nullptr);
    return index;
}

QByteArray pemOf(X509* certificate)
{
    BIO* bio = BIO_new(BIO_s_mem());
    PEM_write_bio_X509(bio, certificate);
    char* data = nullptr;
    const long size = BIO_get_mem_data(bio, &data);
    QByteArray pem(data, int(size));
    BIO_free(bio);
    return pem;
}

bool isPinned(const TlsState& state, X509* leaf)
{
    const int size = i2d_X509(leaf, nullptr);
    if (size <= 0)
        return false;
    QByteArray der(size, Qt::Uninitialized);
    auto* out = reinterpret_cast<unsigned char*>(der.data());
    i2d_X509(leaf, &out);
    return CertificatePins::instance().isPinned(state.host, state.port, QSslCertificate(der, QSsl::Der));
}

int verifyCallback(int ok, X509_STORE_CTX* store)
{
    auto* ssl = static_cast<SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    auto* state = ssl ? static_cast<TlsState*>(SSL_CTX_get_ex_data(SSL_get_SSL_CTX(ssl), tlsStateIndex())) : nullptr;
    if (!state)
        return ok;
    X509* leaf = X509_STORE_CTX_get0_cert(store);
    if (leaf && state->leafPem.isEmpty())
        state->leafPem = pemOf(leaf);
    if (ok)
        return 1;
    const int error = X509_STORE_CTX_get_error(store);
    const QString reason = QString::fromLatin1(X509_verify_cert_error_string(error));
    if (!state->errors.contains(reason))
        state->errors.append(reason);
    // A pin stands in for an authority the system does not know; it never
    // overrules a revocation.
    if (error == X509_V_ERR_CERT_REVOKED || !leaf)
        return 0;
    return state->ignoreErrors || isPinned(*state, leaf) ? 1 : 0;
}

CURLcode sslContextCallback(CURL*, void* context, void* user)
{
    auto* ctx = static_cast<SSL_CTX*>(context);
    auto* state = static_cast<TlsState*>(user);
    SSL_CTX_set_ex_data(ctx, tlsStateIndex(), state);
    SSL_CTX_set_default_verify_paths(ctx);
    X509_VERIFY_PARAM* param = SSL_CTX_get0_param(ctx);
    const QString host = CertificatePins::normalHost(state->host);
    if (QHostAddress(host).isNull())
        X509_VERIFY_PARAM_set1_host(param, host.toUtf8().constData(), 0);
    else
        X509_VERIFY_PARAM_set1_ip_asc(param, host.toLatin1().constData());
    SSL_CTX_set_verify(ctx, SSL_VERIFY_PEER, verifyCallback);
    return CURLE_OK;
}

// A download's body, taken no faster than the receive limit: when the bytes
// so far run ahead of the limit (a quarter second of burst allowed), the
// write callback waits. curl reads no more meanwhile, so the socket's buffer
// fills and TCP slows the sender, on a fast local link as on any other.
struct ReceiveState
{
    QByteArray* body = nullptr;
    qint64 limit = 0; // bytes per second, 0 for none
    qint64 received = 0;
    QElapsedTimer clock;
    const CancelToken* cancel = nullptr;
};

size_t writeBody(char* data, size_t size, size_t count, void* user)
{
    auto* state = static_cast<ReceiveState*>(user);
    const size_t length = size * count;
    state->body->append(data, int(length));
    if (state->limit <= 0)
        return length;
    if (!state->clock.isValid())
        state->clock.start();
    state->received += qint64(length);
    for (;;) {
        const qint64 dueMs = (state->received - state->limit / 4) * 1000 / state->limit;
        const qint64 aheadMs = dueMs - state->clock.elapsed();
        if (aheadMs <= 0 || state->cancel->isCancelled())
            break;
        // In short steps, so that a cancel is not held up by the wait.
        QThread::msleep(ulong(qMin<qint64>(aheadMs, 50)));
    }
    return length;
}

size_t writeHeader(char* data, size_t size, size_t count, void* user)
{
    auto* exchange = static_cast<HttpExchange*>(user);
    const QByteArray line = QByteArray(data, int(size * count)).trimmed();
    if (line.startsWith("HTTP/")) {
        // A new answer (after "100 Continue" or a redirect) replaces the last.
        exchange->headers.clear();
    } else {
        const int colon = line.indexOf(':');
        if (colon > 0)
            exchange->headers.append({line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed()});
    }
    return size * count;
}

int progress(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return static_cast<const CancelToken*>(user)->isCancelled() ? 1 : 0;
}

} // namespace

QByteArray HttpExchange::header(const QByteArray& lowerName) const
{
    for (const auto& header : headers) {
        if (header.first == lowerName)
            return header.second;
    }
    return QByteArray();
}

struct CurlHttp::Handle
{
    CURL* curl = nullptr;
    TlsState tls;
};

CurlHttp::Options CurlHttp::optionsFor(const QMap<QString, QVariant>& config)
{
    Options options;
    const int timeout = config.value(Api::Config::Http::Timeout).toInt();
    options.timeoutSeconds = timeout > 0 ? timeout : 30;
    options.useProxy = config.value(Config::Network::UseProxy).toBool();
    return options;
}

CurlHttp::CurlHttp(const Options& options)
    : m_handle(std::make_unique<Handle>())
    , m_options(options)
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    m_handle->curl = curl_easy_init();
}

CurlHttp::~CurlHttp()
{
    if (m_handle->curl)
        curl_easy_cleanup(m_handle->curl);
}

bool CurlHttp::perform(HttpExchange& exchange, const CancelToken& cancel)
{
    exchange.status = 0;
    exchange.headers.clear();
    exchange.body.clear();
    exchange.curlCode = 0;
    exchange.transportError.clear();
    exchange.peerCertificate.clear();
    exchange.peerCertificateErrors.clear();
    CURL* curl = m_handle->curl;
    if (!curl) {
        exchange.curlCode = CURLE_FAILED_INIT;
        exchange.transportError = QStringLiteral("The HTTP library could not be initialised");
        return false;
    }
    const bool tls = exchange.url.scheme() == QLatin1String("https");
    m_handle->tls = TlsState();
    m_handle->tls.host = exchange.url.host();
    m_handle->tls.port = exchange.url.port(tls ? 443 : 80);

    const QByteArray url = exchange.url.toEncoded();
    curl_easy_setopt(curl, CURLOPT_URL, url.constData());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT, long(m_options.timeoutSeconds));
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, long(m_options.timeoutSeconds));
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPIDLE, 15L);
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPINTVL, 5L);
    const NetworkSettings network = NetworkSettings::current();
    exchange.transportError = network.proxyProblem(m_options.useProxy);
    if (!exchange.transportError.isEmpty()) {
        exchange.curlCode = CURLE_COULDNT_RESOLVE_PROXY;
        return false;
    }
    network.applyTo(curl, m_options.useProxy, m_options.maxSendSpeed);
    ReceiveState receive;
    receive.body = &exchange.body;
    receive.limit = network.receiveLimit(m_options.maxReceiveSpeed);
    receive.cancel = &cancel;
    m_handle->tls.ignoreErrors = network.ignoreSslErrors;
    // Our own verification (system authorities, then the host:port pin)
    // runs inside the handshake; curl's would refuse a pinned server first.
    // Resumed sessions skip verification, so there are none.
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_SESSIONID_CACHE, 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_CTX_FUNCTION, sslContextCallback);
    curl_easy_setopt(curl, CURLOPT_SSL_CTX_DATA, &m_handle->tls);
    curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, progress);
    curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &cancel);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, writeBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &receive);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, writeHeader);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &exchange);

    curl_easy_setopt(curl, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(curl, CURLOPT_NOBODY, 0L);
    curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, nullptr);
    bool hasContentType = false;
    for (const auto& header : exchange.requestHeaders)
        hasContentType = hasContentType || header.first.toLower() == "content-type";
    if (exchange.method == "HEAD") {
        curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    } else if (exchange.method == "PUT" || exchange.method == "POST") {
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(exchange.requestBody.size()));
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, exchange.requestBody.constData());
        curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, exchange.method.constData());
    } else if (exchange.method != "GET") {
        curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, exchange.method.constData());
    }

    curl_slist* headers = nullptr;
    for (const auto& header : exchange.requestHeaders)
        headers = curl_slist_append(headers, (header.first + ": " + header.second).constData());
    // Signed requests must go out with exactly the headers that were signed.
    headers = curl_slist_append(headers, "Expect:");
    if (!hasContentType)
        headers = curl_slist_append(headers, "Content-Type:");
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);

    char errorBuffer[CURL_ERROR_SIZE] = {0};
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, errorBuffer);
    const CURLcode code = curl_easy_perform(curl);
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, nullptr);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, nullptr);
    curl_slist_free_all(headers);

    if (!m_handle->tls.errors.isEmpty()) {
        exchange.peerCertificate = m_handle->tls.leafPem;
        exchange.peerCertificateErrors = m_handle->tls.errors;
    }
    if (code != CURLE_OK) {
        exchange.curlCode = int(code);
        exchange.transportError
            = errorBuffer[0] ? QString::fromUtf8(errorBuffer) : QString::fromUtf8(curl_easy_strerror(code));
        return false;
    }
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &exchange.status);
    return true;
}

} // namespace NVL::Cloud
