#include "settings/ssltrustedstoragedialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedPointer>
#include <QSslCertificate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "plans/plancommand.h"
#include "service/commandresult.h"
#include "service/commands/system.h"
#include "service/icommand.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"

namespace NVB::GUI {

namespace {

namespace System = NVB::Common::Communication::Commands::Format::System;
namespace Notify = NVB::Common::Communication::Notification::Format;
using NVB::Common::Communication::CommandResult;
using NVB::Common::Communication::ICommand;

enum Column { Endpoint, Subject, Expires, Fingerprint, Count };
constexpr int PemRole = Qt::UserRole + 1;

} // namespace

SslTrustedStorageDialog::SslTrustedStorageDialog(QWidget* parent)
    : QDialog(parent)
    , m_list(new QTreeWidget(this))
    , m_remove(new QPushButton(tr("Remove"), this))
    , m_error(new QLabel(this))
{
    setWindowTitle(tr("Trusted SSL certificates"));
    auto* layout = new QVBoxLayout(this);
    m_list->setColumnCount(Count);
    m_list->setHeaderLabels({tr("Endpoint"), tr("Issued to"), tr("Expires"), tr("SHA-256")});
    m_list->setRootIsDecorated(false);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->header()->setStretchLastSection(true);
    layout->addWidget(m_list);
    m_error->setStyleSheet(QStringLiteral("color: red;"));
    m_error->setWordWrap(true);
    m_error->hide();
    layout->addWidget(m_error);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->addButton(m_remove, QDialogButtonBox::ActionRole);
    layout->addWidget(buttons);
    m_remove->setEnabled(false);
    resize(640, 320);

    connect(buttons, &QDialogButtonBox::rejected, this, &SslTrustedStorageDialog::reject);
    connect(m_remove, &QPushButton::clicked, this, &SslTrustedStorageDialog::onRemoveClicked);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this,
        [this] { m_remove->setEnabled(!m_list->selectedItems().isEmpty()); });
    if (const auto center = NVB::Common::Communication::NotificationCenter::instance())
        connect(center, &NVB::Common::Communication::NotificationCenter::notification, this,
            &SslTrustedStorageDialog::onNotification);
    reload();
}

void SslTrustedStorageDialog::reload()
{
    try {
        ICommand* command = PlanCommand::create(QString::fromLatin1(System::ReadFromSslStorage::Name));
        connect(command, &ICommand::complite, this, &SslTrustedStorageDialog::onReadFinished);
        connect(command, &ICommand::error, this, &SslTrustedStorageDialog::onReadFinished);
        connect(command, &ICommand::timeout, this, &SslTrustedStorageDialog::onReadFinished);
        PlanCommand::exec(command, QJsonObject());
    } catch (const QString& text) {
        showError(text);
    }
}

void SslTrustedStorageDialog::onReadFinished()
{
    QScopedPointer<ICommand, QScopedPointerDeleteLater> command(qobject_cast<ICommand*>(sender()));
    try {
        const QJsonObject data = CommandResult::data(command.data());
        m_list->clear();
        for (const QJsonValue& value :
            data.value(QLatin1String(System::ReadFromSslStorage::Reply::Certificates)).toArray()) {
            const QJsonObject entry = value.toObject();
            const QString pem = entry.value(QStringLiteral("pem")).toString();
            const QSslCertificate certificate(pem.toUtf8(), QSsl::Pem);
            auto* item = new QTreeWidgetItem(m_list);
            item->setText(Endpoint, entry.value(QStringLiteral("endpoint")).toString());
            item->setText(Subject, certificate.subjectInfo(QSslCertificate::CommonName).join(QStringLiteral(", ")));
            item->setText(Expires, certificate.expiryDate().toString(Qt::ISODate));
            item->setText(Fingerprint, entry.value(QStringLiteral("sha256")).toString());
            item->setData(Endpoint, PemRole, pem);
        }
        m_error->hide();
    } catch (const QString& text) {
        showError(tr("The trusted certificates cannot be read: %1").arg(text));
    }
    m_remove->setEnabled(!m_list->selectedItems().isEmpty());
}

void SslTrustedStorageDialog::onRemoveClicked()
{
    const auto selected = m_list->selectedItems();
    if (selected.isEmpty())
        return;
    if (QMessageBox::question(this, tr("Remove certificates"),
            tr("Stop trusting %n certificate(s)? Connections to their endpoints will be refused "
               "until a certificate is trusted again.",
                nullptr, selected.size()),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        != QMessageBox::Yes)
        return;
    QStringList pems;
    for (const QTreeWidgetItem* item : selected)
        pems.append(item->data(Endpoint, PemRole).toString());
    try {
        ICommand* command = PlanCommand::create(QString::fromLatin1(System::RemoveFromSslStorage::Name));
        connect(command, &ICommand::complite, this, &SslTrustedStorageDialog::onRemoveFinished);
        connect(command, &ICommand::error, this, &SslTrustedStorageDialog::onRemoveFinished);
        connect(command, &ICommand::timeout, this, &SslTrustedStorageDialog::onRemoveFinished);
        m_remove->setEnabled(false);
        PlanCommand::exec(
            command, {{QLatin1String(System::RemoveFromSslStorage::Request::Pems), pems.join(QLatin1Char('\n'))}});
    } catch (const QString& text) {
        showError(text);
    }
}

void SslTrustedStorageDialog::onRemoveFinished()
{
    QScopedPointer<ICommand, QScopedPointerDeleteLater> command(qobject_cast<ICommand*>(sender()));
    try {
        CommandResult::data(command.data());
    } catch (const QString& text) {
        showError(tr("The certificate was not removed: %1").arg(text));
    }
    // Whatever happened, show what the engine holds now.
    reload();
}

void SslTrustedStorageDialog::onNotification(const QJsonDocument& document)
{
    QScopedPointer<NVB::Common::Communication::Notification::IParser> parser(
        NVB::Common::Communication::Notification::ParserFactory::instance().create(document));
    if (parser && parser->type() == Notify::System::SslStorageChange::Type)
        reload();
}

void SslTrustedStorageDialog::showError(const QString& text)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    m_error->setText(text);
    m_error->show();
}

} // namespace NVB::GUI
