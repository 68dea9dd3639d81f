#pragma once

// The failure texts of the channel. V1 and V2 callers have grown their own
// wordings and both are kept as they are, misspellings included, because
// users and support quote them.
namespace NVB::Common::Communication::Errors {

inline constexpr char ManagerMissing[] = "Commnunication manager is 0x00";
inline constexpr char CommandNotRegistered[] = "Commnunication command don't registrate";
inline constexpr char ManagerMissingV2[] = "Communication manager is 0x00";
inline constexpr char CommandNotRegisteredV2[] = "Communication command don't registrate";
inline constexpr char ReplyFormat[] = "Local command reply format error";
inline constexpr char Internal[] = "Internal error";
inline constexpr char InvalidResponseFormat[] = "Internal error: invalid command response format";
inline constexpr char NeedRetry[] = "GetConnection command return need retry... timeout 1 min";

} // namespace NVB::Common::Communication::Errors
