#include "listcontainers.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation {

ListContainers::ListContainers(const QMap<QString, QVariant>& config)
    : IOperation(OperationType::ListContainers, config)
{ }

IOperation::Job ListContainers::job() const
{
    return [](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.listContainers(config, cancel);
    };
}

void ListContainers::takeResult(const OperationResult& result)
{
    m_data = result.data;
}

} // namespace NVL::Cloud::Operation
