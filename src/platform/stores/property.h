#pragma once

#include <functional>

#include <QString>

namespace NVB {

// One named text value of a settings store. A change is handed to the store,
// which writes it through.
class Property
{
public:
    using ChangeHandler = std::function<bool(const Property&)>;

    Property(const QString& key, const QString& value, ChangeHandler onChange);

    QString key() const { return m_key; }
    QString value() const { return m_value; }
    // False when the store could not keep the value; the property keeps the
    // new value for this process either way.
    bool setValue(const QString& value);

private:
    QString m_key;
    QString m_value;
    ChangeHandler m_onChange;
};

} // namespace NVB
