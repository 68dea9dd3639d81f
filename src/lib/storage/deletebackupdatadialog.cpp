#include "storage/deletebackupdatadialog.h"

#include <algorithm>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/application.h"
#include "app/delegates/sizedelegate.h"
#include "app/icons/iconmanager.h"
#include "core/nvldebug.h"
#include "records/repository/bunch.h"
#include "records/storage/connection.h"
#include "service/manager.h"
#include "service/v2/command.h"
#include "service/v2/commands/getconnection.h"
#include "service/v2/commands/repository/getbunchlist.h"
#include "service/v2/commands/repository/getgenerationlist.h"
#include "service/v2/commands/repository/removedatabunch.h"
#include "service/v2/commands/repository/removedatageneration.h"
#include "service/v2/notification/removenbfdatastatus.h"
#include "service/v2/notificationevent.h"
#include "storage/generationstatusicon.h"
#include "storage/storageconnectionsmodel.h"

namespace NVB::GUI {

namespace V2 = NVB::Common::Communication::V2;
using NVB::Common::Communication::Manager;

namespace {

constexpr int RetryMs = 60000;

void logWarning(const QString& text)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
}

QFrame* sectionLine(QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

DeleteBackupDataDialog::DeleteBackupDataDialog(
    const QUuid& connectionId, const QUuid& bunchId, const QUuid& generationId, QWidget* parent)
    : QDialog(parent)
    , NotificationSubscriber({V2::Notification::RemoveNbfDataStatus::TypeId})
    , m_connectionId(connectionId)
    , m_bunchId(bunchId)
    , m_generationId(generationId)
    , m_tree(new QTreeWidget(this))
    , m_total(new QLabel(this))
    , m_confirm(new QCheckBox(tr("I confirm the action"), this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Yes | QDialogButtonBox::No, this))
{
    setWindowTitle(Application::applicationName());

    auto* icon = new QLabel(this);
    icon->setPixmap(IconManager::resource(QStringLiteral("warning.svg")).pixmap(32, 32));
    auto* question
        = new QLabel(tr("Do you really want <b>permanently delete</b> the following data from backup storage?"), this);
    question->setWordWrap(true);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addWidget(question, 1);

    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setFocusPolicy(Qt::NoFocus);
    m_tree->setSelectionMode(QAbstractItemView::NoSelection);
    m_tree->setHeaderHidden(true);
    m_tree->setMaximumHeight(100);
    QPalette palette = m_tree->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    m_tree->setPalette(palette);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(sectionLine(this));
    layout->addWidget(m_tree);
    layout->addWidget(m_total);
    layout->addWidget(new QLabel(tr("<b>Note:</b> the operation cannot be undone"), this));
    layout->addWidget(sectionLine(this));
    layout->addWidget(m_confirm);
    layout->addWidget(m_buttons);

    m_buttons->button(QDialogButtonBox::Yes)->setEnabled(false);
    connect(m_confirm, &QCheckBox::toggled, m_buttons->button(QDialogButtonBox::Yes), &QPushButton::setEnabled);
    connect(m_buttons->button(QDialogButtonBox::Yes), &QPushButton::clicked, this,
        &DeleteBackupDataDialog::onDeleteBackupData);
    connect(m_buttons->button(QDialogButtonBox::No), &QPushButton::clicked, this, &QDialog::reject);
    loadConnectionInfo();
}

DeleteBackupDataDialog::~DeleteBackupDataDialog() = default;

void DeleteBackupDataDialog::sendQuery(
    const QUuid& commandId, const QSharedPointer<Command::Request>& request, void (DeleteBackupDataDialog::*finished)())
{
    try {
        const auto manager = Manager::instance();
        if (!manager)
            throw QStringLiteral("Communication manager is 0x00");
        Command* command = manager->commandFactoryV2(commandId);
        if (!command)
            throw QStringLiteral("Communication command don't registrate");
        command->setParent(this);
        command->setRequest(request);
        connect(command, &Command::complite, this, finished);
        connect(command, &Command::error, this, finished);
        connect(command, &Command::timeout, this, finished);
        command->exec();
    } catch (const QString& text) {
        logWarning(text);
    }
}

DeleteBackupDataDialog::Command* DeleteBackupDataDialog::finishedCommand(void (DeleteBackupDataDialog::*retry)())
{
    auto* command = qobject_cast<Command*>(sender());
    if (!command)
        throw tr("Internal error");
    command->deleteLater();
    if (command->status() == Command::Error)
        throw command->errorMessage();
    if (command->status() == Command::NeedRetry) {
        QTimer::singleShot(RetryMs, this, retry);
        throw QStringLiteral("GetConnection command return need retry... timeout 1 min");
    }
    if (command->status() != Command::Success)
        throw tr("Internal error");
    return command;
}

void DeleteBackupDataDialog::loadConnectionInfo()
{
    sendQuery(V2::GetConnection::CommandId, QSharedPointer<Command::Request>(new V2::GetConnection::Request),
        &DeleteBackupDataDialog::onLoadConnectionInfo);
}

void DeleteBackupDataDialog::onLoadConnectionInfo()
{
    try {
        const auto response = finishedCommand(&DeleteBackupDataDialog::loadConnectionInfo)
                                  ->response()
                                  .dynamicCast<V2::GetConnection::Response>();
        if (!response)
            throw tr("Internal error: invalid command response format");
        for (const QJsonValue& value : response->connections()) {
            const auto connection = NVB::Info::Storage::Connection::fromJson(value.toObject());
            if (connection && connection->id() == m_connectionId) {
                m_connectionName = connection->displayName();
                m_connectionType = connection->type();
            }
        }
        loadBunchFromConnection();
    } catch (const QString& text) {
        logWarning(text);
    }
}

void DeleteBackupDataDialog::loadBunchFromConnection()
{
    auto request = QSharedPointer<V2::Repository::GetBunchList::Request>::create();
    request->setConnectionId(m_connectionId);
    sendQuery(V2::Repository::GetBunchList::CommandId, request, &DeleteBackupDataDialog::onLoadBunchFromConnection);
}

void DeleteBackupDataDialog::onLoadBunchFromConnection()
{
    try {
        const auto response = finishedCommand(&DeleteBackupDataDialog::loadBunchFromConnection)
                                  ->response()
                                  .dynamicCast<V2::Repository::GetBunchList::Response>();
        if (!response)
            throw tr("Internal error: invalid command response format");
        for (const QJsonValue& value : response->bunchList()) {
            const auto bunch = NVB::Info::Repository::Bunch::fromJson(value.toObject());
            if (bunch && bunch->id() == m_bunchId)
                m_bunchName = bunch->displayName();
        }
        loadGenerationsFromBunch();
    } catch (const QString& text) {
        logWarning(text);
    }
}

void DeleteBackupDataDialog::loadGenerationsFromBunch()
{
    auto request = QSharedPointer<V2::Repository::GetGenerationList::Request>::create();
    request->setConnectionId(m_connectionId);
    request->setBunchId(m_bunchId);
    sendQuery(
        V2::Repository::GetGenerationList::CommandId, request, &DeleteBackupDataDialog::onLoadGenerationsFromBunch);
}

void DeleteBackupDataDialog::onLoadGenerationsFromBunch()
{
    try {
        const auto response = finishedCommand(&DeleteBackupDataDialog::loadGenerationsFromBunch)
                                  ->response()
                                  .dynamicCast<V2::Repository::GetGenerationList::Response>();
        if (!response)
            throw tr("Internal error: invalid command response format");
        Generations list;
        for (const QJsonValue& value : response->generationList()) {
            const auto generation = NVB::Info::Repository::Generation::fromJson(value.toObject());
            if (generation && (m_generationId.isNull() || generation->id() == m_generationId))
                list.append(generation);
        }
        insertItems(list);
    } catch (const QString& text) {
        logWarning(text);
    }
}

void DeleteBackupDataDialog::insertItems(const Generations& list)
{
    m_tree->clear();
    const QString doomed = tr("WILL BE DELETED");
    auto* connection = new QTreeWidgetItem(m_tree, {m_connectionName});
    connection->setIcon(0, StorageConnectionsModel::storageIcon(m_connectionType, 0));

    auto* bunch = new QTreeWidgetItem(connection);
    bunch->setIcon(0, IconManager::resource(QStringLiteral("folder.svg")));
    QString bunchText = m_bunchName.toHtmlEscaped();
    if (m_generationId.isNull())
        bunchText += QStringLiteral(" - <font color=\"red\">%1</font>").arg(doomed);
    m_tree->setItemWidget(bunch, 0, new QLabel(bunchText));

    quint64 total = 0;
    for (const auto& generation : list) {
        auto* item = new QTreeWidgetItem(bunch);
        item->setIcon(
            0, GenerationStatusIcon::icon(generation->deepSync(), generation->isEncrypted(), generation->status()));
        const QString dates = QStringLiteral("%1 - %2").arg(
            QLocale::system().toString(generation->lastRestorePoint().toLocalTime(), QLocale::ShortFormat),
            QLocale::system().toString(generation->firstRestorePoint().toLocalTime(), QLocale::ShortFormat));
        m_tree->setItemWidget(
            item, 0, new QLabel(tr("%1 - <font color=\"red\">%2</font>").arg(dates.toHtmlEscaped(), doomed)));
        total += generation->storageSize();
    }
    m_total->setText(
        tr("Total size of items to delete: %1").arg(SizeDelegate::toText(QVariant::fromValue(total), QLocale())));
    m_tree->expandAll();
}

void DeleteBackupDataDialog::onDeleteBackupData()
{
    NVL::NvlDebug(QStringLiteral("NVB")).info()
        << QStringLiteral("Delete backup data: connection %1, bunch %2, generation %3")
               .arg(m_connectionId.toString(), m_bunchId.toString(), m_generationId.toString());
    try {
        const auto manager = Manager::instance();
        if (!manager)
            throw QStringLiteral("Communication manager is 0x00");
        Command* command = nullptr;
        if (m_generationId.isNull()) {
            auto request = QSharedPointer<V2::Repository::RemoveDataBunch::Request>::create();
            request->setConnectionId(m_connectionId);
            request->setBunchId(m_bunchId);
            command = manager->commandFactoryV2(V2::Repository::RemoveDataBunch::CommandId);
            if (command)
                command->setRequest(request);
        } else {
            auto request = QSharedPointer<V2::Repository::RemoveDataGeneration::Request>::create();
            request->setConnectionId(m_connectionId);
            request->setBunchId(m_bunchId);
            request->setGenerationId(m_generationId);
            command = manager->commandFactoryV2(V2::Repository::RemoveDataGeneration::CommandId);
            if (command)
                command->setRequest(request);
        }
        if (!command)
            throw QStringLiteral("Communication command don't registrate");
        command->setParent(this);
        connect(command, &Command::complite, this, &DeleteBackupDataDialog::onExecRemove);
        connect(command, &Command::error, this, &DeleteBackupDataDialog::onExecRemove);
        connect(command, &Command::timeout, this, &DeleteBackupDataDialog::onExecRemove);
        command->exec();
        setEnabled(false);
    } catch (const QString& text) {
        logWarning(text);
        QMessageBox::warning(this, windowTitle(), text);
        reject();
    }
}

void DeleteBackupDataDialog::onExecRemove()
{
    try {
        auto* command = qobject_cast<Command*>(sender());
        if (!command)
            throw tr("Internal error");
        command->deleteLater();
        // The engine's status notification may have closed the dialog first.
        if (!isVisible())
            return;
        if (command->status() == Command::Error)
            throw command->errorMessage();
        if (command->status() != Command::Success)
            throw tr("Internal error");
    } catch (const QString& text) {
        logWarning(text);
        QMessageBox::warning(this, windowTitle(), text);
        reject();
    }
}

bool DeleteBackupDataDialog::handleNotificationEvent(V2::NotificationEvent* event)
{
    if (!event || event->message().isNull())
        return false;
    const auto data = event->message()->data<V2::Notification::RemoveNbfDataStatus>();
    if (!data || data->connectionId() != m_connectionId || data->bunchId() != m_bunchId
        || data->generationId() != m_generationId)
        return false;
    if (!isVisible())
        return true;
    switch (data->status()) {
    case 3:
    case 4:
        done(1);
        break;
    case 2:
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Remove status:") << data->message();
        break;
    case 5:
        QMessageBox::warning(this, data->message(), data->message(), QMessageBox::Ok);
        reject();
        break;
    default:
        break;
    }
    return true;
}

} // namespace NVB::GUI
