#include "settings/settingdialog.h"

#include <QAbstractItemModel>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QTabWidget>
#include <QVBoxLayout>

#include "accounts/storages.h"
#include "app/application.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "settings/advanced.h"
#include "settings/application.h"
#include "settings/backup.h"
#include "settings/license.h"
#include "settings/network.h"
#include "settings/singlestorage.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"

namespace NVB::GUI {

namespace {

QWidget* storagePage(QWidget* parent)
{
    if (Application::isStandalon())
        return new Settings::Storages(parent);
    const auto* rebranding = NVB::Defines::Rebranding::instance();
    const bool fileSystemAllowed
        = rebranding && rebranding->value(NVB::Defines::RebrandingKeys::FileSystemAccount::Enabled).toBool();
    const auto manager = ModelManager::instance();
    QAbstractItemModel* model = manager ? manager->create(Models::Table::NvbStorageConnectionModelInfo::Type) : nullptr;
    // Decided once: an account added later shows only in a dialog built
    // after it.
    if (!fileSystemAllowed && model && model->rowCount() == 1)
        return new Settings::SingleStorage(model, parent);
    return new Settings::Storages(parent);
}

} // namespace

SettingDialog::SettingDialog(QWidget* parent)
    : QDialog(parent)
    , m_tabs(new QTabWidget(this))
    , m_backup(new Settings::Backup(this))
    , m_network(new Settings::Network(this))
    , m_application(new Settings::Application(this))
    , m_advanced(new Settings::Advanced(this))
{
    setWindowTitle(tr("Settings"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    QWidget* storage = storagePage(this);
    if (Application::isStandalon())
        m_license = new Settings::License(this);
    for (QWidget* page :
        std::initializer_list<QWidget*> {storage, m_backup, m_network, m_application, m_advanced, m_license}) {
        if (page)
            m_tabs->addTab(page, page->windowTitle());
    }
    auto* bottom = new QHBoxLayout();
    bottom->addStretch(1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    bottom->addWidget(buttons);
    layout->addLayout(bottom);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingDialog::reject);

    connect(this, &SettingDialog::meExec, m_backup, &Settings::Backup::loadSettings);
    connect(this, &SettingDialog::meExec, m_network, &Settings::Network::loadSettings);
    connect(this, &SettingDialog::meExec, m_application, &Settings::Application::loadSettings);
    connect(this, &SettingDialog::meExec, m_advanced, &Settings::Advanced::loadSettings);
    if (m_license)
        connect(this, &SettingDialog::meExec, m_license, &Settings::License::loadSettings);
    connect(this, &SettingDialog::ForceClose, m_application, &Settings::Application::ForceClose, Qt::QueuedConnection);
    resize(minimumSizeHint());
}

int SettingDialog::exec()
{
    emit meExec();
    return QDialog::exec();
}

} // namespace NVB::GUI
