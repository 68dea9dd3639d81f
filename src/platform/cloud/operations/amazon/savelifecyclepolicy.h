#pragma once

#include <QByteArray>

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation::Amazon {

// Replaces the bucket's lifecycle policy with the given XML.
class SaveLifecyclePolicy : public IOperation
{
    Q_OBJECT

public:
    SaveLifecyclePolicy(const QMap<QString, QVariant>& config, const QByteArray& xml);

    QByteArray xml() const { return m_xml; }

protected:
    Job job() const override;

private:
    QByteArray m_xml;
};

} // namespace NVL::Cloud::Operation::Amazon
