#include "plans/filterplantablemodel.h"

#include <QLocale>

#include "models/models.h"

namespace NVB::GUI {

namespace {

// The C locale compares code points and ignores numeric mode, so a console
// started without a locale would put "Plan 10" before "Plan 9"; English
// rules keep the order people expect there.
QLocale collationLocale()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : locale;
}

} // namespace

FilterPlanTableModel::FilterPlanTableModel(int subType, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_subType(subType)
    , m_collator(collationLocale())
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
