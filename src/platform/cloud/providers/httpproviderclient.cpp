#include "httpproviderclient.h"

#include "httpexchange.h"
#include "providererrors.h"

namespace NVL::Cloud {

CurlHttp& HttpProviderClient::http(const QMap<QString, QVariant>& config)
{
    if (!m_http) {
        const CurlHttp::Options options = CurlHttp::optionsFor(config);
        m_timeoutSeconds = options.timeoutSeconds;
        m_http = std::make_unique<CurlHttp>(options);
    }
    return *m_http;
}

OperationResult HttpProviderClient::transportFailure(
    const HttpExchange& exchange, const QMap<QString, QVariant>& config) const
{
    return ProviderErrors::transport(exchange, config, m_timeoutSeconds);
}

} // namespace NVL::Cloud
