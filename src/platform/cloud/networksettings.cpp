#include "networksettings.h"

#include <curl/curl.h>

#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "stores/defaultsettings.h"

namespace NVL::Cloud {

namespace {

qint64 lower(qint64 a, qint64 b)
{
    if (a <= 0)
        return qMax<qint64>(0, b);
    return b <= 0 ? a : qMin(a, b);
}

} // namespace

NetworkSettings NetworkSettings::current()
{
    NetworkSettings settings;
    const NVB::DefaultSettings* shared = NVB::DefaultSettings::instance();
    // A copy read from the file: the shared store may be reloaded on another
    // thread while this one transfers.
    const NVB::DefaultSettings stored(shared->filePath(), NVB::DefaultSettings::defaultValues());

    // The console's proxy is a web proxy switched on or off; off leaves the
    // choice to the environment (http_proxy and the like), as before any
    // setting existed. A host written "socks5://name" asks for SOCKS.
    QString host = stored.value(QStringLiteral("ProxyHost")).trimmed();
    if (stored.value(QStringLiteral("ProxyEnabled")) == QLatin1String("true")) {
        const QLatin1String socks("socks5://");
        settings.proxyType = host.startsWith(socks, Qt::CaseInsensitive) ? ProxyType::Socks5 : ProxyType::Http;
        if (settings.proxyType == ProxyType::Socks5)
            host = host.mid(socks.size());
    }
    settings.proxyHost = host;
    settings.proxyPort = stored.value(QStringLiteral("ProxyPort")).toInt();
    if (stored.value(QStringLiteral("ProxyUseAuthentication")) == QLatin1String("true")) {
        settings.proxyUser = stored.value(QStringLiteral("ProxyUser")).trimmed();
        const QString password = stored.value(QStringLiteral("ProxyPassword"));
        try {
            settings.proxyPassword = password.isEmpty() ? QString() : SHARED::cryptNS::decrypt_local_password(password);
        } catch (const QString& error) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("The proxy password cannot be deciphered: %1").arg(error);
        }
    }
    bool ok = false;
    const qint64 kiloBytes = stored.getCloudBandwidth().toLongLong(&ok);
    settings.bandwidth = ok && kiloBytes > 0 ? kiloBytes * 1024 : 0;
    settings.ignoreSslErrors = stored.getIgnoreSSL().trimmed().toLower() == QLatin1String("true");
    return settings;
}

QString NetworkSettings::proxyUrl() const
{
    if ((proxyType != ProxyType::Http && proxyType != ProxyType::Socks5) || proxyHost.isEmpty() || proxyPort <= 0
        || proxyPort > 65535)
        return {};
    // socks5h: names are resolved by the proxy, as a browser behind one does.
    const QString scheme = proxyType == ProxyType::Http ? QStringLiteral("http") : QStringLiteral("socks5h");
    const QString host = proxyHost.contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(proxyHost) : proxyHost;
    return QStringLiteral("%1://%2:%3").arg(scheme, host).arg(proxyPort);
}

QString NetworkSettings::proxyProblem(bool accountUsesProxy) const
{
    if (!accountUsesProxy || (proxyType != ProxyType::Http && proxyType != ProxyType::Socks5) || !proxyUrl().isEmpty())
        return {};
    return QStringLiteral("The proxy setting is incomplete: it needs a host and a port from 1 to 65535 (\"%1\", %2)")
        .arg(proxyHost)
        .arg(proxyPort);
}

void NetworkSettings::applyTo(void* handle, bool accountUsesProxy, qint64 sendLimit) const
{
    CURL* curl = handle;
    const QByteArray url = proxyUrl().toUtf8();
    if (!accountUsesProxy || proxyType == ProxyType::None
        || ((proxyType == ProxyType::Http || proxyType == ProxyType::Socks5) && url.isEmpty())) {
        curl_easy_setopt(curl, CURLOPT_PROXY, "");
        curl_easy_setopt(curl, CURLOPT_NOPROXY, "*");
    } else if (proxyType == ProxyType::System) {
        // libcurl reads http_proxy, https_proxy and no_proxy itself.
        curl_easy_setopt(curl, CURLOPT_PROXY, nullptr);
        curl_easy_setopt(curl, CURLOPT_NOPROXY, nullptr);
    } else {
        // libcurl copies option strings, so the locals may go.
        curl_easy_setopt(curl, CURLOPT_PROXY, url.constData());
        curl_easy_setopt(curl, CURLOPT_NOPROXY, "");
        curl_easy_setopt(curl, CURLOPT_PROXYUSERNAME, proxyUser.isEmpty() ? nullptr : proxyUser.toUtf8().constData());
        curl_easy_setopt(
            curl, CURLOPT_PROXYPASSWORD, proxyUser.isEmpty() ? nullptr : proxyPassword.toUtf8().constData());
    }
    curl_easy_setopt(curl, CURLOPT_MAX_SEND_SPEED_LARGE, curl_off_t(lower(sendLimit, bandwidth)));
    // libcurl 7.88 lets a fast link run past its own receive limit; the
    // caller holds receiveLimit() in its write callback instead.
    curl_easy_setopt(curl, CURLOPT_MAX_RECV_SPEED_LARGE, curl_off_t(0));
}

qint64 NetworkSettings::receiveLimit(qint64 accountLimit) const
{
    return lower(accountLimit, bandwidth);
}

} // namespace NVL::Cloud
