#include "diskcommands.h"

#include <QFile>

#include "core/engine.h"
#include "diskimagecontent.h"
#include "diskscanner.h"
#include "service/commands/content.h"
#include "service/commands/snapshot.h"

namespace NVB::Engine {

namespace Content = NVB::Common::Communication::Commands::Format::Content;
namespace Snapshot = NVB::Common::Communication::Commands::Format::Snapshot;

namespace {

// This engine takes no snapshots: there is no driver of its own, and LVM
// snapshots are not taken yet. The answers say so instead of pretending.
QString snapshotMessage()
{
    // A /dev/mapper/control node can exist without the kernel driver behind
    // it (containers); the kernel's list of misc devices tells.
    QFile misc(QStringLiteral("/proc/misc"));
    const bool mapper = misc.open(QIODevice::ReadOnly) && misc.readAll().contains(" device-mapper\n");
    const bool lvm = mapper
        && (QFile::exists(QStringLiteral("/sbin/lvcreate")) || QFile::exists(QStringLiteral("/usr/sbin/lvcreate")));
    return lvm ? QStringLiteral("Snapshots are not available: LVM is present, but this engine does not take LVM "
                                "snapshots yet; volumes are imaged without a snapshot")
               : QStringLiteral("Snapshots are not available: there is no snapshot driver and no LVM on this "
                                "machine; volumes are imaged without a snapshot");
}

} // namespace

void DiskCommands::add(Engine* engine, V1Handlers* handlers)
{
    handlers->insert(QString::fromLatin1(Content::GetDiskImageContent::Name), [engine](const QJsonObject& params) {
        namespace Request = Content::GetDiskImageContent::Request;
        namespace Reply = Content::GetDiskImageContent::Reply;
        const QUuid destination(params.value(QLatin1String(Request::DestinationId)).toString());
        QDateTime at;
        if (params.value(QLatin1String(Request::SpecifiedTime::Key)).toString()
            == QLatin1String(Request::SpecifiedTime::Value::PointInTime)) {
            at = QDateTime::fromString(
                params.value(QLatin1String(Request::SpecifiedTime::PointInTimeValue)).toString(), Qt::ISODate);
            if (!at.isValid())
                return Outcome::failure(QStringLiteral("The point in time is not an ISO date"));
        }
        const DiskImageContent::Answer answer = DiskImageContent::describe(engine->store(), destination, at);
        if (!answer.error.isEmpty())
            return Outcome::failure(answer.error);
        return Outcome::success({{QString::fromLatin1(Reply::Key), answer.metaDataXml},
            {QString::fromLatin1(Reply::DatabaseId), double(answer.pointRow)}});
    });
    handlers->insert(QString::fromLatin1(Content::GetDiskInfo::Name), [](const QJsonObject&) {
        const auto info = DiskScanner().scan();
        return Outcome::success({{QString::fromLatin1(Content::GetDiskInfo::Reply::Key), info->toXml()}});
    });
    handlers->insert(QString::fromLatin1(Snapshot::IsInit::Name), [](const QJsonObject&) {
        namespace Status = Snapshot::DataType::Status;
        return Outcome::success({{QString::fromLatin1(Snapshot::IsInit::Reply::Key),
            QJsonObject {{QString::fromLatin1(Status::Success), false}, {QString::fromLatin1(Status::ErrorCode), 1},
                {QString::fromLatin1(Status::Message), snapshotMessage()}}}});
    });
    handlers->insert(QString::fromLatin1(Snapshot::Install::Name),
        [](const QJsonObject&) { return Outcome::failure(snapshotMessage()); });
}

} // namespace NVB::Engine
