#pragma once

#include <QMap>
#include <QModelIndex>
#include <QUuid>
#include <QWidget>

class QDialog;
class QStackedLayout;
class QToolButton;

namespace NVB::GUI {
class StorageConnectionsSortModel;
}

namespace NVB::GUI::Settings {

namespace Account {
class SelectStandalon;
}

// The storage page of the settings: the saved accounts on the left, and on
// the right either the provider choice (to add one) or the selected account.
class Storages : public QWidget
{
    Q_OBJECT

public:
    class AddBase;
    class Add;
    class AddContainer;
    class Info;
    class EditList;
    class UpdateWatcher;

    explicit Storages(QWidget* parent = nullptr);
    ~Storages() override;

    EditList* editList() const { return m_list; }
    QStackedLayout* stack() const { return m_stack; }
    // The view shown for an account id, null when none was made.
    Info* view(const QUuid& id) const { return m_views.value(id); }

public slots:
    void onCreateSelected(int type);

private slots:
    void onAddItem();
    void onEditItem(const QModelIndex& index);
    void onRemoveItem(const QModelIndex& index);
    void onCurrentChanged(const QModelIndex& index);
    void onDataChanged(const QModelIndex& index);
    void onModelDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void onRowsRemoved();

private:
    void runDialog(QDialog* dialog, int watch);

    EditList* m_list = nullptr;
    QStackedLayout* m_stack = nullptr;
    StorageConnectionsSortModel* m_sortModel = nullptr;
    QWidget* m_selector = nullptr;
    QMap<QUuid, Info*> m_views;
};

} // namespace NVB::GUI::Settings
