#pragma once

#include <QList>
#include <QUuid>

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
inline constexpr QUuid Type {0xca927cb1, 0xde60, 0x46c1, 0xa9, 0x78, 0xcd, 0xa7, 0xa4, 0x4b, 0xbf,
    0x01}; // {ca927cb1-de60-46c1-a978-cda7a44bbf01}
} // namespace Add
namespace Remove {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type {0x162e1dd2, 0x3f83, 0x4b43, 0x83, 0xfe, 0x26, 0xcf, 0x3e, 0x64, 0x36,
    0x60}; // {162e1dd2-3f83-4b43-83fe-26cf3e643660}
} // namespace Remove
namespace StateChange {
inline constexpr char Id[] = "id";
inline constexpr char LastState[] = "last_state";
inline constexpr char State[] = "state";
inline constexpr QUuid Type {0xb0ec9f80, 0x5418, 0x431e, 0x8a, 0x72, 0x5e, 0xcf, 0x91, 0xab, 0x4f,
    0x82}; // {b0ec9f80-5418-431e-8a72-5ecf91ab4f82}
} // namespace StateChange
namespace Update {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type {0xfbfaf8e1, 0xec81, 0x4499, 0x8e, 0x0f, 0xda, 0x8f, 0x74, 0x46, 0xe5,
    0xac}; // {fbfaf8e1-ec81-4499-8e0f-da8f7446e5ac}
} // namespace Update
} // namespace Plan
namespace Snapshot {
namespace InstallStatus {
inline constexpr char ErrorMessage[] = "errorMessage";
inline constexpr char SnapshotType[] = "snapshotType";
inline constexpr QUuid Type {0xdbbccef7, 0x55f1, 0x4ced, 0xa2, 0xcc, 0xcf, 0x3e, 0x70, 0x24, 0xd5,
    0x28}; // {DBBCCEF7-55F1-4CED-A2CC-CF3E7024D528}
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
inline constexpr QUuid Type {0x312ca1b4, 0x38ce, 0x45ff, 0xa2, 0x4c, 0x54, 0x9a, 0xbc, 0x46, 0x7b,
    0xcd}; // {312ca1b4-38ce-45ff-a24c-549abc467bcd}
} // namespace Add
namespace Remove {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type {0xa29e9a7a, 0xefa9, 0x4907, 0x82, 0xde, 0xdc, 0x33, 0x03, 0x2f, 0xbb,
    0xeb}; // {a29e9a7a-efa9-4907-82de-dc33032fbbeb}
} // namespace Remove
namespace RemoveFilesStatus {
inline constexpr char Count[] = "Count";
inline constexpr char Message[] = "Message";
inline constexpr char Operation[] = "OperationId";
inline constexpr char Status[] = "Status";
inline constexpr char StorageId[] = "StorageId";
inline constexpr QUuid Type {0xc810f13e, 0xb634, 0x466a, 0xa0, 0x05, 0x74, 0xd4, 0x2f, 0x4c, 0x39,
    0x81}; // {c810f13e-b634-466a-a005-74d42f4c3981}
} // namespace RemoveFilesStatus
namespace SynchronizeRepositoryError {
inline constexpr char Id[] = "id";
inline constexpr char Message[] = "message";
inline constexpr QUuid Type {0x7544263d, 0x4782, 0x4255, 0x95, 0xf5, 0x87, 0x7a, 0x07, 0xc5, 0x20,
    0xcc}; // {7544263D-4782-4255-95F5-877A07C520CC}
} // namespace SynchronizeRepositoryError
namespace SynchronizeRepositoryFinished {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type {0xcd073be4, 0x9edd, 0x495f, 0xac, 0x72, 0xdc, 0x6b, 0xd1, 0x13, 0xdd,
    0x82}; // {CD073BE4-9EDD-495F-AC72-DC6BD113DD82}
} // namespace SynchronizeRepositoryFinished
namespace SynchronizeRepositoryStarted {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type {0x3a129a88, 0x1dc3, 0x4e22, 0xa9, 0x33, 0x26, 0x52, 0x26, 0x9e, 0x3e,
    0x08}; // {3a129a88-1dc3-4e22-a933-2652269e3e08}
} // namespace SynchronizeRepositoryStarted
namespace SynchronizeRepositoryStatus {
inline constexpr char Id[] = "id";
inline constexpr char Message[] = "message";
inline constexpr QUuid Type {0xdbbccef7, 0x55f1, 0x4ced, 0xa2, 0xcc, 0xcf, 0x3e, 0x70, 0x24, 0xd5,
    0x28}; // {DBBCCEF7-55F1-4CED-A2CC-CF3E7024D528}
} // namespace SynchronizeRepositoryStatus
namespace Update {
inline constexpr char Id[] = "id";
inline constexpr QUuid Type {0xdaf6f597, 0xe39d, 0x4041, 0x82, 0xa7, 0xf8, 0x2b, 0xf5, 0x71, 0x64,
    0x2d}; // {daf6f597-e39d-4041-82a7-f82bf571642d}
} // namespace Update
namespace UpdateConnections {
inline constexpr QUuid Type {0x3e7b39aa, 0x15ee, 0x46d3, 0xa1, 0x1e, 0xc9, 0x39, 0x30, 0x08, 0xfe,
    0xe0}; // {3e7b39aa-15ee-46d3-a11e-c9393008fee0}
} // namespace UpdateConnections
} // namespace Storage
namespace System {
namespace CheckLive {
inline constexpr QUuid Type {0xdc172643, 0xa5ca, 0x4208, 0xaa, 0xbf, 0x0d, 0x54, 0xe3, 0x8e, 0x17,
    0xe9}; // {dc172643-a5ca-4208-aabf-0d54e38e17e9}
} // namespace CheckLive
namespace CloseAll {
inline constexpr QUuid Type {0x23d7ef70, 0x3337, 0x4dc9, 0xba, 0xbc, 0xd1, 0x22, 0xda, 0xf6, 0x85,
    0xad}; // {23d7ef70-3337-4dc9-babc-d122daf685ad}
} // namespace CloseAll
namespace Connect {
inline constexpr char Info[] = "info";
inline constexpr QUuid Type {0x47f131a6, 0x328f, 0x462d, 0xb1, 0xf8, 0xff, 0x12, 0x09, 0x5a, 0x31,
    0xb0}; // {47f131a6-328f-462d-b1f8-ff12095a31b0}
namespace Application {
inline constexpr char Key[] = "application";
} // namespace Application
} // namespace Connect
namespace DefaultSettingsChanged {
inline constexpr char Property[] = "PropertyName";
inline constexpr QUuid Type {0x41ec1d83, 0x7bf1, 0x444f, 0xa2, 0x49, 0xe7, 0xe6, 0x6a, 0x83, 0xe9,
    0x95}; // {41ec1d83-7bf1-444f-a249-e7e66a83e995}
} // namespace DefaultSettingsChanged
namespace Disconnect {
inline constexpr QUuid Type {0xd192f62b, 0x08a0, 0x4c27, 0x88, 0x29, 0xe2, 0x30, 0x3d, 0x28, 0x8a,
    0x87}; // {d192f62b-08a0-4c27-8829-e2303d288a87}
} // namespace Disconnect
namespace RebrandingOptionsChanged {
inline constexpr QUuid Type {0x41ec1d83, 0x7bf1, 0x444f, 0xa2, 0x49, 0xe7, 0xe6, 0x6a, 0x83, 0xe9,
    0x95}; // {41ec1d83-7bf1-444f-a249-e7e66a83e995}
} // namespace RebrandingOptionsChanged
namespace SslStorageChange {
inline constexpr char Pem[] = "pem";
inline constexpr QUuid Type {0x852b0208, 0x414c, 0x11e8, 0x91, 0xaa, 0x30, 0x9c, 0x23, 0x20, 0xa3,
    0x3e}; // {852b0208-414c-11e8-91aa-309c2320a33e}
} // namespace SslStorageChange
namespace Update {
inline constexpr char BuildUrl[] = "BuildUrl";
inline constexpr QUuid Type {0x9ca3a0dc, 0x8a9f, 0x4a9e, 0x90, 0x55, 0x31, 0xfe, 0xf7, 0x5f, 0x8a,
    0x36}; // {9ca3a0dc-8a9f-4a9e-9055-31fef75f8a36}
} // namespace Update
namespace UpdateProgress {
inline constexpr char Count[] = "count";
inline constexpr char Error[] = "Error";
inline constexpr char Message[] = "message";
inline constexpr char Size[] = "size";
inline constexpr QUuid Type {0x6dbbcbe8, 0x84ba, 0x4eec, 0x83, 0xd9, 0x8b, 0xa1, 0x69, 0x88, 0x46,
    0xf5}; // {6DBBCBE8-84BA-4EEC-83D9-8BA1698846F5}
} // namespace UpdateProgress
namespace UpdateStart {
inline constexpr QUuid Type {0x24b13160, 0x716f, 0x41b7, 0xad, 0x5f, 0xa1, 0x5d, 0x49, 0x6a, 0x1a,
    0xf8}; // {24B13160-716F-41B7-AD5F-A15D496A1AF8}
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
inline constexpr QUuid Type {0x59617d9c, 0xb90c, 0x467a, 0xbb, 0x51, 0xb8, 0x46, 0xc8, 0x7f, 0x24,
    0x01}; // {59617d9c-b90c-467a-bb51-b846c87f2401}
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
inline constexpr QUuid Type {0x08e30daa, 0x82eb, 0x4da9, 0xaf, 0xf9, 0xaa, 0x3d, 0x88, 0x19, 0x93,
    0x86}; // {08e30daa-82eb-4da9-aff9-aa3d88199386}
inline constexpr char UploadedFileCount[] = "UploadedFileCount";
inline constexpr char UploadedFileSize[] = "UploadedFileSize";
inline constexpr char WorkerMode[] = "WorkerMode";
} // namespace ReportProgress2
} // namespace Worker

// Every type above, duplicates included, in the order of the catalogue.
QList<QUuid> allTypes();

} // namespace NVB::Common::Communication::Notification::Format
