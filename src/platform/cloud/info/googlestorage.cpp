#include "googlestorage.h"

#include <QtGlobal>

#ifndef NVB_GOOGLE_CLIENT_ID
#define NVB_GOOGLE_CLIENT_ID ""
#endif
#ifndef NVB_GOOGLE_CLIENT_SECRET
#define NVB_GOOGLE_CLIENT_SECRET ""
#endif

namespace NVL::Cloud::Info {

const QString GoogleStorage::ClientID = QStringLiteral(NVB_GOOGLE_CLIENT_ID);

GoogleStorage::GoogleStorage()
    : Base(NVL::Cloud::Type::GoogleStorage)
{ }

namespace {

QString fromEnvironment(const char* name, const QString& fallback)
{
    const QString value = qEnvironmentVariable(name).trimmed();
    return value.isEmpty() ? fallback : value;
}

} // namespace

QString GoogleStorage::clientId()
{
    return fromEnvironment("NVB_GOOGLE_CLIENT_ID", ClientID);
}

QString GoogleStorage::clientSecret()
{
    return fromEnvironment("NVB_GOOGLE_CLIENT_SECRET", QStringLiteral(NVB_GOOGLE_CLIENT_SECRET));
}

QUrl GoogleStorage::authorizationEndpoint()
{
    return QUrl(fromEnvironment("NVB_GOOGLE_AUTH_URL", QStringLiteral("https://accounts.google.com/o/oauth2/v2/auth")));
}

QUrl GoogleStorage::tokenEndpoint()
{
    return QUrl(fromEnvironment("NVB_GOOGLE_TOKEN_URL", QStringLiteral("https://oauth2.googleapis.com/token")));
}

QString GoogleStorage::storageScope()
{
    return QStringLiteral("https://www.googleapis.com/auth/devstorage.full_control");
}

QString GoogleStorage::emailScope()
{
    return QStringLiteral("email");
}

QUrl GoogleStorage::defaultEndpoint() const
{
    return QUrl(fromEnvironment("NVB_GOOGLE_STORAGE_URL", QStringLiteral("https://storage.googleapis.com")));
}

QMap<QString, QPair<QString, QString>> GoogleStorage::regions() const
{
    const QString multi = QStringLiteral("Multi-region");
    const QString dual = QStringLiteral("Dual-region");
    const QString single = QStringLiteral("Region");
    return {
        {QStringLiteral("US"), {QStringLiteral("United States"), multi}},
        {QStringLiteral("EU"), {QStringLiteral("European Union"), multi}},
        {QStringLiteral("ASIA"), {QStringLiteral("Asia"), multi}},
        {QStringLiteral("NAM4"), {QStringLiteral("Iowa and South Carolina"), dual}},
        {QStringLiteral("EUR4"), {QStringLiteral("Netherlands and Finland"), dual}},
        {QStringLiteral("US-CENTRAL1"), {QStringLiteral("Iowa"), single}},
        {QStringLiteral("US-EAST1"), {QStringLiteral("South Carolina"), single}},
        {QStringLiteral("US-EAST4"), {QStringLiteral("Northern Virginia"), single}},
        {QStringLiteral("US-WEST1"), {QStringLiteral("Oregon"), single}},
        {QStringLiteral("US-WEST2"), {QStringLiteral("Los Angeles"), single}},
        {QStringLiteral("NORTHAMERICA-NORTHEAST1"), {QStringLiteral("Montreal"), single}},
        {QStringLiteral("SOUTHAMERICA-EAST1"), {QStringLiteral("Sao Paulo"), single}},
        {QStringLiteral("EUROPE-WEST1"), {QStringLiteral("Belgium"), single}},
        {QStringLiteral("EUROPE-WEST2"), {QStringLiteral("London"), single}},
        {QStringLiteral("EUROPE-WEST3"), {QStringLiteral("Frankfurt"), single}},
        {QStringLiteral("EUROPE-NORTH1"), {QStringLiteral("Finland"), single}},
        {QStringLiteral("ASIA-EAST1"), {QStringLiteral("Taiwan"), single}},
        {QStringLiteral("ASIA-NORTHEAST1"), {QStringLiteral("Tokyo"), single}},
        {QStringLiteral("ASIA-SOUTH1"), {QStringLiteral("Mumbai"), single}},
        {QStringLiteral("ASIA-SOUTHEAST1"), {QStringLiteral("Singapore"), single}},
        {QStringLiteral("AUSTRALIA-SOUTHEAST1"), {QStringLiteral("Sydney"), single}},
    };
}

QVector<QPair<QString, QString>> GoogleStorage::storageType() const
{
    return {{QStringLiteral("Standard"), QStringLiteral("STANDARD")},
        {QStringLiteral("Nearline"), QStringLiteral("NEARLINE")},
        {QStringLiteral("Coldline"), QStringLiteral("COLDLINE")},
        {QStringLiteral("Archive"), QStringLiteral("ARCHIVE")}};
}

} // namespace NVL::Cloud::Info
