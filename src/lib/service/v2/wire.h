#pragma once

// Keys of the V2 frames. V2 frames share the channel with V1 frames and are
// told apart by their "type" value.
namespace NVB::Common::Communication::V2::Wire {

namespace Type {
inline constexpr char Key[] = "type";
inline constexpr char Request[] = "request2";
inline constexpr char Reply[] = "reply2";
inline constexpr char Notification[] = "notification2";
} // namespace Type

inline constexpr char Id[] = "id";
inline constexpr char CommandId[] = "command_id";
inline constexpr char SessionId[] = "session_id";
inline constexpr char Request[] = "request";
inline constexpr char Status[] = "status";
inline constexpr char ErrorMessage[] = "error_message";
inline constexpr char Response[] = "response";
inline constexpr char TypeId[] = "type_id";
inline constexpr char Payload[] = "payload";

} // namespace NVB::Common::Communication::V2::Wire
