#pragma once

#include <QAbstractItemModel>

namespace NVB::GUI {

class BaseModelItem;

// Translates between the toolkit's indexes and a tree of BaseModelItem. An
// index's internal pointer is its item; the invalid index stands for the root.
class BaseItemModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    explicit BaseItemModel(QObject* parent = nullptr);
    ~BaseItemModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // Creates the root, wires it to the model and loads it.
    virtual bool init() = 0;

    BaseModelItem* rootItem() const { return m_root; }

protected slots:
    void onInsertItem(int row, NVB::GUI::BaseModelItem* item);
    void onRemoveItem(int row, NVB::GUI::BaseModelItem* item);
    void onUpdateItem(int row, NVB::GUI::BaseModelItem* item);

protected:
    // Takes ownership of the root, connects its signals and loads it; the
    // common steps of every init().
    bool setRootItem(BaseModelItem* root);
    BaseModelItem* itemFromIndex(const QModelIndex& index) const;

private:
    BaseModelItem* m_root = nullptr;
    // The item whose newest child is in its list but not yet announced; views
    // asking during the announcement see the count they knew.
    BaseModelItem* m_announcing = nullptr;
};

} // namespace NVB::GUI
