#include "local.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;

Local::Local(QWidget* parent)
    : Storages::Info(NVL::Cloud::Type::FileSystem, parent)
{
    addField(tr("Path:"), Record::FileSystem::Path);
    addField(tr("Prefix:"), Record::BackupPrefix);
}

} // namespace NVB::GUI::Settings::Account
