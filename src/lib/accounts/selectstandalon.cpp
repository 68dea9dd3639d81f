#include "selectstandalon.h"

#include "accountfactory.h"
#include "cloud/cloudtype.h"

namespace NVB::GUI::Settings::Account {

SelectStandalon::SelectStandalon(QWidget* parent)
    : Select(parent)
{
    for (const NVL::Cloud::Type type : NVL::Cloud::SelectorOrder) {
        const bool available = AccountFactory::hasDialog(int(type));
        addItem(int(type), storageName(int(type)), available,
            available ? QString() : tr("%1 accounts are not supported yet").arg(storageName(int(type))));
    }
}

QString SelectStandalon::storageName(int type)
{
    if (!NVL::Cloud::isKnownType(type))
        return QString();
    return NVL::Cloud::displayName(NVL::Cloud::Type(type));
}

} // namespace NVB::GUI::Settings::Account
