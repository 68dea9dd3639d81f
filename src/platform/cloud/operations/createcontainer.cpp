#include "createcontainer.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation {

CreateContainer::CreateContainer(const QMap<QString, QVariant>& config, const QJsonObject& params)
    : IOperation(OperationType::CreateContainer, config)
    , m_params(params)
{ }

IOperation::Job CreateContainer::job() const
{
    const QJsonObject params = m_params;
    return [params](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.createContainer(config, params, cancel);
    };
}

} // namespace NVL::Cloud::Operation
