#pragma once

#include "base.h"

namespace NVL::Cloud::ContainerParams {

// A container with its public access level (Info::AzureBlob::accessType()).
class AzureBlob : public Base
{
public:
    AzureBlob(const QString& name, const QString& access);

    QString access() const { return m_access; }
    QJsonObject json() const override;

private:
    QString m_access;
};

} // namespace NVL::Cloud::ContainerParams
