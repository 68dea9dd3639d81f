#include "restorediskimage.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

namespace {
const QString DiskInfoElement = QStringLiteral("DiskInfo");
const QString RestoreDiskConfigurationElement = QStringLiteral("RestoreDiskConfiguration");
const QString DiskImageRestoreConfigurationElement = QStringLiteral("DiskImageRestoreConfiguration");
} // namespace

RestoreDiskImage::RestoreDiskImage()
    : Restore(SubType::DiskImage)
{ }

QString RestoreDiskImage::rootElement() const
{
    return QStringLiteral("RestoreDiskImagePlan");
}

void RestoreDiskImage::writeFields(QDomElement& root) const
{
    Restore::writeFields(root);
    QDomDocument document = root.ownerDocument();
    RecordXml::addText(root, QStringLiteral("Destination"), m_destination);
    if (m_diskInfo)
        root.appendChild(m_diskInfo->toElement(document));
    m_diskImageFileFormat.writeXml(root);
    RecordXml::addInt(root, QStringLiteral("DiskImageRestoreType"), m_diskImageRestoreType);
    if (m_restoreDiskConfiguration)
        root.appendChild(m_restoreDiskConfiguration->toElement(document));
    if (m_diskImageRestoreConfiguration)
        root.appendChild(m_diskImageRestoreConfiguration->toElement(document));
}

void RestoreDiskImage::readFields(const QDomElement& root)
{
    Restore::readFields(root);
    m_destination = RecordXml::text(root, QStringLiteral("Destination"));
    m_diskInfo.reset();
    if (RecordXml::hasElement(root, DiskInfoElement))
        m_diskInfo = NVB::Info::DiskInfo::readElement(root.firstChildElement(DiskInfoElement));
    m_diskImageFileFormat.readXml(RecordXml::element(root, QStringLiteral("DiskImageFileFormat")));
    m_diskImageRestoreType = DiskImageRestoreType(
        RecordXml::toEnum(root, QStringLiteral("DiskImageRestoreType"), {PhysicalDisk, VirtualDisk, VirtualMachine}));
    m_restoreDiskConfiguration.reset();
    if (RecordXml::hasElement(root, RestoreDiskConfigurationElement))
        m_restoreDiskConfiguration
            = NVB::Info::RestoreDiskConfiguration::readElement(root.firstChildElement(RestoreDiskConfigurationElement));
    m_diskImageRestoreConfiguration.reset();
    if (RecordXml::hasElement(root, DiskImageRestoreConfigurationElement))
        m_diskImageRestoreConfiguration = NVB::Info::DiskImageRestoreConfiguration::readElement(
            root.firstChildElement(DiskImageRestoreConfigurationElement));
}

} // namespace NVB::Info::Plan
