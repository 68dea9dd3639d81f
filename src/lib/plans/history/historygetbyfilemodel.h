#pragma once

#include "historytablemodel.h"

namespace NVB::GUI {

// The history by file: one row a file a run touched, newest first.
class HistoryGetByFileModel : public HistoryTableModel
{
    Q_OBJECT

public:
    explicit HistoryGetByFileModel(QObject* parent = nullptr);

    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

public slots:
    // `type` keeps the rows of one file operation; 0 keeps all.
    void load(int period, const QUuid& planId, int type);
    void load(int period, const QUuid& planId, int type, int lastId);
    void issueFileExport(int period, const QUuid& planId, int type, int lastId);

signals:
    void saveFileReady(QSharedPointer<QTemporaryFile> file);

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
