#pragma once

// V1 commands about licence and account handling.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::License {

namespace ChangeAccount {
inline constexpr char Name[] = "ChangeAccount";
} // namespace ChangeAccount
namespace ChangeUserPassword {
inline constexpr char Name[] = "ChangeUserPassword";
} // namespace ChangeUserPassword
namespace CheckUserExists {
inline constexpr char Name[] = "CheckUserExists";
} // namespace CheckUserExists
namespace RegenerateHID {
inline constexpr char Name[] = "RegenerateHID";
} // namespace RegenerateHID
namespace UserSignUp {
inline constexpr char Name[] = "UserSignUp";
} // namespace UserSignUp

} // namespace NVB::Common::Communication::Commands::Format::License
