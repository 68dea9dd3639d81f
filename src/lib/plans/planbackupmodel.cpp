#include "plans/planbackupmodel.h"

namespace NVB::GUI {

namespace {
constexpr int JobKind = 1;
} // namespace

PlanBackupModel::PlanBackupModel(QObject* parent)
    : PlanFullTableModel(parent)
{ }

int PlanBackupModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : viewColumnCount();
}

QVariant PlanBackupModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return viewHeaderData(section, orientation, role);
}

QVariant PlanBackupModel::data(const QModelIndex& index, int role) const
{
    return viewData(index, role, JobKind);
}

bool PlanBackupModel::init()
{
    return initProxy(JobKind);
}

} // namespace NVB::GUI
