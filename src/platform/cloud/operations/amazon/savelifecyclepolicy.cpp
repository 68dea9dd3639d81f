#include "savelifecyclepolicy.h"

#include "cloud/cloudconfig.h"
#include "cloud/providers/providerclient.h"

namespace NVL::Cloud::Operation::Amazon {

SaveLifecyclePolicy::SaveLifecyclePolicy(const QMap<QString, QVariant>& config, const QByteArray& xml)
    : IOperation(OperationType::Amazon::SaveLifecyclePolicy, config)
    , m_xml(xml)
{ }

IOperation::Job SaveLifecyclePolicy::job() const
{
    const QByteArray xml = m_xml;
    return [xml](ProviderClient& client, const QMap<QString, QVariant>& config, const CancelToken& cancel) {
        return client.saveLifecyclePolicy(config, xml, cancel);
    };
}

} // namespace NVL::Cloud::Operation::Amazon
