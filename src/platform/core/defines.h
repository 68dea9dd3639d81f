#pragma once

#include <QString>

// Edition flags and installation paths.
namespace SHARED::defines {

namespace common {
// The edition is a setting of the installation: the attribute "edition" of the
// installation config file ("standalone" or "managed"), overridden by the
// environment variable NVB_EDITION. Anything else means standalone.
bool is_standalone();
bool is_mns();
} // namespace common

namespace Path {
// The programs' directory, always ending in a separator.
QString bin_path();

namespace ETC::CONFIG {
// The installation config file: the user's copy in the config directory when
// there is one, else the copy shipped in the share directory.
QString nvbBackup_conf();
} // namespace ETC::CONFIG
} // namespace Path

} // namespace SHARED::defines
