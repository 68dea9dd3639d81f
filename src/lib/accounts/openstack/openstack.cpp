#include "openstack.h"

#include "cloud/storageaccountconfigformat.h"

namespace NVB::GUI::Settings::Account {

namespace Record = NVB::Info::StorageAccountConfigFormat;

OpenStack::OpenStack(NVL::Cloud::Type type, bool keystoneRows, bool internalUrlRow, QWidget* parent)
    : Storages::Info(type, parent)
{
    addField(tr("User Name:"), Record::Cloud::OpenStack::UserName);
    addField(tr("Endpoint:"), Record::Cloud::Endpoint);
    if (keystoneRows) {
        addField(tr("Keystone version:"), Record::Cloud::OpenStack::AuthType, &OpenStack::keystoneVersion);
        addField(tr("Region:"), Record::Cloud::OpenStack::Keystore::Region);
    }
    addField(tr("Container:"), Record::Cloud::ContainerName);
    if (internalUrlRow)
        addField(
            tr("Use internal URLs:"), Record::Cloud::OpenStack::UseInternalUrl, &Storages::Info::trueFalseDelegate);
    addField(tr("Prefix:"), Record::BackupPrefix);
}

QString OpenStack::keystoneVersion(const QVariant& authType)
{
    switch (authType.toInt()) {
    case 2:
        return QStringLiteral("v2.0");
    case 3:
        return QStringLiteral("v3");
    default:
        return tr("none (auth v1.0)");
    }
}

} // namespace NVB::GUI::Settings::Account
