#include "diskimagerestoreconfiguration.h"

#include "core/nvldebug.h"
#include "records/recordxml.h"

namespace NVB::Info {

namespace {
const QString RootElement = QStringLiteral("DiskImageRestoreConfiguration");
}

DiskImageRestoreConfiguration::DiskImageRestoreConfiguration(Type type)
    : m_type(type)
{ }

QSharedPointer<DiskImageRestoreConfiguration> DiskImageRestoreConfiguration::createFromXml(const QString& xml)
{
    try {
        QDomDocument document;
        return readElement(RecordXml::parseRoot(document, xml));
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

QSharedPointer<DiskImageRestoreConfiguration> DiskImageRestoreConfiguration::readElement(const QDomElement& root)
{
    if (root.tagName() != RootElement)
        throw QStringLiteral("Unknown disk layout document element <%1>").arg(root.tagName());
    RecordXml::version(root);
    auto configuration = QSharedPointer<DiskImageRestoreConfiguration>::create(
        Type(RecordXml::toEnum(root, QStringLiteral("Type"), {PhysicalDisk, VirtualDisk, VirtualMachine})));
    const QDomElement disks = RecordXml::element(root, QStringLiteral("Disks"));
    for (QDomElement d = disks.firstChildElement(QStringLiteral("Disk")); !d.isNull();
         d = d.nextSiblingElement(QStringLiteral("Disk")))
        configuration->m_disks.append(Disk::readXml(d));
    return configuration;
}

QDomElement DiskImageRestoreConfiguration::toElement(QDomDocument& document) const
{
    QDomElement root = document.createElement(RootElement);
    RecordXml::setVersion(root);
    RecordXml::addInt(root, QStringLiteral("Type"), m_type);
    QDomElement disks = RecordXml::addElement(root, QStringLiteral("Disks"));
    for (const QSharedPointer<Disk>& disk : m_disks)
        disk->writeXml(disks);
    return root;
}

QString DiskImageRestoreConfiguration::toXml() const
{
    QDomDocument document;
    document.appendChild(toElement(document));
    return document.toString(1);
}

void DiskImageRestoreConfiguration::addDisk(const QSharedPointer<Disk>& disk)
{
    if (disk)
        m_disks.append(disk);
}

bool DiskImageRestoreConfiguration::operator==(const DiskImageRestoreConfiguration& other) const
{
    if (m_type != other.m_type || m_disks.size() != other.m_disks.size())
        return false;
    for (int i = 0; i < m_disks.size(); ++i) {
        if (*m_disks.at(i) != *other.m_disks.at(i))
            return false;
    }
    return true;
}

} // namespace NVB::Info
