#include "wizards/backup/pagename.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QVariant>
#include <QWizard>

#include "records/plan/backup.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"
#include "widgets/checkbox.h"

namespace NVB::GUI {

namespace {

bool rebranding(const char* key)
{
    const NVB::Defines::Rebranding* values = NVB::Defines::Rebranding::instance();
    return values && values->value(key).toBool();
}

bool isFilePlan(const NVB::Info::Plan::Base* plan)
{
    return plan->type() == static_cast<int>(NVB::Info::Plan::SubType::File);
}

} // namespace

BackupPlanEditWizard::PageName::PageName(bool isArchive, QWidget* parent)
    : PageBase(tr("Plan name"), parent)
    , m_isArchive(isArchive)
    , m_name(new QLineEdit(this))
    , m_blockLevel(new QCheckBox(tr("Use block level backup"), this))
    , m_saveOnCloud(new CheckBox(this))
{
    setSubTitle(tr("Specify plan name"));
    m_name->setMinimumWidth(200);
    m_saveOnCloud->setHtml(
        QStringLiteral("<table><tr><td><b>%1</b></td></tr><tr><td><small><b>%2:</b> %3</small></td></tr></table>")
            .arg(tr("Save backup plan configuration to the backup storage"), tr("Note"),
                tr("If your plan has encryption, the encryption password will not be stored by security reason. "
                   "You will have to specify the encryption password during restore.")));
    m_blockLevel->setVisible(false);
    m_saveOnCloud->setVisible(false);
    // A legacy plan starts with the reseller's default; fromPlan only ever
    // turns it on. The new format doesn't use the box.
    if (!isArchive)
        m_blockLevel->setChecked(rebranding(NVB::Defines::RebrandingKeys::AllowBlockLevel)
            && rebranding(NVB::Defines::RebrandingKeys::DefaultUseBlockLevel));

    auto* form = new QFormLayout();
    form->addRow(tr("Plan name:"), m_name);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addSpacing(12);
    layout->addWidget(m_blockLevel);
    layout->addWidget(m_saveOnCloud);
    layout->addStretch(1);

    registerField(QLatin1String(Field_PlanName), m_name);
    registerField(QLatin1String(Field_UseFileDiffirentialBackup), m_blockLevel);
    registerField(QLatin1String(Field_SaveOnCloud), m_saveOnCloud);
    connect(m_name, &QLineEdit::textChanged, this, &PageName::completeChanged);
}

unsigned char BackupPlanEditWizard::PageName::backupPlanType() const
{
    return wizard() ? wizard()->property(Property_BackupPlanType).value<unsigned char>() : PlanTypeFile;
}

bool BackupPlanEditWizard::PageName::isComplete() const
{
    return !m_name->text().trimmed().isEmpty();
}

bool BackupPlanEditWizard::PageName::validatePage()
{
    return isComplete();
}

int BackupPlanEditWizard::PageName::nextId() const
{
    switch (backupPlanType()) {
    case PlanTypeFile:
        return PageSourceId;
    case PlanTypeDiskImage:
        return PageBackupDiskImageSourceId;
    default:
        return -1;
    }
}

QString BackupPlanEditWizard::PageName::summary()
{
    QString rows = valueRow(tr("Plan name:"), field(QLatin1String(Field_PlanName)).toString().toHtmlEscaped());
    if (field(QLatin1String(Field_SaveOnCloud)).toBool())
        rows += detailRow(tr("Save configuration to Cloud"));
    if (backupPlanType() == PlanTypeFile && field(QLatin1String(Field_UseFileDiffirentialBackup)).toBool())
        rows += detailRow(tr("Use block level backup"));
    return rows;
}

bool BackupPlanEditWizard::PageName::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    backup->setName(field(QLatin1String(Field_PlanName)).toString());
    if (m_isArchive) {
        if (isFilePlan(backup))
            backup->setUseDifferentialUpload(true);
        return true;
    }
    if (isFilePlan(backup))
        backup->setUseDifferentialUpload(field(QLatin1String(Field_UseFileDiffirentialBackup)).toBool());
    backup->setSavePlanInCloud(field(QLatin1String(Field_SaveOnCloud)).toBool());
    return true;
}

bool BackupPlanEditWizard::PageName::fromPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    setField(QLatin1String(Field_PlanName), backup->name());
    if (m_isArchive) {
        m_blockLevel->setVisible(false);
        m_saveOnCloud->setVisible(false);
        return true;
    }
    if (isFilePlan(backup)) {
        m_blockLevel->setVisible(rebranding(NVB::Defines::RebrandingKeys::AllowBlockLevel));
        if (backup->useDifferentialUpload())
            setField(QLatin1String(Field_UseFileDiffirentialBackup), true);
    } else {
        m_blockLevel->setVisible(false);
    }
    m_saveOnCloud->setVisible(true);
    setField(QLatin1String(Field_SaveOnCloud), backup->savePlanInCloud());
    return true;
}

} // namespace NVB::GUI
