#include "localadd.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

#include "accounts/advanced/advancedstorage.h"
#include "cloud/cloudconfig.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/nvldebug.h"
#include "models/models.h"

namespace NVB::GUI::Settings::Account {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
namespace Record = NVB::Info::StorageAccountConfigFormat;

Local::Add::Add(QWidget* parent)
    : Storages::Add(NVL::Cloud::Type::FileSystem, parent)
{
    auto* form = new QFormLayout;
    m_displayName = new QLineEdit(this);
    m_displayName->setMinimumWidth(LineEditWidth);
    form->addRow(tr("Display name:"), m_displayName);
    auto* pathRow = new QHBoxLayout;
    pathRow->setSpacing(2);
    m_path = new QLineEdit(this);
    m_path->setMinimumWidth(LineEditWidth);
    m_browse = new QToolButton(this);
    m_browse->setText(QStringLiteral("..."));
    pathRow->addWidget(m_path, 1);
    pathRow->addWidget(m_browse);
    form->addRow(tr("Local container:"), pathRow);
    setProviderLayout(form);

    connect(m_displayName, &QLineEdit::textChanged, this, &Add::onDataChanged);
    connect(m_path, &QLineEdit::textChanged, this, &Add::onDataChanged);
    connect(m_browse, &QToolButton::clicked, this, &Add::onSelectPathCliked);
}

QMap<QString, QVariant> Local::Add::cloudConfig() const
{
    QMap<QString, QVariant> config = Storages::Add::cloudConfig();
    config.insert(NVL::Cloud::Config::FileSystem::Path, normalizedPath());
    return config;
}

bool Local::Add::canRequestPrefixes() const
{
    const QString path = normalizedPath();
    return path.startsWith(QLatin1Char('/')) && QFileInfo(path).isDir();
}

QString Local::Add::normalizedPath() const
{
    QString path = m_path->text().trimmed();
    if (!path.isEmpty() && !path.endsWith(QLatin1Char('/')))
        path.append(QLatin1Char('/'));
    return path;
}

QString Local::Add::backupFolder() const
{
    return normalizedPath() + QStringLiteral("NVB_") + prefix();
}

void Local::Add::onSelectPathCliked()
{
    const QString chosen = QFileDialog::getExistingDirectory(this, tr("Local container"), m_path->text().trimmed());
    if (!chosen.isEmpty())
        m_path->setText(chosen);
}

void Local::Add::onDataChanged()
{
    onClearErrorMessage();
    okButton()->setEnabled(!m_displayName->text().trimmed().isEmpty() && !m_path->text().trimmed().isEmpty());
}

void Local::Add::onAccept()
{
    try {
        const QString path = normalizedPath();
        if (!path.startsWith(QLatin1Char('/')))
            throw tr("Wrong local container specified!");
        const QString folder = backupFolder();
        if (!QFileInfo(folder).isDir() && !QDir().mkpath(folder))
            throw tr("Can not create a directory in the specified path!");
        QJsonObject record;
        record.insert(Record::FileSystem::Path, path);
        QString error;
        if (!updateAccount(record, m_displayName->text().trimmed(), error))
            throw error;
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        setErrorMessage(text);
    }
}

void Local::Add::onSetItem(const QModelIndex& index)
{
    if (index.isValid()) {
        const QAbstractItemModel* model = index.model();
        m_displayName->setText(model->index(index.row(), Column::DisplayName, index.parent()).data().toString());
        const QJsonObject record
            = model->index(index.row(), Column::DetailParams, index.parent()).data().toJsonObject();
        m_path->setText(record.value(Record::FileSystem::Path).toString());
    }
    endLockUI();
    onDataChanged();
}

void Local::Add::onAdvancedClicked()
{
    onClearErrorMessage();
    AdvancedStorage advanced(!canRequestPrefixes(), false, true, *this, this);
    if (advanced.exec() == QDialog::Accepted)
        setPrefix(advanced.prefix());
}

} // namespace NVB::GUI::Settings::Account
