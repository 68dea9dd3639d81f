#pragma once

#include <QString>

// Column numbers, header texts and registered names of every model of the
// library. Header texts are translated once, when the library is loaded.
namespace NVB::GUI {

// Dynamic property names shared by item trees.
extern const char* const Key;
extern const char* const Checked;
extern const char* const Row;

namespace Models {
namespace Table {

namespace NvbPlanModelInfo {
extern const QString Type;
namespace Column {
constexpr int ID = 0;
constexpr int Name = 1;
constexpr int SubType = 2;
constexpr int Shedule = 3;
constexpr int Status = 4;
constexpr int StorageID = 5;
constexpr int LastRunMessage = 6;
constexpr int LastRunStatus = 7;
constexpr int LastRunTime = 8;
constexpr int NextRunTime = 9;
constexpr int LastDuration = 10;
constexpr int LastUploadedCount = 11;
constexpr int LastFailedCount = 12;
constexpr int LastUploadedSize = 13;
constexpr int Type = 14;
constexpr int ProgressSteps = 15;
constexpr int Count = 15;
} // namespace Column
namespace Name {
extern const QString ID;
extern const QString Name;
extern const QString SubType;
extern const QString Shedule;
extern const QString Status;
extern const QString StorageID;
extern const QString LastRunMessage;
extern const QString LastRunStatus;
extern const QString LastRunTime;
extern const QString NextRunTime;
extern const QString LastDuration;
extern const QString LastUploadedCount;
extern const QString LastFailedCount;
extern const QString LastUploadedSize;
extern const QString Type;
} // namespace Name
} // namespace NvbPlanModelInfo

namespace NvbPlanBackupModelInfo {
extern const QString Type;
namespace Column {
constexpr int ID = 0;
constexpr int Name = 1;
constexpr int SubType = 2;
constexpr int Shedule = 3;
constexpr int Status = 4;
constexpr int StorageID = 5;
constexpr int LastRunTime = 6;
constexpr int LastRunStatus = 7;
constexpr int LastRunMessage = 8;
constexpr int NextRunTime = 9;
constexpr int LastDuration = 10;
constexpr int LastUploadedCount = 11;
constexpr int LastFailedCount = 12;
constexpr int LastUploadedSize = 13;
constexpr int PlanXML = 14;
constexpr int ProgressSteps = 15;
constexpr int Count = 16;
} // namespace Column
namespace Name {
extern const QString ID;
extern const QString Name;
extern const QString SubType;
extern const QString Shedule;
extern const QString Status;
extern const QString StorageID;
extern const QString LastRunTime;
extern const QString LastRunStatus;
extern const QString LastRunMessage;
extern const QString NextRunTime;
extern const QString LastDuration;
extern const QString LastUploadedCount;
extern const QString LastFailedCount;
extern const QString LastUploadedSize;
extern const QString PlanXML;
extern const QString ProgressSteps;
} // namespace Name
} // namespace NvbPlanBackupModelInfo

namespace NvbPlanRestoreModelInfo {
extern const QString Type;
namespace Column {
constexpr int ID = 0;
constexpr int Name = 1;
constexpr int SubType = 2;
constexpr int Shedule = 3;
constexpr int Status = 4;
constexpr int StorageID = 5;
constexpr int LastRunTime = 6;
constexpr int LastRunStatus = 7;
constexpr int LastRunMessage = 8;
constexpr int NextRunTime = 9;
constexpr int LastDuration = 10;
constexpr int LastUploadedCount = 11;
constexpr int LastFailedCount = 12;
constexpr int LastUploadedSize = 13;
constexpr int PlanXML = 14;
constexpr int ProgressSteps = 15;
constexpr int Count = 16;
} // namespace Column
namespace Name {
extern const QString ID;
extern const QString Name;
extern const QString SubType;
extern const QString Shedule;
extern const QString Status;
extern const QString StorageID;
extern const QString LastRunTime;
extern const QString LastRunStatus;
extern const QString LastRunMessage;
extern const QString NextRunTime;
extern const QString LastDuration;
extern const QString LastUploadedCount;
extern const QString LastFailedCount;
extern const QString LastUploadedSize;
extern const QString PlanXML;
extern const QString ProgressSteps;
} // namespace Name
} // namespace NvbPlanRestoreModelInfo

namespace NvbRestoreContentFolderModelInfo {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Path = 1;
constexpr int IsChangeable = 2;
constexpr int IsExpandable = 3;
constexpr int Type = 4;
constexpr int Size = 5;
constexpr int OriginalSize = 6;
constexpr int DateModifiedUtc = 7;
constexpr int IsEncrypted = 8;
constexpr int IsCompressed = 9;
constexpr int Count = 10;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Path;
extern const QString IsChangeable;
extern const QString IsExpandable;
extern const QString Type;
extern const QString Size;
extern const QString OriginalSize;
extern const QString DateModifiedUtc;
extern const QString IsEncrypted;
extern const QString IsCompressed;
} // namespace Name
} // namespace NvbRestoreContentFolderModelInfo

namespace NvbRestoreDiskConfigurationModel {
extern const QString Type;
namespace Column {
constexpr int Source = 0;
constexpr int Destination = 1;
constexpr int Length = 2;
constexpr int Count = 3;
} // namespace Column
namespace Name {
extern const QString Source;
extern const QString Destination;
extern const QString Length;
} // namespace Name
} // namespace NvbRestoreDiskConfigurationModel

namespace NvbStorageConnectionModelInfo {
extern const QString Type;
namespace Column {
constexpr int DisplayName = 0;
constexpr int ID = 1;
constexpr int Path = 2;
constexpr int Prefix = 3;
constexpr int PrefixArray = 4;
constexpr int Type = 5;
constexpr int SpaceLimit = 6;
constexpr int SpaceUsed = 7;
constexpr int DetailParams = 8;
constexpr int SyncStatus = 9;
constexpr int Count = 10;
} // namespace Column
namespace Name {
extern const QString DisplayName;
extern const QString ID;
extern const QString Path;
extern const QString Prefix;
extern const QString PrefixArray;
extern const QString Type;
extern const QString SpaceLimit;
extern const QString SpaceUsed;
extern const QString DetailParams;
extern const QString SyncStatus;
} // namespace Name
} // namespace NvbStorageConnectionModelInfo

namespace NvbStorageContentByNameModel {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Path = 1;
constexpr int Size = 2;
constexpr int OriginalSize = 3;
constexpr int DateModifiedUtc = 4;
constexpr int IsEncrypted = 5;
constexpr int IsCompressed = 6;
constexpr int Type = 7;
constexpr int Count = 8;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Path;
extern const QString Size;
extern const QString OriginalSize;
extern const QString DateModifiedUtc;
extern const QString IsEncrypted;
extern const QString IsCompressed;
extern const QString Type;
} // namespace Name
} // namespace NvbStorageContentByNameModel

namespace NvbSslTrustedStorageModelInfo {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Lifetime = 1;
constexpr int ExpiresOut = 2;
constexpr int Count = 3;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Lifetime;
extern const QString ExpiresOut;
} // namespace Name
} // namespace NvbSslTrustedStorageModelInfo

