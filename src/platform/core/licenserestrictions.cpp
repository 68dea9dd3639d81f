#include "licenserestrictions.h"

#include <QString>

#include "defines.h"
#include "filesoperations.h"

namespace NVB::License {

namespace {

QString attribute(const char* name)
{
    return SHARED::functions::files_operations::get_attrib_from_file(
        SHARED::defines::Path::ETC::CONFIG::nvbBackup_conf(), QLatin1String(name))
        .trimmed();
}

} // namespace

bool LicenseRestrictions::isFreeEdition()
{
    return attribute("license").compare(QLatin1String("free"), Qt::CaseInsensitive) == 0;
}

bool LicenseRestrictions::isCompressionAvailable()
{
    return !isFreeEdition();
}

bool LicenseRestrictions::isEncryptionAvailable()
{
    return !isFreeEdition();
}

bool LicenseRestrictions::isPrePostActionsAvailable()
{
    return !isFreeEdition();
}

bool LicenseRestrictions::isNotificationsAvailable()
{
    // Even the free edition tells its user how a backup went.
    return true;
}

int LicenseRestrictions::networkShareLimit()
{
    bool ok = false;
    const int limit = attribute("networkShareLimit").toInt(&ok);
    if (ok)
        return limit < 0 ? -1 : limit;
    return isFreeEdition() ? 1 : -1;
}

} // namespace NVB::License
