#include "storagesadd.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFont>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include "accountutility.h"
#include "advanced/advanced.h"
#include "certificatetrust.h"
#include "cloud/cloudconfig.h"
#include "cloud/endpointhelper.h"
#include "cloud/getprefixoperation.h"
#include "cloud/ioperation.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/listcontainers.h"
#include "core/nvldebug.h"
#include "models/models.h"
#include "selectstandalon.h"
#include "service/commands/storage.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "storage/storageconnectionsmodel.h"
#include "widgets/progresswheel.h"

namespace NVB::GUI::Settings {

namespace Communication = NVB::Common::Communication;
namespace Format = NVB::Common::Communication::Commands::Format;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

namespace {

NVL::NvlDebugStream warning()
{
    return NVL::NvlDebug(QStringLiteral("NVB")).warning();
}

} // namespace

Storages::Add::Add(NVL::Cloud::Type type, QWidget* parent)
    : QDialog(parent)
    , m_type(type)
    , m_prefix(Account::Advanced::defaultPrefix())
{
    setWindowTitle(tr("Add Account"));
    // Room for the provider's fields beside their labels and for messages.
    setMinimumWidth(LineEditWidth + 220);
    auto* layout = new QVBoxLayout(this);

    auto* header = new QHBoxLayout;
    auto* icon = new QLabel(this);
    icon->setPixmap(StorageConnectionsModel::storageIcon(int(type)).pixmap(32, 32));
    icon->setFixedSize(32, 32);
    auto* name = new QLabel(Account::SelectStandalon::storageName(int(type)), this);
    QFont bold = name->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    name->setFont(bold);
    header->addWidget(icon);
    header->addWidget(name, 1);
    layout->addLayout(header);

    auto* intro = new QLabel(tr("To get started, fill out the following information:"), this);
    intro->setWordWrap(true);
    layout->addWidget(intro);

    m_providerPlace = new QVBoxLayout;
    layout->addLayout(m_providerPlace);

    auto* advancedRow = new QHBoxLayout;
    m_advanced = new QPushButton(tr("Advanced settings"), this);
    advancedRow->addWidget(m_advanced);
    advancedRow->addStretch(1);
    layout->addLayout(advancedRow);

    m_message = new QLabel(this);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::RichText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->hide();
    layout->addWidget(m_message);
    layout->addStretch(1);

    auto* bottom = new QHBoxLayout;
    m_wheel = new ProgressWheel(this);
    bottom->addWidget(m_wheel);
    bottom->addStretch(1);
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    okButton()->setEnabled(false);
    bottom->addWidget(m_buttons);
    layout->addLayout(bottom);

    connect(m_buttons, &QDialogButtonBox::accepted, this, &Add::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_advanced, &QPushButton::clicked, this, &Add::onAdvancedClicked);
    connect(this, &Add::updateComplite, this, &QDialog::accept);
    connect(this, &Add::updateError, this, &Add::onUpdateError);
    connect(this, &QDialog::rejected, this, &Add::onReject);
    connect(this, &Add::setItemSignal, this, &Add::onSetItem, Qt::QueuedConnection);

    m_trust = new Account::CertificateTrust(this);
    connect(m_trust, &Account::CertificateTrust::fetched, this, &Add::endLockUI);
    connect(m_trust, &Account::CertificateTrust::trusted, this, &Add::loadContainers);
    connect(m_trust, &Account::CertificateTrust::declined, this, [this] { lockWidgetsAfterSslOperation(true); });
    connect(m_trust, &Account::CertificateTrust::failed, this, [this](const QString& text) {
        warning() << text;
        endLockUI();
        setErrorMessage(text);
        lockWidgetsAfterSslOperation(true);
    });
}

Storages::Add::~Add()
{
    dropOperation();
    if (m_prefixOperation)
        m_prefixOperation->cancel();
}

QPushButton* Storages::Add::okButton() const
{
    return m_buttons->button(QDialogButtonBox::Ok);
}

QPushButton* Storages::Add::cancelButton() const
{
    return m_buttons->button(QDialogButtonBox::Cancel);
}

void Storages::Add::setProviderLayout(QLayout* layout)
{
    m_providerPlace->addLayout(layout);
}

void Storages::Add::setItem(const QModelIndex& index)
{
    beginLockUI();
    if (!index.isValid())
        return;
    setWindowTitle(tr("Edit Account"));
    const QAbstractItemModel* model = index.model();
    setId(QUuid(model->index(index.row(), Column::ID, index.parent()).data().toString()));
    m_prefix = model->index(index.row(), Column::Prefix, index.parent()).data().toString();
    m_index = index;
    QTimer::singleShot(100, this, &Add::callingOnSetItem);
}

void Storages::Add::callingOnSetItem()
{
    emit setItemSignal(m_index);
}

void Storages::Add::dropOperation()
{
    if (!m_operation)
        return;
    const QSharedPointer<NVL::Cloud::IOperation> operation = m_operation;
    m_operation.clear();
    operation->disconnect(this);
    operation->remove();
}

void Storages::Add::loadContainers()
{
    beginLockUI();
    dropOperation();
    const QMap<QString, QVariant> config = cloudConfig();
    const auto operation = NVL::Cloud::OperationManager::instance().listContainers(config);
    if (!operation) {
        endLockUI();
        setErrorMessage(tr("Can't load containers!"));
        warning() << QStringLiteral("Can't load containers. Doesn't create an operation.");
        return;
    }
    m_operation = operation;
    connect(operation.data(), &NVL::Cloud::IOperation::finished, this, &Add::onLoadContainerOperationFinished);
    operation->run();
}

void Storages::Add::onLoadContainerOperationFinished()
{
    auto* finished = qobject_cast<NVL::Cloud::IOperation*>(sender());
    if (!m_operation || finished != m_operation.data()) {
        // A late answer of an operation this dialog gave up on.
        if (finished && !finished->isRemoved())
            finished->remove();
        if (!m_operation) {
            endLockUI();
            setErrorMessage(tr("Can't load containers!"));
            warning() << QStringLiteral("Can't load containers. Doesn't cast sender to operation.");
        }
        return;
    }
    const QSharedPointer<NVL::Cloud::IOperation> operation = m_operation;
    operation->remove();
    const bool result = operationFinished(operation.data());
    lockWidgetsAfterError(!result);
    if (m_operation == operation)
        m_operation.clear();
}

bool Storages::Add::operationFinished(NVL::Cloud::IOperation* operation)
{
    bool sslStarted = false;
    if (operation->isError()) {
        if (m_trust->offer(*operation, m_type)) {
            sslStarted = true;
        } else {
            operationErrorHandler(operation->errorCode(), operation->errorMessage());
            warning() << QStringLiteral("Operation return error: ")
                      << QStringLiteral("err(%1): %2").arg(operation->errorCode()).arg(operation->errorMessage());
        }
    } else if (operation->state() == NVL::Cloud::IOperation::Finished) {
        if (operation->type() == NVL::Cloud::OperationType::ListContainers) {
            auto* list = qobject_cast<NVL::Cloud::Operation::ListContainers*>(operation);
            if (list) {
                loadContainersFinished(list);
            } else {
                setErrorMessage(tr("Can't load containers!"));
                warning() << QStringLiteral("Can't load containers. Doesn't cast operation to list container.");
            }
        } else if (operation->type() == NVL::Cloud::OperationType::CreateContainer) {
            NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Container was created.");
        }
    }
    if (!sslStarted)
        endLockUI();
    return !operation->isError();
}

void Storages::Add::createContainer(const QJsonObject& params)
{
    beginLockUI();
    dropOperation();
    const auto operation = NVL::Cloud::OperationManager::instance().createContainer(cloudConfig(), params);
    if (!operation) {
        endLockUI();
        setErrorMessage(tr("Cab't create container!"));
        warning() << QStringLiteral("Can't create container. Doesn't create an operation.");
        return;
    }
    m_operation = operation;
    connect(operation.data(), &NVL::Cloud::IOperation::finished, this, &Add::onCreateContainerFinished);
    operation->run();
}

void Storages::Add::onCreateContainerFinished()
{
    auto* finished = qobject_cast<NVL::Cloud::IOperation*>(sender());
    if (!m_operation || finished != m_operation.data()) {
        if (finished && !finished->isRemoved())
            finished->remove();
        if (!m_operation) {
            endLockUI();
            setErrorMessage(tr("Can't creat container!"));
            warning() << QStringLiteral("Can't create container. Doesn't cast sender to operation.");
        }
        return;
    }
    const QSharedPointer<NVL::Cloud::IOperation> operation = m_operation;
    operation->remove();
    m_operation.clear();
    const bool result = operationFinished(operation.data());
    Add::lockWidgetsAfterError(!result);
    if (result)
        loadContainers();
}

bool Storages::Add::canRequestPrefixes() const
{
    return false;
}

void Storages::Add::loadPrefixes()
{
    if (!canRequestPrefixes()) {
        emit loadPrefixiesFinished(QStringList());
        return;
    }
    if (m_prefixOperation)
        m_prefixOperation->cancel();
    m_prefixOperation.reset(new NVB::Operation::GetPrefixOperation(cloudConfig(), QStringLiteral("NVB_")));
    connect(m_prefixOperation.data(), &NVB::Operation::GetPrefixOperation::finished, this,
        &Add::onLoadPrefixesOperationFinished);
    connect(
        m_prefixOperation.data(), &NVB::Operation::GetPrefixOperation::error, this, &Add::onLoadPrefixesOperationError);
    m_prefixOperation->exec();
}

void Storages::Add::onLoadPrefixesOperationFinished(const QUuid&, const QStringList& prefixes)
{
    emit loadPrefixiesFinished(prefixes);
}

void Storages::Add::onLoadPrefixesOperationError(const QUuid& id, int code, const QString& message)
{
    setErrorMessage(message);
    warning()
        << QStringLiteral("Load prefix error: in operation id(%1) (%2) %3").arg(id.toString()).arg(code).arg(message);
    okButton()->setEnabled(false);
    emit loadPrefixiesFinished(QStringList());
}

void Storages::Add::beginLockUI()
{
    onClearErrorMessage();
    setCursor(Qt::WaitCursor);
    const auto children = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : children) {
        if (!child->isWindow() && child != m_wheel)
            child->setEnabled(false);
    }
    m_buttons->setEnabled(true);
    okButton()->setEnabled(false);
    cancelButton()->setEnabled(true);
    cancelButton()->setCursor(Qt::ArrowCursor);
    process(true);
}

