#include "sftp.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;

Sftp::Sftp(QWidget* parent)
    : Storages::Info(NVL::Cloud::Type::Sftp, parent)
{
    addField(tr("User:"), Record::Network::Ftp::User);
    addField(tr("Server:"), Record::Network::Address);
    addField(tr("Port:"), Record::Network::Port);
    addField(tr("Keep Alive:"), Record::Network::KeepAlive, &Storages::Info::trueFalseDelegate);
    addField(tr("Path:"), Record::Network::Ftp::Path);
    addField(tr("Prefix:"), Record::BackupPrefix);
}

} // namespace NVB::GUI::Settings::Account
