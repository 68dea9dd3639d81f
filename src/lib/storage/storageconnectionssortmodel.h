#pragma once

#include <QSortFilterProxyModel>

namespace NVB::GUI {

// The storage table as the account lists show it: local storage first, then
// the rest by name, case ignored. Can hide the OpenStack family.
class StorageConnectionsSortModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit StorageConnectionsSortModel(QObject* parent = nullptr);

    bool skipOpenStack() const { return m_skipOpenStack; }
    void setSkipOpenStack(bool skip);

protected:
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    bool m_skipOpenStack = false;
};

} // namespace NVB::GUI
