#include "accountfactory.h"

#include <QAbstractItemModel>
#include <QMessageBox>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QPushButton>

#include "app/application.h"
#include "azure/azure.h"
#include "azure/azureadd.h"
#include "backblaze/backblazeb2.h"
#include "backblaze/backblazeb2add.h"
#include "cloud/cloudtype.h"
#include "core/nvldebug.h"
#include "google/google.h"
#include "google/googleadd.h"
#include "local/local.h"
#include "local/localadd.h"
#include "mns/mnsedit.h"
#include "models/models.h"
#include "openstack/hpcloudadd.h"
#include "openstack/openstackadd.h"
#include "openstack/oraclecloudadd.h"
#include "openstack/rackspaceadd.h"
#include "openstack/softlayeradd.h"
#include "s3/alibabacloudadd.h"
#include "s3/amazones3chineadd.h"
#include "s3/amazons3add.h"
#include "s3/amazons3compatibleadd.h"
#include "s3/centurylinkadd.h"
#include "s3/cloudianadd.h"
#include "s3/dreamobjectsadd.h"
#include "s3/minioadd.h"
#include "s3/scalityadd.h"
#include "s3/thinkonadd.h"
#include "s3/verizonadd.h"
#include "s3/wasabiadd.h"
#include "sftp/sftp.h"
#include "sftp/sftpadd.h"
#include "storagesadd.h"
#include "storagesinfo.h"
#include "storagesupdatewatcher.h"

namespace NVB::GUI::Settings::Account {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

namespace {

void refuse(int type)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("This account type don't support! %1").arg(type);
}

// The view of a cloud account; which rows it shows is the
// provider's (Cloudian and DreamObjects show it in the dialog only).
Storages::Info* cloudView(NVL::Cloud::Type type)
{
    switch (type) {
    case NVL::Cloud::Type::S3Compatible:
    case NVL::Cloud::Type::CenturyLink:
    case NVL::Cloud::Type::Scality:
    case NVL::Cloud::Type::Minio:
        return new AmazonS3Compatible(type, true);
    case NVL::Cloud::Type::AmazonS3:
    case NVL::Cloud::Type::AmazonS3Chinese:
    case NVL::Cloud::Type::Wasabi:
    case NVL::Cloud::Type::AlibabaCloud:
    case NVL::Cloud::Type::Verizon:
    case NVL::Cloud::Type::ThinkOn:
    case NVL::Cloud::Type::Cloudian:
    case NVL::Cloud::Type::DreamObjects:
        return new AmazonS3Compatible(type, false);
    case NVL::Cloud::Type::Openstack:
        return new OpenStack(type, true, true);
    case NVL::Cloud::Type::HPCloud:
        return new HPCloud();
    case NVL::Cloud::Type::OracleCloud:
        return new OracleCloud();
    case NVL::Cloud::Type::Rackspace:
        return new Rackspace();
    case NVL::Cloud::Type::SoftLayer:
        return new SoftLayer();
    case NVL::Cloud::Type::AzureBlob:
        return new Azure();
    case NVL::Cloud::Type::BackBlaze:
        return new BackblazeB2();
    case NVL::Cloud::Type::GoogleStorage:
        return new Google();
    default:
        return nullptr;
    }
}

} // namespace

bool AccountFactory::hasDialog(int type)
{
    if (!Application::isStandalon())
        return NVL::Cloud::isKnownType(type);
    switch (NVL::Cloud::Type(type)) {
    case NVL::Cloud::Type::FileSystem:
    case NVL::Cloud::Type::Sftp:
    case NVL::Cloud::Type::AmazonS3:
    case NVL::Cloud::Type::AmazonS3Chinese:
    case NVL::Cloud::Type::S3Compatible:
    case NVL::Cloud::Type::Wasabi:
    case NVL::Cloud::Type::AlibabaCloud:
    case NVL::Cloud::Type::Verizon:
    case NVL::Cloud::Type::ThinkOn:
    case NVL::Cloud::Type::CenturyLink:
    case NVL::Cloud::Type::Scality:
    case NVL::Cloud::Type::Cloudian:
    case NVL::Cloud::Type::DreamObjects:
    case NVL::Cloud::Type::Minio:
    case NVL::Cloud::Type::Openstack:
    case NVL::Cloud::Type::HPCloud:
    case NVL::Cloud::Type::OracleCloud:
    case NVL::Cloud::Type::Rackspace:
    case NVL::Cloud::Type::SoftLayer:
    case NVL::Cloud::Type::AzureBlob:
    case NVL::Cloud::Type::BackBlaze:
    case NVL::Cloud::Type::GoogleStorage:
        return true;
    default:
        return false;
    }
}

QDialog* AccountFactory::add(int type, QWidget* parent)
{
    if (!NVL::Cloud::isKnownType(type)) {
        refuse(type);
        return nullptr;
    }
    return add(NVL::Cloud::Type(type), parent);
}

