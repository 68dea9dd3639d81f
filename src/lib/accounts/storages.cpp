#include "storages.h"

#include <QHBoxLayout>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QStackedLayout>
#include <QToolButton>

#include "accountfactory.h"
#include "app/application.h"
#include "core/nvldebug.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "selectmns.h"
#include "selectstandalon.h"
#include "storage/storageconnectionssortmodel.h"
#include "storagesadd.h"
#include "storagesaddbase.h"
#include "storageseditlist.h"
#include "storagesinfo.h"
#include "storagesupdatewatcher.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"

namespace NVB::GUI::Settings {

namespace ConnectionInfo = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo;

namespace {

bool fileSystemAllowed()
{
    const auto* rebranding = NVB::Defines::Rebranding::instance();
    return rebranding && rebranding->value(NVB::Defines::RebrandingKeys::FileSystemAccount::Enabled).toBool();
}

} // namespace

Storages::Storages(QWidget* parent)
    : QWidget(parent)
{
    setWindowTitle(tr("Storage"));
    const auto manager = ModelManager::instance();
    QAbstractItemModel* model = manager ? manager->create(ConnectionInfo::Type) : nullptr;
    if (!model) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Storage connection model is not registered");
        return;
    }
    auto* layout = new QHBoxLayout(this);
    const bool standalone = Application::isStandalon();
    m_list = new EditList(standalone ? false : !fileSystemAllowed(), this);
    m_sortModel = new StorageConnectionsSortModel(this);
    m_sortModel->setSourceModel(model);
    m_sortModel->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sortModel->sort(ConnectionInfo::Column::DisplayName, Qt::AscendingOrder);
    m_list->setModel(m_sortModel);
    layout->addWidget(m_list, 1);

    m_stack = new QStackedLayout;
    if (standalone) {
        auto* selector = new Account::SelectStandalon(this);
        connect(selector, &Account::Select::accountSelected, this, &Storages::onCreateSelected);
        m_selector = selector;
    } else {
        auto* selector = new Account::SelectMns(this);
        connect(selector, &Account::Select::accountSelected, this, &Storages::onCreateSelected);
        m_selector = selector;
    }
    m_stack->addWidget(m_selector);
    layout->addLayout(m_stack, 2);

    connect(m_list, &EditList::addItem, this, &Storages::onAddItem);
    connect(m_list, &EditList::editItem, this, &Storages::onEditItem);
    connect(m_list, &EditList::removeItem, this, &Storages::onRemoveItem);
    connect(m_list, &EditList::currentItem, this, &Storages::onCurrentChanged);
    connect(m_sortModel, &QAbstractItemModel::dataChanged, this, &Storages::onModelDataChanged);
    connect(m_sortModel, &QAbstractItemModel::rowsRemoved, this, &Storages::onRowsRemoved);
}

Storages::~Storages() = default;

void Storages::onCurrentChanged(const QModelIndex& index)
{
    if (!index.isValid()) {
        m_stack->setCurrentIndex(0);
        return;
    }
    onDataChanged(index);
    const QUuid id(m_sortModel->index(index.row(), ConnectionInfo::Column::ID).data().toString());
    if (Info* view = m_views.value(id))
        m_stack->setCurrentWidget(view);
    else
        m_stack->setCurrentIndex(0);
}

void Storages::onDataChanged(const QModelIndex& index)
{
    const QModelIndex row = m_sortModel->index(index.row(), ConnectionInfo::Column::DisplayName);
    const QUuid id(m_sortModel->index(index.row(), ConnectionInfo::Column::ID).data().toString());
    if (Info* view = m_views.value(id)) {
        view->setItem(row);
        return;
    }
    Info* view = Account::AccountFactory::view(row);
    if (!view)
        return;
    m_views.insert(id, view);
    m_stack->addWidget(view);
}

void Storages::onModelDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
        onDataChanged(m_sortModel->index(row, ConnectionInfo::Column::DisplayName));
}

void Storages::onRowsRemoved()
{
    // Views of accounts that are gone would never be shown again.
    for (auto it = m_views.begin(); it != m_views.end();) {
        const QModelIndexList found = m_sortModel->match(m_sortModel->index(0, ConnectionInfo::Column::ID),
            Qt::DisplayRole, it.key().toString(), 1, Qt::MatchExactly);
        if (found.isEmpty()) {
            m_stack->removeWidget(it.value());
            it.value()->deleteLater();
            it = m_views.erase(it);
        } else {
            ++it;
        }
    }
}

void Storages::onAddItem()
{
    m_list->setCurrentIndex(QModelIndex());
    if (Application::isStandalon()) {
        m_stack->setCurrentIndex(0);
        return;
    }
    if (fileSystemAllowed())
        onCreateSelected(int(NVL::Cloud::Type::FileSystem));
}

void Storages::runDialog(QDialog* dialog, int watch)
{
    const auto* account = dynamic_cast<AddBase*>(dialog);
    if (!account) {
        delete dialog;
        return;
    }
    if (dialog->exec() == QDialog::Accepted) {
        UpdateWatcher watcher(account->id(), UpdateWatcher::Type(watch), this);
        if (watcher.isWatching() && watcher.exec() == QDialog::Accepted) {
            // Show the account the user just saved.
            const QModelIndexList found = m_sortModel->match(m_sortModel->index(0, ConnectionInfo::Column::ID),
                Qt::DisplayRole, account->id().toString(), 1, Qt::MatchExactly);
            if (!found.isEmpty())
                m_list->setCurrentIndex(m_sortModel->index(found.first().row(), ConnectionInfo::Column::DisplayName));
        }
    }
    delete dialog;
}

void Storages::onCreateSelected(int type)
{
    runDialog(Account::AccountFactory::add(type, this), UpdateWatcher::Add);
}

void Storages::onEditItem(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    runDialog(Account::AccountFactory::edit(m_sortModel->index(index.row(), ConnectionInfo::Column::DisplayName), this),
        UpdateWatcher::Update);
}

void Storages::onRemoveItem(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const QString name = m_sortModel->index(index.row(), ConnectionInfo::Column::DisplayName).data().toString();
    const QUuid id(m_sortModel->index(index.row(), ConnectionInfo::Column::ID).data().toString());
    QMessageBox box(QMessageBox::Question, tr("Are you sure?"), tr("Delete \"%1\" account?").arg(name),
        QMessageBox::Yes | QMessageBox::No, this);
    box.setDefaultButton(QMessageBox::No);
    if (box.exec() != QMessageBox::Yes)
        return;
    const QString refusal = UpdateWatcher::removalRefusal(id);
    if (!refusal.isEmpty()) {
        QMessageBox::critical(this, tr("Remove Account"), refusal);
        return;
    }
    NVL::NvlDebug(QStringLiteral("NVB")).info()
        << QStringLiteral("Remove local account: %1 %2").arg(name, id.toString());
    if (!m_sortModel->removeRow(index.row()))
        return;
    UpdateWatcher watcher(id, UpdateWatcher::Remove, this);
    if (watcher.isWatching() && watcher.exec() != QDialog::Accepted && !watcher.failure().isEmpty())
        QMessageBox::critical(this, tr("Remove Account"), watcher.failure());
}

} // namespace NVB::GUI::Settings
