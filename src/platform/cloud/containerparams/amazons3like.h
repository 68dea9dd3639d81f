#pragma once

#include "base.h"

namespace NVL::Cloud::ContainerParams {

// A bucket in a region; an empty location leaves the choice to the provider.
class AmazonS3Like : public Base
{
public:
    AmazonS3Like(const QString& name, const QString& location);

    QString location() const { return m_location; }
    QJsonObject json() const override;

private:
    QString m_location;
};

} // namespace NVL::Cloud::ContainerParams