QDialog* AccountFactory::add(NVL::Cloud::Type type, QWidget* parent)
{
    if (!hasDialog(int(type))) {
        refuse(int(type));
        return nullptr;
    }
    if (!Application::isStandalon() && type != NVL::Cloud::Type::FileSystem)
        return new MnsEdit(int(type), parent);
    switch (type) {
    case NVL::Cloud::Type::FileSystem:
        return new Local::Add(parent);
    case NVL::Cloud::Type::Sftp:
        return new Sftp::Add(parent);
    case NVL::Cloud::Type::S3Compatible:
        return new AmazonS3Compatible::Add(type, true, true, parent);
    case NVL::Cloud::Type::AmazonS3:
        return new AmazonS3::Add(parent);
    case NVL::Cloud::Type::AmazonS3Chinese:
        return new AmazoneS3Chine::Add(parent);
    case NVL::Cloud::Type::Wasabi:
        return new Wasabi::Add(parent);
    case NVL::Cloud::Type::AlibabaCloud:
        return new AlibabaCloud::Add(parent);
    case NVL::Cloud::Type::Verizon:
        return new Verizon::Add(parent);
    case NVL::Cloud::Type::ThinkOn:
        return new ThinkOn::Add(parent);
    case NVL::Cloud::Type::CenturyLink:
        return new CenturyLink::Add(parent);
    case NVL::Cloud::Type::Scality:
        return new Scality::Add(parent);
    case NVL::Cloud::Type::Cloudian:
        return new Cloudian::Add(parent);
    case NVL::Cloud::Type::DreamObjects:
        return new DreamObjects::Add(parent);
    case NVL::Cloud::Type::Minio:
        return new Minio::Add(parent);
    case NVL::Cloud::Type::Openstack:
        return new OpenStack::Add(type, {}, true, true, true, parent);
    case NVL::Cloud::Type::HPCloud:
        return new HPCloud::Add(parent);
    case NVL::Cloud::Type::OracleCloud:
        return new OracleCloud::Add(parent);
    case NVL::Cloud::Type::Rackspace:
        return new Rackspace::Add(parent);
    case NVL::Cloud::Type::SoftLayer:
        return new SoftLayer::Add(parent);
    case NVL::Cloud::Type::AzureBlob:
        return new Azure::Add(parent);
    case NVL::Cloud::Type::BackBlaze:
        return new BackblazeB2::Add(parent);
    case NVL::Cloud::Type::GoogleStorage:
        return new Google::Add(parent);
    default:
        refuse(int(type));
        return nullptr;
    }
}

Storages::Info* AccountFactory::view(const QModelIndex& index)
{
    if (!index.isValid())
        return nullptr;
    const int type = index.model()->index(index.row(), Column::Type, index.parent()).data().toInt();
    Storages::Info* info = nullptr;
    if (hasDialog(type)) {
        if (type == int(NVL::Cloud::Type::FileSystem))
            info = new Local();
        else if (type == int(NVL::Cloud::Type::Sftp))
            info = new Sftp();
        else if (Application::isStandalon())
            info = cloudView(NVL::Cloud::Type(type));
        else if (!Application::isStandalon())
            // The service's accounts carry no fields the user may read here;
            // the view names the account and its provider.
            info = new Storages::Info(NVL::Cloud::Type(type));
    }
    if (!info) {
        refuse(type);
        return nullptr;
    }
    info->setItem(index);
    return info;
}

QDialog* AccountFactory::edit(const QModelIndex& index, QWidget* parent)
{
    if (!index.isValid())
        return nullptr;
    const int type = index.model()->index(index.row(), Column::Type, index.parent()).data().toInt();
    QDialog* dialog = add(type, parent);
    if (auto* form = qobject_cast<Storages::Add*>(dialog))
        form->setItem(index);
    else if (auto* managed = qobject_cast<MnsEdit*>(dialog))
        managed->setItem(index);
    return dialog;
}

void AccountFactory::removeDialogExec(QAbstractItemModel* model, const QModelIndex& index, QWidget* parent)
{
    if (!model || !index.isValid())
        return;
    const QString name = model->index(index.row(), Column::DisplayName, index.parent()).data().toString();
    const QString id = model->index(index.row(), Column::ID, index.parent()).data().toString();
    auto* box = new QMessageBox(QMessageBox::Question, QObject::tr("Are you sure?"),
        QObject::tr("Delete \"%1\" account?").arg(name), QMessageBox::Yes | QMessageBox::No, parent);
    box->setDefaultButton(QMessageBox::No);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    const QPointer<QAbstractItemModel> target(model);
    QObject::connect(box, &QMessageBox::finished, box, [box, target, id, name] {
        if (!target || box->clickedButton() != box->button(QMessageBox::Yes))
            return;
        // The rows may have moved while the question stood.
        const QModelIndexList found
            = target->match(target->index(0, Column::ID), Qt::DisplayRole, id, 1, Qt::MatchExactly);
        if (found.isEmpty())
            return;
        const QString refusal = Storages::UpdateWatcher::removalRefusal(QUuid(id));
        if (!refusal.isEmpty()) {
            QMessageBox::critical(box->parentWidget(), QObject::tr("Remove Account"), refusal);
            return;
        }
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Remove local account: %1 %2").arg(name, id);
        target->removeRow(found.first().row(), found.first().parent());
    });
    box->show();
}

} // namespace NVB::GUI::Settings::Account
