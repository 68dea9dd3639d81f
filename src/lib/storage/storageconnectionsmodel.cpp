#include "storageconnectionsmodel.h"

#include <cstdlib>

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QScopedPointer>
#include <QStringList>
#include <QTimer>

#include "app/application.h"
#include "app/icons/iconmanager.h"
#include "cloud/cloudtype.h"
#include "core/nvldebug.h"
#include "models/models.h"
#include "service/commands/header.h"
#include "service/commands/storage.h"
#include "service/icommand.h"
#include "service/manager.h"
#include "service/notification/format.h"
#include "service/notification/iparser.h"
#include "service/notification/parserfactory.h"
#include "service/notificationcenter.h"

namespace NVB::GUI {

namespace Communication = NVB::Common::Communication;
namespace Format = NVB::Common::Communication::Commands::Format;
namespace Notify = NVB::Common::Communication::Notification::Format;
namespace Info = Models::Table::NvbStorageConnectionModelInfo;

namespace {

void warn(const QString& text)
{
    NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
}

void info(const QString& text)
{
    NVL::NvlDebug(QStringLiteral("NVB")).info() << text;
}

QString profile()
{
    return QString::fromLocal8Bit(std::getenv("USER"));
}

void setParams(Communication::ICommand* command, const QJsonObject& params)
{
    QJsonObject request = command->request().object();
    request.insert(QLatin1String(Format::Header::Params), params);
    command->setRequest(QJsonDocument(request));
}

// The reply's "data" object, or the reason the command brought none.
QJsonObject replyData(Communication::ICommand* command)
{
    if (!command->isComplite() || command->isError() || command->isTimeout() || command->reply().isNull()
        || !command->reply().isObject())
        throw QObject::tr("Local command reply format error");
    if (command->isReplyError())
        throw command->replyErrorString();
    return command->reply().object().value(QLatin1String(Format::Header::Data)).toObject();
}

const char* const ColumnKeys[Info::Column::Count] = {
    Format::Storage::GetConnection::Reply::DisplayName,
    Format::Storage::GetConnection::Reply::ID,
    Format::Storage::GetConnection::Reply::Path,
    Format::Storage::GetConnection::Reply::Prefix,
    Format::Storage::GetConnection::Reply::PrefixArray::Key,
    Format::Storage::GetConnection::Reply::Type,
    Format::Storage::GetConnection::Reply::SpaceLimit,
    Format::Storage::GetConnection::Reply::SpaceUsed,
    Format::Storage::GetConnection::Reply::DetailParams,
    Format::Storage::GetConnection::Reply::SyncStatus,
};

} // namespace

StorageConnectionsModel::StorageConnectionsModel(QObject* parent)
    : BaseModel(parent)
{
    if (const auto center = Communication::NotificationCenter::instance())
        connect(
            center, &Communication::NotificationCenter::notification, this, &StorageConnectionsModel::onNotification);
}

StorageConnectionsModel::~StorageConnectionsModel() = default;

QModelIndex StorageConnectionsModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() || row < 0 || row >= m_rows.size() || column < 0 || column >= Info::Column::Count)
        return QModelIndex();
    return createIndex(row, column);
}

QModelIndex StorageConnectionsModel::parent(const QModelIndex&) const
{
    return QModelIndex();
}

int StorageConnectionsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int StorageConnectionsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Info::Column::Count;
}

Qt::ItemFlags StorageConnectionsModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QVariant StorageConnectionsModel::cell(const QMap<QString, QVariant>& row, int column) const
{
    const QVariant value = row.value(QString::fromLatin1(ColumnKeys[column]));
    switch (column) {
    case Info::Column::PrefixArray:
        return value.toStringList();
    case Info::Column::Type:
        return value.toInt();
    case Info::Column::SpaceLimit:
    case Info::Column::SpaceUsed:
        return value.toDouble();
    case Info::Column::DetailParams:
        return QJsonObject::fromVariantMap(value.toMap());
    case Info::Column::SyncStatus:
        return value.toBool();
    default:
        return value.toString();
    }
}

QVariant StorageConnectionsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.model() != this || index.row() >= m_rows.size())
        return QVariant();
    const QMap<QString, QVariant>& row = m_connections[m_rows.at(index.row())];
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return cell(row, index.column());
    if (role == Qt::DecorationRole && index.column() == Info::Column::DisplayName)
        return storageIcon(cell(row, Info::Column::Type).toInt());
    if (role == Qt::ToolTipRole && index.column() == Info::Column::DisplayName)
        return NVL::Cloud::isKnownType(cell(row, Info::Column::Type).toInt())
            ? NVL::Cloud::displayName(NVL::Cloud::Type(cell(row, Info::Column::Type).toInt()))
            : QVariant();
    return QVariant();
}

