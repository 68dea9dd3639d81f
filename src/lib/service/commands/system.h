#pragma once

// V1 commands about engine settings, configuration, certificates.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::System {

namespace AppendToSslStorage {
inline constexpr char Name[] = "AppendToSslStorage";
namespace Reply {
inline constexpr char Success[] = "success";
} // namespace Reply
namespace Request {
inline constexpr char EndPoint[] = "endpoint";
inline constexpr char Pem[] = "pem";
} // namespace Request
} // namespace AppendToSslStorage
namespace ChangeCommonMode {
inline constexpr char Name[] = "ChangeCommonMode";
namespace Request {
inline constexpr char CommonMode[] = "commonMode";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace ChangeCommonMode
namespace ExportConfiguration {
inline constexpr char Name[] = "ExportConfiguration";
namespace Reply {
inline constexpr char Error[] = "error";
inline constexpr char File[] = "file";
} // namespace Reply
namespace Request {
inline constexpr char ExcludedPlans[] = "excludedPlans";
inline constexpr char Path[] = "path";
inline constexpr char Profile[] = "profile";
inline constexpr char RemovePasswords[] = "removePasswords";
} // namespace Request
} // namespace ExportConfiguration
namespace ForceUpdate {
inline constexpr char Name[] = "ForceUpdate";
namespace Request {
inline constexpr char NewBuildUrl[] = "newBuildUrl";
} // namespace Request
} // namespace ForceUpdate
namespace GetAndApplyBackupConfiguration {
inline constexpr char Name[] = "GetAndApplyBackupConfiguration";
namespace Reply {
inline constexpr char Error[] = "error";
} // namespace Reply
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetAndApplyBackupConfiguration
namespace GetAndApplyRemoteDeployConfigurations {
inline constexpr char Name[] = "GetAndApplyRemoteDeployConfigurations";
namespace Reply {
inline constexpr char Message[] = "message";
inline constexpr char Success[] = "success";
} // namespace Reply
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetAndApplyRemoteDeployConfigurations
namespace GetPeerSslCertificate {
inline constexpr char Name[] = "GetPeerSslCertificate";
namespace Reply {
inline constexpr char Pem[] = "pem";
inline constexpr char Success[] = "success";
} // namespace Reply
namespace Request {
inline constexpr char EndPoint[] = "endpoint";
} // namespace Request
} // namespace GetPeerSslCertificate
namespace GetSettings {
inline constexpr char Name[] = "GetSettings";
namespace Reply {
inline constexpr char AllowUserNotification[] = "AllowUserNotification";
inline constexpr char AvailableEditions[] = "AvailableEditions";
inline constexpr char DefaultEdition[] = "DefaultEdition";
inline constexpr char Error[] = "error";
inline constexpr char ErrorData[] = "ErrorData";
inline constexpr char ErrorName[] = "ErrorName";
namespace Result {
inline constexpr char Key[] = "Result";
} // namespace Result
} // namespace Reply
namespace Request {
inline constexpr char Login[] = "login";
inline constexpr char Pass[] = "pass";
} // namespace Request
} // namespace GetSettings
namespace ImportConfiguration {
inline constexpr char Name[] = "ImportConfiguration";
namespace Reply {
inline constexpr char PlanError[] = "planError";
inline constexpr char PlanFailed[] = "planFailed";
inline constexpr char PlanSize[] = "planSize";
inline constexpr char SettingsError[] = "settingsError";
inline constexpr char SettingsFailed[] = "settingsFailed";
inline constexpr char SettingsSize[] = "settingsSize";
inline constexpr char StorageError[] = "storageError";
inline constexpr char StorageFailed[] = "storageFailed";
inline constexpr char StorageSize[] = "storageSize";
namespace Result {
inline constexpr char Key[] = "result";
inline constexpr char Message[] = "message";
} // namespace Result
} // namespace Reply
namespace Request {
inline constexpr char FilePath[] = "filePath";
inline constexpr char Profile[] = "profile";
inline constexpr char ReplaceBackupPrefix[] = "replaceBackupPrefix";
} // namespace Request
} // namespace ImportConfiguration
namespace MoveDatabase {
inline constexpr char Name[] = "MoveDatabase";
namespace Request {
inline constexpr char Path[] = "Path";
} // namespace Request
} // namespace MoveDatabase
namespace ReadFromSslStorage {
inline constexpr char Name[] = "ReadFromSslStorage";
namespace Reply {
inline constexpr char Certificates[] = "certificates";
} // namespace Reply
} // namespace ReadFromSslStorage
namespace RemoveFromSslStorage {
inline constexpr char Name[] = "RemoveFromSslStorage";
namespace Reply {
inline constexpr char Success[] = "success";
} // namespace Reply
namespace Request {
inline constexpr char Pems[] = "pem";
} // namespace Request
} // namespace RemoveFromSslStorage
namespace SendDiagnosticLog {
inline constexpr char Name[] = "SendDiagnosticLog";
namespace Reply {
inline constexpr char Error[] = "error";
} // namespace Reply
namespace Request {
inline constexpr char Email[] = "email";
inline constexpr char Message[] = "message";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace SendDiagnosticLog
namespace UninstallClient {
inline constexpr char Name[] = "UninstallClient";
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace UninstallClient
namespace UninstallNotification {
inline constexpr char Name[] = "UninstallNotification";
} // namespace UninstallNotification
namespace WriteToSslStorage {
inline constexpr char Name[] = "WriteToSslStorage";
namespace Reply {
inline constexpr char Success[] = "success";
} // namespace Reply
namespace Request {
inline constexpr char Certificates[] = "pem";
} // namespace Request
} // namespace WriteToSslStorage

} // namespace NVB::Common::Communication::Commands::Format::System
