#pragma once

#include <QUuid>

#include "wizards/common/basewizard.h"

namespace NVB::GUI {

// The frame of the backup and restore wizards. It knows which kind of plan it
// makes and whether it edits one; the pages, each a PageBase, do the rest.
// Pages read the three properties by their meta-object names.
class PlanWizardBase : public BaseWizard
{
    Q_OBJECT
    Q_PROPERTY(int PlanType READ planType CONSTANT)
    Q_PROPERTY(bool IsEdit READ isEdit WRITE setIsEdit)
    Q_PROPERTY(QUuid PlanId READ getPlanId WRITE setPlanId)

public:
    class PageBase;
    class PageCloud;
    class PageName;
    class PageSource;
    class PageSummary;
    class PageSchedule;
    class PageNotification;
    class PageNotificationStandalone;
    class PageConsistencyCheck;

    static constexpr int PlanTypeBackup = 1;
    static constexpr int PlanTypeRestore = 2;

    PlanWizardBase(int planType, QWidget* parent = nullptr);

    int planType() const { return m_planType; }
    bool isEdit() const { return m_isEdit; }
    QUuid getPlanId() const { return m_planId; }
    void setIsEdit(bool edit) { m_isEdit = edit; }
    void setPlanId(const QUuid& id) { m_planId = id; }

    // "Backup plan", "Restore plan" or nothing, for the titles of the pages.
    static QString wizardName(int planType);
    // True while the exec() of any plan wizard runs.
    static bool isWizardOpen();

    // Widens the wizard to fit the largest page; the concrete wizard calls it
    // after it has registered its pages.
    void resizeWizardPages();

public slots:
    // Answers 0 at once, showing nothing, while another plan wizard is open:
    // two wizards would edit the same plan table side by side.
    int exec() override;

private:
    const int m_planType;
    bool m_isEdit = false;
    QUuid m_planId;
};

} // namespace NVB::GUI
