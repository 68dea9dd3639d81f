#include "amazons3compatible.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;

AmazonS3Compatible::AmazonS3Compatible(NVL::Cloud::Type type, bool showEndpoint, QWidget* parent)
    : Storages::Info(type, parent)
{
    addField(tr("Access Key:"), Record::Cloud::AmazonS3Like::AccessKey);
    if (showEndpoint)
        addField(tr("Endpoint:"), Record::Cloud::Endpoint);
    addField(tr("Bucket:"), Record::Cloud::ContainerName);
    addField(tr("Prefix:"), Record::BackupPrefix);
    addField(tr("Use SSL:"), Record::Cloud::UseSsl, &Storages::Info::trueFalseDelegate);
}

} // namespace NVB::GUI::Settings::Account
