#pragma once

// Keys of a proxy setting inside configuration JSON.
namespace NVB::Proxy::JsonValues {

inline constexpr char ProxyAddress[] = "Address";
inline constexpr char ProxyIsPasswordEncrypted[] = "IsPasswordEncrypted";
inline constexpr char ProxyPassword[] = "Password";
inline constexpr char ProxyPort[] = "Port";
inline constexpr char ProxyType[] = "Type";
inline constexpr char ProxyUseAuth[] = "UseAuth";
inline constexpr char ProxyUser[] = "User";

} // namespace NVB::Proxy::JsonValues
