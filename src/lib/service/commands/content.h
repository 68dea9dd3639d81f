#pragma once

// V1 commands about browsing backed-up and local content.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::Content {

namespace DataType {
namespace FileSystemElement {
inline constexpr char IsChangeable[] = "IsChangeable";
inline constexpr char IsDeleted[] = "IsDeleted";
inline constexpr char IsExpandable[] = "IsExpandable";
inline constexpr char Name[] = "Name";
inline constexpr char Path[] = "Path";
namespace Type {
inline constexpr char Key[] = "Type";
} // namespace Type
} // namespace FileSystemElement
namespace RestoreFileElement {
inline constexpr char Attribute[] = "attribute";
inline constexpr char BlRevision[] = "bl_revision";
inline constexpr char DateModifiedUtc[] = "date_modified_utc";
inline constexpr char Delimiter[] = "delimiter";
inline constexpr char IsCompressed[] = "is_compressed";
inline constexpr char IsEncrypted[] = "is_encrypted";
inline constexpr char IsFull[] = "is_full";
inline constexpr char OriginalSize[] = "original_size";
inline constexpr char Size[] = "size";
} // namespace RestoreFileElement
} // namespace DataType
namespace DecryptDiskImageContent {
inline constexpr char Name[] = "DecryptDiskImageContent";
namespace Reply {
namespace Status {
inline constexpr char Key[] = "Status";
namespace Value {
inline constexpr char Decrypted[] = "Decrypted";
inline constexpr char DecryptedAll[] = "DecryptedAll";
inline constexpr char Error[] = "Error";
} // namespace Value
} // namespace Status
} // namespace Reply
namespace Request {
inline constexpr char DestinationId[] = "DestinationId";
inline constexpr char EncryptionPassword[] = "EncryptionPassword";
} // namespace Request
} // namespace DecryptDiskImageContent
namespace GetContentType {
inline constexpr char Name[] = "GetContentType";
namespace Reply {
inline constexpr char Key[] = "ContentType";
namespace Values {
inline constexpr char DiskImage[] = "DiskImage";
inline constexpr char DiskImageEncrypted[] = "DiskImageEncrypted";
inline constexpr char FileLivel[] = "FileLivel";
inline constexpr char SystemFileFull[] = "SystemFileFull";
} // namespace Values
} // namespace Reply
namespace Request {
inline constexpr char DestinationId[] = "DestinationId";
} // namespace Request
} // namespace GetContentType
namespace GetDiskImageContent {
inline constexpr char Name[] = "GetDiskImageContent";
namespace Reply {
inline constexpr char DatabaseId[] = "DatabaseId";
inline constexpr char Key[] = "DiskImageContent";
} // namespace Reply
namespace Request {
inline constexpr char DestinationId[] = "DestinationId";
namespace SpecifiedTime {
inline constexpr char Key[] = "SpecifiedTime";
inline constexpr char PointInTimeValue[] = "PointInTimeValue";
namespace Value {
inline constexpr char LatestVersion[] = "LatestVersion";
inline constexpr char PointInTime[] = "PointInTime";
} // namespace Value
} // namespace SpecifiedTime
} // namespace Request
} // namespace GetDiskImageContent
namespace GetDiskInfo {
inline constexpr char Name[] = "GetDiskInfo";
namespace Reply {
inline constexpr char Key[] = "DiskInfo";
} // namespace Reply
} // namespace GetDiskInfo
namespace GetFolder {
inline constexpr char Name[] = "ContentGetFolder";
namespace Reply {
inline constexpr char Key[] = "contentFolder";
} // namespace Reply
namespace Request {
inline constexpr char Path[] = "path";
} // namespace Request
} // namespace GetFolder
namespace GetFolderMultiPart {
inline constexpr char Name[] = "ContentGetFolderMultiPart";
namespace Reply {
inline constexpr char Key[] = "contentFolder";
} // namespace Reply
namespace Request {
inline constexpr char CurrentPart[] = "currentPartTree";
inline constexpr char Path[] = "path";
} // namespace Request
} // namespace GetFolderMultiPart
namespace GetRestoreContent {
inline constexpr char Name[] = "GetRestoreContent";
namespace Reply {
inline constexpr char Key[] = "contentRestore";
} // namespace Reply
namespace Request {
inline constexpr char CurrentPart[] = "currentPart";
inline constexpr char Destination[] = "destination";
inline constexpr char DirOnly[] = "dir_only";
inline constexpr char Path[] = "path";
inline constexpr char Profile[] = "profile";
inline constexpr char RestoreType[] = "restoreType";
inline constexpr char Type[] = "type";
} // namespace Request
} // namespace GetRestoreContent
namespace GetRestoreContentByName {
inline constexpr char Name[] = "GetRestoreContentByName";
namespace Reply {
inline constexpr char CurrentPart[] = "currentPart";
inline constexpr char DataArray[] = "contentRestore";
} // namespace Reply
namespace Request {
inline constexpr char CurrentPart[] = "currentPart";
inline constexpr char Destination[] = "destination";
inline constexpr char NameFilter[] = "nameFilter";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetRestoreContentByName
namespace GetRestoreContentManualMode {
inline constexpr char Name[] = "GetRestoreContentManualMode";
namespace Reply {
inline constexpr char Key[] = "contentRestore";
} // namespace Reply
namespace Request {
inline constexpr char CurrentPart[] = "currentPart";
inline constexpr char Destination[] = "destination";
inline constexpr char Path[] = "path";
inline constexpr char Profile[] = "profile";
inline constexpr char RestoreType[] = "restoreType";
inline constexpr char Type[] = "type";
} // namespace Request
} // namespace GetRestoreContentManualMode

} // namespace NVB::Common::Communication::Commands::Format::Content
