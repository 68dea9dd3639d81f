#pragma once

#include <QList>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QUuid>
#include <QVector>

#include "models/basemodel.h"
#include "plans/filterplantablemodel.h"

namespace NVB::GUI {

// A flat view over the shared plan table, re-published through a filtering
// proxy, that also knows each plan's XML. The backup and restore views derive
// from it and differ only in the job kind they show.
class PlanFullTableModel : public BaseModel
{
    Q_OBJECT
public:
    explicit PlanFullTableModel(QObject* parent = nullptr);
    ~PlanFullTableModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    FilterPlanTableModel* proxy() const { return m_proxy; }

protected slots:
    void onRowsAboutToBeInserted(const QModelIndex& parent, int first, int last);
    void onRowsAboutToBeRemoved(const QModelIndex& parent, int first, int last);
    void onRowsInserted(const QModelIndex& parent, int first, int last);
    void onRowsRemoved(const QModelIndex& parent, int first, int last);
    void onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles);
    void onPlanXmlLoad(const QUuid& id);

protected:
    // Wires the proxy of one job kind over the shared table; false when the
    // executable registered no plan table.
    bool initProxy(int subType);
    // A cell of a backup or restore view, in the views' own column order.
    QVariant viewData(const QModelIndex& index, int role, int subType) const;
    QVariant viewHeaderData(int section, Qt::Orientation orientation, int role) const;
    int viewColumnCount() const;

private slots:
    void onLayoutAboutToBeChanged();
    void onLayoutChanged();
    void onModelAboutToBeReset();
    void onModelReset();

private:
    QPointer<FilterPlanTableModel> m_proxy;
    // The rows of the views are the proxy's rows; while the proxy re-sorts,
    // these remember where each of our persistent indexes was.
    QList<QPersistentModelIndex> m_layoutSource;
    QModelIndexList m_layoutOwn;
};

} // namespace NVB::GUI
