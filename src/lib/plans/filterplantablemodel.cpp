#include "plans/filterplantablemodel.h"

#include <QLocale>

#include "models/models.h"

namespace NVB::GUI {

FilterPlanTableModel::FilterPlanTableModel(int subType, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_subType(subType)
    , m_collator(QLocale())
{
    m_collator.setNumericMode(true);
    setDynamicSortFilter(true);
}

bool FilterPlanTableModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    const QModelIndex index
        = sourceModel()->index(sourceRow, Models::Table::NvbPlanModelInfo::Column::SubType, sourceParent);
    return index.data(Qt::DisplayRole).toInt() == m_subType;
}

bool FilterPlanTableModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    return m_collator.compare(left.data(Qt::DisplayRole).toString(), right.data(Qt::DisplayRole).toString()) < 0;
}

} // namespace NVB::GUI
