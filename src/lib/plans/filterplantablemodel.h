#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

namespace NVB::GUI {

// The plans of one job kind (1 backup, 2 restore), sorted as people read
// names: "Plan 9" before "Plan 10".
class FilterPlanTableModel : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    FilterPlanTableModel(int subType, QObject* parent = nullptr);

    int subType() const { return m_subType; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    int m_subType;
    QCollator m_collator;
};

} // namespace NVB::GUI
