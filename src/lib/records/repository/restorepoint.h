#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QSharedPointer>
#include <QUuid>

#include "records/repository/archiveenums.h"

namespace NVB::Info::Repository {

// One run inside a generation; the unit of choice for a restore.
class RestorePoint
{
public:
    enum Status { Clean = 0, Warning = 1, Error = 2 };
    // Only Restorable points are offered for a restore; the others are runs
    // that did not complete a usable point.
    enum Type : int { Running = 0, Incomplete = 1, Restorable = 2 };

    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& id) { m_connectionId = id; }
    QUuid bunchId() const { return m_bunchId; }
    void setBunchId(const QUuid& id) { m_bunchId = id; }
    QUuid generationId() const { return m_generationId; }
    void setGenerationId(const QUuid& id) { m_generationId = id; }
    int sequenceNumber() const { return m_sequenceNumber; }
    void setSequenceNumber(int number) { m_sequenceNumber = number; }
    QDateTime startDate() const { return m_startDate; }
    void setStartDate(const QDateTime& moment) { m_startDate = moment; }
    NVL::Archive::BackupType backupType() const { return m_backupType; }
    void setBackupType(NVL::Archive::BackupType type) { m_backupType = type; }
    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    Status status() const { return m_status; }
    void setStatus(Status status) { m_status = status; }
    NVL::Archive::DeepSyncType deepSync() const { return m_deepSync; }
    void setDeepSync(NVL::Archive::DeepSyncType state) { m_deepSync = state; }
    bool isEncrypted() const { return m_isEncrypted; }
    void setIsEncrypted(bool encrypted) { m_isEncrypted = encrypted; }
    qint64 sizeOnStorage() const { return m_sizeOnStorage; }
    void setSizeOnStorage(qint64 size) { m_sizeOnStorage = size; }

    QJsonObject toJson() const;
    static QSharedPointer<RestorePoint> fromJson(const QJsonObject& object);

private:
    QUuid m_connectionId;
    QUuid m_bunchId;
    QUuid m_generationId;
    int m_sequenceNumber = 0;
    QDateTime m_startDate;
    NVL::Archive::BackupType m_backupType = NVL::Archive::Full;
    Type m_type = Restorable;
    Status m_status = Clean;
    NVL::Archive::DeepSyncType m_deepSync = NVL::Archive::DeepSyncNone;
    bool m_isEncrypted = false;
    qint64 m_sizeOnStorage = 0;
};

} // namespace NVB::Info::Repository
