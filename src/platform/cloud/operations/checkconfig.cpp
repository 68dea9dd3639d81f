#include "checkconfig.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation {

CheckConfig::CheckConfig(const QMap<QString, QVariant>& config)
    : IOperation(OperationType::CheckConfig, config)
{ }

IOperation::Job CheckConfig::job() const
{
    return [](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.checkConfig(config, cancel);
    };
}

} // namespace NVL::Cloud::Operation
