#pragma once

#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagesource.h"

class QCheckBox;
class QLabel;

namespace NVB::GUI {

class FileSystemCheckedModel;
class FileSystemCheckedProxyModel;
class IncompleteStateDelegate;

// The files and folders of this machine that a file plan backs up, marked in
// a check tree. A plan needs at least one marked path.
class BackupPlanEditWizard::PageSource : public PlanWizardBase::PageSource
{
    Q_OBJECT
public:
    explicit PageSource(QWidget* parent = nullptr);

    bool validatePage() override;
    bool isComplete() const override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    FileSystemCheckedModel* model() const { return m_model; }
    FileSystemCheckedProxyModel* proxyModel() const { return m_proxy; }
    QCheckBox* showHiddenBox() const { return m_showHidden; }
    QLabel* legendLink() const { return m_legend; }

public slots:
    void onShowLegend();
    void onShareControlAttention();

private:
    QCheckBox* m_showHidden;
    QLabel* m_legend;
    IncompleteStateDelegate* m_delegate;
    FileSystemCheckedModel* m_model;
    FileSystemCheckedProxyModel* m_proxy;
};

} // namespace NVB::GUI
