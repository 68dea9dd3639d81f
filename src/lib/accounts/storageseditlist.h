#pragma once

#include <QModelIndex>
#include <QUuid>

#include "storages.h"
#include "widgets/editlistwidget.h"

class QAbstractItemModel;
class QToolButton;

namespace NVB::GUI::Settings {

// The list of saved accounts with its add, remove and edit buttons. It edits
// nothing itself: it tells the page what the user asked for. It keeps the
// selected account selected across the model's changes, by id.
class Storages::EditList : public EditListWidget
{
    Q_OBJECT

public:
    explicit EditList(bool readOnly, QWidget* parent = nullptr);
    ~EditList() override;

    // Shows the accounts' display names.
    void setModel(QAbstractItemModel* model);

    QToolButton* editButton() const { return m_edit; }

public slots:
    void setCurrentItem();
    void onSetCurrentItem(const QModelIndex& index);

protected:
    bool canRemove(const QModelIndex& index) const override;

private slots:
    void onCurrentItem(const QModelIndex& current);

private:
    QToolButton* m_edit;
    QUuid m_currentId;
};

} // namespace NVB::GUI::Settings
