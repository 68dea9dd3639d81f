#include "settings/movedatabase.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "plans/plancommand.h"
#include "service/commandresult.h"
#include "service/commands/system.h"
#include "service/icommand.h"
#include "sql/database.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

namespace {

namespace System = NVB::Common::Communication::Commands::Format::System;
using NVB::Common::Communication::ICommand;

const QString FileName = QStringLiteral("/nvbackup.db");

} // namespace

Application::MoveDatabase::MoveDatabase(QWidget* parent)
    : QDialog(parent)
    , m_path(new QLineEdit(this))
    , m_browse(new QToolButton(this))
    , m_error(new QLabel(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Repository setting"));
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout();
    row->addWidget(new QLabel(tr("Database path:"), this));
    m_path->setReadOnly(true);
    m_path->setMinimumWidth(200);
    m_path->setText(NVB::SQL::Database::connectionString());
    row->addWidget(m_path, 1);
    m_browse->setText(QStringLiteral("..."));
    m_browse->setStyleSheet(QStringLiteral("QToolButton { padding: 0px 4px; }"));
    row->addWidget(m_browse);
    layout->addLayout(row);
    m_error->setStyleSheet(QStringLiteral("color: red;"));
    m_error->setWordWrap(true);
    m_error->hide();
    layout->addWidget(m_error);
    layout->addWidget(m_buttons);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
    connect(m_browse, &QToolButton::clicked, this, &MoveDatabase::onPathEditClicked);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &MoveDatabase::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &MoveDatabase::reject);
}

void Application::MoveDatabase::onPathEditClicked()
{
    const QString folder
        = QFileDialog::getExistingDirectory(this, tr("Select new container"), QFileInfo(m_path->text()).absolutePath());
    if (!folder.isEmpty())
        setTargetFolder(folder);
}

void Application::MoveDatabase::setTargetFolder(const QString& folder)
{
    m_path->setText(QDir::cleanPath(folder) + FileName);
    m_error->hide();
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(true);
}

void Application::MoveDatabase::onAccept()
{
    if (m_command)
        return;
    try {
        const QString target = m_path->text();
        if (QFileInfo(target).absoluteFilePath()
            == QFileInfo(NVB::SQL::Database::connectionString()).absoluteFilePath())
            throw tr("The database is already at %1.").arg(target);
        const QFileInfo folder(QFileInfo(target).absolutePath());
        // Checked here only to say it early; the engine checks again, with
        // the free space, before it copies anything.
        if (!folder.isDir() || !folder.isWritable())
            throw tr("The folder %1 does not exist or is not writable.").arg(folder.absoluteFilePath());
        m_command = PlanCommand::create(QString::fromLatin1(System::MoveDatabase::Name));
        connect(m_command, &ICommand::complite, this, &MoveDatabase::onMoveFinished);
        connect(m_command, &ICommand::error, this, &MoveDatabase::onMoveFinished);
        connect(m_command, &ICommand::timeout, this, &MoveDatabase::onMoveFinished);
        setBusy(true);
        PlanCommand::exec(m_command, {{QLatin1String(System::MoveDatabase::Request::Path), target}});
    } catch (const QString& text) {
        showError(text);
    }
}

void Application::MoveDatabase::onMoveFinished()
{
    QScopedPointer<ICommand, QScopedPointerDeleteLater> command(m_command);
    m_command = nullptr;
    setBusy(false);
    try {
        // A big store takes longer to copy than the channel waits for an
        // answer; the engine goes on, so this is no failure yet.
        if (command && command->isTimeout())
            throw tr("The engine has not finished yet. The move goes on; reopen this dialog later to see where "
                     "the database is.");
        NVB::Common::Communication::CommandResult::data(command.data());
        // The engine wrote the new "DatabasePath" itself before it answered;
        // without taking it in, this console would go on naming the old file.
        NVB::DefaultSettings::instance()->reload();
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Database moved to %1").arg(m_path->text());
        accept();
    } catch (const QString& text) {
        showError(command && command->isTimeout() ? text : tr("The database was not moved: %1").arg(text));
    }
}

void Application::MoveDatabase::showError(const QString& text)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    m_error->setText(text);
    m_error->show();
}

void Application::MoveDatabase::setBusy(bool busy)
{
    m_browse->setEnabled(!busy);
    m_buttons->setEnabled(!busy);
    if (busy)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

} // namespace NVB::GUI::Settings
