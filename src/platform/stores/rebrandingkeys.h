#pragma once

// Keys of the rebranding values. The Visible/DefaultValue keys of S3Accelerate
// are crossed against those of SSE and StorageClass; stored rebranding data
// uses them that way, so they stay as they are.
namespace NVB::Defines::RebrandingKeys {

namespace General {
inline constexpr char ProductName[] = "ProductName";
inline constexpr char CompanyName[] = "CompanyName";
inline constexpr char CopyrightText[] = "CopyrightText";
inline constexpr char WebSite[] = "WebSite";
inline constexpr char ContactEmail[] = "ContactEmail";
inline constexpr char DefaultLanguage[] = "DefaultLanguage";
inline constexpr char ResourcesHash[] = "Hash";
inline constexpr char ResourcesHashUpdate[] = "HashUpdate";
inline constexpr char ResourcesUpdate[] = "ResourcesUpdate";
} // namespace General

namespace BuildInfo {
inline constexpr char RebrandingArchiveUrl[] = "RebrandingZipUrl";
} // namespace BuildInfo

namespace GUI {
inline constexpr char Enabled[] = "AllowConsole";
inline constexpr char SignUpEnabled[] = "SignUpEnabled";
inline constexpr char BackupPlanEditDenied[] = "DenyBackupPlanEdit";
inline constexpr char RestoreWizardOpenDenied[] = "DenyRestoreWizardOpening";
inline constexpr char StorageMenuItemDeleteDenied[] = "DenyStorageMenuItemDelete";
} // namespace GUI

namespace Compression {
inline constexpr char Visible[] = "AllowCompression";
inline constexpr char DefaultValue[] = "DefaultUseCompression";
} // namespace Compression

namespace Encryption {
inline constexpr char Visible[] = "AllowEncryption";
} // namespace Encryption

namespace SSE {
inline constexpr char Visible[] = "showSSE";
inline constexpr char DefaultValue[] = "SSE";
} // namespace SSE

namespace AmazonS3 {
namespace StorageClass {
inline constexpr char Visible[] = "showSIA";
inline constexpr char DefaultValue[] = "S3StorageClass";
} // namespace StorageClass
namespace S3Accelerate {
inline constexpr char Visible[] = "S3Accelerate";
inline constexpr char DefaultValue[] = "showS3Accelerate";
} // namespace S3Accelerate
} // namespace AmazonS3

namespace FileSystemAccount {
inline constexpr char Enabled[] = "AllowFileSystemAccount";
} // namespace FileSystemAccount

namespace RemoteConnection {
inline constexpr char Enabled[] = "AllowRemoteConnection";
} // namespace RemoteConnection

inline constexpr char AllowBlockLevel[] = "AllowBlockLevel";
inline constexpr char DefaultUseBlockLevel[] = "DefaultUseBlockLevel";
inline constexpr char AllowFilenameEncryption[] = "AllowFilenameEncryption";
inline constexpr char AllowPrePostActions[] = "AllowPrePostActions";
inline constexpr char AllowRAToBootable[] = "AllowRAToBootable";
inline constexpr char AllowRestoreToAzure[] = "AllowRestoreToAzure";
inline constexpr char AllowRestoreToEC2[] = "AllowRestoreToEC2";

} // namespace NVB::Defines::RebrandingKeys
