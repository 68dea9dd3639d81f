#include "models/filesystemcheckedsharecontrolmodel.h"

#include <QJsonArray>
#include <QPointer>
#include <QSet>

#include "core/nvldebug.h"
#include "listing/filesystemobjectitems.h"
#include "service/channelerrors.h"
#include "service/commandresult.h"
#include "service/commands/header.h"
#include "service/commands/plan.h"
#include "service/icommand.h"
#include "service/manager.h"

namespace NVB::GUI {

namespace Communication = NVB::Common::Communication;
namespace UsedShare = Communication::Commands::Format::Plan::GetUsedShare;

namespace {
const QLatin1String PlanKey("plan");
const QLatin1String ShareKey("share");
} // namespace

FileSystemCheckedShareControlModel::FileSystemCheckedShareControlModel(QObject* parent)
    : FileSystemCheckedModel(parent)
{
    for (QObject* node : rootItem()->children()) {
        if (node->property(Type).toInt() == Constants::SessionAccess::FileSystemObject::Items::Type::Share)
            m_shares << node->property(RealPath).toString();
    }
    requestUsedShares();
}

void FileSystemCheckedShareControlModel::requestUsedShares()
{
    try {
        QPointer<Communication::Manager> manager = Communication::Manager::instance();
        if (manager.isNull())
            throw QString::fromLatin1(Communication::Errors::ManagerMissing);
        Communication::ICommand* command = manager->commandFactory(QLatin1String(UsedShare::Name));
        if (!command)
            throw QString::fromLatin1(Communication::Errors::CommandNotRegistered);
        connect(command, &Communication::ICommand::complite, this,
            &FileSystemCheckedShareControlModel::onGetUsedShareResult);
        connect(
            command, &Communication::ICommand::error, this, &FileSystemCheckedShareControlModel::onGetUsedShareResult);
        connect(command, &Communication::ICommand::timeout, this,
            &FileSystemCheckedShareControlModel::onGetUsedShareResult);
        QJsonObject request = command->request().object();
        request.insert(QLatin1String(Communication::Commands::Format::Header::Params), QJsonObject());
        command->setRequest(QJsonDocument(request));
        command->exec();
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
}

void FileSystemCheckedShareControlModel::onGetUsedShareResult()
{
    auto* command = qobject_cast<Communication::ICommand*>(sender());
    if (!command)
        return;
    try {
        const QJsonObject data = Communication::CommandResult::data(command);
        QMultiMap<QString, QUuid> used;
        for (const QJsonValue& value : data.value(QLatin1String(UsedShare::Reply::List)).toArray()) {
            const QJsonObject entry = value.toObject();
            const QString share = entry.value(ShareKey).toString();
            const QUuid plan = QUuid::fromString(entry.value(PlanKey).toString());
            if (share.isEmpty())
                continue;
            // Plans keep shares by their shown path; the tree knows them by
            // the real one.
            used.insert(unReplacePath({share}).value(0), plan);
        }
        m_usedShares = used;
    } catch (const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
    }
    command->deleteLater();
}

QString FileSystemCheckedShareControlModel::shareOf(const QString& path) const
{
    for (const QString& share : m_shares) {
        if (path == share || path.startsWith(share.endsWith(QLatin1Char('/')) ? share : share + QLatin1Char('/')))
            return share;
    }
    return QString();
}

bool FileSystemCheckedShareControlModel::isShare(const QString& path) const
{
    return !shareOf(path).isEmpty();
}

bool FileSystemCheckedShareControlModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const bool marking = role == Qt::CheckStateRole && value.toInt() != StateUnchecked;
    QObject* node = index.isValid() ? nodeFromIndex(index) : nullptr;
    const QString share = marking && node ? shareOf(node->property(RealPath).toString()) : QString();
    if (!share.isEmpty() && m_shareLimit >= 0) {
        // Shares in use: those of other plans, and those this tree marks.
        QSet<QString> inUse;
        for (auto it = m_usedShares.constBegin(); it != m_usedShares.constEnd(); ++it) {
            if (it.value() != m_planId || m_planId.isNull())
                inUse.insert(it.key());
        }
        for (const QString& known : qAsConst(m_shares)) {
            const QModelIndex shareIndex = indexByPath(known);
            if (shareIndex.isValid() && shareIndex.data(Qt::CheckStateRole).toInt() != StateUnchecked)
                inUse.insert(known);
        }
        inUse.insert(share);
        if (inUse.size() > m_shareLimit) {
            emit shareControlAttention();
            return false;
        }
    }
    return FileSystemCheckedModel::setData(index, value, role);
}

void FileSystemCheckedShareControlModel::initChecked(
    const QUuid& planId, const QStringList& include, const QStringList& exclude)
{
    m_planId = planId;
    FileSystemCheckedModel::initChecked(include, exclude);
}

} // namespace NVB::GUI
