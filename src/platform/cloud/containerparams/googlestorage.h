#pragma once

#include "base.h"

namespace NVL::Cloud::ContainerParams {

// A bucket with its location and storage class (Info::GoogleStorage).
class GoogleStorage : public Base
{
public:
    GoogleStorage(const QString& name, const QString& location, const QString& storageClass);

    QString location() const { return m_location; }
    QString storageClass() const { return m_storageClass; }
    QJsonObject json() const override;

private:
    QString m_location;
    QString m_storageClass;
};

} // namespace NVL::Cloud::ContainerParams
