#pragma once

#include <QAbstractItemModel>
#include <QList>
#include <QPair>
#include <QSharedPointer>
#include <QUuid>

#include "records/disk/restorediskconfiguration.h"

namespace NVB::GUI {

// Where each volume of a disk image goes: one row a source volume, its
// destination volume and its length.
class RestoreDiskConfigurationModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit RestoreDiskConfigurationModel(QObject* parent = nullptr);

    // A volume as one cell value: "disk|volume", both in classic form.
    static QString Value(const QUuid& diskId, const QUuid& volumeId);
    // Null ids unless the text has exactly two parts.
    static QPair<QUuid, QUuid> fromValue(const QVariant& value);

    void init(const QSharedPointer<NVB::Info::RestoreDiskConfiguration>& configuration);
    QSharedPointer<NVB::Info::RestoreDiskConfiguration> restoreConfiguration() const { return m_configuration; }

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    NVB::Info::RestoreDiskConfigurationVolume* volumeAt(int row) const;

    QSharedPointer<NVB::Info::RestoreDiskConfiguration> m_configuration;
    QList<QPair<int, int>> m_rows; // (disk row, volume row)
};

} // namespace NVB::GUI
