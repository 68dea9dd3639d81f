#pragma once

#include <QString>

// Keys of the cloud configuration, the in-memory QMap<QString, QVariant> that
// is handed to cloud operations. Secrets stand here in the clear; the stored
// account record uses the keys of storageaccountconfigformat.h instead, and the
// two tables differ on purpose in a few places.
namespace NVL::Cloud {

namespace Config {
inline const QString Id = QStringLiteral("CloudId");
inline const QString Type = QStringLiteral("CloudType");

namespace AmazonS3Like {
inline const QString AccessKey = QStringLiteral("AccessKey");
inline const QString SecretKey = QStringLiteral("SecretKey");
inline const QString Region = QStringLiteral("Region");
// Our own addition: "Path" (https://host/bucket/key) or "VirtualHost"
// (https://bucket.host/key). Absent: virtual host for Amazon's own endpoints
// when the bucket name allows it, path for every other server.
inline const QString AddressingStyle = QStringLiteral("AddressingStyle");
namespace Signature {
inline const QString Key = QStringLiteral("Signature");
namespace Value {
inline const QString V2 = QStringLiteral("V2");
inline const QString V4 = QStringLiteral("V4");
} // namespace Value
} // namespace Signature
} // namespace AmazonS3Like

namespace AzureBlob {
inline const QString Username = QStringLiteral("Username");
inline const QString Password = QStringLiteral("Password");
namespace AccountTypes {
inline const QString Key = QStringLiteral("Type");
namespace Value {
inline const QString Public = QStringLiteral("Public");
inline const QString Government = QStringLiteral("Government");
inline const QString Germany = QStringLiteral("Germany");
inline const QString China = QStringLiteral("China");
inline const QString AzureStack = QStringLiteral("AzureStack");
} // namespace Value
} // namespace AccountTypes
namespace StorageClass {
inline const QString Key = QStringLiteral("StorageClass");
namespace Value {
inline const QString Default = QStringLiteral("Default");
inline const QString Hot = QStringLiteral("Hot");
inline const QString Cool = QStringLiteral("Cool");
inline const QString Archive = QStringLiteral("Archive");
} // namespace Value
} // namespace StorageClass
} // namespace AzureBlob

namespace BackBlaze {
inline const QString AccountId = QStringLiteral("AccountId");
inline const QString ApplicationKey = QStringLiteral("ApplicationKey");
inline const QString TestMode = QStringLiteral("TestMode");
} // namespace BackBlaze

namespace FileSystem {
inline const QString Path = QStringLiteral("Path");
} // namespace FileSystem

namespace GoogleStorage {
inline const QString AuthType = QStringLiteral("AuthType");
namespace Auth_AccessAndSecretKey {
inline const QString AccessKey = QStringLiteral("AccessKey");
inline const QString SecretKey = QStringLiteral("SecretKey");
} // namespace Auth_AccessAndSecretKey
namespace Auth_ServiceAccount {
inline const QString ServiceAccount = QStringLiteral("ServiceAccount");
inline const QString ProjectId = QStringLiteral("ProjectId");
inline const QString PrivateKey = QStringLiteral("PrivateKey");
} // namespace Auth_ServiceAccount
namespace Auth_InstalledApplication {
inline const QString ProjectId = QStringLiteral("ProjectId");
inline const QString InitCode = QStringLiteral("InitCode");
inline const QString RefreshToken = QStringLiteral("RefreshToken");
// Our own additions: the PKCE verifier and the loopback redirect the code
// was issued for; the token endpoint wants both back with the code.
inline const QString CodeVerifier = QStringLiteral("CodeVerifier");
inline const QString RedirectUri = QStringLiteral("RedirectUri");
} // namespace Auth_InstalledApplication
} // namespace GoogleStorage

namespace Network {
inline const QString Address = QStringLiteral("Address");
inline const QString Port = QStringLiteral("Port");
inline const QString KeepAlive = QStringLiteral("KeepAlive");
inline const QString UseProxy = QStringLiteral("UseProxy");
namespace Sftp {
inline const QString Path = QStringLiteral("Path");
inline const QString User = QStringLiteral("User");
inline const QString Password = QStringLiteral("Password");
// The private key itself (OpenSSH or PEM text), not a path to it. An
// encrypted one is unlocked by Passphrase (older records used Password).
inline const QString PrivateKey = QStringLiteral("PrivateKey");
// Our own addition: the known_hosts file the server's key is checked against.
// Absent or empty means the user's ~/.ssh/known_hosts.
inline const QString KnownHostsFile = QStringLiteral("KnownHostsFile");
// Read as well, never written: the machine-wide file. Absent means
// /etc/ssh/ssh_known_hosts.
inline const QString GlobalKnownHostsFile = QStringLiteral("GlobalKnownHostsFile");
// Unlocks an encrypted PrivateKey; with a key, Password is not used for it.
inline const QString Passphrase = QStringLiteral("Passphrase");
// Seconds any single step may wait for the server (connect, login, each SFTP
// request); absent or 0 means SshConnection::DefaultTimeoutSeconds.
inline const QString Timeout = QStringLiteral("Timeout");
// Our own addition: with KeepAlive on, seconds a session may stay idle before
// the server must answer a keepalive; absent or 0 means
// SshConnection::KeepAliveSeconds.
inline const QString KeepAliveInterval = QStringLiteral("KeepAliveInterval");
// Set by a failed operation whose host key is unknown or changed, for the
// dialog that asks the user: the key as a known_hosts line would hold it
// ("ssh-ed25519 AAAA..."), its SHA256 fingerprint as ssh prints it, and for
// a changed key the fingerprint of the key on record.
inline const QString OfferedHostKey = QStringLiteral("OfferedHostKey");
inline const QString OfferedHostKeyFingerprint = QStringLiteral("OfferedHostKeyFingerprint");
inline const QString KnownHostKeyFingerprint = QStringLiteral("KnownHostKeyFingerprint");
} // namespace Sftp
} // namespace Network

namespace OpenStack {
inline const QString Username = QStringLiteral("Username");
inline const QString ApiKey = QStringLiteral("ApiKey");
inline const QString UseInternalUrl = QStringLiteral("UseInternalUrl");
inline const QString SegmentPrefix = QStringLiteral("SegmentPrefix");
inline const QString AuthType = QStringLiteral("AuthType");
namespace Auth_Keystore_V2 {
inline const QString TenantName = QStringLiteral("TenantName");
inline const QString TenantId = QStringLiteral("TenantId");
inline const QString Region = QStringLiteral("Region");
} // namespace Auth_Keystore_V2
namespace Auth_Keystore_V3 {
inline const QString DomainName = QStringLiteral("DomainName");
inline const QString DomainId = QStringLiteral("DomainId");
inline const QString Region = QStringLiteral("Region");
namespace UseScope {
inline const QString Key = QStringLiteral("UseScope");
inline const QString ProjectName = QStringLiteral("ProjectName");
inline const QString ProjectId = QStringLiteral("ProjectId");
} // namespace UseScope
} // namespace Auth_Keystore_V3
} // namespace OpenStack
} // namespace Config

namespace Api::Config::Http {
inline const QString Endpoint = QStringLiteral("Endpoint");
inline const QString UseSsl = QStringLiteral("UseSsl");
// Our own addition: seconds a connect, or a stalled transfer, may take;
// absent or 0 means 30.
inline const QString Timeout = QStringLiteral("HttpTimeout");
// Set by an operation refused with SslUntrusted: the leaf certificate that
// connection saw (PEM) and why verification failed (a string list).
inline const QString PeerCertificate = QStringLiteral("PeerCertificate");
inline const QString PeerCertificateErrors = QStringLiteral("PeerCertificateErrors");
} // namespace Api::Config::Http

namespace OperationConfig {
inline const QString ContainerName = QStringLiteral("ContainerName");
inline const QString ChunkSize = QStringLiteral("ChunkSize");
} // namespace OperationConfig

// What IOperation::type() answers.
namespace OperationType {
inline const QString CheckConfig = QStringLiteral("CheckConfig");
inline const QString CreateContainer = QStringLiteral("CreateContainer");
inline const QString DeleteOnce = QStringLiteral("DeleteOnce");
inline const QString Download2Stream = QStringLiteral("Download2Stream");
inline const QString DownloadAuto2Stream = QStringLiteral("DownloadAuto2Stream");
inline const QString DownloadBlob = QStringLiteral("DownloadBlob");
inline const QString DownloadBlob2Stream = QStringLiteral("DownloadBlob2Stream");
inline const QString ListContainers = QStringLiteral("ListContainers");
inline const QString Listing = QStringLiteral("Listing");
inline const QString MultipleDelete = QStringLiteral("MultipleDelete");
inline const QString SignUrl = QStringLiteral("SignUrl");
inline const QString StreamTransformation = QStringLiteral("StreamTransformation");
inline const QString Upload = QStringLiteral("Upload");
inline const QString UploadAuto = QStringLiteral("UploadAuto");
inline const QString UploadEmptyFolder = QStringLiteral("UploadEmptyFolder");
inline const QString UploadMultipart = QStringLiteral("UploadMultipart");
namespace Archive {
inline const QString PrepareForDownload = QStringLiteral("ArchivePrepareForDownload");
inline const QString CheckReadyForDownload = QStringLiteral("ArchiveCheckReadyForDownload");
inline const QString FinalizeDownloaded = QStringLiteral("ArchiveFinalizeDownloaded");
} // namespace Archive
namespace Amazon {
inline const QString LoadLifecyclePolicy = QStringLiteral("Amazon_LoadLifecyclePolicy");
inline const QString SaveLifecyclePolicy = QStringLiteral("Amazon_SaveLifecyclePolicy");
inline const QString DeleteLifecyclePolicy = QStringLiteral("Amazon_DeleteLifecyclePolicy");
} // namespace Amazon
} // namespace OperationType

} // namespace NVL::Cloud
