#include "amazonoperationmanager.h"

#include "cloudconfig.h"
#include "cloudtype.h"
#include "core/nvldebug.h"
#include "operationmanager.h"
#include "operations/amazon/deletelifecyclepolicy.h"
#include "operations/amazon/loadlifecyclepolicy.h"
#include "operations/amazon/savelifecyclepolicy.h"

namespace NVL::Cloud {

namespace {

bool hasKnownType(const QMap<QString, QVariant>& config, const QString& what)
{
    bool ok = false;
    typeFromName(config.value(Config::Type).toString(), &ok);
    if (!ok)
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Can't make the operation %1: unknown cloud type \"%2\"")
                   .arg(what, config.value(Config::Type).toString());
    return ok;
}

} // namespace

AmazonOperationManager& AmazonOperationManager::instance()
{
    static AmazonOperationManager manager;
    return manager;
}

QSharedPointer<IOperation> AmazonOperationManager::loadLifecyclePolicy(const QMap<QString, QVariant>& config)
{
    if (!hasKnownType(config, OperationType::Amazon::LoadLifecyclePolicy))
        return {};
    return OperationManager::instance().keep(new Operation::Amazon::LoadLifecyclePolicy(config));
}

QSharedPointer<IOperation> AmazonOperationManager::saveLifecyclePolicy(
    const QMap<QString, QVariant>& config, const QByteArray& xml)
{
    if (!hasKnownType(config, OperationType::Amazon::SaveLifecyclePolicy))
        return {};
    return OperationManager::instance().keep(new Operation::Amazon::SaveLifecyclePolicy(config, xml));
}

QSharedPointer<IOperation> AmazonOperationManager::deleteLifecyclePolicy(const QMap<QString, QVariant>& config)
{
    if (!hasKnownType(config, OperationType::Amazon::DeleteLifecyclePolicy))
        return {};
    return OperationManager::instance().keep(new Operation::Amazon::DeleteLifecyclePolicy(config));
}

} // namespace NVL::Cloud
