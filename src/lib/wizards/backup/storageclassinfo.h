#pragma once

#include <QString>

#include "records/plan/backupstorageinfo.h"

namespace NVB::GUI::StorageClassInfo {

using AmazonS3StorageClass = NVB::Info::Plan::BackupStorageInfo::AmazonS3StorageClass;
using AzureBlobStorageClass = NVB::Info::Plan::BackupStorageInfo::AzureBlobStorageClass;

// Rich-text tooltips that explain a provider's storage classes; empty for a
// class without a text of its own.
namespace AmazonS3 {
QString toolTip(AmazonS3StorageClass storageClass);
}

namespace Azure {
QString toolTip(AzureBlobStorageClass storageClass);
}

} // namespace NVB::GUI::StorageClassInfo
