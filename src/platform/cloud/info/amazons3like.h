#pragma once

#include <QMap>
#include <QPair>
#include <QUrl>

#include "base.h"

namespace NVL::Cloud::Info {

// Presets of the providers that speak the S3 protocol.
class AmazonS3Like : public Base
{
public:
    enum Signature { V2 = 0, V4 = 1 };

    explicit AmazonS3Like(NVL::Cloud::Type type);

    QUrl defaultEndpoint() const;
    Signature defaultSignature() const;
    // Location code -> (display text, the region's endpoint host). Empty for
    // providers whose buckets have no choice of region.
    virtual QMap<QString, QPair<QString, QString>> regions() const;
};

} // namespace NVL::Cloud::Info
