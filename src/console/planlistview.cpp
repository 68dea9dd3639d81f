#include "planlistview.h"

#include <QHeaderView>

#include "app/delegates/duratondelegate.h"
#include "app/delegates/planresultdelegate.h"
#include "app/delegates/sizedelegate.h"
#include "app/delegates/storagenamedelegate.h"
#include "models/models.h"
#include "overduedelegate.h"
#include "plans/planfulltablemodel.h"
#include "plans/planxmllist.h"

namespace NVB::Console {

namespace Column = NVB::GUI::Models::Table::NvbPlanBackupModelInfo::Column;

PlanListView::PlanListView(NVB::GUI::PlanFullTableModel* model, int subtype, QWidget* parent)
    : QTableView(parent)
    , m_model(model)
    , m_subtype(subtype)
{
    model->setParent(this);
    model->init();
    setModel(model);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    verticalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);

    setItemDelegateForColumn(Column::LastRunTime, new OverdueDelegate(this));
    setItemDelegateForColumn(Column::LastRunStatus, new NVB::GUI::PlanResultDelegate(this));
    setItemDelegateForColumn(Column::LastDuration, new NVB::GUI::DuratonDelegate(this));
    setItemDelegateForColumn(Column::LastUploadedSize, new NVB::GUI::SizeDelegate(this));
    setItemDelegateForColumn(Column::StorageID, new NVB::GUI::StorageNameDelegate(this));
    // Which columns a person reads; the rest are for other views.
    for (int column : {Column::ID, Column::SubType, Column::Status, Column::PlanXML, Column::ProgressSteps})
        setColumnHidden(column, true);
    // Columns take their contents' width, headers included, so that no
    // title is cut; the message column takes what is left.
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setMinimumSectionSize(60);

    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { emit currentPlanChanged(planAt(current), m_subtype); });
    connect(this, &QAbstractItemView::activated, this,
            [this](const QModelIndex& index) { emit planActivated(planAt(index), m_subtype); });
    // A plan added while nothing is chosen becomes the current one, so the
    // toolbar has something to act on.
    connect(model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
        // The storage and XML columns fill once the plan's document is held.
        if (const auto documents = NVB::GUI::PlanXmlList::instance()) {
            for (int row = first; row <= last; ++row)
                documents->getPlan(planAt(m_model->index(row, Column::ID)));
        }
        if (!currentIndex().isValid() && m_model->rowCount() > 0)
            selectRow(0);
    });
}

QUuid PlanListView::planAt(const QModelIndex& index) const
{
    if (!index.isValid())
        return {};
    return QUuid(m_model->index(index.row(), Column::ID).data().toString());
}

QUuid PlanListView::currentPlan() const
{
    return planAt(currentIndex());
}

} // namespace NVB::Console
