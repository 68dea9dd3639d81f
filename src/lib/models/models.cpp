#include "models/models.h"

#include <QCoreApplication>

namespace NVB::GUI {

const char* const Key = "loaded";
const char* const Checked = "checked";
const char* const Row = "row";

namespace Models {

namespace {
QString text(const char* source)
{
    return QCoreApplication::translate("NVB::GUI::Models", source);
}
} // namespace

namespace Table {

namespace NvbPlanModelInfo {
const QString Type = QStringLiteral("NvbPlanTableModel");
namespace Name {
const QString ID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "ID"));
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString SubType = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "SubType"));
const QString Shedule = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Shedule"));
const QString Status = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Status"));
const QString StorageID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Storage name"));
const QString LastRunMessage = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run message"));
const QString LastRunStatus = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run status"));
const QString LastRunTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run time"));
const QString NextRunTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Next run time"));
const QString LastDuration = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Duration"));
const QString LastUploadedCount = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Files"));
const QString LastFailedCount = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Failed"));
const QString LastUploadedSize = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
} // namespace Name
} // namespace NvbPlanModelInfo

namespace NvbPlanBackupModelInfo {
const QString Type = QStringLiteral("NvbPlanBackupTableModel");
namespace Name {
const QString ID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "ID"));
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString SubType = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "SubType"));
const QString Shedule = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Shedule"));
const QString Status = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Status"));
const QString StorageID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Storage name"));
const QString LastRunTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run time"));
const QString LastRunStatus = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run status"));
const QString LastRunMessage = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run message"));
const QString NextRunTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Next run time"));
const QString LastDuration = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Duration"));
const QString LastUploadedCount = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Files"));
const QString LastFailedCount = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Failed"));
const QString LastUploadedSize = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString PlanXML = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Plan XML"));
const QString ProgressSteps = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Progress Steps"));
} // namespace Name
} // namespace NvbPlanBackupModelInfo

namespace NvbPlanRestoreModelInfo {
const QString Type = QStringLiteral("NvbPlanRestoreTableModel");
namespace Name {
const QString ID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "ID"));
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString SubType = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "SubType"));
const QString Shedule = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Shedule"));
const QString Status = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Status"));
const QString StorageID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Storage name"));
const QString LastRunTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run time"));
const QString LastRunStatus = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run status"));
const QString LastRunMessage = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Last run message"));
const QString NextRunTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Next run time"));
const QString LastDuration = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Duration"));
const QString LastUploadedCount = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Files"));
const QString LastFailedCount = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Failed"));
const QString LastUploadedSize = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString PlanXML = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Plan XML"));
const QString ProgressSteps = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Progress Steps"));
} // namespace Name
} // namespace NvbPlanRestoreModelInfo

namespace NvbRestoreContentFolderModelInfo {
const QString Type = QStringLiteral("NvbRestoreContentFolder");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString IsChangeable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsChangeable"));
const QString IsExpandable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsExpandable"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
const QString Size = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size on Storage"));
const QString OriginalSize = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString DateModifiedUtc = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Date Modified"));
const QString IsEncrypted = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Encrypted"));
const QString IsCompressed = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Compressed"));
} // namespace Name
} // namespace NvbRestoreContentFolderModelInfo

namespace NvbRestoreDiskConfigurationModel {
const QString Type = QStringLiteral("NvbRestoreDiskConfigurationModel");
namespace Name {
const QString Source = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Source"));
const QString Destination = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Destination"));
const QString Length = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Length"));
} // namespace Name
} // namespace NvbRestoreDiskConfigurationModel

namespace NvbStorageConnectionModelInfo {
const QString Type = QStringLiteral("NvbStorageConnectionModel");
namespace Name {
const QString DisplayName = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Display Name"));
const QString ID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "ID"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString Prefix = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Prefix"));
const QString PrefixArray = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Prefixs"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
const QString SpaceLimit = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Space Limit"));
const QString SpaceUsed = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Space Used"));
const QString DetailParams = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Detail Params"));
const QString SyncStatus = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Sync status"));
} // namespace Name
} // namespace NvbStorageConnectionModelInfo

namespace NvbStorageContentByNameModel {
const QString Type = QStringLiteral("NvbStorageBackupTableModel");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString Size = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size on Storage"));
const QString OriginalSize = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString DateModifiedUtc = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Date Modified"));
const QString IsEncrypted = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Encrypted"));
const QString IsCompressed = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Compressed"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
} // namespace Name
} // namespace NvbStorageContentByNameModel

