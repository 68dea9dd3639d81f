#pragma once

// The stored values that switch the default retention rules off.
namespace NVB::Constants::RetentionPolicy {
inline constexpr char SerializationSupportRT_Disabled[] = "-1";
inline constexpr char KeepNumberOfVersions_Disasbled[] = "-1";
} // namespace NVB::Constants::RetentionPolicy
