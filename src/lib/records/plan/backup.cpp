#include "backup.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

Backup::Backup(SubType content)
    : Base(Type::Backup, content)
{
    schedule().setEnable(true);
    // A monthly full backup keeps chains of increments short once a user
    // turns it on.
    m_forceFullSchedule.setFrequencyType(Schedule::Monthly);
    m_forceFullSchedule.setMonthlyFrequency(Schedule::Last, 6);
    setUseConsistencyCheck(true);
}

void Backup::writeFields(QDomElement& root) const
{
    Base::writeFields(root);
    RecordXml::addBool(root, QStringLiteral("UseCompression"), m_useCompression);
    m_encryption.writeXml(root);
    m_storageInfo.writeXml(root);
    m_retentionPolicy.writeXml(root);
    m_actions.writeXml(root);
    m_forceFullSchedule.writeXml(root, QStringLiteral("ForceFullSchedule"));
    RecordXml::addBool(root, QStringLiteral("ForceFullDiffSizeConditionEnable"), m_forceFullDiffSizeConditionEnable);
    RecordXml::addUInt(root, QStringLiteral("ForceFullDiffSizeCondition"), m_forceFullDiffSizeCondition);
    RecordXml::addBool(root, QStringLiteral("UseDifferentialUpload"), m_useDifferentialUpload);
    RecordXml::addUInt(root, QStringLiteral("DifferentialBlockSize"), m_differentialBlockSize);
    RecordXml::addBool(root, QStringLiteral("DisableSnapshot"), m_disableSnapshot);
    RecordXml::addBool(root, QStringLiteral("SavePlanInCloud"), m_savePlanInCloud);
}

void Backup::readFields(const QDomElement& root)
{
    Base::readFields(root);
    m_useCompression = RecordXml::toBool(root, QStringLiteral("UseCompression"));
    m_encryption.readXml(RecordXml::element(root, QStringLiteral("Encryption")));
    m_storageInfo.readXml(RecordXml::element(root, QStringLiteral("StorageInfo")));
    m_retentionPolicy.readXml(RecordXml::element(root, QStringLiteral("RetentionPolicy")));
    m_actions.readXml(RecordXml::element(root, QStringLiteral("Actions")));
    m_forceFullSchedule.readXml(RecordXml::element(root, QStringLiteral("ForceFullSchedule")));
    m_forceFullDiffSizeConditionEnable = RecordXml::toBool(root, QStringLiteral("ForceFullDiffSizeConditionEnable"));
    m_forceFullDiffSizeCondition
        = static_cast<unsigned short>(RecordXml::toUInt(root, QStringLiteral("ForceFullDiffSizeCondition"), 65535));
    m_useDifferentialUpload = RecordXml::toBool(root, QStringLiteral("UseDifferentialUpload"));
    m_differentialBlockSize = RecordXml::toUInt(root, QStringLiteral("DifferentialBlockSize"));
    m_disableSnapshot = RecordXml::toBool(root, QStringLiteral("DisableSnapshot"));
    m_savePlanInCloud = RecordXml::toBool(root, QStringLiteral("SavePlanInCloud"));
}

} // namespace NVB::Info::Plan
