#pragma once

#include "amazons3like.h"

namespace NVL::Cloud::Info {

// Amazon S3 itself (global, China and the managed edition's variant).
class AmazonS3 : public AmazonS3Like
{
public:
    explicit AmazonS3(NVL::Cloud::Type type);

    QMap<QString, QPair<QString, QString>> regions() const override;
};

} // namespace NVL::Cloud::Info
