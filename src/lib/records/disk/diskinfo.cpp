#include "diskinfo.h"

#include <QSet>

#include "core/nvldebug.h"
#include "records/recordxml.h"

namespace NVB::Info {

namespace {
const QString RootElement = QStringLiteral("DiskInfo");
}

QSharedPointer<DiskInfo> DiskInfo::createFromXml(const QString& xml)
{
    try {
        QDomDocument document;
        return readElement(RecordXml::parseRoot(document, xml));
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

QSharedPointer<DiskInfo> DiskInfo::readElement(const QDomElement& root)
{
    if (root.tagName() != RootElement)
        throw QStringLiteral("Unknown disk document element <%1>").arg(root.tagName());
    RecordXml::version(root);
    auto info = QSharedPointer<DiskInfo>::create();
    const QDomElement disks = RecordXml::element(root, QStringLiteral("Disks"));
    QSet<QUuid> seen;
    for (QDomElement d = disks.firstChildElement(QStringLiteral("Disk")); !d.isNull();
         d = d.nextSiblingElement(QStringLiteral("Disk"))) {
        Disk disk = Disk::readXml(d);
        if (seen.contains(disk.diskId()))
            throw QStringLiteral("Element <%1> repeats a disk id").arg(RecordXml::path(d));
        seen.insert(disk.diskId());
        info->m_disks.append(disk);
    }
    return info;
}

QDomElement DiskInfo::toElement(QDomDocument& document) const
{
    QDomElement root = document.createElement(RootElement);
    RecordXml::setVersion(root);
    QDomElement disks = RecordXml::addElement(root, QStringLiteral("Disks"));
    for (const Disk& disk : m_disks)
        disk.writeXml(disks);
    return root;
}

QString DiskInfo::toXml() const
{
    QDomDocument document;
    document.appendChild(toElement(document));
    return document.toString(1);
}

DiskInfo::Disk DiskInfo::diskById(const QUuid& id) const
{
    for (const Disk& disk : m_disks) {
        if (disk.diskId() == id)
            return disk;
    }
    return Disk();
}

DiskInfo::Volume DiskInfo::volume(const QUuid& diskId, const QUuid& volumeId) const
{
    // The disk must outlive the loop: volumes() refers into it.
    const Disk disk = diskById(diskId);
    for (const Volume& volume : disk.volumes()) {
        if (volume.identity() == volumeId)
            return volume;
    }
    return Volume();
}

void DiskInfo::setOptions(const QSharedPointer<DiskInfo>& other)
{
    if (!other)
        return;
    for (Disk& disk : m_disks) {
        const Disk stored = other->diskById(disk.diskId());
        if (stored.diskId().isNull())
            continue;
        disk.setEnabled(stored.isEnabled());
        for (Volume& volume : disk.volumes()) {
            for (const Volume& storedVolume : stored.volumes()) {
                if (storedVolume.identity() == volume.identity())
                    volume.setEnabled(storedVolume.isEnabled());
            }
        }
    }
}

void DiskInfo::selectAllDrives()
{
    for (Disk& disk : m_disks) {
        disk.setEnabled(true);
        for (Volume& volume : disk.volumes())
            volume.setEnabled(true);
    }
}

void DiskInfo::selectSystemRequired()
{
    for (Disk& disk : m_disks) {
        bool any = false;
        for (Volume& volume : disk.volumes()) {
            volume.setEnabled(volume.requiredBySystem());
            any = any || volume.requiredBySystem();
        }
        disk.setEnabled(any);
    }
}

bool DiskInfo::isAllDrivesSelected() const
{
    bool anyVolume = false;
    for (const Disk& disk : m_disks) {
        for (const Volume& volume : disk.volumes()) {
            if (!volume.isEnabled())
                return false;
            anyVolume = true;
        }
    }
    return anyVolume;
}

} // namespace NVB::Info
