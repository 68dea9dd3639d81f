#pragma once

#include "historytablemodel.h"

namespace NVB::GUI {

// The history by run: one row a run of the plan, newest first.
class HistoryGetByPlanModel : public HistoryTableModel
{
    Q_OBJECT

public:
    explicit HistoryGetByPlanModel(QObject* parent = nullptr);

    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // The finish time of a run: start plus duration, in the engine's stamp
    // form; none for a run still under way.
    static QVariant finishTime(const QMap<QString, QVariant>& row);

public slots:
    void load(int period, const QUuid& planId);
    void load(int period, const QUuid& planId, int lastId);
    void issuePlanExport(int period, const QUuid& planId, int lastId);

signals:
    void savePlanReady(QSharedPointer<QTemporaryFile> file);

protected:
    QString commandName() const override;
    QJsonObject arguments(int period, const QUuid& planId, int type, int lastId, bool csv) const override;
    const char* replyKey() const override;
    const char* idKey() const override;
    const char* csvKey() const override;
    QString managerMissingText() const override;
    QString commandMissingText() const override;
    void emitExportReady(const QSharedPointer<QTemporaryFile>& file) override;
    QSharedPointer<QTemporaryFile> prepareExport(const QStringList& lines) const override;
};

} // namespace NVB::GUI
