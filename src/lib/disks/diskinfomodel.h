#pragma once

#include <QAbstractItemModel>
#include <QSharedPointer>

#include "records/disk/diskinfo.h"

namespace NVB::GUI {

// The machine's disks with their volumes below them, as the engine sees
// them. A volume's index carries its disk's row plus one as internal id; a
// disk's carries 0.
class DiskInfoModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // The check state of a row, as 2 or 0, in column 0.
    static constexpr int EnabledRole = 10;

    explicit DiskInfoModel(QObject* parent = nullptr);

    // Asks the engine for the machine's disks; rows come with complite().
    virtual void init();
    bool isLoad() const { return !m_diskInfo.isNull(); }
    // Shows `info` (a plan's saved selection, an image's disks) instead of
    // asking the engine.
    void initFromDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info);
    QSharedPointer<NVB::Info::DiskInfo> diskInfo() const { return m_diskInfo; }
    // A disk's name as the tables show it: "sda (Model)", the model, or
    // "Disk #n".
    static QString diskName(const NVB::Info::DiskInfo::Disk& disk, int number);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

signals:
    void loaded();
    void complite();
    void error(QString text);

protected:
    virtual QVariant diskData(const QModelIndex& index, int role) const;
    virtual QVariant volumeData(const QModelIndex& index, int role) const;
    // Replaces the rows with those of `info`.
    void setDiskInfo(const QSharedPointer<NVB::Info::DiskInfo>& info);

    const NVB::Info::DiskInfo::Disk* diskAt(int row) const;
    const NVB::Info::DiskInfo::Volume* volumeAt(const QModelIndex& index) const;

private:
    void onGetDiskInfoResult();

    QSharedPointer<NVB::Info::DiskInfo> m_diskInfo;
};

} // namespace NVB::GUI
