#include <QtTest>

#include "cloud/cloudconfig.h"
#include "cloud/storageaccountconfigformat.h"
#include "testmain.h"

namespace C = NVL::Cloud::Config;
namespace R = NVB::Info::StorageAccountConfigFormat;

// The literals of both key tables are part of stored data and of the engine's
// protocol; a "tidy-up" of any of them breaks existing accounts.
class TestStorageAccountKeys : public QObject
{
    Q_OBJECT

private slots:
    void shouldKeepCloudConfigurationLiterals_data();
    void shouldKeepCloudConfigurationLiterals();
    void shouldKeepAccountRecordLiterals_data();
    void shouldKeepAccountRecordLiterals();
    void shouldKeepTheDeliberateDifferences_data();
    void shouldKeepTheDeliberateDifferences();
    void shouldKeepOperationTypeLiterals();
};

void TestStorageAccountKeys::shouldKeepCloudConfigurationLiterals_data()
{
    QTest::addColumn<QString>("constant");
    QTest::addColumn<QString>("literal");

    const QVector<QPair<QString, const char*>> rows = {
        {C::Id, "CloudId"},
        {C::Type, "CloudType"},
        {NVL::Cloud::Api::Config::Http::Endpoint, "Endpoint"},
        {NVL::Cloud::Api::Config::Http::UseSsl, "UseSsl"},
        {NVL::Cloud::OperationConfig::ContainerName, "ContainerName"},
        {NVL::Cloud::OperationConfig::ChunkSize, "ChunkSize"},
        {C::AmazonS3Like::AccessKey, "AccessKey"},
        {C::AmazonS3Like::SecretKey, "SecretKey"},
        {C::AmazonS3Like::Region, "Region"},
        {C::AmazonS3Like::Signature::Key, "Signature"},
        {C::AmazonS3Like::Signature::Value::V2, "V2"},
        {C::AmazonS3Like::Signature::Value::V4, "V4"},
        {C::AzureBlob::Username, "Username"},
        {C::AzureBlob::Password, "Password"},
        {C::AzureBlob::AccountTypes::Key, "Type"},
        {C::AzureBlob::AccountTypes::Value::AzureStack, "AzureStack"},
        {C::AzureBlob::StorageClass::Key, "StorageClass"},
        {C::AzureBlob::StorageClass::Value::Archive, "Archive"},
        {C::BackBlaze::AccountId, "AccountId"},
        {C::BackBlaze::ApplicationKey, "ApplicationKey"},
        {C::BackBlaze::TestMode, "TestMode"},
        {C::FileSystem::Path, "Path"},
        {C::GoogleStorage::AuthType, "AuthType"},
        {C::GoogleStorage::Auth_ServiceAccount::ServiceAccount, "ServiceAccount"},
        {C::GoogleStorage::Auth_ServiceAccount::PrivateKey, "PrivateKey"},
        {C::GoogleStorage::Auth_InstalledApplication::InitCode, "InitCode"},
        {C::GoogleStorage::Auth_InstalledApplication::RefreshToken, "RefreshToken"},
        {C::Network::Address, "Address"},
        {C::Network::Port, "Port"},
        {C::Network::KeepAlive, "KeepAlive"},
        {C::Network::UseProxy, "UseProxy"},
        {C::Network::Sftp::Path, "Path"},
        {C::Network::Sftp::User, "User"},
        {C::Network::Sftp::Password, "Password"},
        {C::Network::Sftp::PrivateKey, "PrivateKey"},
        {C::Network::Sftp::KnownHostsFile, "KnownHostsFile"},
        {C::OpenStack::Username, "Username"},
        {C::OpenStack::ApiKey, "ApiKey"},
        {C::OpenStack::UseInternalUrl, "UseInternalUrl"},
        {C::OpenStack::SegmentPrefix, "SegmentPrefix"},
        {C::OpenStack::AuthType, "AuthType"},
        {C::OpenStack::Auth_Keystore_V2::TenantName, "TenantName"},
        {C::OpenStack::Auth_Keystore_V2::TenantId, "TenantId"},
        {C::OpenStack::Auth_Keystore_V3::DomainName, "DomainName"},
        {C::OpenStack::Auth_Keystore_V3::DomainId, "DomainId"},
        {C::OpenStack::Auth_Keystore_V3::UseScope::Key, "UseScope"},
        {C::OpenStack::Auth_Keystore_V3::UseScope::ProjectName, "ProjectName"},
        {C::OpenStack::Auth_Keystore_V3::UseScope::ProjectId, "ProjectId"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.second) << row.first << QString::fromUtf8(row.second);
}

void TestStorageAccountKeys::shouldKeepCloudConfigurationLiterals()
{
    QFETCH(QString, constant);
    QFETCH(QString, literal);
    QCOMPARE(constant, literal);
}

void TestStorageAccountKeys::shouldKeepAccountRecordLiterals_data()
{
    QTest::addColumn<QString>("constant");
    QTest::addColumn<QString>("literal");

    const QVector<QPair<QString, const char*>> rows = {
        {R::AccountType, "AccountType"},
        {R::StorageId, "StorageId"},
        {R::DisplayName, "DisplayName"},
        {R::BackupPrefix, "BackupPrefix"},
        {R::UsedSpace, "UsedSpace"},
        {R::UsedSpaceFromLocalDb, "UsedSpaceFromLocalDb"},
        {R::Cloud::ContainerName, "ContainerName"},
        {R::Cloud::Endpoint, "Endpoint"},
        {R::Cloud::UseSsl, "UseSsl"},
        {R::Cloud::AmazonS3Like::SecretKey, "SecretKey"},
        {R::Cloud::AmazonS3Like::Signature, "Signature"},
        {R::Cloud::AmazonS3::Archive2Glacier, "Archive2Glacier"},
        {R::Cloud::AzureBlob::UserName, "UserName"},
        {R::Cloud::AzureBlob::AccountType, "Type"},
        {R::Cloud::BackBlaze::ContainerId, "ContainerId"},
        {R::Cloud::GoogleStorage::SAccount::ServiceAccount, "ServiceAccount"},
        {R::Cloud::GoogleStorage::InstallApp::RefreshToken, "RefreshToken"},
        {R::Cloud::OpenStack::UserName, "UserName"},
        {R::Cloud::OpenStack::Keystore::Region, "Region"},
        {R::Cloud::OpenStack::Keystore::V2::TenantId, "TenantId"},
        {R::Cloud::OpenStack::Keystore::V3::UseScope::Key, "UseScope"},
        {R::FileSystem::Path, "Path"},
        {R::Network::Address, "Address"},
        {R::Network::Port, "Port"},
        {R::Network::KeepAlive, "KeepAlive"},
        {R::Network::UseProxy, "UseProy"},
        {R::Network::Ftp::Path, "Path"},
        {R::Network::Ftp::User, "User"},
        {R::Network::Ftp::Password, "Password"},
        {R::Network::Ftp::Sftp::PrivateKey, "PrivateKey"},
        {R::Mns::AccountId, "AccountId"},
        {R::Mns::EndpointHttp, "EndpointHttp"},
        {R::Mns::EndpointHttps, "EndpointHttps"},
        {R::Mns::FolderPath, "FolderPath"},
        {R::Mns::SpaceLimit, "SpaceLimit"},
        {R::Mns::AmazonS3::GlacierRestoreType::Key, "GlacierRestoreType"},
        {R::Mns::AdditionalSettings::Key, "AdditionalSettings"},
        {R::Mns::AdditionalSettings::IgnoreCertificate, "IgnoreCertificate"},
        {R::Mns::AdditionalSettings::AzureBlob::AccountType, "AzureAccountType"},
        {R::Mns::AdditionalSettings::LimitType::Key, "LimitType"},
        {R::Mns::AdditionalSettings::LimitType::Value::Company, "Company"},
        {R::Mns::AdditionalSettings::LimitType::Value::Destination, "Destination"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.second) << row.first << QString::fromUtf8(row.second);
}

void TestStorageAccountKeys::shouldKeepAccountRecordLiterals()
{
    QFETCH(QString, constant);
    QFETCH(QString, literal);
    QCOMPARE(constant, literal);
}

void TestStorageAccountKeys::shouldKeepTheDeliberateDifferences_data()
{
    QTest::addColumn<QString>("configKey");
    QTest::addColumn<QString>("recordKey");
    QTest::addColumn<QString>("expectedConfig");
    QTest::addColumn<QString>("expectedRecord");

    QTest::newRow("Azure user") << C::AzureBlob::Username << R::Cloud::AzureBlob::UserName << "Username"
                                << "UserName";
    QTest::newRow("OpenStack user") << C::OpenStack::Username << R::Cloud::OpenStack::UserName << "Username"
                                    << "UserName";
    QTest::newRow("use proxy") << C::Network::UseProxy << R::Network::UseProxy << "UseProxy"
                               << "UseProy";
}

void TestStorageAccountKeys::shouldKeepTheDeliberateDifferences()
{
    QFETCH(QString, configKey);
    QFETCH(QString, recordKey);
    QFETCH(QString, expectedConfig);
    QFETCH(QString, expectedRecord);

    QCOMPARE(configKey, expectedConfig);
    QCOMPARE(recordKey, expectedRecord);
    QVERIFY(configKey != recordKey);
}

void TestStorageAccountKeys::shouldKeepOperationTypeLiterals()
{
    namespace T = NVL::Cloud::OperationType;
    const QStringList plain
        = {T::CheckConfig, T::CreateContainer, T::DeleteOnce, T::Download2Stream, T::DownloadAuto2Stream,
            T::DownloadBlob, T::DownloadBlob2Stream, T::ListContainers, T::Listing, T::MultipleDelete, T::SignUrl,
            T::StreamTransformation, T::Upload, T::UploadAuto, T::UploadEmptyFolder, T::UploadMultipart};
    QCOMPARE(plain.join(QLatin1Char(',')),
        QStringLiteral("CheckConfig,CreateContainer,DeleteOnce,Download2Stream,DownloadAuto2Stream,DownloadBlob,"
                       "DownloadBlob2Stream,ListContainers,Listing,MultipleDelete,SignUrl,StreamTransformation,"
                       "Upload,UploadAuto,UploadEmptyFolder,UploadMultipart"));
    QCOMPARE(T::Archive::PrepareForDownload, QStringLiteral("ArchivePrepareForDownload"));
    QCOMPARE(T::Archive::CheckReadyForDownload, QStringLiteral("ArchiveCheckReadyForDownload"));
    QCOMPARE(T::Archive::FinalizeDownloaded, QStringLiteral("ArchiveFinalizeDownloaded"));
    QCOMPARE(T::Amazon::LoadLifecyclePolicy, QStringLiteral("Amazon_LoadLifecyclePolicy"));
    QCOMPARE(T::Amazon::SaveLifecyclePolicy, QStringLiteral("Amazon_SaveLifecyclePolicy"));
    QCOMPARE(T::Amazon::DeleteLifecyclePolicy, QStringLiteral("Amazon_DeleteLifecyclePolicy"));
}

NVB_TEST_GUILESS_MAIN(TestStorageAccountKeys)
#include "tst_storageaccountkeys.moc"