namespace HistoryGetByFileModelInfo {
extern const QString Type;
namespace Column {
constexpr int Operation = 0;
constexpr int PlanName = 1;
constexpr int File = 2;
constexpr int Size = 3;
constexpr int FinishTime = 4;
constexpr int Duration = 5;
constexpr int DateModified = 6;
constexpr int Message = 7;
constexpr int Count = 8;
} // namespace Column
namespace Name {
extern const QString Operation;
extern const QString PlanName;
extern const QString File;
extern const QString Size;
extern const QString FinishTime;
extern const QString Duration;
extern const QString DateModified;
extern const QString Message;
} // namespace Name
} // namespace HistoryGetByFileModelInfo

namespace HistoryGetByPlanModelInfo {
extern const QString Type;
namespace Column {
constexpr int PlanName = 0;
constexpr int Files = 1;
constexpr int Size = 2;
constexpr int Result = 3;
constexpr int StartTime = 4;
constexpr int Duration = 5;
constexpr int FinishTime = 6;
constexpr int ErrorMessage = 7;
constexpr int Count = 8;
} // namespace Column
namespace Name {
extern const QString PlanName;
extern const QString Files;
extern const QString Size;
extern const QString Result;
extern const QString StartTime;
extern const QString Duration;
extern const QString FinishTime;
extern const QString ErrorMessage;
} // namespace Name
} // namespace HistoryGetByPlanModelInfo

} // namespace Table

