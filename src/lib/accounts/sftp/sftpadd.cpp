#include "sftpadd.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include "accounts/accountutility.h"
#include "accounts/advanced/advanced.h"
#include "cloud/cloudconfig.h"
#include "cloud/ioperation.h"
#include "cloud/operationmanager.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "models/models.h"

namespace NVB::GUI::Settings::Account {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
namespace Record = NVB::Info::StorageAccountConfigFormat;
namespace Net = NVL::Cloud::Config::Network;

Sftp::Add::Add(QWidget* parent)
    : Storages::Add(NVL::Cloud::Type::Sftp, parent)
{
    setWindowTitle(tr("Add Account"));
    auto* form = new QFormLayout;
    auto edit = [this] {
        auto* line = new QLineEdit(this);
        line->setMinimumWidth(LineEditWidth);
        return line;
    };
    m_displayName = edit();
    m_server = edit();
    m_path = edit();
    m_user = edit();
    m_port = new QSpinBox(this);
    m_port->setRange(1, 65535);
    m_port->setValue(22);
    m_auth = new QComboBox(this);
    m_auth->addItem(tr("Password"));
    m_auth->addItem(tr("Private Key"));
    m_password = edit();
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setPlaceholderText(tr("Enter password"));
    m_passwordLabel = new QLabel(tr("Password:"), this);
    m_keyRow = new QWidget(this);
    auto* keyLayout = new QHBoxLayout(m_keyRow);
    keyLayout->setContentsMargins(0, 0, 0, 0);
    keyLayout->setSpacing(2);
    m_keyPath = new QLineEdit(m_keyRow);
    m_keyPath->setMinimumWidth(LineEditWidth - 60);
    m_import = new QPushButton(tr("Import"), m_keyRow);
    keyLayout->addWidget(m_keyPath, 1);
    keyLayout->addWidget(m_import);
    m_keyLabel = new QLabel(tr("Private key:"), this);
    m_keepAlive = new QCheckBox(tr("Keep alive"), this);
    m_useProxy = new QCheckBox(tr("Use Proxy"), this);
    m_test = new QPushButton(tr("Test Connnection"), this);

    form->addRow(tr("Display name:"), m_displayName);
    form->addRow(tr("Server:"), m_server);
    form->addRow(tr("Path:"), m_path);
    form->addRow(tr("Port:"), m_port);
    form->addRow(tr("User:"), m_user);
    form->addRow(tr("Authentication:"), m_auth);
    form->addRow(m_passwordLabel, m_password);
    form->addRow(m_keyLabel, m_keyRow);
    auto* boxes = new QHBoxLayout;
    boxes->addWidget(m_keepAlive);
    boxes->addWidget(m_useProxy);
    boxes->addStretch(1);
    form->addRow(QString(), boxes);
    auto* testRow = new QHBoxLayout;
    testRow->addWidget(m_test);
    testRow->addStretch(1);
    form->addRow(QString(), testRow);
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    for (QLineEdit* line : {m_server, m_path, m_user, m_password, m_keyPath})
        connect(line, &QLineEdit::textEdited, this, &Add::onCredsReset);
    connect(m_port, QOverload<int>::of(&QSpinBox::valueChanged), this, &Add::onCredsReset);
    connect(m_useProxy, &QCheckBox::toggled, this, &Add::onCredsReset);
    connect(m_auth, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &Add::onAuthTypeChanged);
    connect(m_import, &QPushButton::clicked, this, &Add::onSelectPathToPKeyCliked);
    connect(m_test, &QPushButton::clicked, this, &Add::testSessionUnavailable);
    onAuthTypeChanged(Password);
}

QString Sftp::Add::privateKey(const QString& path)
{
    if (path.trimmed().isEmpty())
        return QString();
    QFile file(path.trimmed());
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

QString Sftp::Add::credential() const
{
    if (m_auth->currentIndex() == Password)
        return m_password->text();
    if (m_keyPath->text().trimmed().isEmpty())
        return m_storedKey;
    return privateKey(m_keyPath->text());
}

void Sftp::Add::onAuthTypeChanged(int index)
{
    const bool password = index == Password;
    m_passwordLabel->setVisible(password);
    m_password->setVisible(password);
    m_keyLabel->setVisible(!password);
    m_keyRow->setVisible(!password);
    onCredsReset();
}

void Sftp::Add::onSelectPathToPKeyCliked()
{
    const QString chosen = QFileDialog::getOpenFileName(this, tr("Private key"), m_keyPath->text().trimmed());
    if (chosen.isEmpty())
        return;
    m_keyPath->setText(chosen);
    onCredsReset();
}

void Sftp::Add::onCredsReset()
{
    m_tested = false;
    onClearErrorMessage();
    onDataChanged();
}

void Sftp::Add::onDataChanged()
{
    const bool complete = !m_displayName->text().trimmed().isEmpty() && !m_server->text().trimmed().isEmpty()
        && !m_path->text().trimmed().isEmpty() && !m_user->text().trimmed().isEmpty() && !credential().isEmpty();
    okButton()->setEnabled(complete && m_tested);
    m_test->setEnabled(!m_server->text().trimmed().isEmpty() && !m_path->text().trimmed().isEmpty()
        && !m_user->text().trimmed().isEmpty() && !credential().isEmpty());
}

QMap<QString, QVariant> Sftp::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(Net::Address, m_server->text().trimmed());
    config.insert(Net::Port, m_port->value());
    config.insert(Net::KeepAlive, m_keepAlive->isChecked());
    config.insert(Net::UseProxy, m_useProxy->isChecked());
    config.insert(Net::Sftp::Path, AccountUtility::removeTrailingCharacterAfterSlash(m_path->text().trimmed()));
    config.insert(Net::Sftp::User, m_user->text().trimmed());
    if (m_auth->currentIndex() == Password)
        config.insert(Net::Sftp::Password, m_password->text());
    else
        config.insert(Net::Sftp::PrivateKey, credential());
    return config;
}

bool Sftp::Add::canRequestPrefixes() const
{
    return m_tested;
}

void Sftp::Add::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    if (locked)
        m_tested = false;
}

