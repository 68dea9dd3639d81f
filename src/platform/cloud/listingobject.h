#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

namespace NVL::Cloud::Api {

// One item of a Listing's data(): a key below the destination's root.
class ListingObject
{
public:
    static const QString NameKey;
    static const QString IsFolderKey;
    static const QString SizeKey;
    static const QString LastModifiedKey;

    explicit ListingObject(const QJsonObject& object);
    ListingObject(const QString& name, bool isFolder, qint64 size, const QDateTime& lastModified);

    // The whole key, "folder/sub/name", without a trailing slash for folders.
    QString name() const { return m_name; }
    bool isFolder() const { return m_folder; }
    qint64 size() const { return m_size; }
    QDateTime lastModified() const { return m_lastModified; }

    QJsonObject json() const;

private:
    QString m_name;
    bool m_folder;
    qint64 m_size;
    QDateTime m_lastModified;
};

} // namespace NVL::Cloud::Api
