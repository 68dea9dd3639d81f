#pragma once

#include <QSortFilterProxyModel>

namespace NVB::GUI {

// The storage table without its File System accounts.
class StorageConnectionsCloudModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit StorageConnectionsCloudModel(QObject* parent = nullptr);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
};

} // namespace NVB::GUI