namespace Tree {

namespace NvbAmazonLifececlyPolicyModelInfo {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Path = 1;
constexpr int IsChangeable = 3;
constexpr int IsExpandable = 4;
constexpr int Type = 5;
constexpr int Count = 7;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Path;
extern const QString IsChangeable;
extern const QString IsExpandable;
extern const QString Type;
} // namespace Name
} // namespace NvbAmazonLifececlyPolicyModelInfo

namespace NvbDiskInfoModelInfo {
extern const QString Type;
namespace Column {
constexpr int IsEnabled = 0;
constexpr int Name = 1;
constexpr int Size = 2;
constexpr int Used = 3;
constexpr int FS = 4;
constexpr int Label = 5;
constexpr int DiskId = 6;
constexpr int VolumeId = 7;
constexpr int MountPoint = 8;
constexpr int Count = 9;
} // namespace Column
namespace Name {
extern const QString IsEnabled;
extern const QString Name;
extern const QString Size;
extern const QString Used;
extern const QString FS;
extern const QString Label;
extern const QString DiskId;
extern const QString VolumeId;
extern const QString MountPoint;
} // namespace Name
} // namespace NvbDiskInfoModelInfo

namespace NvbFileModelBaseModelInfo {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Path = 1;
constexpr int RealPath = 2;
constexpr int IsChangeable = 3;
constexpr int IsExpandable = 4;
constexpr int Type = 5;
constexpr int IsHidden = 6;
constexpr int Count = 7;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Path;
extern const QString RealPath;
extern const QString IsChangeable;
extern const QString IsExpandable;
extern const QString Type;
extern const QString IsHidden;
} // namespace Name
} // namespace NvbFileModelBaseModelInfo

namespace NvbFileSystemCheckedModelInfo {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Path = 1;
constexpr int RealPath = 2;
constexpr int IsChangeable = 3;
constexpr int IsExpandable = 4;
constexpr int Type = 5;
constexpr int Count = 7;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Path;
extern const QString RealPath;
extern const QString IsChangeable;
extern const QString IsExpandable;
extern const QString Type;
} // namespace Name
} // namespace NvbFileSystemCheckedModelInfo

namespace NvbRestoreContentModelInfo {
extern const QString Type;
namespace Column {
constexpr int Name = 0;
constexpr int Path = 1;
constexpr int IsChangeable = 2;
constexpr int IsExpandable = 3;
constexpr int Type = 4;
constexpr int IsDeleted = 5;
constexpr int Count = 6;
} // namespace Column
namespace Name {
extern const QString Name;
extern const QString Path;
extern const QString IsChangeable;
extern const QString IsExpandable;
extern const QString Type;
extern const QString IsDeleted;
} // namespace Name
} // namespace NvbRestoreContentModelInfo

namespace NvbStorageBackupFullModelInfo {
extern const QString Type;
namespace Column {
constexpr int DisplayName = 0;
constexpr int ID = 1;
constexpr int Type = 2;
constexpr int Path = 3;
constexpr int Size = 4;
constexpr int OriginalSize = 5;
constexpr int DateModifiedUtc = 6;
constexpr int IsEncrypted = 7;
constexpr int IsCompressed = 8;
constexpr int IsFull = 9;
constexpr int BlRevision = 10;
constexpr int Attribute = 11;
constexpr int Delimiter = 12;
constexpr int Count = 14;
} // namespace Column
namespace Name {
extern const QString DisplayName;
extern const QString ID;
extern const QString Type;
extern const QString Path;
extern const QString Size;
extern const QString OriginalSize;
extern const QString DateModifiedUtc;
extern const QString IsEncrypted;
extern const QString IsCompressed;
extern const QString IsFull;
extern const QString BlRevision;
extern const QString Attribute;
extern const QString Delimiter;
} // namespace Name
} // namespace NvbStorageBackupFullModelInfo

namespace NvbStorageBackupModelInfo {
extern const QString Type;
namespace Column {
constexpr int DisplayName = 0;
constexpr int ID = 1;
constexpr int Type = 2;
constexpr int Path = 3;
constexpr int Count = 4;
} // namespace Column
namespace Name {
extern const QString DisplayName;
extern const QString ID;
extern const QString Type;
extern const QString Path;
} // namespace Name
} // namespace NvbStorageBackupModelInfo

} // namespace Tree
} // namespace Models
} // namespace NVB::GUI
