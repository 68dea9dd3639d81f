#include "google.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace GoogleRecord = NVB::Info::StorageAccountConfigFormat::Cloud::GoogleStorage;

Google::Google(QWidget* parent)
    : Storages::Info(NVL::Cloud::Type::GoogleStorage, parent)
{
    // A row shows only when the record has its key, and only the keys form
    // stores an access key, only the OAuth forms a project: the rows follow
    // the AuthType without more.
    addField(tr("Authentication:"), GoogleRecord::AuthType, &Google::authenticationText);
    addField(tr("Access Key:"), GoogleRecord::ASkey::AccessKey);
    addField(tr("Project ID:"), GoogleRecord::SAccount::ProjectId, &Storages::Info::decryptDelegate);
    addField(tr("Bucket:"), Record::Cloud::ContainerName);
    addField(tr("Prefix:"), Record::BackupPrefix);
    addField(tr("Use SSL:"), Record::Cloud::UseSsl, &Storages::Info::trueFalseDelegate);
}

QString Google::authenticationText(const QVariant& authType)
{
    switch (authType.toInt()) {
    case 1:
        return tr("OAuth 2.0 (Service Account)");
    case 2:
        return tr("OAuth 2.0 (Installed Application)");
    default:
        return tr("Access and Secret Key");
    }
}

} // namespace NVB::GUI::Settings::Account
