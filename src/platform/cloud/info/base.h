#pragma once

#include "cloud/cloudtype.h"

namespace NVL::Cloud::Info {

// Presets of one provider. Providers with nothing to preset get this class
// itself; the others a subclass reached by dynamic cast.
class Base
{
public:
    explicit Base(NVL::Cloud::Type type);
    virtual ~Base();

    NVL::Cloud::Type type() const { return m_type; }
    QString typeName() const;

private:
    NVL::Cloud::Type m_type;
};

} // namespace NVL::Cloud::Info
