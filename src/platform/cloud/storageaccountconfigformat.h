#pragma once

#include <QString>

// Keys of the account record, the QJsonObject the engine keeps. Secrets stand
// here only enciphered (SHARED::cryptNS::encrypt_local_password). Compare with
// cloudconfig.h before writing either form: "UserName" against "Username",
// "UseProy" against "UseProxy", and the signature is an integer (2, 4) here
// but a string ("V2", "V4") there. Stored records carry these spellings, so
// they stay.
namespace NVB::Info::StorageAccountConfigFormat {

inline const QString AccountType = QStringLiteral("AccountType");
inline const QString StorageId = QStringLiteral("StorageId");
inline const QString DisplayName = QStringLiteral("DisplayName");
inline const QString BackupPrefix = QStringLiteral("BackupPrefix");
inline const QString UsedSpace = QStringLiteral("UsedSpace");
inline const QString UsedSpaceFromLocalDb = QStringLiteral("UsedSpaceFromLocalDb");

namespace Cloud {
inline const QString ContainerName = QStringLiteral("ContainerName");
inline const QString Endpoint = QStringLiteral("Endpoint");
inline const QString UseSsl = QStringLiteral("UseSsl");

namespace AmazonS3Like {
inline const QString AccessKey = QStringLiteral("AccessKey");
inline const QString SecretKey = QStringLiteral("SecretKey");
inline const QString Region = QStringLiteral("Region");
inline const QString Signature = QStringLiteral("Signature");
} // namespace AmazonS3Like

namespace AmazonS3 {
inline const QString Archive2Glacier = QStringLiteral("Archive2Glacier");
} // namespace AmazonS3

namespace AzureBlob {
inline const QString UserName = QStringLiteral("UserName");
inline const QString Password = QStringLiteral("Password");
inline const QString AccountType = QStringLiteral("Type");
} // namespace AzureBlob

namespace BackBlaze {
inline const QString AccountId = QStringLiteral("AccountId");
inline const QString ApplicationKey = QStringLiteral("ApplicationKey");
inline const QString ContainerId = QStringLiteral("ContainerId");
} // namespace BackBlaze

namespace GoogleStorage {
inline const QString AuthType = QStringLiteral("AuthType");
namespace ASkey {
inline const QString AccessKey = QStringLiteral("AccessKey");
inline const QString SecretKey = QStringLiteral("SecretKey");
} // namespace ASkey
namespace SAccount {
inline const QString ServiceAccount = QStringLiteral("ServiceAccount");
inline const QString ProjectId = QStringLiteral("ProjectId");
inline const QString PrivateKey = QStringLiteral("PrivateKey");
} // namespace SAccount
namespace InstallApp {
inline const QString ProjectId = QStringLiteral("ProjectId");
inline const QString RefreshToken = QStringLiteral("RefreshToken");
} // namespace InstallApp
} // namespace GoogleStorage

namespace OpenStack {
inline const QString UserName = QStringLiteral("UserName");
inline const QString ApiKey = QStringLiteral("ApiKey");
inline const QString AuthType = QStringLiteral("AuthType");
inline const QString UseInternalUrl = QStringLiteral("UseInternalUrl");
namespace Keystore {
inline const QString Region = QStringLiteral("Region");
namespace V2 {
inline const QString TenantName = QStringLiteral("TenantName");
inline const QString TenantId = QStringLiteral("TenantId");
} // namespace V2
namespace V3 {
inline const QString DomainName = QStringLiteral("DomainName");
inline const QString DomainId = QStringLiteral("DomainId");
namespace UseScope {
inline const QString Key = QStringLiteral("UseScope");
inline const QString ProjectName = QStringLiteral("ProjectName");
inline const QString ProjectId = QStringLiteral("ProjectId");
} // namespace UseScope
} // namespace V3
} // namespace Keystore
} // namespace OpenStack
} // namespace Cloud

namespace FileSystem {
inline const QString Path = QStringLiteral("Path");
} // namespace FileSystem

namespace Network {
inline const QString Address = QStringLiteral("Address");
inline const QString Port = QStringLiteral("Port");
inline const QString KeepAlive = QStringLiteral("KeepAlive");
// Without the x: records in the field were written so.
inline const QString UseProxy = QStringLiteral("UseProy");
namespace Ftp {
inline const QString Path = QStringLiteral("Path");
inline const QString User = QStringLiteral("User");
inline const QString Password = QStringLiteral("Password");
namespace Sftp {
inline const QString PrivateKey = QStringLiteral("PrivateKey");
} // namespace Sftp
} // namespace Ftp
} // namespace Network

// The managed edition's account.
namespace Mns {
inline const QString AccountId = QStringLiteral("AccountId");
inline const QString EndpointHttp = QStringLiteral("EndpointHttp");
inline const QString EndpointHttps = QStringLiteral("EndpointHttps");
inline const QString FolderPath = QStringLiteral("FolderPath");
inline const QString SpaceLimit = QStringLiteral("SpaceLimit");
namespace AmazonS3Like {
inline const QString Signature = QStringLiteral("Signature");
} // namespace AmazonS3Like
namespace BackBlaze {
inline const QString ContainerId = QStringLiteral("ContainerId");
} // namespace BackBlaze
namespace AmazonS3::GlacierRestoreType {
inline const QString Key = QStringLiteral("GlacierRestoreType");
} // namespace AmazonS3::GlacierRestoreType
namespace AdditionalSettings {
inline const QString Key = QStringLiteral("AdditionalSettings");
inline const QString IgnoreCertificate = QStringLiteral("IgnoreCertificate");
namespace AzureBlob {
inline const QString AccountType = QStringLiteral("AzureAccountType");
} // namespace AzureBlob
namespace LimitType {
inline const QString Key = QStringLiteral("LimitType");
namespace Value {
inline const QString Company = QStringLiteral("Company");
inline const QString Destination = QStringLiteral("Destination");
} // namespace Value
} // namespace LimitType
} // namespace AdditionalSettings
} // namespace Mns

} // namespace NVB::Info::StorageAccountConfigFormat
