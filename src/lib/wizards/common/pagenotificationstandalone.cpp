#include "wizards/common/pagenotificationstandalone.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QVBoxLayout>
#include <QWizard>

#include "app/application.h"
#include "core/nvldebug.h"
#include "notify/emailaddressesconfirmed.h"
#include "notify/userprofiles.h"
#include "records/plan/backup.h"
#include "stores/defaultsettings.h"
#include "wizards/common/emailvalidator.h"

namespace NVB::GUI {

namespace {

constexpr int ProviderWithoutReport = 33;

} // namespace

PlanWizardBase::PageNotificationStandalone::PageNotificationStandalone(QWidget* parent)
    : PageNotification(parent)
    , m_email(new QLineEdit(m_block))
    , m_userName(new QLineEdit(m_block))
    , m_subject(new QLineEdit(QStringLiteral("Ashlark Backup %RESULT%"), m_block))
    , m_report(new QCheckBox(tr("Generate detailed report"), m_block))
{
    const NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
    QString email = settings ? settings->getNotifEmail() : QString();
    if (email.isEmpty())
        email = Application::licenseMail();
    QString userName = settings ? settings->getNotifUserName() : QString();
    if (userName.isEmpty())
        userName = NVB::INFO::UserProfiles::currentFullName();
    m_email->setText(email);
    m_userName->setText(userName);

    auto* form = new QFormLayout();
    form->addRow(tr("Email:"), m_email);
    auto* help = new QLabel(
        QStringLiteral("<small>%1</small>").arg(tr("To notify to multiple emails use ; or , as a separator")), m_block);
    form->addRow(QString(), help);
    form->addRow(tr("User name:"), m_userName);
    form->addRow(tr("Email subject:"), m_subject);
    auto* macros = new QLabel(
        QStringLiteral("%1<br>%COMPUTER_NAME%<br>%RESULT%<br>%PLAN_NAME%").arg(tr("Available macroses:")), m_block);
    form->addRow(QString(), macros);
    m_blockLayout->addLayout(form);
    m_blockLayout->addWidget(m_report);

    for (QLineEdit* edit : {m_email, m_userName, m_subject})
        connect(edit, &QLineEdit::textEdited, this, &PageBase::completeChanged);
    registerField(QLatin1String(FieldEmail), m_email);
    registerField(QLatin1String(FieldUserName), m_userName);
    registerField(QLatin1String(FieldEmailSubject), m_subject);
    registerField(QLatin1String(FieldGenDetailedReport), m_report);
}

bool PlanWizardBase::PageNotificationStandalone::showsReport() const
{
    // The wizard's storage page registers the provider; without it any
    // provider but the one without reports is assumed.
    return !(wizard() && wizard()->field(QStringLiteral("Field_CloudType")).toInt() == ProviderWithoutReport);
}

void PlanWizardBase::PageNotificationStandalone::initializePage()
{
    PageNotification::initializePage();
    if (planType() == PlanTypeBackup && !showsReport()) {
        m_report->setVisible(false);
        m_report->setChecked(false);
    } else {
        m_report->setVisible(true);
    }
}

bool PlanWizardBase::PageNotificationStandalone::isComplete() const
{
    if (!enableBox()->isChecked())
        return true;
    if (m_email->text().isEmpty() || m_subject->text().isEmpty() || m_userName->text().isEmpty())
        return false;
    return EmailValidator::isAcceptableList(m_email->text());
}

bool PlanWizardBase::PageNotificationStandalone::validatePage()
{
    if (!enableBox()->isChecked())
        return true;
    NVB::SOAP::EmailAddressesConfirmed service;
    const bool confirmed = service.isAllowed(m_email->text(), m_userName->text());
    if (service.responseStatus() != 200) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << service.errorString();
        QMessageBox::information(this, tr("Information"),
            tr("Cannot reach %1 email service, check connection or disable notifications")
                .arg(Application::companyName()));
        return false;
    }
    if (!confirmed) {
        QMessageBox::information(this, tr("Information"),
            QStringLiteral("<table><tr><td>%1 %2</td></tr><tr><td>%3</td></tr><tr><td>%4</td></tr></table>")
                .arg(tr("Confirmation email is sent to:"), m_email->text().toHtmlEscaped(),
                    tr("Please check your email to confirm your registration."),
                    tr("You will not receive notification until you confirm your email address.")));
    }
    if (NVB::DefaultSettings* settings = NVB::DefaultSettings::instance()) {
        settings->setNotifEmail(m_email->text());
        settings->setNotifUserName(m_userName->text());
    }
    return true;
}

QString PlanWizardBase::PageNotificationStandalone::summary()
{
    QString rows = PageNotification::summary();
    if (enableBox()->isChecked())
        rows += detailRow(QStringLiteral("%1 %2").arg(tr("Send notification to"), m_email->text().toHtmlEscaped()));
    const bool filePlan = wizard() && wizard()->property("Property_BackupPlanType").toInt() == 0;
    if (filePlan && showsReport() && m_report->isChecked())
        rows += QStringLiteral("<tr><td></td><td>%1</td></tr>").arg(tr("Generate detailed report"));
    return rows;
}

bool PlanWizardBase::PageNotificationStandalone::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!PageNotification::initPlan(plan))
        return false;
    if (enableBox()->isChecked())
        plan->notification().setSubject(m_subject->text());
    if (plan->subtype() == 1)
        plan->notification().setGenerateDetailedReport(showsReport() && m_report->isChecked());
    return true;
}

bool PlanWizardBase::PageNotificationStandalone::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!PageNotification::fromPlan(plan))
        return false;
    m_subject->setText(plan->notification().subject());
    if (plan->subtype() == 1)
        m_report->setChecked(plan->notification().generateDetailedReport());
    return true;
}

} // namespace NVB::GUI
