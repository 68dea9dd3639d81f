#pragma once

#include <QUuid>

#include "accounts/storages.h"
#include "wizards/common/pagebase.h"

class QAction;
class QLineEdit;

namespace NVB::GUI {

class StorageConnectionsSortModel;

// Where a plan gets its storage: the saved accounts, with add, edit and
// remove in place. Its hidden fields carry the chosen account to the pages
// that follow, which change with the provider.
class PlanWizardBase::PageCloud : public PlanWizardBase::PageBase
{
    Q_OBJECT
    Q_PROPERTY(bool single READ isSingle WRITE setSingle)

public:
    static constexpr char Field_CloudId[] = "Field_CloudId";
    static constexpr char Field_CloudType[] = "Field_CloudType";
    static constexpr char Field_CloudName[] = "Field_CloudName";
    static constexpr char Field_CloudPrefix[] = "Field_CloudPrefix";

    PageCloud(bool isArchive, bool skipOpenStack, QWidget* parent = nullptr);

    bool isArchive() const { return m_isArchive; }
    // Whether accounts of the OpenStack family are left out of the list.
    bool skipsOpenStack() const;
    bool isSingle() const { return m_single; }
    void setSingle(bool single) { m_single = single; }

    bool validatePage() override;
    bool isComplete() const override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    Settings::Storages::EditList* list() const { return m_list; }

private slots:
    void onCurrentItem(const QModelIndex& index);
    void onAddDestinationMenu(QAction* action);
    void onAddDestinationClicked();
    void onAddDestination(int type);
    void onEditDestinationClicked(const QModelIndex& index);
    void onRemoveDestinationClicked(const QModelIndex& index);

private:
    QLineEdit* hiddenField(const char* name);
    void selectAccount(const QUuid& id);

    bool m_isArchive;
    bool m_single = false;
    Settings::Storages::EditList* m_list;
    StorageConnectionsSortModel* m_model = nullptr;
};

} // namespace NVB::GUI
