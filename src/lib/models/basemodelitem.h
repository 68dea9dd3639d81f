#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QVariant>

namespace NVB::GUI {

// One node of a tree that loads itself from the engine on demand. The model
// above only translates indexes; the items hold the data. Every change travels
// up the parent chain and leaves the tree as a signal of the root.
class BaseModelItem : public QObject
{
    Q_OBJECT

public:
    enum ItemStatus {
        NotLoaded = 0,
        Loading = 1,
        Loaded = 2,
        Updating = 3,
    };
    Q_ENUM(ItemStatus)

    BaseModelItem(BaseModelItem* parent, ItemStatus status, QObject* parentObject = nullptr);
    ~BaseModelItem() override;

    virtual bool load() = 0;
    virtual QVariant data(int column, int role) const = 0;
    virtual Qt::ItemFlags flags() const;
    virtual QString displayName() const = 0;

    bool expandable() const { return m_expandable; }
    QByteArray selectIndex() const { return m_selectIndex; }
    ItemStatus loadStatus() const { return m_status; }
    bool updateItemInProgress() const { return m_updateInProgress; }

    void appendChild(BaseModelItem* item);
    BaseModelItem* child(int row) const;
    int childCount() const;
    BaseModelItem* parentItem() const;
    int row() const;
    void removeMe();
    void removeAllChild();
    void changeStatus(ItemStatus status);
    void changeUpdateCurrentItem(bool inProgress);

signals:
    void error(QString text);
    void insertItem(int row, NVB::GUI::BaseModelItem* item);
    void updateItem(int row, NVB::GUI::BaseModelItem* item);
    void removeItem(int row, NVB::GUI::BaseModelItem* item);

public slots:
    void onInsertItem(int row, NVB::GUI::BaseModelItem* item);
    void onRemoveItem(int row, NVB::GUI::BaseModelItem* item);
    void onUpdateItem(int row, NVB::GUI::BaseModelItem* item);
    void onError(const QString& text);

protected:
    void setExpandable(bool expandable) { m_expandable = expandable; }
    void setSelectIndex(const QByteArray& selectIndex) { m_selectIndex = selectIndex; }

private:
    bool m_expandable = false;
    QByteArray m_selectIndex;
    QList<BaseModelItem*> m_children;
    BaseModelItem* m_parent = nullptr;
    ItemStatus m_status = NotLoaded;
    bool m_updateInProgress = false;
};

} // namespace NVB::GUI
