#include "alibabacloudadd.h"

#include <QComboBox>
#include <QSet>

#include "amazons3compatibleaddcontainer.h"
#include "cloud/info/amazons3like.h"
#include "cloud/info/infofactory.h"

namespace NVB::GUI::Settings::Account {

AlibabaCloud::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::AlibabaCloud, false, false, parent)
{
    setEndpointPreset();
}

Storages::AddContainer* AlibabaCloud::Add::addContainerDialog()
{
    const QStringList names = containers();
    auto* dialog = new AmazonS3Compatible::AddContainer(QSet<QString>(names.cbegin(), names.cend()), true, this);
    const auto info = NVL::Cloud::Info::InfoFactory::create(type());
    if (auto* s3 = dynamic_cast<NVL::Cloud::Info::AmazonS3Like*>(info.data()))
        dialog->setRegions(s3->regions());
    return dialog;
}

} // namespace NVB::GUI::Settings::Account
