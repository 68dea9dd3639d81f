#pragma once

#include <QSortFilterProxyModel>

namespace NVB::GUI {

// The storage table reduced to the accounts of one provider type.
class StorageConnectionsFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit StorageConnectionsFilterModel(int type, QObject* parent = nullptr);

    int type() const { return m_type; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    int m_type;
};

} // namespace NVB::GUI
