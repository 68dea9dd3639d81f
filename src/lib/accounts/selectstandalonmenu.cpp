#include "selectstandalonmenu.h"

#include "accountfactory.h"
#include "cloud/cloudtype.h"
#include "storage/storageconnectionsmodel.h"

namespace NVB::GUI::Settings::Account {

SelectStandalon::Menu::Menu(bool skipOpenStack, QWidget* parent)
    : QMenu(parent)
{
    for (const NVL::Cloud::Type type : NVL::Cloud::SelectorOrder) {
        if (skipOpenStack && NVL::Cloud::OpenStack.contains(type))
            continue;
        QString name = SelectStandalon::storageName(int(type));
        // A single "&" would mark a shortcut and vanish from the text.
        name.replace(QLatin1Char('&'), QStringLiteral("&&"));
        QAction* action = addAction(StorageConnectionsModel::storageIcon(int(type)), name);
        action->setData(int(type));
        if (!AccountFactory::hasDialog(int(type))) {
            action->setEnabled(false);
            action->setToolTip(tr("%1 accounts are not supported yet").arg(SelectStandalon::storageName(int(type))));
        }
    }
    setToolTipsVisible(true);
}

} // namespace NVB::GUI::Settings::Account