QVariant StorageConnectionsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= Info::Column::Count)
        return QVariant();
    static const QString* const names[Info::Column::Count] = {&Info::Name::DisplayName, &Info::Name::ID,
        &Info::Name::Path, &Info::Name::Prefix, &Info::Name::PrefixArray, &Info::Name::Type, &Info::Name::SpaceLimit,
        &Info::Name::SpaceUsed, &Info::Name::DetailParams, &Info::Name::SyncStatus};
    return *names[section];
}

QIcon StorageConnectionsModel::storageIcon(int type, int size)
{
    // The managed service shows its own mark for every account it owns.
    if (!Application::isStandalon() && type != int(NVL::Cloud::Type::FileSystem)) {
        const QString mark = Application::getImagesPath() + QStringLiteral("/MainIcon.ico");
        if (QFileInfo::exists(mark))
            return size > 0 ? QIcon(QIcon(mark).pixmap(size, size)) : QIcon(mark);
    }
    return IconManager::storage(type, size);
}

bool StorageConnectionsModel::sendGetConnection(const char* slot)
{
    try {
        const auto manager = Communication::Manager::instance();
        if (!manager)
            throw tr("Commnunication manager is 0x00");
        Communication::ICommand* command
            = manager->commandFactory(QString::fromLatin1(Format::Storage::GetConnection::Name));
        if (!command)
            throw tr("Commnunication command don't registrate");
        setParams(command, {{QLatin1String(Format::Storage::GetConnection::Request::Profile), profile()}});
        connect(command, SIGNAL(complite()), this, slot);
        connect(command, SIGNAL(error()), this, slot);
        connect(command, SIGNAL(timeout()), this, slot);
        command->exec();
        return true;
    } catch (const QString& text) {
        warn(text);
        emit error(text);
        return false;
    }
}

bool StorageConnectionsModel::init()
{
    emit updated();
    return sendGetConnection(SLOT(onGetConnectionResult()));
}

void StorageConnectionsModel::onGetConnectionResult()
{
    auto* command = qobject_cast<Communication::ICommand*>(sender());
    if (!command)
        return;
    QScopedPointer<Communication::ICommand, QScopedPointerDeleteLater> holder(command);
    try {
        const QJsonObject data = replyData(command);
        if (data.value(QLatin1String(Format::Storage::GetConnection::Reply::NeedRetry)).toBool()) {
            info(QStringLiteral("GetConnection command return need retry... timeout 1 min"));
            QTimer::singleShot(m_retryInterval, this, &StorageConnectionsModel::init);
            return;
        }
        const QJsonArray list = data.value(QLatin1String(Format::Storage::GetConnection::Reply::Key)).toArray();
        QVector<QUuid> current = m_rows;
        QVector<QUuid> added;
        QMap<QUuid, QMap<QString, QVariant>> addedValues;
        for (const QJsonValue& value : list) {
            const QVariantMap row = value.toObject().toVariantMap();
            const QUuid id(row.value(QLatin1String(Format::Storage::GetConnection::Reply::ID)).toString());
            if (id.isNull()) {
                warn(QStringLiteral("Storage connection without an id skipped"));
                continue;
            }
            const int at = m_rows.indexOf(id);
            if (at >= 0) {
                current.removeAll(id);
                replaceRow(at, id, row);
            } else if (!addedValues.contains(id)) {
                added.append(id);
                addedValues.insert(id, row);
            }
        }
        if (!added.isEmpty()) {
            beginInsertRows(QModelIndex(), m_rows.size(), m_rows.size() + added.size() - 1);
            for (const QUuid& id : qAsConst(added)) {
                m_connections.insert(id, addedValues.value(id));
                m_rows.append(id);
            }
            endInsertRows();
        }
        for (const QUuid& id : qAsConst(current)) {
            const int at = m_rows.indexOf(id);
            beginRemoveRows(QModelIndex(), at, at);
            m_connections.remove(id);
            m_rows.removeAt(at);
            endRemoveRows();
        }
        emit complite();
    } catch (const QString& text) {
        warn(text);
        emit error(text);
    }
}

void StorageConnectionsModel::replaceRow(int row, const QUuid& id, const QMap<QString, QVariant>& values)
{
    m_connections.insert(id, values);
    emit dataChanged(index(row, 0), index(row, Info::Column::Count - 1));
}

void StorageConnectionsModel::editStorage(const QUuid& id)
{
    if (!m_awaited.contains(id))
        m_awaited.append(id);
    emit updated();
    sendGetConnection(SLOT(onEditStorage()));
}

void StorageConnectionsModel::onEditStorage()
{
    auto* command = qobject_cast<Communication::ICommand*>(sender());
    if (!command)
        return;
    QScopedPointer<Communication::ICommand, QScopedPointerDeleteLater> holder(command);
    try {
        const QJsonObject data = replyData(command);
        const QJsonArray list = data.value(QLatin1String(Format::Storage::GetConnection::Reply::Key)).toArray();
        for (const QJsonValue& value : list) {
            const QVariantMap row = value.toObject().toVariantMap();
            const QUuid id(row.value(QLatin1String(Format::Storage::GetConnection::Reply::ID)).toString());
            if (id.isNull() || !m_awaited.contains(id))
                continue;
            m_awaited.removeAll(id);
            const int at = m_rows.indexOf(id);
            if (at >= 0) {
                replaceRow(at, id, row);
            } else {
                beginInsertRows(QModelIndex(), m_rows.size(), m_rows.size());
                m_connections.insert(id, row);
                m_rows.append(id);
                endInsertRows();
            }
        }
        emit complite();
    } catch (const QString& text) {
        warn(text);
        emit error(text);
    }
}

