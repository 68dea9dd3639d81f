#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QList>
#include <QStringList>

#include "models/iconprovider.h"

namespace NVB::GUI {

// The check tree over files and folders. It fills itself folder by folder
// through load(), which a subclass implements and answers with onResult().
//
// Nodes are plain QObjects whose data are dynamic properties; QObject
// parenthood is the tree and an index's internal pointer is the node. Nodes
// are known by their real path.
//
// Check states, under Qt::CheckStateRole in column 0: 0 unchecked, 1 partially
// checked, 2 checked and 1001 incomplete (the node itself isn't wanted, some of
// what lies below it is). A view draws 1001 as unchecked unless its delegate
// knows better.
class BaseFilesModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    // Property names of a node.
    static const char* const Name;
    static const char* const Path;
    static const char* const RealPath;
    static const char* const IsChangeable;
    static const char* const IsExpandable;
    static const char* const Type;
    static const char* const IsHidden;
    static const char* const IsSymlink;
    static const char* const Checked;
    static const char* const Row;
    static const char* const Load;

    static constexpr int StateUnchecked = 0;
    static constexpr int StatePartiallyChecked = 1;
    static constexpr int StateChecked = 2;
    static constexpr int StateIncomplete = 1001;

    static constexpr int LoadNone = 0;
    static constexpr int Loading = 1;
    static constexpr int Loaded = 2;

    explicit BaseFilesModel(QObject* parent = nullptr);
    ~BaseFilesModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

    // Lists the given real paths to the given depth and answers by onResult,
    // one call per path.
    virtual bool load(const QStringList& paths, int depth) = 0;

    QModelIndex indexByPath(const QString& path) const;
    // True if a sibling from the row of start to the last has value under role;
    // hidden nodes count only withHidden.
    bool hasMatchFirst(const QModelIndex& start, int role, const QVariant& value, bool withHidden) const;

    QObject* rootItem() const { return m_root; }
    int nodeCount() const { return m_items.size(); }
    bool uncheckedAllHiddenFiles() const { return m_uncheckedAllHiddenFiles; }

public slots:
    // Adds the listed nodes below the node of rootPath. The model takes the
    // objects; a path it doesn't know leaves them to the caller.
    virtual void onResult(const QString& rootPath, const QList<QObject*>& objects);
    // Forgets a destroyed node. Connected to destroyed(QObject*), so that it
    // needn't ask sender(), which costs a walk over every connected node.
    void onDestoryedItem(QObject* item = nullptr);
    void onCollapse(const QModelIndex& index);
    void onUncheckedAllHiddenFiles(bool unchecked);

protected:
    QObject* nodeFromIndex(const QModelIndex& index) const;
    QModelIndex indexOfNode(QObject* node, int column = 0) const;
    QObject* nodeByPath(const QString& path) const { return m_items.value(path, nullptr); }
    // Enters a node in the path hash and has it leave again when destroyed.
    void registerNode(QObject* node);
    void registerNode(QObject* node, const QString& realPath);
    QHash<int, const char*> columns() const { return m_columns; }
    static int state(const QObject* node);

    void setDataChecked(const QModelIndex& index);
    void setDataUnchecked(const QModelIndex& index);
    void setDataPartiallyChecked(const QModelIndex& index);
    void setDataIncompliteChecked(const QModelIndex& index);
    void setDataCheckedParent(const QModelIndex& index);
    void setDataUncheckedParent(const QModelIndex& index);
    bool checkIsObjNotNullRoot(const QObject* node) const;

    IconProvider& iconProvider() const { return m_iconProvider; }

private:
    void setStateOf(QObject* node, int state);
    void setDescendants(QObject* node, int state);
    void flushChanges();
    // Takes a node and all below it out of the path hash while they can
    // still tell their paths.
    void forgetSubtree(QObject* top);

    QObject* m_root = nullptr;
    QHash<int, const char*> m_columns;
    QHash<QString, QObject*> m_items;
    mutable IconProvider m_iconProvider;
    bool m_uncheckedAllHiddenFiles = true;

    // The node whose newest rows are in place but not yet announced, and how
    // many; views asking during the announcement see the count they knew.
    QObject* m_announcing = nullptr;
    int m_announcingCount = 0;

    // Rows whose mark changed during one setData, by parent, so that one
    // dataChanged per parent covers them.
    struct ChangedRows
    {
        int first = 0;
        int last = 0;
    };
    QHash<QObject*, ChangedRows> m_changed;
    int m_setDataDepth = 0;
    // Set while the model deletes nodes it has already forgotten.
    bool m_forgetting = false;
};

} // namespace NVB::GUI
