#include "storagecommands.h"

#include <limits>

#include "core/engine.h"
#include "paramreader.h"
#include "service/commands/storage.h"

namespace NVB::Engine {

namespace Storage = NVB::Common::Communication::Commands::Format::Storage;

namespace {

QString key(const char* text)
{
    return QString::fromLatin1(text);
}

} // namespace

void StorageCommands::add(Engine* engine, V1Handlers* handlers)
{
    handlers->insert(key(Storage::SaveStorage::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        StoredAccount account;
        account.id = args.uuid(Storage::SaveStorage::Request::ID);
        account.displayName = args.string(Storage::SaveStorage::Request::DisplayName);
        account.prefix = args.string(Storage::SaveStorage::Request::Prefix, false);
        account.profile = args.string(Storage::SaveStorage::Request::Profile, false);
        account.type = int(args.integer(Storage::SaveStorage::Request::Type, -1, 0, std::numeric_limits<int>::max()));
        account.params = args.object(Storage::SaveStorage::Request::Params);
        if (args.ok() && account.type < 0)
            return Outcome::failure(QStringLiteral("The argument \"type\" is missing"));
        if (!args.ok())
            return Outcome::failure(args.error());
        Outcome outcome = engine->saveAccount(account);
        if (outcome.ok)
            outcome.data.insert(key(Storage::SaveStorage::Reply::Key), key(Storage::SaveStorage::Reply::Value::Success));
        return outcome;
    });
    handlers->insert(key(Storage::DeleteFileSystem::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Storage::DeleteFileSystem::Request::ID);
        if (!args.ok())
            return Outcome::failure(args.error());
        Outcome outcome = engine->removeAccount(id);
        if (outcome.ok) {
            outcome.data.insert(key(Storage::DeleteFileSystem::Reply::Key),
                                key(Storage::DeleteFileSystem::Reply::Value::Success));
        }
        return outcome;
    });
    handlers->insert(key(Storage::GetConnection::Name), [engine](const QJsonObject&) {
        return Outcome::success({{key(Storage::GetConnection::Reply::Key), engine->connections()},
                                 {key(Storage::GetConnection::Reply::NeedRetry), false}});
    });
    handlers->insert(key(Storage::GetConnectionById::Name), [engine](const QJsonObject& params) {
        ParamReader args(params);
        const QUuid id = args.uuid(Storage::GetConnectionById::Request::ID);
        if (!args.ok())
            return Outcome::failure(args.error());
        const auto row = engine->connection(id);
        if (!row)
            return Outcome::failure(QStringLiteral("There is no storage account with the id %1").arg(id.toString()));
        return Outcome::success({{key(Storage::GetConnectionById::Reply::Key), *row},
                                 {key(Storage::GetConnectionById::Reply::NeedRetry), false}});
    });
}

} // namespace NVB::Engine
