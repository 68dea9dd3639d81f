#pragma once

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation {

class CheckConfig : public IOperation
{
    Q_OBJECT

public:
    explicit CheckConfig(const QMap<QString, QVariant>& config);

protected:
    Job job() const override;
};

} // namespace NVL::Cloud::Operation
