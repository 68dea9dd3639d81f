#pragma once

#include <QJsonArray>

#include "cloud/ioperation.h"

namespace NVL::Cloud::Operation {

// One page of the keys below a prefix. Each item of data() reads as
// NVL::Cloud::Api::ListingObject.
class Listing : public IOperation
{
    Q_OBJECT

public:
    Listing(const QMap<QString, QVariant>& config, const QString& prefix, const QString& delimiter,
        const QString& marker, unsigned short maxKeys);

    QJsonArray data() const { return m_data; }
    // Where the next page starts; empty when this was the last one.
    QString marker() const { return m_nextMarker; }
    QString prefix() const { return m_prefix; }
    QString delimiter() const { return m_delimiter; }

protected:
    Job job() const override;
    void takeResult(const OperationResult& result) override;

private:
    QString m_prefix;
    QString m_delimiter;
    QString m_marker;
    unsigned short m_maxKeys;
    QJsonArray m_data;
    QString m_nextMarker;
};

} // namespace NVL::Cloud::Operation
