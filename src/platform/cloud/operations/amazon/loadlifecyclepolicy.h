#pragma once

#include <QByteArray>

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation::Amazon {

// The bucket's lifecycle policy; data() is its XML, empty when the bucket has none.
class LoadLifecyclePolicy : public IOperation
{
    Q_OBJECT

public:
    explicit LoadLifecyclePolicy(const QMap<QString, QVariant>& config);

    QByteArray data() const { return m_data; }

protected:
    Job job() const override;
    void takeResult(const OperationResult& result) override;

private:
    QByteArray m_data;
};

} // namespace NVL::Cloud::Operation::Amazon
