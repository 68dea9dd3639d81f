#pragma once

// V1 commands about storage accounts and their repositories.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::Storage {

namespace DataType {
namespace BackupDestination {
inline constexpr char AccountId[] = "AccountId";
inline constexpr char BackupPrefix[] = "BackupPrefix";
inline constexpr char Bucket[] = "Bucket";
inline constexpr char Id[] = "DestinationId";
inline constexpr char UseSsl[] = "UseSsl";
} // namespace BackupDestination
} // namespace DataType
namespace DeleteFileSystem {
inline constexpr char Name[] = "StorageDeleteFileSystem";
namespace Reply {
inline constexpr char Key[] = "storageDeleteFileSystem";
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Reply
namespace Request {
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace DeleteFileSystem
namespace EditAccount {
inline constexpr char Name[] = "StorageEditAccount";
namespace Reply {
inline constexpr char Key[] = "storageEditAccount";
} // namespace Reply
namespace Request {
inline constexpr char DestinationList[] = "destinationList";
inline constexpr char Login[] = "login";
inline constexpr char Pass[] = "pass";
inline constexpr char Profile[] = "profiles";
inline constexpr char UpdateAdvancedSettings[] = "updateAdvancedSettings";
} // namespace Request
} // namespace EditAccount
namespace GetConnection {
inline constexpr char Name[] = "StorageGetConnection";
namespace Reply {
inline constexpr char DetailParams[] = "DetailParams";
inline constexpr char DisplayName[] = "DisplayName";
inline constexpr char ID[] = "ID";
inline constexpr char Key[] = "storageConnection";
inline constexpr char NeedRetry[] = "NeedRetry";
inline constexpr char Path[] = "Path";
inline constexpr char Prefix[] = "Prefix";
inline constexpr char SpaceLimit[] = "SpaceLimit";
inline constexpr char SpaceUsed[] = "SpaceUsed";
inline constexpr char SyncStatus[] = "SyncStatus";
inline constexpr char Type[] = "Type";
namespace Details {
inline constexpr char Path[] = "Path";
} // namespace Details
namespace PrefixArray {
inline constexpr char Key[] = "PrefixArray";
} // namespace PrefixArray
} // namespace Reply
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetConnection
namespace GetConnectionById {
inline constexpr char Name[] = "StorageGetConnectionById";
namespace Reply {
inline constexpr char Key[] = "storageConnection";
inline constexpr char NeedRetry[] = "NeedRetry";
} // namespace Reply
namespace Request {
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetConnectionById
namespace GetDestinationInfo {
inline constexpr char Name[] = "GetStorageDestinationInfo";
namespace Reply {
inline constexpr char BackupPrefix[] = "BackupPrefix";
inline constexpr char Id[] = "DestinationId";
inline constexpr char Key[] = "storageGetDestinationInfo";
inline constexpr char UseSSL[] = "UseSSL";
} // namespace Reply
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetDestinationInfo
namespace GetMnsDestinationPrefixes {
inline constexpr char Name[] = "GetMnsDestinationPrefixes";
namespace Reply {
inline constexpr char Prefixes[] = "prefixes";
} // namespace Reply
namespace Request {
inline constexpr char Id[] = "id";
} // namespace Request
} // namespace GetMnsDestinationPrefixes
namespace GetSynchronizeRepositoryList {
inline constexpr char Name[] = "GetSynchronizeRepositoryList";
namespace Reply {
inline constexpr char Key[] = "Key";
} // namespace Reply
} // namespace GetSynchronizeRepositoryList
namespace MnsDataDeletingInfo {
inline constexpr char Name[] = "MnsDataDeletingInfo";
namespace Reply {
inline constexpr char Finished[] = "Finished";
inline constexpr char Started[] = "Started";
namespace Status {
inline constexpr char Key[] = "status";
namespace Value {
inline constexpr char CheckLater[] = "CheckLater";
inline constexpr char Success[] = "Success";
} // namespace Value
} // namespace Status
} // namespace Reply
namespace Request {
inline constexpr char PlanId[] = "PlanId";
} // namespace Request
} // namespace MnsDataDeletingInfo
namespace RemoveFiles {
inline constexpr char Name[] = "RemoveFiles";
namespace Request {
inline constexpr char CommandId[] = "CommandId";
inline constexpr char Items[] = "Items";
inline constexpr char StorageId[] = "StorageId";
} // namespace Request
} // namespace RemoveFiles
namespace RemoveFilesCancel {
inline constexpr char Name[] = "RemoveFilesCancel";
namespace Request {
inline constexpr char CommandId[] = "CommandId";
inline constexpr char StorageId[] = "StorageId";
} // namespace Request
} // namespace RemoveFilesCancel
namespace SaveStorage {
inline constexpr char Name[] = "SaveStorage";
namespace Reply {
inline constexpr char Key[] = "SaveStorage";
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Reply
namespace Request {
inline constexpr char DisplayName[] = "displayName";
inline constexpr char ID[] = "ID";
inline constexpr char Params[] = "params";
inline constexpr char Prefix[] = "prefix";
inline constexpr char Profile[] = "profile";
inline constexpr char Type[] = "type";
} // namespace Request
} // namespace SaveStorage
namespace SynchronizeRepository {
inline constexpr char Name[] = "SynchronizeRepository";
namespace Request {
inline constexpr char Id[] = "id";
} // namespace Request
} // namespace SynchronizeRepository
namespace SynchronizeRepositoryCancel {
inline constexpr char Name[] = "SynchronizeRepositoryCancel";
namespace Request {
inline constexpr char Id[] = "id";
} // namespace Request
} // namespace SynchronizeRepositoryCancel

} // namespace NVB::Common::Communication::Commands::Format::Storage
