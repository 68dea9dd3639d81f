#include "amazonlifecyclepolicy.h"

#include <QStringList>

namespace NVB::Cloud {

namespace {

const QString StandardIa = QStringLiteral("STANDARD_IA");
const QString OneZoneIa = QStringLiteral("ONEZONE_IA");
const QString Glacier = QStringLiteral("GLACIER");
const QString GlacierIr = QStringLiteral("GLACIER_IR");
const QString DeepArchive = QStringLiteral("DEEP_ARCHIVE");
const QString IntelligentTiering = QStringLiteral("INTELLIGENT_TIERING");

const int registered = qRegisterMetaType<AmazonLifecyclePolicy>();

} // namespace

AmazonLifecyclePolicy::AmazonLifecyclePolicy(int standardIa, int oneZoneIa, int glacier, int glacierInstantRetrieval,
    int glacierDeepArchive, int intelligentTiering)
    : m_standardIa(standardIa)
    , m_oneZoneIa(oneZoneIa)
    , m_glacier(glacier)
    , m_glacierInstantRetrieval(glacierInstantRetrieval)
    , m_glacierDeepArchive(glacierDeepArchive)
    , m_intelligentTiering(intelligentTiering)
{
    Q_UNUSED(registered)
}

const QStringList& AmazonLifecyclePolicy::storageClasses()
{
    static const QStringList classes = {StandardIa, OneZoneIa, IntelligentTiering, GlacierIr, Glacier, DeepArchive};
    return classes;
}

int AmazonLifecyclePolicy::days(const QString& storageClass) const
{
    if (storageClass == StandardIa)
        return m_standardIa;
    if (storageClass == OneZoneIa)
        return m_oneZoneIa;
    if (storageClass == Glacier)
        return m_glacier;
    if (storageClass == GlacierIr)
        return m_glacierInstantRetrieval;
    if (storageClass == DeepArchive)
        return m_glacierDeepArchive;
    if (storageClass == IntelligentTiering)
        return m_intelligentTiering;
    return -1;
}

bool AmazonLifecyclePolicy::set(const QString& storageClass, int days)
{
    int* slot = nullptr;
    if (storageClass == StandardIa)
        slot = &m_standardIa;
    else if (storageClass == OneZoneIa)
        slot = &m_oneZoneIa;
    else if (storageClass == Glacier)
        slot = &m_glacier;
    else if (storageClass == GlacierIr)
        slot = &m_glacierInstantRetrieval;
    else if (storageClass == DeepArchive)
        slot = &m_glacierDeepArchive;
    else if (storageClass == IntelligentTiering)
        slot = &m_intelligentTiering;
    if (!slot)
        return false;
    *slot = days;
    return true;
}

bool AmazonLifecyclePolicy::isEmpty() const
{
    for (const QString& storageClass : storageClasses()) {
        if (days(storageClass) >= 0)
            return false;
    }
    return true;
}

bool AmazonLifecyclePolicy::operator==(const AmazonLifecyclePolicy& other) const
{
    return m_standardIa == other.m_standardIa && m_oneZoneIa == other.m_oneZoneIa && m_glacier == other.m_glacier
        && m_glacierInstantRetrieval == other.m_glacierInstantRetrieval
        && m_glacierDeepArchive == other.m_glacierDeepArchive && m_intelligentTiering == other.m_intelligentTiering;
}

} // namespace NVB::Cloud