void Storages::Add::endLockUI()
{
    process(false);
    const auto children = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* child : children) {
        if (!child->isWindow())
            child->setEnabled(true);
    }
    // Everything, OK included: what must stay off after this is decided by
    // lockWidgetsAfterError and the provider's own checks that follow.
    okButton()->setEnabled(true);
    unsetCursor();
}

void Storages::Add::process(bool on)
{
    if (on)
        onClearErrorMessage();
    m_wheel->animate(on);
}

void Storages::Add::lockWidgetsAfterError(bool locked)
{
    if (locked)
        okButton()->setEnabled(false);
}

void Storages::Add::lockWidgetsAfterSslOperation(bool locked)
{
    lockWidgetsAfterError(locked);
}

bool Storages::Add::loadContainersFinished(NVL::Cloud::Operation::ListContainers*)
{
    return true;
}

QMap<QString, QVariant> Storages::Add::cloudConfig() const
{
    return {
        {NVL::Cloud::Config::Id, QUuid::createUuid()}, {NVL::Cloud::Config::Type, NVL::Cloud::TypeName.value(m_type)}};
}

void Storages::Add::operationErrorHandler(int, const QString& message)
{
    setErrorMessage(message);
}

bool Storages::Add::updateAccount(const QJsonObject& record, const QString& displayName, QString& error)
{
    try {
        const auto manager = Communication::Manager::instance();
        if (!manager)
            throw QStringLiteral("Commnunication manager is 0x00");
        Communication::ICommand* command
            = manager->commandFactory(QString::fromLatin1(Format::Storage::SaveStorage::Name));
        if (!command)
            throw QStringLiteral("Commnunication command don't registrate");
        namespace Request = Format::Storage::SaveStorage::Request;
        Account::CertificateTrust::setParams(command,
            {{QLatin1String(Request::Profile), Account::AccountUtility::currentProfile()},
                {QLatin1String(Request::ID), id().toString()}, {QLatin1String(Request::DisplayName), displayName},
                {QLatin1String(Request::Prefix), m_prefix}, {QLatin1String(Request::Params), record},
                {QLatin1String(Request::Type), int(m_type)}});
        connect(command, &Communication::ICommand::complite, this, &Add::onUpdateComplite);
        connect(command, &Communication::ICommand::error, this, &Add::onUpdateComplite);
        connect(command, &Communication::ICommand::timeout, this, &Add::onUpdateComplite);
        command->exec();
        return true;
    } catch (const QString& text) {
        error = text;
        return false;
    }
}

