#include "listingobject.h"

namespace NVL::Cloud::Api {

const QString ListingObject::NameKey = QStringLiteral("Name");
const QString ListingObject::IsFolderKey = QStringLiteral("IsFolder");
const QString ListingObject::SizeKey = QStringLiteral("Size");
const QString ListingObject::LastModifiedKey = QStringLiteral("LastModified");

ListingObject::ListingObject(const QJsonObject& object)
    : m_name(object.value(NameKey).toString())
    , m_folder(object.value(IsFolderKey).toBool())
    , m_size(static_cast<qint64>(object.value(SizeKey).toDouble()))
    , m_lastModified(QDateTime::fromString(object.value(LastModifiedKey).toString(), Qt::ISODate))
{ }

ListingObject::ListingObject(const QString& name, bool isFolder, qint64 size, const QDateTime& lastModified)
    : m_name(name)
    , m_folder(isFolder)
    , m_size(size)
    , m_lastModified(lastModified)
{ }

QJsonObject ListingObject::json() const
{
    QJsonObject object {{NameKey, m_name}, {IsFolderKey, m_folder}, {SizeKey, static_cast<double>(m_size)}};
    if (m_lastModified.isValid())
        object.insert(LastModifiedKey, m_lastModified.toUTC().toString(Qt::ISODate));
    return object;
}

} // namespace NVL::Cloud::Api
