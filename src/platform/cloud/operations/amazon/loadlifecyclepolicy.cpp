#include "loadlifecyclepolicy.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation::Amazon {

LoadLifecyclePolicy::LoadLifecyclePolicy(const QMap<QString, QVariant>& config)
    : IOperation(OperationType::Amazon::LoadLifecyclePolicy, config)
{ }

IOperation::Job LoadLifecyclePolicy::job() const
{
    return [](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.loadLifecyclePolicy(config, cancel);
    };
}

void LoadLifecyclePolicy::takeResult(const OperationResult& result)
{
    m_data = result.payload;
}

} // namespace NVL::Cloud::Operation::Amazon