void Storages::Add::onUpdateComplite()
{
    auto* command = qobject_cast<Communication::ICommand*>(sender());
    if (!command)
        return;
    QScopedPointer<Communication::ICommand, QScopedPointerDeleteLater> holder(command);
    try {
        const QJsonObject data = Account::CertificateTrust::replyData(command);
        if (data.value(QLatin1String(Format::Storage::SaveStorage::Reply::Key)).toString()
            == QLatin1String(Format::Storage::SaveStorage::Reply::Value::Error))
            throw tr("Error on exec command");
        emit updateComplite();
    } catch (const QString& text) {
        warning() << text;
        emit updateError(text);
    }
}

void Storages::Add::onUpdateError(const QString& text)
{
    QMessageBox box(QMessageBox::Critical, tr("Error on save/update operation!"), text, QMessageBox::Ok, this);
    box.setObjectName(QStringLiteral("saveErrorBox"));
    box.exec();
}

void Storages::Add::onReject()
{
    dropOperation();
    if (m_prefixOperation)
        m_prefixOperation->cancel();
}

// The texts often come from a server (an error body, a host name): escaped
// inside the coloured tag, they can never render as markup or links.
void Storages::Add::setErrorMessage(const QString& text, bool show)
{
    m_message->setText(QStringLiteral("<font color='red'>%1</font>").arg(text.toHtmlEscaped()));
    m_message->setVisible(show);
    adjustSize();
}