void Sftp::Add::testSessionUnavailable()
{
    // The edit shows the path exactly as it is tested and saved.
    const QString path = AccountUtility::removeTrailingCharacterAfterSlash(m_path->text().trimmed());
    if (path != m_path->text())
        m_path->setText(path);
    beginLockUI();
    dropOperation();
    const auto operation
        = NVL::Cloud::OperationManager::instance().listing(cloudConfig(), QString(), QStringLiteral("/"), QString(), 1);
    if (!operation) {
        endLockUI();
        setErrorMessage(tr("Can't test the connection!"));
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Can't test sftp. Doesn't create an operation.");
        return;
    }
    setOperation(operation);
    connect(operation.data(), &NVL::Cloud::IOperation::finished, this, &Add::onTestFinished);
    operation->run();
}

void Sftp::Add::onTestFinished()
{
    auto* finished = qobject_cast<NVL::Cloud::IOperation*>(sender());
    const QSharedPointer<NVL::Cloud::IOperation> held = operation();
    if (!held || finished != held.data()) {
        // An answer for a test this dialog already gave up on.
        if (finished && !finished->isRemoved())
            finished->remove();
        return;
    }
    setOperation({});
    held->remove();
    endLockUI();
    if (held->isError()) {
        m_tested = false;
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Operation return error: err(%1): %2").arg(held->errorCode()).arg(held->errorMessage());
        onDataChanged();
        setErrorMessage(held->errorMessage());
        return;
    }
    m_tested = true;
    onDataChanged();
    setSuccessMessage(tr("Connection Successful"));
}

void Sftp::Add::saveConfig()
{
    try {
        QJsonObject record;
        record.insert(Record::Network::Address, m_server->text().trimmed());
        record.insert(Record::Network::Port, m_port->value());
        record.insert(Record::Network::KeepAlive, m_keepAlive->isChecked());
        record.insert(Record::Network::UseProxy, m_useProxy->isChecked());
        record.insert(
            Record::Network::Ftp::Path, AccountUtility::removeTrailingCharacterAfterSlash(m_path->text().trimmed()));
        record.insert(Record::Network::Ftp::User, m_user->text().trimmed());
        if (m_auth->currentIndex() == Password)
            record.insert(Record::Network::Ftp::Password, SHARED::cryptNS::encrypt_local_password(m_password->text()));
        else
            record.insert(
                Record::Network::Ftp::Sftp::PrivateKey, SHARED::cryptNS::encrypt_local_password(credential()));
        QString error;
        if (!updateAccount(record, m_displayName->text().trimmed(), error))
            throw error;
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        setErrorMessage(text);
    }
}

void Sftp::Add::onAccept()
{
    saveConfig();
}

void Sftp::Add::onSetItem(const QModelIndex& index)
{
    if (!index.isValid()) {
        endLockUI();
        return;
    }
    const QAbstractItemModel* model = index.model();
    const QJsonObject record = model->index(index.row(), Column::DetailParams, index.parent()).data().toJsonObject();
    const QString id = model->index(index.row(), Column::ID, index.parent()).data().toString();
    const QSignalBlocker blockAuth(m_auth);
    m_displayName->setText(model->index(index.row(), Column::DisplayName, index.parent()).data().toString());
    m_server->setText(record.value(Record::Network::Address).toString());
    m_port->setValue(record.value(Record::Network::Port).toInt(22));
    m_keepAlive->setChecked(record.value(Record::Network::KeepAlive).toBool());
    {
        const QSignalBlocker blockProxy(m_useProxy);
        m_useProxy->setChecked(record.value(Record::Network::UseProxy).toBool());
    }
    m_path->setText(record.value(Record::Network::Ftp::Path).toString());
    m_user->setText(record.value(Record::Network::Ftp::User).toString());
    const bool withKey = record.contains(Record::Network::Ftp::Sftp::PrivateKey);
    m_auth->setCurrentIndex(withKey ? PrivateKey : Password);
    onAuthTypeChanged(m_auth->currentIndex());
    endLockUI();
    try {
        if (withKey) {
            m_storedKey = SHARED::cryptNS::decrypt_local_password(
                record.value(Record::Network::Ftp::Sftp::PrivateKey).toString());
            m_keyPath->clear();
            m_keyPath->setPlaceholderText(tr("The stored key"));
        } else {
            m_password->setText(
                SHARED::cryptNS::decrypt_local_password(record.value(Record::Network::Ftp::Password).toString()));
        }
    } catch (const QString&) {
        NVL::NvlDebug(QStringLiteral("NVB")).error()
            << QStringLiteral("Can't decrypt secret Key in account load. ID: %1").arg(id);
        onDataChanged();
        setErrorMessage(tr("Can't decrypt secret Key in account load."));
        return;
    }
    onDataChanged();
    testSessionUnavailable();
}

void Sftp::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    Advanced advanced(*this, !canRequestPrefixes(), this);
    if (advanced.exec() == QDialog::Accepted)
        setPrefix(advanced.prefix());
}

} // namespace NVB::GUI::Settings::Account
