#include "property.h"

#include <utility>

namespace NVB {

Property::Property(const QString& key, const QString& value, ChangeHandler onChange)
    : m_key(key)
    , m_value(value)
    , m_onChange(std::move(onChange))
{
}

bool Property::setValue(const QString& value)
{
    if (value == m_value)
        return true;
    m_value = value;
    return m_onChange ? m_onChange(*this) : true;
}

} // namespace NVB
