#pragma once

#include <QSortFilterProxyModel>

namespace NVB::GUI {

// Hides hidden files and folders below the top level of a file tree, unless
// asked to show them. Marks of hidden nodes stay as they were.
class FileSystemCheckedProxyModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit FileSystemCheckedProxyModel(QObject* parent = nullptr);

    void setSourceModel(QAbstractItemModel* sourceModel) override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;

    bool isShowHidden() const { return m_showHidden; }

public slots:
    void setIsShowHidden(bool show);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private slots:
    void onDataChange(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles);

private:
    bool m_showHidden = false;
};

} // namespace NVB::GUI
