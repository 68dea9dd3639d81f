#include "amazones3chineadd.h"

#include <QComboBox>
#include <QSet>

#include "amazons3compatibleaddcontainer.h"
#include "cloud/info/amazons3like.h"
#include "cloud/info/infofactory.h"

namespace NVB::GUI::Settings::Account {

AmazoneS3Chine::Add::Add(QWidget* parent)
    : AmazonS3Compatible::Add(NVL::Cloud::Type::AmazonS3Chinese, false, false, parent)
{
    setEndpointPreset();
}

Storages::AddContainer* AmazoneS3Chine::Add::addContainerDialog()
{
    const QStringList names = containers();
    auto* dialog = new AmazonS3Compatible::AddContainer(QSet<QString>(names.cbegin(), names.cend()), false, this);
    const auto info = NVL::Cloud::Info::InfoFactory::create(type());
    if (auto* s3 = dynamic_cast<NVL::Cloud::Info::AmazonS3Like*>(info.data()))
        dialog->setRegions(s3->regions());
    // No choice is offered: every new bucket goes to the first region.
    dialog->regionCombo()->setCurrentIndex(0);
    return dialog;
}

} // namespace NVB::GUI::Settings::Account
