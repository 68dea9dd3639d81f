#pragma once

#include <functional>

#include <QSharedPointer>
#include <QUuid>

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagesummary.h"

namespace NVB::GUI {

// The summary of a backup plan, whose finish saves the plan: a new record is
// written by every visited page and sent to the engine, and the wizard
// closes only once the plan table shows the result.
class BackupPlanEditWizard::PageSummary : public PlanWizardBase::PageSummary
{
    Q_OBJECT
public:
    // Hands a rendered plan to the engine and answers whether it was saved.
    // The default waits for the plan table through PlanEditWait.
    using Saver = std::function<bool(bool isEdit, const QUuid& id, const QString& xml, bool run, QWidget* parent)>;

    explicit PageSummary(bool isArchive, QWidget* parent = nullptr);

    bool validatePage() override;

    // The record the visited pages make; null when the wizard's content kind
    // has no record class.
    QSharedPointer<NVB::Info::Plan::Base> createPlan() const;

    void setSaver(Saver saver);
    static bool saveByWait(bool isEdit, const QUuid& id, const QString& xml, bool run, QWidget* parent);

private:
    const bool m_isArchive;
    Saver m_saver;
};

} // namespace NVB::GUI
