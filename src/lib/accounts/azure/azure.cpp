#include "azure.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;

Azure::Azure(QWidget* parent)
    : Storages::Info(NVL::Cloud::Type::AzureBlob, parent)
{
    addField(tr("Account Name:"), Record::Cloud::AzureBlob::UserName);
    addField(tr("Container:"), Record::Cloud::ContainerName);
    addField(tr("Prefix:"), Record::BackupPrefix);
    addField(tr("Use SSL:"), Record::Cloud::UseSsl, &Storages::Info::trueFalseDelegate);
    addField(tr("Account type:"), Record::Cloud::AzureBlob::AccountType);
}

} // namespace NVB::GUI::Settings::Account
