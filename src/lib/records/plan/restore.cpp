#include "restore.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

Restore::Restore(SubType content)
    : Base(Type::Restore, content)
{
    // A restore should see what the last backups wrote.
    setSyncBeforeRun(true);
}

void Restore::writeFields(QDomElement& root) const
{
    Base::writeFields(root);
    RecordXml::addInt(root, QStringLiteral("RestoreType"), m_restoreType);
    RecordXml::addText(root, QStringLiteral("RestorePoint"), m_restorePoint);
    RecordXml::addDateTime(root, QStringLiteral("PointInTime"), m_pointInTime);
    RecordXml::addBool(root, QStringLiteral("UseEncryption"), m_useEncryption);
    RecordXml::addText(root, QStringLiteral("EncryptionPassword"), m_encryptionPassword);
    RecordXml::addInt(root, QStringLiteral("DeletePlan"), m_deletePlan);
    m_storageInfo.writeXml(root);
}

void Restore::readFields(const QDomElement& root)
{
    Base::readFields(root);
    m_restoreType = RestoreType(RecordXml::toEnum(root, QStringLiteral("RestoreType"), {Latest, PointInTime}));
    m_restorePoint = RecordXml::text(root, QStringLiteral("RestorePoint"));
    m_pointInTime = RecordXml::toDateTime(root, QStringLiteral("PointInTime"));
    m_useEncryption = RecordXml::toBool(root, QStringLiteral("UseEncryption"));
    m_encryptionPassword = RecordXml::text(root, QStringLiteral("EncryptionPassword"));
    m_deletePlan = DeleteType(RecordXml::toEnum(root, QStringLiteral("DeletePlan"), {Keep, DeleteAfterRun}));
    m_storageInfo.readXml(RecordXml::element(root, QStringLiteral("StorageInfo")));
}

} // namespace NVB::Info::Plan
