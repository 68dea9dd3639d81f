#pragma once

#include <QString>

namespace NVB::INFO::UserProfiles {

// The full name of the user running the process, from the account
// database's comment field; the login name when that is empty.
QString currentFullName();

} // namespace NVB::INFO::UserProfiles
