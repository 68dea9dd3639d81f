#pragma once

#include "amazons3like.h"

namespace NVL::Cloud::Info {

class AlibabaCloud : public AmazonS3Like
{
public:
    AlibabaCloud();

    QMap<QString, QPair<QString, QString>> regions() const override;
};

} // namespace NVL::Cloud::Info
