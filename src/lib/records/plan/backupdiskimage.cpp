#include "backupdiskimage.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

namespace {
const QString DiskInfoElement = QStringLiteral("DiskInfo");
}

BackupDiskImage::BackupDiskImage()
    : Backup(SubType::DiskImage)
{ }

QString BackupDiskImage::rootElement() const
{
    return QStringLiteral("BackupDiskImagePlan");
}

void BackupDiskImage::writeFields(QDomElement& root) const
{
    Backup::writeFields(root);
    RecordXml::addInt(root, QStringLiteral("BackupVolumesType"), m_backupVolumesType);
    if (m_diskInfo) {
        QDomDocument document = root.ownerDocument();
        root.appendChild(m_diskInfo->toElement(document));
    }
    RecordXml::addBool(root, QStringLiteral("IgnoreBadSectors"), m_ignoreBadSectors);
    RecordXml::addUInt(root, QStringLiteral("PrefetchBlockCount"), m_prefetchBlockCount);
}

void BackupDiskImage::readFields(const QDomElement& root)
{
    Backup::readFields(root);
    m_backupVolumesType = BackupVolumesType(
        RecordXml::toEnum(root, QStringLiteral("BackupVolumesType"), {SystemRequired, AllDrives, SelectedPartitions}));
    m_diskInfo.reset();
    if (RecordXml::hasElement(root, DiskInfoElement))
        m_diskInfo = NVB::Info::DiskInfo::readElement(root.firstChildElement(DiskInfoElement));
    m_ignoreBadSectors = RecordXml::toBool(root, QStringLiteral("IgnoreBadSectors"));
    m_prefetchBlockCount = RecordXml::toUInt(root, QStringLiteral("PrefetchBlockCount"));
}

} // namespace NVB::Info::Plan
