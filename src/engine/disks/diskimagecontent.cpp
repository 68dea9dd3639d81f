#include "diskimagecontent.h"

#include <QHostInfo>

#include "records/disk/diskimagemetadata.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/factory.h"
#include "runs/diskimagerun.h"
#include "store/enginestore.h"

namespace NVB::Engine {

DiskImageContent::Answer DiskImageContent::describe(EngineStore* store, const QUuid& destination, const QDateTime& at)
{
    Answer answer;
    if (destination.isNull()) {
        answer.error = QStringLiteral("No backup was named to read a disk image from");
        return answer;
    }
    // Every disk image backup that the id names.
    QList<QPair<StoredBunch, QSharedPointer<NVB::Info::Plan::BackupDiskImage>>> found;
    for (const StoredAccount& account : store->accounts()) {
        for (const StoredBunch& bunch : store->bunches(account.id)) {
            if (bunch.id != destination && account.id != destination)
                continue;
            const auto record
                = NVB::Info::Plan::Factory::create(bunch.planXml).dynamicCast<NVB::Info::Plan::BackupDiskImage>();
            if (record && record->diskInfo())
                found.append({bunch, record});
        }
    }
    if (found.isEmpty()) {
        answer.error = QStringLiteral("There is no disk image backup with the id %1").arg(destination.toString());
        return answer;
    }
    if (found.size() > 1) {
        answer.error = QStringLiteral("The storage %1 holds several disk image backups; name one by its plan's id")
                           .arg(destination.toString());
        return answer;
    }
    const StoredBunch bunch = found.first().first;
    const auto point = store->restorePointAt(bunch.connectionId, bunch.id, at.isValid() ? at.toUTC() : QDateTime());
    if (!point) {
        answer.error = QStringLiteral("The backup %1 has no restore point at that time").arg(bunch.displayName);
        return answer;
    }
    // The plan's disks as they were scanned, with only the volumes whose
    // image is in the point taken: a later change of the plan's choice does
    // not change what an earlier point holds.
    QSet<QString> imaged;
    for (const StoredContent& content : store->content(point->rowId))
        imaged.insert(content.object.section(QLatin1Char('/'), -1));
    auto info = QSharedPointer<NVB::Info::DiskInfo>::create(*found.first().second->diskInfo());
    for (auto& disk : info->disks()) {
        bool any = false;
        for (auto& volume : disk.volumes()) {
            volume.setEnabled(imaged.contains(DiskImageRun::imageName(volume.identity())));
            any = any || volume.isEnabled();
        }
        disk.setEnabled(any);
    }
    NVB::Info::DiskImageMetaData meta;
    meta.setComputerName(QHostInfo::localHostName());
    meta.setBackupDate(point->startUtc);
    meta.setDiskInfo(info);
    answer.metaDataXml = meta.toXml();
    answer.pointRow = point->rowId;
    return answer;
}

} // namespace NVB::Engine
