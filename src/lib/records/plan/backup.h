#pragma once

#include "records/plan/actions.h"
#include "records/plan/backupencyption.h"
#include "records/plan/backupretentionpolicy.h"
#include "records/plan/backupstorageinfo.h"
#include "records/plan/base.h"
#include "records/plan/schedule.h"

namespace NVB::Info::Plan {

// What a backup plan adds to every plan.
class Backup : public Base
{
public:
    using Encyption = BackupEncyption;
    using StorageInfo = BackupStorageInfo;
    using RetentionPolicy = BackupRetentionPolicy;

    bool useCompression() const { return m_useCompression; }
    void setUseCompression(bool use) { m_useCompression = use; }
    Encyption& encryption() { return m_encryption; }
    const Encyption& encryption() const { return m_encryption; }
    StorageInfo& storageInfo() { return m_storageInfo; }
    const StorageInfo& storageInfo() const { return m_storageInfo; }
    RetentionPolicy& retentionPolicy() { return m_retentionPolicy; }
    const RetentionPolicy& retentionPolicy() const { return m_retentionPolicy; }
    Actions& actions() { return m_actions; }
    const Actions& actions() const { return m_actions; }
    Schedule& forceFullSchedule() { return m_forceFullSchedule; }
    const Schedule& forceFullSchedule() const { return m_forceFullSchedule; }
    bool forceFullDiffSizeConditionEnable() const { return m_forceFullDiffSizeConditionEnable; }
    void setForceFullDiffSizeConditionEnable(bool enable) { m_forceFullDiffSizeConditionEnable = enable; }
    // Percent of the last full backup.
    unsigned short forceFullDiffSizeCondition() const { return m_forceFullDiffSizeCondition; }
    void setForceFullDiffSizeCondition(unsigned short percent) { m_forceFullDiffSizeCondition = percent; }
    bool useDifferentialUpload() const { return m_useDifferentialUpload; }
    void setUseDifferentialUpload(bool use) { m_useDifferentialUpload = use; }
    unsigned long long differentialBlockSize() const { return m_differentialBlockSize; }
    void setDifferentialBlockSize(unsigned long long size) { m_differentialBlockSize = size; }
    bool disableSnapshot() const { return m_disableSnapshot; }
    void setDisableSnapshot(bool disable) { m_disableSnapshot = disable; }
    bool savePlanInCloud() const { return m_savePlanInCloud; }
    void setSavePlanInCloud(bool save) { m_savePlanInCloud = save; }

    void readFields(const QDomElement& root) override;

protected:
    explicit Backup(SubType content);
    void writeFields(QDomElement& root) const override;

private:
    bool m_useCompression = true;
    Encyption m_encryption;
    StorageInfo m_storageInfo;
    RetentionPolicy m_retentionPolicy;
    Actions m_actions;
    Schedule m_forceFullSchedule;
    bool m_forceFullDiffSizeConditionEnable = false;
    unsigned short m_forceFullDiffSizeCondition = 50;
    bool m_useDifferentialUpload = false;
    unsigned long long m_differentialBlockSize = 1024 * 1024;
    bool m_disableSnapshot = false;
    bool m_savePlanInCloud = true;
};

} // namespace NVB::Info::Plan
