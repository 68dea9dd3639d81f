#pragma once

#include <QString>

#include "records/plan/storageinfo.h"

namespace NVB::Info::Plan {

// Provider options of a backup plan; reached as Backup::StorageInfo.
class BackupStorageInfo : public StorageInfo
{
public:
    // 2 is a retired class that no list offers.
    enum AmazonS3StorageClass {
        Standard = 1,
        GlacierFlexibleRetrieval = 3,
        StandardIA = 4,
        OneZoneIA = 5,
        IntelligentTiering = 6,
        GlacierDeepArchive = 7,
        GlacierInstantRetrieval = 8
    };
    enum AzureBlobStorageClass { Default = 0, Cool = 1, Archive = 2 };

    static QString amazonS3StorageClassToStr(AmazonS3StorageClass storageClass);
    static QString azureBlobStorageClassToStr(AzureBlobStorageClass storageClass);

    bool useSSE() const { return m_useSSE; }
    void setUseSSE(bool use) { m_useSSE = use; }
    AmazonS3StorageClass storageClassAmazonS3() const { return m_storageClassAmazonS3; }
    void setStorageClassAmazonS3(AmazonS3StorageClass storageClass) { m_storageClassAmazonS3 = storageClass; }
    AzureBlobStorageClass storageClassAzureBlob() const { return m_storageClassAzureBlob; }
    void setStorageClassAzureBlob(AzureBlobStorageClass storageClass) { m_storageClassAzureBlob = storageClass; }

protected:
    void writeFields(QDomElement& element) const override;
    void readFields(const QDomElement& element) override;

private:
    bool m_useSSE = false;
    AmazonS3StorageClass m_storageClassAmazonS3 = Standard;
    AzureBlobStorageClass m_storageClassAzureBlob = Default;
};

} // namespace NVB::Info::Plan