namespace NvbSslTrustedStorageModelInfo {
const QString Type = QStringLiteral("NvbSslTrustedStorageModelInfo");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Certificate Name"));
const QString Lifetime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Lifetime"));
const QString ExpiresOut = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Expires Out"));
} // namespace Name
} // namespace NvbSslTrustedStorageModelInfo

namespace HistoryGetByFileModelInfo {
const QString Type = QStringLiteral("NvbHistoryGetByFileModel");
namespace Name {
const QString Operation = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Operation"));
const QString PlanName = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Plan name"));
const QString File = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "File"));
const QString Size = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString FinishTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Finish Time"));
const QString Duration = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Duration"));
const QString DateModified = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Date Modified"));
const QString Message = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Message"));
} // namespace Name
} // namespace HistoryGetByFileModelInfo

namespace HistoryGetByPlanModelInfo {
const QString Type = QStringLiteral("NvbHistoryGetByPlanModel");
namespace Name {
const QString PlanName = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Plan Name"));
const QString Files = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Files"));
const QString Size = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString Result = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Result"));
const QString StartTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Start Time"));
const QString Duration = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Duration"));
const QString FinishTime = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Finish Time"));
const QString ErrorMessage = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Error Message"));
} // namespace Name
} // namespace HistoryGetByPlanModelInfo

} // namespace Table

namespace Tree {

namespace NvbAmazonLifececlyPolicyModelInfo {
const QString Type = QStringLiteral("NvbAmazonLifececlyPolicyModel");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString IsChangeable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsChangeable"));
const QString IsExpandable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsExpandable"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
} // namespace Name
} // namespace NvbAmazonLifececlyPolicyModelInfo

namespace NvbDiskInfoModelInfo {
const QString Type = QStringLiteral("NvbDiskInfoModel");
namespace Name {
const QString IsEnabled;
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Size = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString Used = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Used"));
const QString FS = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "FS"));
const QString Label = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Label"));
const QString DiskId = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "DiskId"));
const QString VolumeId = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "VolumeId"));
const QString MountPoint = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Mountpoint"));
} // namespace Name
} // namespace NvbDiskInfoModelInfo

namespace NvbFileModelBaseModelInfo {
const QString Type = QStringLiteral("NvbFileModelBase");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString RealPath = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "RealPath"));
const QString IsChangeable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsChangeable"));
const QString IsExpandable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsExpandable"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
const QString IsHidden = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsHidden"));
} // namespace Name
} // namespace NvbFileModelBaseModelInfo

namespace NvbFileSystemCheckedModelInfo {
const QString Type = QStringLiteral("NvbFileSystemCheckedModel");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString RealPath = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "RealPath"));
const QString IsChangeable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsChangeable"));
const QString IsExpandable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsExpandable"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
} // namespace Name
} // namespace NvbFileSystemCheckedModelInfo

namespace NvbRestoreContentModelInfo {
const QString Type = QStringLiteral("NvbRestoreContentModel");
namespace Name {
const QString Name = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Name"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString IsChangeable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsChangeable"));
const QString IsExpandable = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "IsExpandable"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
const QString IsDeleted = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Deleted"));
} // namespace Name
} // namespace NvbRestoreContentModelInfo

namespace NvbStorageBackupFullModelInfo {
const QString Type = QStringLiteral("NvbStorageBackupFullModel");
namespace Name {
const QString DisplayName = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Display Name"));
const QString ID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "ID"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
const QString Size = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size on Storage"));
const QString OriginalSize = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Size"));
const QString DateModifiedUtc = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Date Modified"));
const QString IsEncrypted = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Encrypted"));
const QString IsCompressed = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Compressed"));
const QString IsFull = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "isFull"));
const QString BlRevision = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "BL revision"));
const QString Attribute = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Attribute"));
const QString Delimiter = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Delimiter"));
} // namespace Name
} // namespace NvbStorageBackupFullModelInfo

namespace NvbStorageBackupModelInfo {
const QString Type = QStringLiteral("NvbStorageBackupModel");
namespace Name {
const QString DisplayName = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Display Name"));
const QString ID = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "ID"));
const QString Type = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Type"));
const QString Path = text(QT_TRANSLATE_NOOP("NVB::GUI::Models", "Path"));
} // namespace Name
} // namespace NvbStorageBackupModelInfo

} // namespace Tree
} // namespace Models
} // namespace NVB::GUI
