#pragma once

#include <QSet>
#include <QSortFilterProxyModel>
#include <QUuid>

namespace NVB::GUI {

// The disks a restore may write to: big enough for what is restored, and
// not already chosen for another source disk. Unfit disks stay visible but
// cannot be chosen.
class DestinationDiskFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit DestinationDiskFilterModel(long long requiredSize, QObject* parent = nullptr);

    void addPtherSelectedDisk(const QUuid& id);
    void removeOtherSelectedDisk(const QUuid& id);

    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    long long m_requiredSize;
    QSet<QUuid> m_otherSelected;
};

} // namespace NVB::GUI
