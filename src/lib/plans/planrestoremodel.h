#pragma once

#include "plans/planfulltablemodel.h"

namespace NVB::GUI {

// The restore plans of the shared plan table, sorted by name, with the
// storage and the XML of each plan once its XML is held.
class PlanRestoreModel : public PlanFullTableModel
{
    Q_OBJECT
public:
    explicit PlanRestoreModel(QObject* parent = nullptr);

    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    // False when the executable registered no plan table.
    bool init() override;
};

} // namespace NVB::GUI
