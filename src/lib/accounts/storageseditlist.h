#pragma once

#include <QModelIndex>
#include <QUuid>
#include <QWidget>

#include "storages.h"

class QAbstractItemModel;
class QListView;
class QToolButton;

namespace NVB::GUI::Settings {

// The list of saved accounts with its add, remove and edit buttons. It edits
// nothing itself: it tells the page what the user asked for. It keeps the
// selected account selected across the model's changes, by id.
class Storages::EditList : public QWidget
{
    Q_OBJECT

public:
    explicit EditList(bool readOnly, QWidget* parent = nullptr);
    ~EditList() override;

    void setModel(QAbstractItemModel* model);
    QAbstractItemModel* model() const;
    QListView* view() const { return m_view; }
    QModelIndex currentIndex() const;
    void setCurrentIndex(const QModelIndex& index);

    QToolButton* addButton() const { return m_add; }
    QToolButton* removeButton() const { return m_remove; }
    QToolButton* editButton() const { return m_edit; }
    bool isReadOnly() const { return m_readOnly; }

signals:
    void addItem();
    void removeItem(const QModelIndex& index);
    void editItem(const QModelIndex& index);
    void currentItem(const QModelIndex& index);

public slots:
    void setCurrentItem();
    void onSetCurrentItem(const QModelIndex& index);

private slots:
    void onCurrentChanged(const QModelIndex& current);

private:
    bool m_readOnly;
    QListView* m_view;
    QToolButton* m_add;
    QToolButton* m_remove;
    QToolButton* m_edit;
    QUuid m_currentId;
};

} // namespace NVB::GUI::Settings
