#include "mns.h"

#include "defines.h"
#include "filesoperations.h"

namespace NVB::Defines {

QString MNS::prefix()
{
    return SHARED::functions::files_operations::get_attrib_from_file(
        SHARED::defines::Path::ETC::CONFIG::nvbBackup_conf(), QStringLiteral("mnsPrefix"))
        .trimmed();
}

} // namespace NVB::Defines
