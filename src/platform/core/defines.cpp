#include "defines.h"

#include <QFileInfo>

#include "apppath.h"
#include "filesoperations.h"

namespace SHARED::defines {

namespace {

bool isManagedEdition()
{
    QString edition = qEnvironmentVariable("NVB_EDITION");
    if (edition.isEmpty()) {
        edition = SHARED::functions::files_operations::get_attrib_from_file(
            Path::ETC::CONFIG::nvbBackup_conf(), QStringLiteral("edition"));
    }
    return edition.trimmed().compare(QLatin1String("managed"), Qt::CaseInsensitive) == 0;
}

} // namespace

bool common::is_standalone()
{
    return !isManagedEdition();
}

bool common::is_mns()
{
    return isManagedEdition();
}

QString Path::bin_path()
{
    QString dir = NVB::Defines::AppPath::to().bin();
    if (!dir.endsWith(QLatin1Char('/')))
        dir += QLatin1Char('/');
    return dir;
}

QString Path::ETC::CONFIG::nvbBackup_conf()
{
    const QString name = QStringLiteral("/nvbBackup.conf");
    const QString own = NVB::Defines::AppPath::to().config() + name;
    if (QFileInfo::exists(own))
        return own;
    return NVB::Defines::AppPath::to().share() + name;
}

} // namespace SHARED::defines
