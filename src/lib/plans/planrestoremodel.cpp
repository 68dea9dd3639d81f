#include "plans/planrestoremodel.h"

namespace NVB::GUI {

namespace {
constexpr int JobKind = 2;
} // namespace

PlanRestoreModel::PlanRestoreModel(QObject* parent)
    : PlanFullTableModel(parent)
{ }

int PlanRestoreModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : viewColumnCount();
}

QVariant PlanRestoreModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return viewHeaderData(section, orientation, role);
}

QVariant PlanRestoreModel::data(const QModelIndex& index, int role) const
{
    return viewData(index, role, JobKind);
}

bool PlanRestoreModel::init()
{
    return initProxy(JobKind);
}

} // namespace NVB::GUI
