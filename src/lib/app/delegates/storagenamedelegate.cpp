#include "storagenamedelegate.h"

#include <QAbstractItemModel>
#include <QUuid>

#include "models/modelmanager.h"
#include "models/models.h"

namespace NVB::GUI {

QString StorageNameDelegate::toText(const QVariant& value, const QLocale&)
{
    namespace Info = Models::Table::NvbStorageConnectionModelInfo;
    const QString id = value.toString();
    if (!value.isValid() || id.isEmpty())
        return tr("Unknown");
    const auto manager = ModelManager::instance();
    const QAbstractItemModel* model = manager ? manager->create(Info::Type) : nullptr;
    if (!model || model->rowCount() == 0)
        return tr("Unknown");
    const QModelIndexList found
        = model->match(model->index(0, Info::Column::ID), Qt::DisplayRole, id, 1, Qt::MatchExactly);
    if (found.isEmpty())
        return tr("Unknown");
    return model->index(found.first().row(), Info::Column::DisplayName).data().toString();
}

QString StorageNameDelegate::text(const QVariant& value, const QLocale& locale) const
{
    return toText(value, locale);
}

} // namespace NVB::GUI
