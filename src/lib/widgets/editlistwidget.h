#pragma once

#include <QModelIndex>
#include <QWidget>

class QAbstractItemModel;
class QHBoxLayout;
class QListView;
class QToolButton;

namespace NVB::GUI {

// A list with add and remove buttons below it. The widget changes nothing
// itself: it tells its owner what the user asked for, and the owner edits the
// model. A read-only list has no buttons but still reports the current item.
class EditListWidget : public QWidget
{
    Q_OBJECT
public:
    explicit EditListWidget(bool readOnly, QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model, int column = 0);
    QAbstractItemModel* model() const;
    QListView* view() const { return m_view; }

    QModelIndex currentIndex() const;
    void setCurrentIndex(const QModelIndex& index);

    bool isReadOnly() const { return m_readOnly; }
    QToolButton* addButton() const { return m_add; }
    QToolButton* removeButton() const { return m_remove; }
    // Puts an owner's button after remove, e.g. "Edit"; the list takes it.
    void addToolButton(QToolButton* button);

signals:
    void addItem();
    void removeItem(const QModelIndex& index);
    void editItem(const QModelIndex& index);
    void currentItem(const QModelIndex& index);

protected:
    // Whether the remove button may offer this row; any row by default.
    virtual bool canRemove(const QModelIndex& index) const;
    void updateButtons();

private slots:
    void onCurrentChanged(const QModelIndex& current);
    void onRemoveClicked();
    void onModelReset();

private:
    bool m_readOnly;
    QListView* m_view;
    QToolButton* m_add;
    QToolButton* m_remove;
    QHBoxLayout* m_buttons;
};

} // namespace NVB::GUI
