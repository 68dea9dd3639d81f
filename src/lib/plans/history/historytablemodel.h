#pragma once

#include <QJsonObject>
#include <QMap>
#include <QSharedPointer>
#include <QStringList>
#include <QTemporaryFile>
#include <QUuid>
#include <QVariant>
#include <QVector>

#include "models/basemodel.h"

namespace NVB::Common::Communication {
class ICommand;
}

namespace NVB::GUI {

// What the two history tables share: pages of rows asked for behind the id
// of the last row held, replies to older loads dropped by command id, and a
// CSV export that asks page after page while pages come back full.
class HistoryTableModel : public BaseModel
{
    Q_OBJECT

public:
    // The page size the export relies on: a shorter page is the last one.
    static constexpr int ExportPageSize = 200;

    static QString periodText(int period);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    bool init() override { return true; }

    QMap<QString, QVariant> row(int row) const { return m_rows.value(row); }
    QStringList exportLines() const { return m_exportLines; }

protected:
    explicit HistoryTableModel(QObject* parent = nullptr);

    // Sends a page request; `csv` asks for CSV lines instead of the table.
    void request(int period, const QUuid& planId, int type, int lastId, bool csv);
    virtual QString commandName() const = 0;
    virtual QJsonObject arguments(int period, const QUuid& planId, int type, int lastId, bool csv) const = 0;
    virtual const char* replyKey() const = 0;
    virtual const char* idKey() const = 0;
    virtual const char* csvKey() const = 0;
    virtual QString managerMissingText() const = 0;
    virtual QString commandMissingText() const = 0;
    virtual void emitExportReady(const QSharedPointer<QTemporaryFile>& file) = 0;
    virtual QSharedPointer<QTemporaryFile> prepareExport(const QStringList& lines) const = 0;

    void onResult();
    void onExportResult();

    QVector<QMap<QString, QVariant>> m_rows;
    QUuid m_currentCommand;
    QUuid m_exportCommand;
    bool m_more = false;
    int m_period = 0;
    QUuid m_planId;
    int m_type = 0;
    int m_exportPeriod = 0;
    QUuid m_exportPlanId;
    int m_exportType = 0;
    QStringList m_exportLines;

private:
    NVB::Common::Communication::ICommand* makeCommand() const;
};

} // namespace NVB::GUI
