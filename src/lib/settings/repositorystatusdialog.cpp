#include "settings/repositorystatusdialog.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QUuid>
#include <QVBoxLayout>

#include "models/models.h"
#include "settings/synchronizerepositorystatus/process.h"
#include "widgets/progresswheel.h"

namespace NVB::GUI::Settings {

namespace ConnectionInfo = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo;

RepositoryStatusDialog::RepositoryStatusDialog(QAbstractItemModel* connections, QWidget* parent)
    : QDialog(parent)
    , m_connections(connections)
    , m_storage(new QComboBox(this))
    , m_synchronize(new QPushButton(tr("Synchronize"), this))
    , m_cancel(new QPushButton(tr("Cancel synchronization"), this))
    , m_state(new QLabel(this))
    , m_log(new QListWidget(this))
    , m_wheel(new ProgressWheel(this))
{
    setWindowTitle(tr("Synchronize Repository"));
    auto* intro = new QLabel(tr("Reads what a storage holds into this computer's repository: restore points found "
                                "there are added, so that they can be browsed and restored, and points whose data "
                                "is gone from the storage are removed."),
        this);
    intro->setWordWrap(true);
    m_storage->setObjectName(QStringLiteral("storage"));
    m_synchronize->setObjectName(QStringLiteral("synchronize"));
    m_cancel->setObjectName(QStringLiteral("cancelSynchronization"));
    m_state->setObjectName(QStringLiteral("state"));
    m_state->setWordWrap(true);
    m_log->setObjectName(QStringLiteral("statusList"));
    m_log->setMinimumSize(480, 160);

    auto* form = new QFormLayout;
    form->addRow(tr("Storage:"), m_storage);
    auto* actions = new QHBoxLayout;
    actions->addWidget(m_wheel);
    actions->addWidget(m_state, 1);
    actions->addWidget(m_synchronize);
    actions->addWidget(m_cancel);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(form);
    layout->addLayout(actions);
    layout->addWidget(m_log);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_synchronize, &QPushButton::clicked, this, &RepositoryStatusDialog::onSynchronizeClicked);
    connect(m_cancel, &QPushButton::clicked, this, &RepositoryStatusDialog::onCancelClicked);
    if (m_connections) {
        connect(m_connections, &QAbstractItemModel::modelReset, this, &RepositoryStatusDialog::onConnectionsChanged);
        connect(m_connections, &QAbstractItemModel::rowsInserted, this, &RepositoryStatusDialog::onConnectionsChanged);
        connect(m_connections, &QAbstractItemModel::rowsRemoved, this, &RepositoryStatusDialog::onConnectionsChanged);
        connect(m_connections, &QAbstractItemModel::dataChanged, this, &RepositoryStatusDialog::onConnectionsChanged);
    }
    onConnectionsChanged();
    setBusy(false);
}

bool RepositoryStatusDialog::isRunning() const
{
    return m_process && m_process->isRunning();
}

void RepositoryStatusDialog::onConnectionsChanged()
{
    const QUuid current = m_storage->currentData().toUuid();
    m_storage->clear();
    const int rows = m_connections ? m_connections->rowCount() : 0;
    for (int row = 0; row < rows; ++row) {
        const QString name = m_connections->index(row, ConnectionInfo::Column::DisplayName).data().toString();
        const QUuid id(m_connections->index(row, ConnectionInfo::Column::ID).data().toString());
        m_storage->addItem(name, id);
    }
    const int at = m_storage->findData(current);
    if (at >= 0)
        m_storage->setCurrentIndex(at);
    if (!isRunning())
        setBusy(false);
}

void RepositoryStatusDialog::onSynchronizeClicked()
{
    const QUuid id = m_storage->currentData().toUuid();
    if (id.isNull())
        return;
    if (m_process)
        m_process->deleteLater();
    m_process = new SynchronizeRepositoryStatus::Process(id, this);
    connect(m_process, &SynchronizeRepositoryStatus::Process::started, this, &RepositoryStatusDialog::onStarted);
    connect(m_process, &SynchronizeRepositoryStatus::Process::status, this, &RepositoryStatusDialog::onStatus);
    connect(m_process, &SynchronizeRepositoryStatus::Process::error, this, &RepositoryStatusDialog::onError);
    connect(m_process, &SynchronizeRepositoryStatus::Process::finished, this, &RepositoryStatusDialog::onFinished);
    m_failed = false;
    m_log->clear();
    m_state->setStyleSheet(QString());
    m_state->setText(tr("Asking the engine..."));
    setBusy(true);
    m_cancel->setEnabled(false);
    m_process->start();
}

void RepositoryStatusDialog::onCancelClicked()
{
    if (!isRunning())
        return;
    m_state->setText(tr("Cancelling..."));
    m_cancel->setEnabled(false);
    m_process->cancel();
}

void RepositoryStatusDialog::onStarted()
{
    m_state->setText(tr("Synchronizing %1...").arg(m_storage->currentText()));
    m_cancel->setEnabled(true);
}

void RepositoryStatusDialog::onStatus(const QString& message)
{
    m_log->addItem(message);
    m_log->scrollToBottom();
}

void RepositoryStatusDialog::onError(const QString& message)
{
    m_failed = true;
    m_state->setText(message);
    m_state->setStyleSheet(QStringLiteral("color: #c62828;"));
    m_log->addItem(message);
    // A refused request never starts, so nothing else will end the wait.
    if (!isRunning())
        setBusy(false);
}

void RepositoryStatusDialog::onFinished()
{
    if (!m_failed)
        m_state->setText(tr("Synchronization finished"));
    setBusy(false);
}

void RepositoryStatusDialog::setBusy(bool busy)
{
    m_wheel->animate(busy);
    m_storage->setEnabled(!busy);
    m_synchronize->setEnabled(!busy && m_storage->count() > 0);
    m_cancel->setEnabled(busy);
    m_cancel->setVisible(busy);
    setCursor(busy ? Qt::BusyCursor : Qt::ArrowCursor);
}

} // namespace NVB::GUI::Settings
