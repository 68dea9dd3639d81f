#pragma once

#include <QJsonObject>

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation {

class CreateContainer : public IOperation
{
    Q_OBJECT

public:
    CreateContainer(const QMap<QString, QVariant>& config, const QJsonObject& params);

    QJsonObject params() const { return m_params; }

protected:
    Job job() const override;

private:
    QJsonObject m_params;
};

} // namespace NVL::Cloud::Operation
