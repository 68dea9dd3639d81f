#include "plantablecreator.h"

#include "models/models.h"
#include "plans/plantablemodel.h"

namespace NVB::Console {

PlanTableCreator::~PlanTableCreator()
{
    delete m_model;
}

QAbstractItemModel* PlanTableCreator::create()
{
    if (!m_model) {
        m_model = new NVB::GUI::PlanTableModel;
        m_model->init();
    }
    return m_model;
}

QString PlanTableCreator::type() const
{
    return NVB::GUI::Models::Table::NvbPlanModelInfo::Type;
}

} // namespace NVB::Console
