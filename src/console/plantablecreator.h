#pragma once

#include <QPointer>

#include "models/modelcreator.h"

namespace NVB::GUI {
class PlanTableModel;
}

namespace NVB::Console {

// The console's one shared plan table, made and loaded at its first request.
class PlanTableCreator : public NVB::GUI::ModelCreator
{
public:
    ~PlanTableCreator() override;

    QAbstractItemModel* create() override;
    QString type() const override;

private:
    QPointer<NVB::GUI::PlanTableModel> m_model;
};

} // namespace NVB::Console
