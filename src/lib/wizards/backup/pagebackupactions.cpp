#include "wizards/backup/pagebackupactions.h"

#include <QVBoxLayout>

#include "records/plan/backup.h"
#include "wizards/backup/postactionwidget.h"
#include "wizards/backup/preactionwidget.h"

namespace NVB::GUI {

BackupPlanEditWizard::PageBackupActions::PageBackupActions(QWidget* parent)
    : PageBase(tr("Pre / Post Actions"), parent)
    , m_pre(new PreActionWidget(tr("Pre-backup action"), this))
    , m_post(new PostActionWidget(tr("Post-backup action"), this))
{
    setSubTitle(tr("Specify commands you want to be executed before and/or after the backup completes"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pre);
    layout->addSpacing(12);
    layout->addWidget(m_post);
    layout->addStretch(1);
    connect(m_pre, &ActionWidget::changed, this, &PageBase::completeChanged);
    connect(m_post, &ActionWidget::changed, this, &PageBase::completeChanged);
}

bool BackupPlanEditWizard::PageBackupActions::isComplete() const
{
    if (m_pre->isActionEnabled() && m_pre->program().isEmpty())
        return false;
    return !(m_post->isActionEnabled() && m_post->program().isEmpty());
}

int BackupPlanEditWizard::PageBackupActions::nextId() const
{
    const auto* backupWizard = qobject_cast<const BackupPlanEditWizard*>(wizard());
    return backupWizard ? backupWizard->actionsNextId() : PageSummaryId;
}

QString BackupPlanEditWizard::PageBackupActions::summary()
{
    QString rows;
    if (m_pre->isActionEnabled()) {
        rows += headingRow(tr("Execute before backup runs:"));
        rows += detailRow(m_pre->program().toHtmlEscaped());
        rows += detailRow(m_pre->terminateOnFailure() ? tr("Exit backup plan if action failed")
                                                      : tr("Continue backup if plan action failed"));
    }
    if (m_post->isActionEnabled()) {
        rows += headingRow(tr("Execute after backup completes:"));
        rows += detailRow(m_post->program().toHtmlEscaped());
        rows
            += detailRow(m_post->runOnBackupFailure() ? tr("Execute action in any case")
                                                      : tr("Execute action if backup has been successfully completed"));
    }
    return rows;
}

bool BackupPlanEditWizard::PageBackupActions::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    auto& pre = backup->actions().pre();
    pre.setEnabled(m_pre->isActionEnabled());
    pre.setProgram(m_pre->program());
    pre.setArguments(QString());
    pre.setTerminateOnFailure(m_pre->terminateOnFailure());
    auto& post = backup->actions().post();
    post.setEnabled(m_post->isActionEnabled());
    post.setProgram(m_post->program());
    post.setArguments(QString());
    post.setRunOnBackupFailure(m_post->runOnBackupFailure());
    return true;
}

bool BackupPlanEditWizard::PageBackupActions::fromPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    const auto& pre = backup->actions().pre();
    m_pre->setProgram(pre.program());
    m_pre->setActionEnabled(pre.isEnabled());
    m_pre->setTerminateOnFailure(pre.terminateOnFailure());
    const auto& post = backup->actions().post();
    m_post->setProgram(post.program());
    m_post->setActionEnabled(post.isEnabled());
    m_post->setRunOnBackupFailure(post.runOnBackupFailure());
    return true;
}

} // namespace NVB::GUI
