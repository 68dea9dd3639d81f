#include "backupdatadeleter.h"

#include <algorithm>

#include <QInputDialog>
#include <QJsonArray>
#include <QLocale>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>

#include "app/delegates/sizedelegate.h"
#include "records/repository/generation.h"
#include "service/manager.h"
#include "service/v2/command.h"
#include "service/v2/commands/repository/getgenerationlist.h"
#include "storage/deletebackupdatadialog.h"

namespace NVB::Console {

namespace V2 = NVB::Common::Communication::V2;
using NVB::Info::Repository::Generation;

BackupDataDeleter::BackupDataDeleter(QWidget* window)
    : QObject(window)
    , m_window(window)
{ }

void BackupDataDeleter::start(const QUuid& connectionId, const QUuid& planId, const QString& planName)
{
    // One question at a time: a second click while the list is coming is
    // the same request.
    if (m_busy)
        return;
    m_connectionId = connectionId;
    m_planId = planId;
    m_planName = planName;
    auto* command = NVB::Common::Communication::Manager::instance()->commandFactoryV2(
        V2::Repository::GetGenerationList::CommandId);
    if (!command) {
        QMessageBox::warning(m_window, tr("Delete backup data"), tr("Communication command don't registrate"));
        return;
    }
    auto request = QSharedPointer<V2::Repository::GetGenerationList::Request>::create();
    request->setConnectionId(connectionId);
    request->setBunchId(planId);
    command->setParent(this);
    command->setRequest(request);
    connect(command, &V2::Command::complite, this, &BackupDataDeleter::onGenerations);
    connect(command, &V2::Command::error, this, &BackupDataDeleter::onGenerations);
    connect(command, &V2::Command::timeout, this, &BackupDataDeleter::onGenerations);
    m_busy = true;
    command->exec();
}

void BackupDataDeleter::onGenerations()
{
    auto* command = qobject_cast<V2::Command*>(sender());
    if (!command)
        return;
    command->deleteLater();
    m_busy = false;
    const auto response = command->response().dynamicCast<V2::Repository::GetGenerationList::Response>();
    const bool ok = command->status() == V2::Command::Success && response;
    const QString why = command->errorMessage().isEmpty() ? tr("The engine did not answer.") : command->errorMessage();
    QList<QSharedPointer<Generation>> generations;
    for (const QJsonValue& value : ok ? response->generationList() : QJsonArray()) {
        if (const auto generation = Generation::fromJson(value.toObject()))
            generations.append(generation);
    }
    // Every question below runs an event loop of its own, and the deletion
    // dialog talks to the engine; asked from inside this reply's handler,
    // the channel would hold back its answers until they closed.
    QTimer::singleShot(0, this, [this, ok, why, generations] {
        if (ok)
            offer(generations);
        else
            QMessageBox::warning(m_window, tr("Delete backup data"), why);
    });
}

void BackupDataDeleter::offer(QList<QSharedPointer<Generation>> generations)
{
    if (generations.isEmpty()) {
        QMessageBox::information(
            m_window, tr("Delete backup data"), tr("The plan \"%1\" has no backup data in storage.").arg(m_planName));
        return;
    }
    // Newest first, as a user thinks of them.
    std::sort(generations.begin(), generations.end(),
        [](const auto& a, const auto& b) { return a->lastRestorePoint() > b->lastRestorePoint(); });
    QUuid chosen = generations.constFirst()->id();
    if (generations.size() > 1) {
        // A null generation stands for the whole backup.
        QStringList names {tr("The whole backup (every generation)")};
        for (const auto& generation : generations) {
            names.append(
                QStringLiteral("%1 - %2 (%3)")
                    .arg(
                        QLocale::system().toString(generation->firstRestorePoint().toLocalTime(), QLocale::ShortFormat),
                        QLocale::system().toString(generation->lastRestorePoint().toLocalTime(), QLocale::ShortFormat),
                        NVB::GUI::SizeDelegate::toText(QVariant::fromValue(generation->storageSize()))));
        }
        bool ok = false;
        const QString name = QInputDialog::getItem(
            m_window, tr("Delete backup data"), tr("Data of \"%1\" to delete:").arg(m_planName), names, 1, false, &ok);
        if (!ok)
            return;
        const int index = names.indexOf(name);
        chosen = index > 0 ? generations.at(index - 1)->id() : QUuid();
    }
    NVB::GUI::DeleteBackupDataDialog dialog(m_connectionId, m_planId, chosen, m_window);
    emit finished(dialog.exec() == QDialog::Accepted);
}

} // namespace NVB::Console
