#include "wizards/common/pagecloud.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QToolButton>
#include <QVBoxLayout>

#include "accounts/accountfactory.h"
#include "accounts/selectstandalonmenu.h"
#include "accounts/storagesaddbase.h"
#include "accounts/storageseditlist.h"
#include "accounts/storagesupdatewatcher.h"
#include "app/application.h"
#include "core/nvldebug.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "records/plan/base.h"
#include "storage/storageconnectionssortmodel.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"

namespace NVB::GUI {

namespace {

bool fileSystemAccountsEnabled()
{
    return NVB::Defines::Rebranding::instance()
        ->value(NVB::Defines::RebrandingKeys::FileSystemAccount::Enabled)
        .toBool();
}

} // namespace

PlanWizardBase::PageCloud::PageCloud(bool isArchive, bool skipOpenStack, QWidget* parent)
    : PageBase(tr("Cloud storage"), parent)
    , m_isArchive(isArchive)
    , m_list(new Settings::Storages::EditList(Application::isStandalon() ? false : !fileSystemAccountsEnabled(), this))
{
    setSubTitle(tr("Select cloud storage"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    m_list->setMaximumWidth(99999);

    if (Application::isStandalon()) {
        auto* menu = new Settings::Account::SelectStandalon::Menu(skipOpenStack, this);
        m_list->addButton()->setMenu(menu);
        m_list->addButton()->setPopupMode(QToolButton::InstantPopup);
        connect(menu, &QMenu::triggered, this, &PageCloud::onAddDestinationMenu);
    } else {
        connect(m_list, &Settings::Storages::EditList::addItem, this, &PageCloud::onAddDestinationClicked);
    }
    connect(m_list, &Settings::Storages::EditList::removeItem, this, &PageCloud::onRemoveDestinationClicked);
    connect(m_list, &Settings::Storages::EditList::editItem, this, &PageCloud::onEditDestinationClicked);

    QAbstractItemModel* source = nullptr;
    if (const auto manager = ModelManager::instance())
        source = manager->create(Models::Table::NvbStorageConnectionModelInfo::Type);
    if (source) {
        m_model = new StorageConnectionsSortModel(this);
        if (skipOpenStack)
            m_model->setSkipOpenStack(true);
        m_model->setSourceModel(source);
        m_model->setSortCaseSensitivity(Qt::CaseInsensitive);
        m_model->sort(0, Qt::AscendingOrder);
        m_list->setModel(m_model);
    }
    connect(m_list, &Settings::Storages::EditList::currentItem, this, &PageCloud::onCurrentItem);

    for (const char* name : {Field_CloudId, Field_CloudType, Field_CloudName, Field_CloudPrefix})
        registerField(QLatin1String(name), hiddenField(name));

    m_single = Application::isMns() && source && source->rowCount() == 1 && !fileSystemAccountsEnabled();
}

bool PlanWizardBase::PageCloud::skipsOpenStack() const
{
    return m_model && m_model->skipOpenStack();
}

QLineEdit* PlanWizardBase::PageCloud::hiddenField(const char* name)
{
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QLatin1String(name));
    edit->setVisible(false);
    return edit;
}

void PlanWizardBase::PageCloud::onCurrentItem(const QModelIndex&)
{
    const QModelIndex current = m_list->currentIndex();
    if (!current.isValid())
        return;
    const QAbstractItemModel* model = current.model();
    const auto cell = [&](int column) { return model->index(current.row(), column).data().toString(); };
    setField(QLatin1String(Field_CloudId), cell(1));
    setField(QLatin1String(Field_CloudType), cell(5));
    setField(QLatin1String(Field_CloudName), cell(0));
    setField(QLatin1String(Field_CloudPrefix), cell(3));
    emit completeChanged();
}

bool PlanWizardBase::PageCloud::validatePage()
{
    return isComplete();
}

bool PlanWizardBase::PageCloud::isComplete() const
{
    return !field(QLatin1String(Field_CloudId)).toString().isEmpty();
}

int PlanWizardBase::PageCloud::nextId() const
{
    return 1;
}

QString PlanWizardBase::PageCloud::summary()
{
    return valueRow(tr("Backup storage:"), field(QLatin1String(Field_CloudName)).toString().toHtmlEscaped())
        + valueRow(tr("Backup prefix:"), field(QLatin1String(Field_CloudPrefix)).toString().toHtmlEscaped());
}

bool PlanWizardBase::PageCloud::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    plan->setStorage(QUuid(field(QLatin1String(Field_CloudId)).toString()));
    return true;
}

bool PlanWizardBase::PageCloud::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    QAbstractItemModel* model = m_list->model();
    if (!model)
        return true;
    if (!plan->storage().isNull()) {
        const QModelIndexList hits
            = model->match(model->index(0, 1), Qt::DisplayRole, plan->storage().toString(), 1, Qt::MatchExactly);
        if (!hits.isEmpty())
            m_list->setCurrentIndex(model->index(hits.first().row(), 0));
    } else if (m_single && Application::isMns()) {
        m_list->setCurrentIndex(model->index(0, 0));
    }
    onCurrentItem(m_list->currentIndex());
    return true;
}

void PlanWizardBase::PageCloud::onAddDestinationMenu(QAction* action)
{
    if (action)
        onAddDestination(action->data().toInt());
}

void PlanWizardBase::PageCloud::onAddDestinationClicked()
{
    // Outside the standalone edition only local folders can be added here.
    onAddDestination(1);
}

void PlanWizardBase::PageCloud::onAddDestination(int type)
{
    QDialog* dialog = Settings::Account::AccountFactory::add(type, QApplication::activeWindow());
    const auto* account = dynamic_cast<Settings::Storages::AddBase*>(dialog);
    if (account && dialog->exec() == QDialog::Accepted) {
        Settings::Storages::UpdateWatcher watcher(
            account->id(), Settings::Storages::UpdateWatcher::Add, QApplication::activeWindow());
        watcher.exec();
        // Whoever adds an account here means to back up to it.
        selectAccount(account->id());
    }
    delete dialog;
}

void PlanWizardBase::PageCloud::selectAccount(const QUuid& id)
{
    QAbstractItemModel* model = m_list->model();
    if (!model || id.isNull() || model->rowCount() == 0)
        return;
    const QModelIndexList hits = model->match(model->index(0, 1), Qt::DisplayRole, id.toString(), 1, Qt::MatchExactly);
    if (hits.isEmpty())
        return;
    m_list->setCurrentIndex(model->index(hits.first().row(), 0));
    onCurrentItem(m_list->currentIndex());
}

void PlanWizardBase::PageCloud::onEditDestinationClicked(const QModelIndex& index)
{
    QDialog* dialog = Settings::Account::AccountFactory::edit(index, QApplication::activeWindow());
    const auto* account = dynamic_cast<Settings::Storages::AddBase*>(dialog);
    if (account && dialog->exec() == QDialog::Accepted) {
        Settings::Storages::UpdateWatcher watcher(
            account->id(), Settings::Storages::UpdateWatcher::Update, QApplication::activeWindow());
        watcher.exec();
    }
    delete dialog;
}

void PlanWizardBase::PageCloud::onRemoveDestinationClicked(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const QString name = index.model()->index(index.row(), 0).data().toString();
    const auto answer = QMessageBox::question(this, tr("Are you sure?"), tr("Delete \"%1\" account?").arg(name),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer != QMessageBox::Yes)
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Remove local account:") << name;
    const_cast<QAbstractItemModel*>(index.model())->removeRow(index.row());
    emit completeChanged();
}

} // namespace NVB::GUI
