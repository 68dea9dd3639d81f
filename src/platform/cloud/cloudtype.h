#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QVector>

// Providers of storage accounts. The numbers are stored in account records and
// sent to the engine, so they never change; 32 was given up long ago and must
// stay unused. Scoped, because the provider sets below share member names.
namespace NVL::Cloud {

enum class Type : int {
    FileSystem = 1,
    AmazonS3 = 2,
    AzureBlob = 3,
    OracleCloud = 4,
    Rackspace = 5,
    Openstack = 6,
    GoogleStorage = 7,
    SoftLayer = 8,
    HPCloud = 9,
    HPHelion = 10,
    S3Compatible = 11,
    Scality = 12,
    DreamObjects = 13,
    Cloudian = 14,
    ThinkOn = 15,
    Aruba = 16,
    Tiscali = 17,
    Seeweb = 18,
    CenturyLink = 19,
    AmazonS3Chinese = 20,
    Minio = 21,
    Dunkel = 22,
    Connectria = 23,
    HostEurope = 24,
    GreenQloud = 25,
    Constant = 26,
    Webzilla = 27,
    Verizon = 28,
    Wasabi = 29,
    AlibabaCloud = 30,
    BackBlaze = 31,
    Sftp = 33,
    NvlUbWasabi = 34,
    NvlUbWasabiStage = 35,
    WasabiStage = 36,
    NvlUbAmazonS3 = 37,
    MNS_CLOUD = 38
};

uint qHash(Type type, uint seed = 0);

// The literal of each type, as written into cloud configurations.
namespace Name {
extern const QString FileSystem;
extern const QString AmazonS3;
extern const QString AzureBlob;
extern const QString OracleCloud;
extern const QString Rackspace;
extern const QString Openstack;
extern const QString GoogleStorage;
extern const QString SoftLayer;
extern const QString HPCloud;
extern const QString HPHelion;
extern const QString AmazonS3Like;
extern const QString Scality;
extern const QString DreamObjects;
extern const QString Cloudian;
extern const QString ThinkOn;
extern const QString Aruba;
extern const QString Tiscali;
extern const QString Seeweb;
extern const QString CenturyLink;
extern const QString AmazonS3Chinese;
extern const QString Minio;
extern const QString Dunkel;
extern const QString Connectria;
extern const QString HostEurope;
extern const QString GreenQloud;
extern const QString Constant;
extern const QString Webzilla;
extern const QString Verizon;
extern const QString Wasabi;
extern const QString AlibabaCloud;
extern const QString BackBlaze;
extern const QString Sftp;
extern const QString NvlUbWasabi;
extern const QString NvlUbWasabiStage;
extern const QString WasabiStage;
extern const QString NvlUbAmazonS3;
extern const QString MNS_CLOUD;
} // namespace Name

extern const QMap<Type, QString> TypeName;

extern const QSet<Type> S3Compatible;
extern const QSet<Type> AmazonS3;
extern const QSet<Type> OpenStack;
extern const QSet<Type> NetworkConnection;

// The types a user may pick when adding an account, in the order they are shown.
extern const QVector<Type> SelectorOrder;

// The translated name a user sees; empty for a type that is never offered.
QString displayName(Type type);
// The untranslated source text of displayName(), for callers that translate
// in their own context.
QString displayNameSource(Type type);

// The type of a TypeName literal; false in *ok (when given) for an unknown one.
Type typeFromName(const QString& name, bool* ok = nullptr);
// True for a number that names a member of Type.
bool isKnownType(int value);

} // namespace NVL::Cloud
