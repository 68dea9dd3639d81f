#pragma once

// The envelope of every V1 command and reply. Callers only touch Params and
// Data; the channel fills and reads the rest.
namespace NVB::Common::Communication::Commands::Format::Header {

inline constexpr char Command[] = "command";
inline constexpr char Id[] = "id";
inline constexpr char SessionId[] = "session_id";
inline constexpr char AgentType[] = "agent_type";
inline constexpr char Params[] = "params";
inline constexpr char Data[] = "data";

namespace ConnectionType {
inline constexpr char key[] = "connection_type";
inline constexpr int Service = 1;
inline constexpr int User = 2;
} // namespace ConnectionType

namespace Type {
inline constexpr char Key[] = "type";
inline constexpr char Request[] = "request";
inline constexpr char Reply[] = "reply";
} // namespace Type

namespace Status {
inline constexpr char Key[] = "status";
inline constexpr char ErrorString[] = "error_string";
namespace Value {
inline constexpr char Success[] = "success";
inline constexpr char Error[] = "error";
} // namespace Value
} // namespace Status

} // namespace NVB::Common::Communication::Commands::Format::Header
