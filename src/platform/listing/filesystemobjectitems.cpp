#include "filesystemobjectitems.h"

namespace NVB::Constants::SessionAccess::FileSystemObject::Items {

const char* const Name = "name";
const char* const Path = "path";
const char* const RealPath = "real_path";
const char* const IsHidden = "is_hidden";
const char* const IsSymlink = "is_symlink";

namespace Type {
const char* const Key = "type";
} // namespace Type

} // namespace NVB::Constants::SessionAccess::FileSystemObject::Items
