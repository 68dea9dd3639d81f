#pragma once

#include <QJsonArray>

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation {

class ListContainers : public IOperation
{
    Q_OBJECT

public:
    explicit ListContainers(const QMap<QString, QVariant>& config);

    // [{"Name": ...}, ...]; OpenStack adds "Region".
    QJsonArray data() const { return m_data; }

protected:
    Job job() const override;
    void takeResult(const OperationResult& result) override;

private:
    QJsonArray m_data;
};

} // namespace NVL::Cloud::Operation
