#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

namespace NVB::Info::Repository {

// A file, folder, volume or share inside a restore point.
class ContentObject
{
public:
    // Files are leaves; every other kind may hold children.
    enum Type : int { Folder = 1, File = 2, Link = 3, Volume = 4, Partition = 5, SystemVolume = 6, NetworkShare = 7 };

    QString displayName() const { return m_displayName; }
    void setDisplayName(const QString& name) { m_displayName = name; }
    QString path() const { return m_path; }
    void setPath(const QString& path) { m_path = path; }
    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    bool isLeaf() const { return m_type == File || m_type == Link; }
    QDateTime modifyDate() const { return m_modifyDate; }
    void setModifyDate(const QDateTime& moment) { m_modifyDate = moment; }
    quint64 originalSize() const { return m_originalSize; }
    void setOriginalSize(quint64 size) { m_originalSize = size; }
    // Deleted on the source at this restore point.
    bool deleted() const { return m_deleted; }
    void setDeleted(bool deleted) { m_deleted = deleted; }

    QJsonObject toJson() const;
    static QSharedPointer<ContentObject> fromJson(const QJsonObject& object);

private:
    QString m_displayName;
    QString m_path;
    Type m_type = File;
    QDateTime m_modifyDate;
    quint64 m_originalSize = 0;
    bool m_deleted = false;
};

} // namespace NVB::Info::Repository
