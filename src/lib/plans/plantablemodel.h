#pragma once

#include <QHash>
#include <QJsonDocument>
#include <QMap>
#include <QString>
#include <QUuid>
#include <QVariant>
#include <QVector>

#include "models/basemodel.h"
#include "records/plan/planresult.h"

namespace NVB::GUI {

// The engine's summary of every plan, one row a plan in the order of arrival.
// Shared by the whole console: the executable registers it with ModelManager
// and the backup and restore views stand on it.
class PlanTableModel : public BaseModel
{
    Q_OBJECT
public:
    // Column to the key of the plan summary.
    static const QMap<int, QString> KEY;

    explicit PlanTableModel(QObject* parent = nullptr);
    ~PlanTableModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    // Asks the engine for every plan.
    bool init() override;
    // Asks the engine for one plan's summary.
    void loadInfo(const QUuid& id);

    // The icon of a plan that isn't running, by its job kind (1 backup,
    // 2 restore) and the result of its last run.
    static QIcon palnStatusIcon(int subType, const NVB::Info::Plan::PlanResult& result);

private slots:
    void onGetListResult();
    void onGetInfoResult();
    void onNotification(const QJsonDocument& document);

private:
    void sendRequest(const QString& name, const QJsonObject& params, void (PlanTableModel::*slot)());
    void removePlan(const QUuid& id);
    void changeState(const QUuid& id, int state);
    int rowOf(const QUuid& id) const;
    void emitRowChanged(int row);

    QMap<QUuid, QMap<QString, QVariant>> m_plans;
    QVector<QUuid> m_order;
    // Row of each plan, so that a notification finds its row without a scan;
    // rebuilt from the order vector whenever rows go.
    QHash<QUuid, int> m_rows;
};

} // namespace NVB::GUI
