#pragma once

#include "wizards/common/pagebase.h"

class QCheckBox;
class QRadioButton;
class QVBoxLayout;
class QWidget;

namespace NVB::GUI {

// Whether the user gets mail about a plan's runs: never, when it fails, or
// always.
class PlanWizardBase::PageNotification : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    static constexpr char FieldUseEnabled[] = "Field_NotificationUseEnabled";
    static constexpr char FieldBackupFails[] = "Field_NotificationBackupFails";
    static constexpr char FieldAllCase[] = "Field_NotificationAllCase";

    explicit PageNotification(QWidget* parent = nullptr);

    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    QCheckBox* enableBox() const { return m_enable; }
    QRadioButton* failsRadio() const { return m_fails; }
    QRadioButton* allCaseRadio() const { return m_allCase; }

protected:
    // The block the check box enables; subclasses add to its layout.
    QWidget* m_block;
    QVBoxLayout* m_blockLayout;

private:
    QCheckBox* m_enable;
    QRadioButton* m_fails;
    QRadioButton* m_allCase;
};

} // namespace NVB::GUI
