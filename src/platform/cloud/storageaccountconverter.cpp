#include "storageaccountconverter.h"

#include <QJsonValue>
#include <QUuid>

#include "cloudconfig.h"
#include "core/nvldebug.h"
#include "crypt/cryptns.h"
#include "endpointhelper.h"
#include "storageaccountconfigformat.h"

namespace NVB::Info {

namespace {

namespace C = NVL::Cloud::Config;
namespace Http = NVL::Cloud::Api::Config::Http;
namespace R = NVB::Info::StorageAccountConfigFormat;
using NVL::Cloud::Type;

void copyString(const QMap<QString, QVariant>& config, const QString& from, QJsonObject& record, const QString& to)
{
    if (config.contains(from))
        record.insert(to, config.value(from).toString());
}

void copyValue(const QMap<QString, QVariant>& config, const QString& from, QJsonObject& record, const QString& to)
{
    if (config.contains(from))
        record.insert(to, QJsonValue::fromVariant(config.value(from)));
}

void encipher(const QMap<QString, QVariant>& config, const QString& from, QJsonObject& record, const QString& to)
{
    if (config.contains(from))
        record.insert(to, SHARED::cryptNS::encrypt_local_password(config.value(from).toString()));
}

void readValue(const QJsonObject& record, const QString& from, QMap<QString, QVariant>& config, const QString& to)
{
    if (record.contains(from))
        config.insert(to, record.value(from).toVariant());
}

// Throws the deciphering error as a QString.
void decipher(const QJsonObject& record, const QString& from, QMap<QString, QVariant>& config, const QString& to)
{
    if (record.contains(from))
        config.insert(to, SHARED::cryptNS::decrypt_local_password(record.value(from).toString()));
}

bool isS3(Type type)
{
    return NVL::Cloud::S3Compatible.contains(type) || NVL::Cloud::AmazonS3.contains(type);
}

} // namespace

QJsonObject StorageAccountConverter::toRecord(const QMap<QString, QVariant>& config, QString* error)
{
    bool ok = false;
    const Type type = NVL::Cloud::typeFromName(config.value(C::Type).toString(), &ok);
    if (!ok) {
        const QString text
            = QStringLiteral("Unknown cloud type \"%1\" in configuration").arg(config.value(C::Type).toString());
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        if (error)
            *error = text;
        return {};
    }

    QJsonObject record;
    record.insert(R::AccountType, static_cast<int>(type));

    if (type == Type::FileSystem) {
        copyString(config, C::FileSystem::Path, record, R::FileSystem::Path);
        return record;
    }
    if (type == Type::Sftp) {
        copyString(config, C::Network::Address, record, R::Network::Address);
        if (config.contains(C::Network::Port))
            record.insert(R::Network::Port, config.value(C::Network::Port).toInt());
        if (config.contains(C::Network::KeepAlive))
            record.insert(R::Network::KeepAlive, config.value(C::Network::KeepAlive).toBool());
        if (config.contains(C::Network::UseProxy))
            record.insert(R::Network::UseProxy, config.value(C::Network::UseProxy).toBool());
        copyString(config, C::Network::Sftp::Path, record, R::Network::Ftp::Path);
        copyString(config, C::Network::Sftp::User, record, R::Network::Ftp::User);
        encipher(config, C::Network::Sftp::Password, record, R::Network::Ftp::Password);
        encipher(config, C::Network::Sftp::PrivateKey, record, R::Network::Ftp::Sftp::PrivateKey);
        return record;
    }

    copyString(config, NVL::Cloud::OperationConfig::ContainerName, record, R::Cloud::ContainerName);
    if (config.contains(Http::UseSsl))
        record.insert(R::Cloud::UseSsl, config.value(Http::UseSsl).toBool());
    copyString(config, Http::Endpoint, record, R::Cloud::Endpoint);

    if (isS3(type)) {
        copyString(config, C::AmazonS3Like::AccessKey, record, R::Cloud::AmazonS3Like::AccessKey);
        encipher(config, C::AmazonS3Like::SecretKey, record, R::Cloud::AmazonS3Like::SecretKey);
        copyString(config, C::AmazonS3Like::Region, record, R::Cloud::AmazonS3Like::Region);
        if (config.contains(C::AmazonS3Like::Signature::Key)) {
            const bool v2
                = config.value(C::AmazonS3Like::Signature::Key).toString() == C::AmazonS3Like::Signature::Value::V2;
            record.insert(R::Cloud::AmazonS3Like::Signature, v2 ? 2 : 4);
        }
    } else if (type == Type::AzureBlob) {
        copyString(config, C::AzureBlob::Username, record, R::Cloud::AzureBlob::UserName);
        encipher(config, C::AzureBlob::Password, record, R::Cloud::AzureBlob::Password);
        copyString(config, C::AzureBlob::AccountTypes::Key, record, R::Cloud::AzureBlob::AccountType);
        if (config.contains(Http::Endpoint))
            record.insert(
                R::Cloud::Endpoint, NVL::Utitlity::EndpointHelper::toEndpoint(config.value(Http::Endpoint).toString()));
    } else if (type == Type::BackBlaze) {
        copyString(config, C::BackBlaze::AccountId, record, R::Cloud::BackBlaze::AccountId);
        encipher(config, C::BackBlaze::ApplicationKey, record, R::Cloud::BackBlaze::ApplicationKey);
        // The configuration joins the bucket as "<id>|<name>"; the record keeps both apart.
        const QString joined = config.value(NVL::Cloud::OperationConfig::ContainerName).toString();
        const int bar = joined.indexOf(QLatin1Char('|'));
        if (bar >= 0) {
            record.insert(R::Cloud::BackBlaze::ContainerId, joined.left(bar));
            record.insert(R::Cloud::ContainerName, joined.mid(bar + 1));
        }
    } else if (type == Type::GoogleStorage) {
        const int authType = config.value(C::GoogleStorage::AuthType).toInt();
        record.insert(R::Cloud::GoogleStorage::AuthType, authType);
        if (authType == 1) {
            encipher(config, C::GoogleStorage::Auth_ServiceAccount::ServiceAccount, record,
                R::Cloud::GoogleStorage::SAccount::ServiceAccount);
            encipher(config, C::GoogleStorage::Auth_ServiceAccount::ProjectId, record,
                R::Cloud::GoogleStorage::SAccount::ProjectId);
            encipher(config, C::GoogleStorage::Auth_ServiceAccount::PrivateKey, record,
                R::Cloud::GoogleStorage::SAccount::PrivateKey);
        } else if (authType == 2) {
            encipher(config, C::GoogleStorage::Auth_InstalledApplication::ProjectId, record,
                R::Cloud::GoogleStorage::InstallApp::ProjectId);
            encipher(config, C::GoogleStorage::Auth_InstalledApplication::RefreshToken, record,
                R::Cloud::GoogleStorage::InstallApp::RefreshToken);
        } else {
            copyString(config, C::GoogleStorage::Auth_AccessAndSecretKey::AccessKey, record,
                R::Cloud::GoogleStorage::ASkey::AccessKey);
            encipher(config, C::GoogleStorage::Auth_AccessAndSecretKey::SecretKey, record,
                R::Cloud::GoogleStorage::ASkey::SecretKey);
        }
    } else if (NVL::Cloud::OpenStack.contains(type)) {
        copyString(config, C::OpenStack::Username, record, R::Cloud::OpenStack::UserName);
        encipher(config, C::OpenStack::ApiKey, record, R::Cloud::OpenStack::ApiKey);
        copyValue(config, C::OpenStack::AuthType, record, R::Cloud::OpenStack::AuthType);
        copyValue(config, C::OpenStack::UseInternalUrl, record, R::Cloud::OpenStack::UseInternalUrl);
        const int authType = config.value(C::OpenStack::AuthType).toInt();
        if (authType == 2) {
            copyString(config, C::OpenStack::Auth_Keystore_V2::Region, record, R::Cloud::OpenStack::Keystore::Region);
            copyString(config, C::OpenStack::Auth_Keystore_V2::TenantName, record,
                R::Cloud::OpenStack::Keystore::V2::TenantName);
            copyString(
                config, C::OpenStack::Auth_Keystore_V2::TenantId, record, R::Cloud::OpenStack::Keystore::V2::TenantId);
        } else if (authType == 3) {
            namespace V3 = C::OpenStack::Auth_Keystore_V3;
            copyString(config, V3::Region, record, R::Cloud::OpenStack::Keystore::Region);
            copyString(config, V3::DomainName, record, R::Cloud::OpenStack::Keystore::V3::DomainName);
            copyString(config, V3::DomainId, record, R::Cloud::OpenStack::Keystore::V3::DomainId);
            copyValue(config, V3::UseScope::Key, record, R::Cloud::OpenStack::Keystore::V3::UseScope::Key);
            copyString(
                config, V3::UseScope::ProjectName, record, R::Cloud::OpenStack::Keystore::V3::UseScope::ProjectName);
            copyString(config, V3::UseScope::ProjectId, record, R::Cloud::OpenStack::Keystore::V3::UseScope::ProjectId);
        }
    }
    return record;
}

QMap<QString, QVariant> StorageAccountConverter::toCloudConfig(const QJsonObject& record, Type type, QString* error)
{
    if (!NVL::Cloud::TypeName.contains(type)) {
        const QString text = QStringLiteral("Unknown cloud type %1 in account record").arg(static_cast<int>(type));
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        if (error)
            *error = text;
        return {};
    }

    QMap<QString, QVariant> config;
    config.insert(C::Id, QUuid::createUuid());
    config.insert(C::Type, NVL::Cloud::TypeName.value(type));
    try {
        if (type == Type::FileSystem) {
            readValue(record, R::FileSystem::Path, config, C::FileSystem::Path);
            return config;
        }
        if (type == Type::Sftp) {
            readValue(record, R::Network::Address, config, C::Network::Address);
            readValue(record, R::Network::Port, config, C::Network::Port);
            readValue(record, R::Network::KeepAlive, config, C::Network::KeepAlive);
            readValue(record, R::Network::UseProxy, config, C::Network::UseProxy);
            readValue(record, R::Network::Ftp::Path, config, C::Network::Sftp::Path);
            readValue(record, R::Network::Ftp::User, config, C::Network::Sftp::User);
            decipher(record, R::Network::Ftp::Password, config, C::Network::Sftp::Password);
            decipher(record, R::Network::Ftp::Sftp::PrivateKey, config, C::Network::Sftp::PrivateKey);
            return config;
        }

        readValue(record, R::Cloud::ContainerName, config, NVL::Cloud::OperationConfig::ContainerName);
        readValue(record, R::Cloud::UseSsl, config, Http::UseSsl);
        readValue(record, R::Cloud::Endpoint, config, Http::Endpoint);

        if (isS3(type)) {
            readValue(record, R::Cloud::AmazonS3Like::AccessKey, config, C::AmazonS3Like::AccessKey);
            decipher(record, R::Cloud::AmazonS3Like::SecretKey, config, C::AmazonS3Like::SecretKey);
            readValue(record, R::Cloud::AmazonS3Like::Region, config, C::AmazonS3Like::Region);
            if (record.contains(R::Cloud::AmazonS3Like::Signature))
                config.insert(C::AmazonS3Like::Signature::Key,
                    record.value(R::Cloud::AmazonS3Like::Signature).toInt() == 2
                        ? C::AmazonS3Like::Signature::Value::V2
                        : C::AmazonS3Like::Signature::Value::V4);
        } else if (type == Type::AzureBlob) {
            readValue(record, R::Cloud::AzureBlob::UserName, config, C::AzureBlob::Username);
            decipher(record, R::Cloud::AzureBlob::Password, config, C::AzureBlob::Password);
            readValue(record, R::Cloud::AzureBlob::AccountType, config, C::AzureBlob::AccountTypes::Key);
        } else if (type == Type::BackBlaze) {
            readValue(record, R::Cloud::BackBlaze::AccountId, config, C::BackBlaze::AccountId);
            decipher(record, R::Cloud::BackBlaze::ApplicationKey, config, C::BackBlaze::ApplicationKey);
            if (record.contains(R::Cloud::BackBlaze::ContainerId))
                config.insert(NVL::Cloud::OperationConfig::ContainerName,
                    QStringLiteral("%1|%2").arg(record.value(R::Cloud::BackBlaze::ContainerId).toString(),
                        record.value(R::Cloud::ContainerName).toString()));
        } else if (type == Type::GoogleStorage) {
            const int authType = record.value(R::Cloud::GoogleStorage::AuthType).toInt();
            config.insert(C::GoogleStorage::AuthType, authType);
            if (authType == 1) {
                decipher(record, R::Cloud::GoogleStorage::SAccount::ServiceAccount, config,
                    C::GoogleStorage::Auth_ServiceAccount::ServiceAccount);
                decipher(record, R::Cloud::GoogleStorage::SAccount::ProjectId, config,
                    C::GoogleStorage::Auth_ServiceAccount::ProjectId);
                decipher(record, R::Cloud::GoogleStorage::SAccount::PrivateKey, config,
                    C::GoogleStorage::Auth_ServiceAccount::PrivateKey);
            } else if (authType == 2) {
                decipher(record, R::Cloud::GoogleStorage::InstallApp::ProjectId, config,
                    C::GoogleStorage::Auth_InstalledApplication::ProjectId);
                decipher(record, R::Cloud::GoogleStorage::InstallApp::RefreshToken, config,
                    C::GoogleStorage::Auth_InstalledApplication::RefreshToken);
            } else {
                readValue(record, R::Cloud::GoogleStorage::ASkey::AccessKey, config,
                    C::GoogleStorage::Auth_AccessAndSecretKey::AccessKey);
                decipher(record, R::Cloud::GoogleStorage::ASkey::SecretKey, config,
                    C::GoogleStorage::Auth_AccessAndSecretKey::SecretKey);
            }
        } else if (NVL::Cloud::OpenStack.contains(type)) {
            if (record.contains(R::Cloud::Endpoint))
                config.insert(Http::Endpoint,
                    NVL::Utitlity::EndpointHelper::toEndpoint(record.value(R::Cloud::Endpoint).toString()));
            readValue(record, R::Cloud::OpenStack::UserName, config, C::OpenStack::Username);
            decipher(record, R::Cloud::OpenStack::ApiKey, config, C::OpenStack::ApiKey);
            readValue(record, R::Cloud::OpenStack::AuthType, config, C::OpenStack::AuthType);
            readValue(record, R::Cloud::OpenStack::UseInternalUrl, config, C::OpenStack::UseInternalUrl);
            const int authType = record.value(R::Cloud::OpenStack::AuthType).toInt();
            if (authType == 2) {
                readValue(
                    record, R::Cloud::OpenStack::Keystore::Region, config, C::OpenStack::Auth_Keystore_V2::Region);
                readValue(record, R::Cloud::OpenStack::Keystore::V2::TenantName, config,
                    C::OpenStack::Auth_Keystore_V2::TenantName);
                readValue(record, R::Cloud::OpenStack::Keystore::V2::TenantId, config,
                    C::OpenStack::Auth_Keystore_V2::TenantId);
            } else if (authType == 3) {
                namespace V3 = C::OpenStack::Auth_Keystore_V3;
                namespace RV3 = R::Cloud::OpenStack::Keystore::V3;
                readValue(record, R::Cloud::OpenStack::Keystore::Region, config, V3::Region);
                readValue(record, RV3::DomainName, config, V3::DomainName);
                readValue(record, RV3::DomainId, config, V3::DomainId);
                readValue(record, RV3::UseScope::Key, config, V3::UseScope::Key);
                readValue(record, RV3::UseScope::ProjectName, config, V3::UseScope::ProjectName);
                readValue(record, RV3::UseScope::ProjectId, config, V3::UseScope::ProjectId);
            }
        }
    } catch (const QString& text) {
        const QString message = QStringLiteral("Can't decrypt a secret of the account record: %1").arg(text);
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << message;
        if (error)
            *error = message;
        return {};
    }
    return config;
}

} // namespace NVB::Info
