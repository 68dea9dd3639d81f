#include "backblazeb2.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;

BackblazeB2::BackblazeB2(QWidget* parent)
    : Storages::Info(NVL::Cloud::Type::BackBlaze, parent)
{
    addField(tr("Key ID:"), Record::Cloud::BackBlaze::AccountId);
    addField(tr("Bucket:"), Record::Cloud::ContainerName);
    addField(tr("Prefix:"), Record::BackupPrefix);
}

} // namespace NVB::GUI::Settings::Account
