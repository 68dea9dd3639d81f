#pragma once

#include <QByteArray>

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation::Amazon {

// Removes the bucket's lifecycle policy.
class DeleteLifecyclePolicy : public IOperation
{
    Q_OBJECT

public:
    explicit DeleteLifecyclePolicy(const QMap<QString, QVariant>& config);

protected:
    Job job() const override;
};

} // namespace NVL::Cloud::Operation::Amazon
