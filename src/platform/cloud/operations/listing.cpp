#include "listing.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation {

Listing::Listing(const QMap<QString, QVariant>& config, const QString& prefix, const QString& delimiter,
    const QString& marker, unsigned short maxKeys)
    : IOperation(OperationType::Listing, config)
    , m_prefix(prefix)
    , m_delimiter(delimiter)
    , m_marker(marker)
    , m_maxKeys(maxKeys)
{ }

IOperation::Job Listing::job() const
{
    ListingRequest request;
    request.prefix = m_prefix;
    request.delimiter = m_delimiter;
    request.marker = m_marker;
    request.maxKeys = m_maxKeys;
    return [request](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.listing(config, request, cancel);
    };
}

void Listing::takeResult(const OperationResult& result)
{
    m_data = result.data;
    m_nextMarker = result.marker;
}

} // namespace NVL::Cloud::Operation
