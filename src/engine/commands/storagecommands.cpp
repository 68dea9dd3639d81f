#include "storagecommands.h"

#include <limits>

#include "cloud/providers/listingpager.h"
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

// What the console's cipher writes: its tag, then the base64 of at least the
// SIV tag. The engine cannot decipher with the console user's key, so only
// the form is checked; a clear secret never reaches the store.
bool looksEnciphered(const QJsonValue& value)
{
    static const QString tag = QStringLiteral("nvb1:");
    const QString text = value.toString();
    if (!value.isString() || !text.startsWith(tag))
        return false;
    const auto decoded = QByteArray::fromBase64Encoding(
        text.mid(tag.size()).toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return decoded && decoded.decoded.size() >= 16;
}

// The record's problem, empty when it may be stored.
QString recordError(const QString& prefix, const QJsonObject& params)
{
    // Every key that holds a secret in some provider's record.
    static const QStringList secrets {QStringLiteral("Password"), QStringLiteral("PrivateKey"),
        QStringLiteral("SecretKey"), QStringLiteral("ApplicationKey"), QStringLiteral("ApiKey"),
        QStringLiteral("RefreshToken"), QStringLiteral("ServiceAccount")};
    for (const QString& name : secrets) {
        const QJsonValue value = params.value(name);
        if (value.isUndefined() || (value.isString() && value.toString().isEmpty()))
            continue;
        if (!looksEnciphered(value))
            return QStringLiteral("The secret \"%1\" of the account is not enciphered; it was not stored").arg(name);
    }
    QString error = NVL::Cloud::ListingPager::prefixError(prefix);
    if (error.isEmpty() && prefix.contains(QLatin1Char('/')))
        error = QStringLiteral("The prefix \"%1\" must not contain a slash").arg(prefix);
    if (error.isEmpty())
        error = NVL::Cloud::ListingPager::prefixError(params.value(QStringLiteral("Path")).toString());
    return error;
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
        const QString invalid = recordError(account.prefix, account.params);
        if (!invalid.isEmpty())
            return Outcome::failure(invalid);
        // The account's views read the prefix from the record itself.
        account.params.insert(QStringLiteral("BackupPrefix"), account.prefix);
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
