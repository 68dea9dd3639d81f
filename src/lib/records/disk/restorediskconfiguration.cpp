#include "restorediskconfiguration.h"

#include "core/nvldebug.h"
#include "records/recordxml.h"

namespace NVB::Info {

namespace {
const QString RootElement = QStringLiteral("RestoreDiskConfiguration");
}

QSharedPointer<RestoreDiskConfiguration> RestoreDiskConfiguration::createFromDiskInfo(
    const QSharedPointer<DiskInfo>& info)
{
    auto configuration = QSharedPointer<RestoreDiskConfiguration>::create();
    if (!info)
        return configuration;
    for (const DiskInfo::Disk& sourceDisk : info->disks()) {
        Disk disk(sourceDisk.diskId());
        for (const DiskInfo::Volume& sourceVolume : sourceDisk.volumes()) {
            Volume volume(sourceDisk.diskId(), sourceVolume.identity(), sourceVolume.length());
            volume.setSourceEnabled(sourceVolume.isEnabled());
            disk.volumes().append(volume);
        }
        configuration->m_disks.append(disk);
    }
    return configuration;
}

QSharedPointer<RestoreDiskConfiguration> RestoreDiskConfiguration::createFromXml(const QString& xml)
{
    try {
        QDomDocument document;
        return readElement(RecordXml::parseRoot(document, xml));
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

QSharedPointer<RestoreDiskConfiguration> RestoreDiskConfiguration::readElement(const QDomElement& root)
{
    if (root.tagName() != RootElement)
        throw QStringLiteral("Unknown restore disk document element <%1>").arg(root.tagName());
    RecordXml::version(root);
    auto configuration = QSharedPointer<RestoreDiskConfiguration>::create();
    const QDomElement disks = RecordXml::element(root, QStringLiteral("Disks"));
    for (QDomElement d = disks.firstChildElement(QStringLiteral("Disk")); !d.isNull();
         d = d.nextSiblingElement(QStringLiteral("Disk")))
        configuration->m_disks.append(Disk::readXml(d));
    return configuration;
}

QDomElement RestoreDiskConfiguration::toElement(QDomDocument& document) const
{
    QDomElement root = document.createElement(RootElement);
    RecordXml::setVersion(root);
    QDomElement disks = RecordXml::addElement(root, QStringLiteral("Disks"));
    for (const Disk& disk : m_disks)
        disk.writeXml(disks);
    return root;
}

QString RestoreDiskConfiguration::toXml() const
{
    QDomDocument document;
    document.appendChild(toElement(document));
    return document.toString(1);
}

void RestoreDiskConfiguration::setOptions(const QSharedPointer<RestoreDiskConfiguration>& other)
{
    if (!other)
        return;
    for (Disk& disk : m_disks) {
        for (const Disk& stored : other->disks()) {
            if (stored.sourceDiskId() != disk.sourceDiskId())
                continue;
            disk.setDestinationDiskId(stored.destinationDiskId());
            for (Volume& volume : disk.volumes()) {
                for (const Volume& storedVolume : stored.volumes()) {
                    if (storedVolume.sourceIdentity() != volume.sourceIdentity())
                        continue;
                    volume.setSourceEnabled(storedVolume.isSourceEnabled());
                    volume.setDestinationDiskId(storedVolume.destinationDiskId());
                    volume.setDestinationIdentity(storedVolume.destinationIdentity());
                    volume.setDestinationEnable(storedVolume.isDestinationEnabled());
                }
            }
        }
    }
}

} // namespace NVB::Info