void Storages::Add::setSuccessMessage(const QString& text, bool show)
{
    m_message->setText(QStringLiteral("<font color='green'>%1</font>").arg(text.toHtmlEscaped()));
    m_message->setVisible(show);
    adjustSize();
}

void Storages::Add::onClearErrorMessage()
{
    m_message->clear();
    m_message->hide();
}

bool Storages::Add::readItem(const QModelIndex& index, QLineEdit* displayName, QJsonObject* record, QString* id)
{
    if (!index.isValid()) {
        endLockUI();
        return false;
    }
    const QAbstractItemModel* model = index.model();
    *record = model->index(index.row(), Column::DetailParams, index.parent()).data().toJsonObject();
    *id = model->index(index.row(), Column::ID, index.parent()).data().toString();
    displayName->setText(model->index(index.row(), Column::DisplayName, index.parent()).data().toString());
    return true;
}

void Storages::Add::saveRecord(const QJsonObject& record, const QString& displayName)
{
    QString error;
    if (!updateAccount(record, displayName, error)) {
        warning() << error;
        setErrorMessage(error);
    }
}

QString Storages::Add::checkingEndpoint(const QString& text, bool& useSsl)
{
    if (text.trimmed().isEmpty()) {
        setErrorMessage(tr("Endpoint is empty"));
        return QString();
    }
    NVL::Utitlity::EndpointHelper helper(text, useSsl);
    if (helper.hasError()) {
        setErrorMessage(helper.lastErrorMessage());
        return QString();
    }
    useSsl = helper.useSsl();
    return helper.endpointWithScheme();
}

} // namespace NVB::GUI::Settings
