#pragma once

#include <memory>

#include <QMap>
#include <QVariant>

#include "curlhttp.h"
#include "providerclient.h"

namespace NVL::Cloud {

struct HttpExchange;

// What every client of an HTTP object store shares: one CurlHttp per job,
// made with the options of the job's configuration, so that the pages and
// calls of one job share a connection; and the reading of a request that got
// no answer at all.
class HttpProviderClient : public ProviderClient
{
protected:
    CurlHttp& http(const QMap<QString, QVariant>& config);
    // Unknown host, refused connection, time-out, cancel or an untrusted
    // certificate (with the peer's certificate for the user to trust).
    OperationResult transportFailure(const HttpExchange& exchange, const QMap<QString, QVariant>& config) const;

private:
    std::unique_ptr<CurlHttp> m_http;
    int m_timeoutSeconds = 30;
};

} // namespace NVL::Cloud
