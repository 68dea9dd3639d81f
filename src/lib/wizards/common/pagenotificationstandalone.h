#pragma once

#include "wizards/common/pagenotification.h"

class QLineEdit;

namespace NVB::GUI {

// The standalone edition's notification page: besides when, where to and
// under which subject. Addresses must be confirmed by the confirmation
// service before mail goes to them.
class PlanWizardBase::PageNotificationStandalone : public PlanWizardBase::PageNotification
{
    Q_OBJECT
public:
    static constexpr char FieldEmail[] = "Field_NotificationEmail";
    static constexpr char FieldUserName[] = "Field_NotificationUserName";
    static constexpr char FieldEmailSubject[] = "Field_NotificationEmailSubject";
    static constexpr char FieldGenDetailedReport[] = "Field_NotificationNeedToGenerateDetailedReport";

    explicit PageNotificationStandalone(QWidget* parent = nullptr);

    void initializePage() override;
    bool isComplete() const override;
    bool validatePage() override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    QLineEdit* emailEdit() const { return m_email; }
    QLineEdit* userNameEdit() const { return m_userName; }
    QLineEdit* subjectEdit() const { return m_subject; }
    QCheckBox* reportBox() const { return m_report; }

private:
    bool showsReport() const;

    QLineEdit* m_email;
    QLineEdit* m_userName;
    QLineEdit* m_subject;
    QCheckBox* m_report;
};

} // namespace NVB::GUI
