#pragma once

#include <QTableView>
#include <QUuid>

namespace NVB::GUI {
class PlanFullTableModel;
}

namespace NVB::Console {

// One list of plans (backup or restore) with the value delegates of its
// columns; tells which plan is current.
class PlanListView : public QTableView
{
    Q_OBJECT

public:
    // Takes the model; `subtype` is 1 for backup plans, 2 for restore plans.
    PlanListView(NVB::GUI::PlanFullTableModel* model, int subtype, QWidget* parent = nullptr);

    QUuid currentPlan() const;
    int subtype() const { return m_subtype; }

signals:
    void currentPlanChanged(const QUuid& id, int subtype);
    void planActivated(const QUuid& id, int subtype);

private:
    QUuid planAt(const QModelIndex& index) const;

    NVB::GUI::PlanFullTableModel* m_model;
    int m_subtype;
};

} // namespace NVB::Console
