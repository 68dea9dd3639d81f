#pragma once

#include <QList>
#include <QUuid>

#include "service/uuidliteral.h"

// V1 notifications: the header keys of every notification, and for each
// notification its type and the keys of its "Message". Some types are shared
// by two constants on purpose; listeners read the keys they expect.
namespace NVB::Common::Communication::Notification::Format {

namespace Header {
inline constexpr char Id[] = "id";
inline constexpr char Message[] = "Message";
inline constexpr char Receiver[] = "receiver";
inline constexpr char SenderId[] = "sender_id";
inline constexpr char Type[] = "type";
} // namespace Header
namespace Plan {
namespace Add {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{ca927cb1-de60-46c1-a978-cda7a44bbf01}");
} // namespace Add
namespace Remove {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{162e1dd2-3f83-4b43-83fe-26cf3e643660}");
} // namespace Remove
namespace StateChange {
inline constexpr char Id[] = "id";
inline constexpr char LastState[] = "last_state";
inline constexpr char State[] = "state";
inline constexpr QUuid Type = uuidLiteral("{b0ec9f80-5418-431e-8a72-5ecf91ab4f82}");
} // namespace StateChange
namespace Update {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{fbfaf8e1-ec81-4499-8e0f-da8f7446e5ac}");
} // namespace Update
} // namespace Plan
namespace Snapshot {
namespace InstallStatus {
inline constexpr char ErrorMessage[] = "errorMessage";
inline constexpr char SnapshotType[] = "snapshotType";
inline constexpr QUuid Type = uuidLiteral("{DBBCCEF7-55F1-4CED-A2CC-CF3E7024D528}");
namespace Status {
inline constexpr char Key[] = "status";
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char InProgress[] = "inProgress";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Status
} // namespace InstallStatus
} // namespace Snapshot
namespace Storage {
namespace Add {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{312ca1b4-38ce-45ff-a24c-549abc467bcd}");
} // namespace Add
namespace Remove {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{a29e9a7a-efa9-4907-82de-dc33032fbbeb}");
} // namespace Remove
namespace RemoveFilesStatus {
inline constexpr char Count[] = "Count";
inline constexpr char Message[] = "Message";
inline constexpr char Operation[] = "OperationId";
inline constexpr char Status[] = "Status";
inline constexpr char StorageId[] = "StorageId";
inline constexpr QUuid Type = uuidLiteral("{c810f13e-b634-466a-a005-74d42f4c3981}");
} // namespace RemoveFilesStatus
namespace SynchronizeRepositoryError {
inline constexpr char Id[] = "id";
inline constexpr char Message[] = "message";
inline constexpr QUuid Type = uuidLiteral("{7544263D-4782-4255-95F5-877A07C520CC}");
} // namespace SynchronizeRepositoryError
namespace SynchronizeRepositoryFinished {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{CD073BE4-9EDD-495F-AC72-DC6BD113DD82}");
} // namespace SynchronizeRepositoryFinished
namespace SynchronizeRepositoryStarted {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{3a129a88-1dc3-4e22-a933-2652269e3e08}");
} // namespace SynchronizeRepositoryStarted
namespace SynchronizeRepositoryStatus {
inline constexpr char Id[] = "id";
inline constexpr char Message[] = "message";
inline constexpr QUuid Type = uuidLiteral("{DBBCCEF7-55F1-4CED-A2CC-CF3E7024D528}");
} // namespace SynchronizeRepositoryStatus
namespace Update {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type = uuidLiteral("{daf6f597-e39d-4041-82a7-f82bf571642d}");
} // namespace Update
namespace UpdateConnections {
inline constexpr QUuid Type = uuidLiteral("{3e7b39aa-15ee-46d3-a11e-c9393008fee0}");
} // namespace UpdateConnections
} // namespace Storage
namespace System {
namespace CheckLive {
inline constexpr QUuid Type = uuidLiteral("{dc172643-a5ca-4208-aabf-0d54e38e17e9}");
} // namespace CheckLive
namespace CloseAll {
inline constexpr QUuid Type = uuidLiteral("{23d7ef70-3337-4dc9-babc-d122daf685ad}");
} // namespace CloseAll
namespace Connect {
inline constexpr char Info[] = "info";
inline constexpr QUuid Type = uuidLiteral("{47f131a6-328f-462d-b1f8-ff12095a31b0}");
namespace Application {
inline constexpr char Key[] = "application";
} // namespace Application
} // namespace Connect
namespace DefaultSettingsChanged {
inline constexpr char Property[] = "PropertyName";
inline constexpr QUuid Type = uuidLiteral("{41ec1d83-7bf1-444f-a249-e7e66a83e995}");
} // namespace DefaultSettingsChanged
namespace Disconnect {
inline constexpr QUuid Type = uuidLiteral("{d192f62b-08a0-4c27-8829-e2303d288a87}");
} // namespace Disconnect
namespace RebrandingOptionsChanged {
inline constexpr QUuid Type = uuidLiteral("{41ec1d83-7bf1-444f-a249-e7e66a83e995}");
} // namespace RebrandingOptionsChanged
namespace SslStorageChange {
inline constexpr char Pem[] = "pem";
inline constexpr QUuid Type = uuidLiteral("{852b0208-414c-11e8-91aa-309c2320a33e}");
} // namespace SslStorageChange
namespace Update {
inline constexpr char BuildUrl[] = "BuildUrl";
inline constexpr QUuid Type = uuidLiteral("{9ca3a0dc-8a9f-4a9e-9055-31fef75f8a36}");
} // namespace Update
namespace UpdateProgress {
inline constexpr char Count[] = "count";
inline constexpr char Error[] = "Error";
inline constexpr char Message[] = "message";
inline constexpr char Size[] = "size";
inline constexpr QUuid Type = uuidLiteral("{6DBBCBE8-84BA-4EEC-83D9-8BA1698846F5}");
} // namespace UpdateProgress
namespace UpdateStart {
inline constexpr QUuid Type = uuidLiteral("{24B13160-716F-41B7-AD5F-A15D496A1AF8}");
} // namespace UpdateStart
} // namespace System
namespace Worker {
namespace ReportProgress {
inline constexpr char CurrentFile[] = "current_file";
inline constexpr char CurrentFileValue[] = "current_file_value";
inline constexpr char Elapsed[] = "elapsed";
inline constexpr char FilesCopied[] = "files_copied";
inline constexpr char FilesCopiedValue[] = "files_copied_value";
inline constexpr char PlanID[] = "plan_id";
inline constexpr char ProgressBar[] = "progress";
inline constexpr char Size[] = "size";
inline constexpr char Speed[] = "speed";
inline constexpr char Status[] = "status";
inline constexpr char StatusValue[] = "status_value";
// Beyond the first widgets: caption and text of the estimated time left.
inline constexpr char TimeLeft[] = "time_left";
inline constexpr char TimeLeftValue[] = "time_left_value";
inline constexpr QUuid Type = uuidLiteral("{59617d9c-b90c-467a-bb51-b846c87f2401}");
namespace DiskImage {
inline constexpr char Disks[] = "disks";
inline constexpr char Elapsed[] = "elapsed";
inline constexpr char Size[] = "size";
inline constexpr char Speed[] = "speed";
namespace Disk {
inline constexpr char Id[] = "id";
inline constexpr char Name[] = "name";
inline constexpr char ProgressRead[] = "progressRead";
inline constexpr char ProgressUpload[] = "progressUpload";
inline constexpr char Volumes[] = "volumes";
namespace Volume {
inline constexpr char Id[] = "id";
inline constexpr char Name[] = "name";
inline constexpr char ProgressRead[] = "progressRead";
inline constexpr char ProgressUpload[] = "progressUpload";
} // namespace Volume
} // namespace Disk
namespace Status {
inline constexpr char Key[] = "status";
} // namespace Status
} // namespace DiskImage
} // namespace ReportProgress
namespace ReportProgress2 {
inline constexpr char BytesSent[] = "BytesSent";
inline constexpr char DataSize[] = "DataSize";
inline constexpr char ElapsedTime[] = "ElapsedTime";
inline constexpr char ElapsedTimeDuration[] = "ElapsedTimeDuration";
inline constexpr char FailedFileCount[] = "FailedFileCount";
inline constexpr char FilesInProgress[] = "FilesInProgress";
inline constexpr char PlanID[] = "PlanID";
inline constexpr char Progress[] = "Progress";
inline constexpr char ScannedFileCount[] = "ScannedFileCount";
inline constexpr char ScannedFileSize[] = "ScannedFileSize";
inline constexpr char Speed[] = "Speed";
inline constexpr char TotalFileCount[] = "TotalFileCount";
// Seconds, with a fraction; -1 while it cannot be told.
inline constexpr char TimeLeft[] = "TimeLeft";
inline constexpr QUuid Type = uuidLiteral("{08e30daa-82eb-4da9-aff9-aa3d88199386}");
inline constexpr char UploadedFileCount[] = "UploadedFileCount";
inline constexpr char UploadedFileSize[] = "UploadedFileSize";
inline constexpr char WorkerMode[] = "WorkerMode";
} // namespace ReportProgress2
} // namespace Worker

// Every type above, duplicates included, in the order of the catalogue.
QList<QUuid> allTypes();

} // namespace NVB::Common::Communication::Notification::Format
