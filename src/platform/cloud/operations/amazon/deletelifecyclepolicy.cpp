#include "deletelifecyclepolicy.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation::Amazon {

DeleteLifecyclePolicy::DeleteLifecyclePolicy(const QMap<QString, QVariant>& config)
    : IOperation(OperationType::Amazon::DeleteLifecyclePolicy, config)
{ }

IOperation::Job DeleteLifecyclePolicy::job() const
{
    return [](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.deleteLifecyclePolicy(config, cancel);
    };
}

} // namespace NVL::Cloud::Operation::Amazon
