#pragma once

#include <QDateTime>
#include <QString>

#include "records/plan/base.h"
#include "records/plan/restorestorageinfo.h"

namespace NVB::Info::Plan {

// What a restore plan adds to every plan.
class Restore : public Base
{
public:
    using StorageInfo = RestoreStorageInfo;
    // Latest: the newest data; PointInTime: as it was at pointInTime().
    enum RestoreType { Latest = 0, PointInTime = 1 };
    // Keep: a saved plan; DeleteAfterRun: a plan made for one run.
    enum DeleteType { Keep = 0, DeleteAfterRun = 1 };

    RestoreType restoreType() const { return m_restoreType; }
    void setRestoreType(RestoreType type) { m_restoreType = type; }
    QString restorePoint() const { return m_restorePoint; }
    void setRestorePoint(const QString& point) { m_restorePoint = point; }
    QDateTime pointInTime() const { return m_pointInTime; }
    void setPointInTime(const QDateTime& moment) { m_pointInTime = moment; }
    bool useEncryption() const { return m_useEncryption; }
    void setUseEncryption(bool use) { m_useEncryption = use; }
    QString encryptionPassword() const { return m_encryptionPassword; }
    void setEncryptionPassword(const QString& password) { m_encryptionPassword = password; }
    DeleteType deletePlan() const { return m_deletePlan; }
    void setDeletePlan(DeleteType type) { m_deletePlan = type; }
    StorageInfo& storageInfo() { return m_storageInfo; }
    const StorageInfo& storageInfo() const { return m_storageInfo; }

    void readFields(const QDomElement& root) override;

protected:
    explicit Restore(SubType content);
    void writeFields(QDomElement& root) const override;

private:
    RestoreType m_restoreType = Latest;
    QString m_restorePoint;
    QDateTime m_pointInTime;
    bool m_useEncryption = false;
    QString m_encryptionPassword;
    DeleteType m_deletePlan = Keep;
    StorageInfo m_storageInfo;
};

} // namespace NVB::Info::Plan
