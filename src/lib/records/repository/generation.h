#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

#include "records/repository/archiveenums.h"

namespace NVB::Info::Repository {

// One chain of runs in a bunch: the unit of deletion, deep synchronisation
// and encryption.
class Generation
{
public:
    enum Status { Clean = 0, Warning = 1, Error = 2 };

    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QUuid bunchId() const { return m_bunchId; }
    void setBunchId(const QUuid& id) { m_bunchId = id; }
    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& id) { m_connectionId = id; }
    QDateTime firstRestorePoint() const { return m_firstRestorePoint; }
    void setFirstRestorePoint(const QDateTime& moment) { m_firstRestorePoint = moment; }
    QDateTime lastRestorePoint() const { return m_lastRestorePoint; }
    void setLastRestorePoint(const QDateTime& moment) { m_lastRestorePoint = moment; }
    Status status() const { return m_status; }
    void setStatus(Status status) { m_status = status; }
    NVL::Archive::BrokenType brokenType() const { return m_brokenType; }
    void setBrokenType(NVL::Archive::BrokenType type) { m_brokenType = type; }
    NVL::Archive::DeepSyncType deepSync() const { return m_deepSync; }
    void setDeepSync(NVL::Archive::DeepSyncType state) { m_deepSync = state; }
    bool isEncrypted() const { return m_isEncrypted; }
    void setIsEncrypted(bool encrypted) { m_isEncrypted = encrypted; }
    // Base64 of the UTF-8 hint.
    QString hint() const { return m_hint; }
    void setHint(const QString& hint) { m_hint = hint; }
    quint64 storageSize() const { return m_storageSize; }
    void setStorageSize(quint64 size) { m_storageSize = size; }

    QJsonObject toJson() const;
    static QSharedPointer<Generation> fromJson(const QJsonObject& object);

private:
    QUuid m_id;
    QUuid m_bunchId;
    QUuid m_connectionId;
    QDateTime m_firstRestorePoint;
    QDateTime m_lastRestorePoint;
    Status m_status = Clean;
    NVL::Archive::BrokenType m_brokenType = NVL::Archive::NotBroken;
    NVL::Archive::DeepSyncType m_deepSync = NVL::Archive::DeepSyncNone;
    bool m_isEncrypted = false;
    QString m_hint;
    quint64 m_storageSize = 0;
};

} // namespace NVB::Info::Repository