bool StorageConnectionsModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || row < 0 || count <= 0 || row + count > m_rows.size())
        return false;
    const QVector<QUuid> ids = m_rows.mid(row, count);
    try {
        const auto manager = Communication::Manager::instance();
        if (!manager)
            throw tr("Commnunication manager is 0x00");
        for (const QUuid& id : ids) {
            Communication::ICommand* command
                = manager->commandFactory(QString::fromLatin1(Format::Storage::DeleteFileSystem::Name));
            if (!command)
                throw tr("Commnunication command don't registrate");
            setParams(command,
                {{QLatin1String(Format::Storage::DeleteFileSystem::Request::ID), id.toString()},
                    {QLatin1String(Format::Storage::DeleteFileSystem::Request::Profile), profile()}});
            connect(command, &Communication::ICommand::complite, this, &StorageConnectionsModel::onRemovedResult);
            connect(command, &Communication::ICommand::error, this, &StorageConnectionsModel::onRemovedResult);
            connect(command, &Communication::ICommand::timeout, this, &StorageConnectionsModel::onRemovedResult);
            command->exec();
        }
        return true;
    } catch (const QString& text) {
        warn(text);
        emit error(text);
        return false;
    }
}

void StorageConnectionsModel::onRemovedResult()
{
    auto* command = qobject_cast<Communication::ICommand*>(sender());
    if (!command)
        return;
    QScopedPointer<Communication::ICommand, QScopedPointerDeleteLater> holder(command);
    try {
        const QJsonObject data = replyData(command);
        if (data.value(QLatin1String(Format::Storage::DeleteFileSystem::Reply::Key)).toString()
            == QLatin1String(Format::Storage::DeleteFileSystem::Reply::Value::Error))
            throw tr("Error on exec command");
    } catch (const QString& text) {
        warn(text);
        emit error(text);
    }
}

void StorageConnectionsModel::removeStorage(const QUuid& id)
{
    emit updated();
    const int at = m_rows.indexOf(id);
    if (at < 0) {
        const QString text = tr("There isn't such storage account in model");
        warn(text);
        emit error(text);
        return;
    }
    beginRemoveRows(QModelIndex(), at, at);
    m_connections.remove(id);
    m_rows.removeAt(at);
    endRemoveRows();
    emit complite();
}

void StorageConnectionsModel::updateOnSyncReposytory(const QUuid& id, bool value)
{
    const int at = m_rows.indexOf(id);
    if (at < 0)
        return;
    m_connections[id].insert(QLatin1String(Format::Storage::GetConnection::Reply::SyncStatus), value);
    emit dataChanged(index(at, 0), index(at, Info::Column::Count - 1));
}

void StorageConnectionsModel::onNotification(const QJsonDocument& document)
{
    QScopedPointer<Communication::Notification::IParser> parser(
        Communication::Notification::ParserFactory::instance().create(document));
    if (!parser) {
        warn(QStringLiteral("Notiifcation is 0x00"));
        return;
    }
    const QUuid type = parser->type();
    const QMap<QString, QVariant> message = parser->message();
    if (type == Notify::Storage::UpdateConnections::Type) {
        info(QStringLiteral("Update storages notification!"));
        init();
    } else if (type == Notify::Storage::Add::Type) {
        info(QStringLiteral("Add storage notification!    "));
        editStorage(QUuid(message.value(QLatin1String(Notify::Storage::Add::Id)).toString()));
    } else if (type == Notify::Storage::Update::Type) {
        info(QStringLiteral("Update storage notification! "));
        editStorage(QUuid(message.value(QLatin1String(Notify::Storage::Update::Id)).toString()));
    } else if (type == Notify::Storage::Remove::Type) {
        info(QStringLiteral("Remove storage notification! "));
        removeStorage(QUuid(message.value(QLatin1String(Notify::Storage::Remove::Id)).toString()));
    } else if (type == Notify::Storage::SynchronizeRepositoryFinished::Type) {
        info(QStringLiteral("Sync storage notification finished!"));
        updateOnSyncReposytory(
            QUuid(message.value(QLatin1String(Notify::Storage::SynchronizeRepositoryFinished::Id)).toString()), false);
    } else if (type == Notify::Storage::SynchronizeRepositoryStarted::Type) {
        info(QStringLiteral("Sync storage notification started!"));
        updateOnSyncReposytory(
            QUuid(message.value(QLatin1String(Notify::Storage::SynchronizeRepositoryStarted::Id)).toString()), true);
    }
}

} // namespace NVB::GUI
