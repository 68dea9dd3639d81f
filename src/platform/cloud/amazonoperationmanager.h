#pragma once

#include <QByteArray>
#include <QMap>
#include <QSharedPointer>
#include <QVariant>

#include "ioperation.h"

namespace NVL::Cloud {

// The lifecycle policy operations of Amazon S3 buckets. They are kept by
// OperationManager like every other operation, so remove() works the same.
// Null when the configuration names no known provider; other providers get
// an operation that fails and says why.
class AmazonOperationManager
{
public:
    static AmazonOperationManager& instance();

    // Operation::Amazon::LoadLifecyclePolicy; data() is the policy's XML.
    QSharedPointer<IOperation> loadLifecyclePolicy(const QMap<QString, QVariant>& config);
    QSharedPointer<IOperation> saveLifecyclePolicy(const QMap<QString, QVariant>& config, const QByteArray& xml);
    QSharedPointer<IOperation> deleteLifecyclePolicy(const QMap<QString, QVariant>& config);

private:
    AmazonOperationManager() = default;
};

} // namespace NVL::Cloud
