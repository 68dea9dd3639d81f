#include "settings/singlestorage.h"

#include <QAbstractItemModel>
#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScopedPointer>
#include <QUuid>
#include <QVBoxLayout>

#include "accounts/accountfactory.h"
#include "accounts/storagesinfo.h"
#include "accounts/storagesupdatewatcher.h"
#include "models/models.h"

namespace NVB::GUI::Settings {

namespace {

namespace ConnectionInfo = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo;

} // namespace

SingleStorage::SingleStorage(QAbstractItemModel* model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_layout(new QVBoxLayout(this))
{
    setWindowTitle(tr("Storage"));
    auto* row = new QHBoxLayout();
    auto* settings = new QPushButton(tr("Settings"), this);
    row->addStretch(1);
    row->addWidget(settings);
    m_layout->addLayout(row);
    m_layout->addStretch(1);
    connect(settings, &QPushButton::clicked, this, &SingleStorage::onSettingClicked);
    if (m_model)
        connect(m_model, &QAbstractItemModel::dataChanged, this, &SingleStorage::onModelDataChanged);
    onModelDataChanged();
}

void SingleStorage::onModelDataChanged()
{
    if (!m_model || m_model->rowCount() < 1)
        return;
    const QModelIndex first = m_model->index(0, 0);
    if (!m_view) {
        Storages::Info* view = Account::AccountFactory::view(first);
        if (!view)
            return;
        m_view = view;
        m_layout->insertWidget(0, view);
    }
    static_cast<Storages::Info*>(m_view)->setItem(first);
}

void SingleStorage::onSettingClicked()
{
    if (!m_model || m_model->rowCount() < 1)
        return;
    const QUuid id(m_model->index(0, ConnectionInfo::Column::ID).data().toString());
    QScopedPointer<QDialog> dialog(
        Account::AccountFactory::edit(m_model->index(0, ConnectionInfo::Column::DisplayName), this));
    if (!dialog || dialog->exec() != QDialog::Accepted)
        return;
    Storages::UpdateWatcher watcher(id, Storages::UpdateWatcher::Update, this);
    if (watcher.isWatching())
        watcher.exec();
}

} // namespace NVB::GUI::Settings
