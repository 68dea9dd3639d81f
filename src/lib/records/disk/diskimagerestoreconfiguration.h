#pragma once

#include <QDomDocument>
#include <QList>
#include <QSharedPointer>
#include <QString>

#include "records/disk/diskimagerestoreconfigurationdisk.h"
#include "records/disk/diskimagerestoreconfigurationvolume.h"

namespace NVB::Info {

// The disk layout the engine builds when it restores an image.
class DiskImageRestoreConfiguration
{
public:
    // PhysicalDisk lays out every chosen volume; VirtualMachine hands over
    // disks only and leaves the volumes' layout to the engine.
    enum Type { PhysicalDisk = 0, VirtualDisk = 1, VirtualMachine = 2 };
    using Disk = DiskImageRestoreConfigurationDisk;
    using Volume = DiskImageRestoreConfigurationVolume;

    explicit DiskImageRestoreConfiguration(Type type = PhysicalDisk);

    static QSharedPointer<DiskImageRestoreConfiguration> createFromXml(const QString& xml);
    // Throws a QString naming the faulty element.
    static QSharedPointer<DiskImageRestoreConfiguration> readElement(const QDomElement& root);

    QString toXml() const;
    QDomElement toElement(QDomDocument& document) const;

    Type type() const { return m_type; }
    QList<QSharedPointer<Disk>> disks() const { return m_disks; }
    void addDisk(const QSharedPointer<Disk>& disk);

    bool operator==(const DiskImageRestoreConfiguration& other) const;
    bool operator!=(const DiskImageRestoreConfiguration& other) const { return !(*this == other); }

private:
    Type m_type;
    QList<QSharedPointer<Disk>> m_disks;
};

} // namespace NVB::Info
