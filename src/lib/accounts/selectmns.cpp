#include "selectmns.h"

#include "cloud/cloudtype.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"

namespace NVB::GUI::Settings::Account {

SelectMns::SelectMns(QWidget* parent)
    : Select(parent)
{
    const auto* rebranding = NVB::Defines::Rebranding::instance();
    if (rebranding && rebranding->value(NVB::Defines::RebrandingKeys::FileSystemAccount::Enabled).toBool())
        addItem(int(NVL::Cloud::Type::FileSystem), storageName(int(NVL::Cloud::Type::FileSystem)));
}

QString SelectMns::storageName(int type)
{
    if (type == int(NVL::Cloud::Type::FileSystem))
        return tr("File System");
    const auto* rebranding = NVB::Defines::Rebranding::instance();
    return rebranding ? rebranding->value(NVB::Defines::RebrandingKeys::General::ProductName).toString() : QString();
}

} // namespace NVB::GUI::Settings::Account
