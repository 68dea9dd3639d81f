#pragma once

#include "repository/chunktransform.h"

namespace NVB::Engine {

// Stores chunks as they are: plans without compression or encryption.
class IdentityTransform : public ChunkTransform
{
public:
    QString name() const override;
    TransformResult encode(const QByteArray& raw) const override;
    TransformResult decode(const QByteArray& stored) const override;
};

} // namespace NVB::Engine
