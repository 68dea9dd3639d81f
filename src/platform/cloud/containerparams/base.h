#pragma once

#include <QJsonObject>
#include <QString>

// Parameters of a new container, as createContainer() takes them. Every
// provider's object carries "Name"; the others add what their API needs.
namespace NVL::Cloud::ContainerParams {

namespace Key {
inline const QString Name = QStringLiteral("Name");
inline const QString Location = QStringLiteral("Location");
inline const QString Access = QStringLiteral("Access");
inline const QString StorageClass = QStringLiteral("StorageClass");
} // namespace Key

class Base
{
public:
    explicit Base(const QString& name);
    virtual ~Base();

    QString name() const { return m_name; }
    virtual QJsonObject json() const;

private:
    QString m_name;
};

} // namespace NVL::Cloud::ContainerParams
