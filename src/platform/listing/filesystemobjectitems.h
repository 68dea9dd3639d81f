#pragma once

// Keys of one element of a file-system listing, and the kinds of element.
namespace NVB::Constants::SessionAccess::FileSystemObject::Items {

extern const char* const Name;
extern const char* const Path;
extern const char* const RealPath;
extern const char* const IsHidden;
extern const char* const IsSymlink;

namespace Type {
extern const char* const Key;

// 0 to 2 are the kinds every file tree knows; the rest are the local lister's.
enum Value {
    Unknown = 0,
    Folder = 1,
    Computer = 2,
    Volume = 3,
    Share = 4,
    // Anything that cannot hold children: regular files, devices, sockets, pipes.
    File = 5,
};
} // namespace Type

} // namespace NVB::Constants::SessionAccess::FileSystemObject::Items
