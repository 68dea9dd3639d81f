#pragma once

// V1 commands about the snapshot driver.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::Snapshot {

namespace DataType {
namespace Install {
namespace NVL {
inline constexpr char CompilerPath[] = "compilerPath";
inline constexpr char KernelHeaderPath[] = "KernelHeaderPath";
inline constexpr char MakePath[] = "makePath";
inline constexpr char SourcePath[] = "SourcePath";
} // namespace NVL
} // namespace Install
namespace Status {
inline constexpr char ErrorCode[] = "ErrorCode";
inline constexpr char Message[] = "Message";
inline constexpr char Success[] = "Success";
} // namespace Status
} // namespace DataType
namespace Install {
inline constexpr char Name[] = "SnapshotInstall";
namespace Reply {
inline constexpr char Key[] = "snapshotInstall";
} // namespace Reply
namespace Request {
inline constexpr char Params[] = "params";
inline constexpr char Type[] = "type";
} // namespace Request
} // namespace Install
namespace IsInit {
inline constexpr char Name[] = "SnapshotIsInit";
namespace Reply {
inline constexpr char Key[] = "snapshotIsInit";
} // namespace Reply
namespace Request {
inline constexpr char Type[] = "type";
} // namespace Request
} // namespace IsInit
namespace Remove {
inline constexpr char Name[] = "SnapshotRemove";
namespace Reply {
inline constexpr char Key[] = "snapshotRemove";
} // namespace Reply
namespace Request {
inline constexpr char Owner[] = "Owner";
inline constexpr char ShanpshotId[] = "ShanpshotId";
inline constexpr char Type[] = "type";
} // namespace Request
} // namespace Remove
namespace Take {
inline constexpr char Name[] = "SnapshotTake";
namespace Reply {
inline constexpr char Key[] = "snapshotTake";
inline constexpr char ShanpshotDevice[] = "ShanpshotName";
inline constexpr char ShanpshotId[] = "ShanpshotId";
} // namespace Reply
namespace Request {
inline constexpr char DiskId[] = "DiskId";
inline constexpr char Owner[] = "Owner";
inline constexpr char Pid[] = "Pid";
inline constexpr char Type[] = "type";
inline constexpr char VolumeId[] = "VolumeId";
} // namespace Request
} // namespace Take

} // namespace NVB::Common::Communication::Commands::Format::Snapshot
