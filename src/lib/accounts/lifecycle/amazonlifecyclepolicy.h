#pragma once

#include <QMetaType>

namespace NVB::Cloud {

// The transitions of one prefix's lifecycle rule: after how many days its
// objects move to each storage class; -1 means never.
class AmazonLifecyclePolicy
{
public:
    AmazonLifecyclePolicy() = default;
    AmazonLifecyclePolicy(int standardIa, int oneZoneIa, int glacier, int glacierInstantRetrieval,
        int glacierDeepArchive, int intelligentTiering);

    int standardIa() const { return m_standardIa; }
    int oneZoneIa() const { return m_oneZoneIa; }
    int glacier() const { return m_glacier; }
    int glacierInstantRetrieval() const { return m_glacierInstantRetrieval; }
    int glacierDeepArchive() const { return m_glacierDeepArchive; }
    int intelligentTiering() const { return m_intelligentTiering; }

    // Days for a storage class as S3 names it ("GLACIER", ...); -1 for an
    // unknown class. set() ignores unknown classes and answers false.
    int days(const QString& storageClass) const;
    bool set(const QString& storageClass, int days);
    // Storage classes in the order a rule lists them.
    static const QStringList& storageClasses();

    bool isEmpty() const;
    bool operator==(const AmazonLifecyclePolicy& other) const;
    bool operator!=(const AmazonLifecyclePolicy& other) const { return !(*this == other); }

private:
    int m_standardIa = -1;
    int m_oneZoneIa = -1;
    int m_glacier = -1;
    int m_glacierInstantRetrieval = -1;
    int m_glacierDeepArchive = -1;
    int m_intelligentTiering = -1;
};

} // namespace NVB::Cloud

Q_DECLARE_METATYPE(NVB::Cloud::AmazonLifecyclePolicy)
