#include "azureblob.h"

#include "cloud/cloudconfig.h"

namespace NVL::Cloud::Info {

AzureBlob::AzureBlob()
    : Base(NVL::Cloud::Type::AzureBlob)
{ }

QUrl AzureBlob::defaultEndpoint() const
{
    return QUrl(QStringLiteral("https://blob.core.windows.net"));
}

QVector<QPair<QString, QString>> AzureBlob::accountTypes() const
{
    namespace Value = NVL::Cloud::Config::AzureBlob::AccountTypes::Value;
    // The selector compares the text with "AzureStack" to show the endpoint
    // row, so the texts are the literals themselves.
    return {{Value::Public, Value::Public}, {Value::Government, Value::Government}, {Value::Germany, Value::Germany},
        {Value::China, Value::China}, {Value::AzureStack, Value::AzureStack}};
}

QVector<QPair<QString, QString>> AzureBlob::accessType() const
{
    return {{QStringLiteral("Private"), QStringLiteral("private")}, {QStringLiteral("Blob"), QStringLiteral("blob")},
        {QStringLiteral("Container"), QStringLiteral("container")}};
}

} // namespace NVL::Cloud::Info
