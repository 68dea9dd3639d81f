#include "wizards/backup/pageretentionpolicy.h"

#include <limits>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMap>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "records/plan/backup.h"
#include "settings/retentionpolicy.h"
#include "settings/settingsimpledialog.h"
#include "widgets/attentionframe.h"

namespace NVB::GUI {

namespace {

using Policy = NVB::Info::Plan::BackupRetentionPolicy;

// Combo box index to the record's unit and back, new format.
constexpr int archiveUnits[] = {Policy::Year, Policy::Month, Policy::Week, Policy::Day};

QWidget* indentedRow(QWidget* parent, QHBoxLayout*& row)
{
    auto* widget = new QWidget(parent);
    row = new QHBoxLayout(widget);
    row->setContentsMargins(20, 0, 0, 0);
    return widget;
}

} // namespace

BackupPlanEditWizard::PageRetentionPolicy::PageRetentionPolicy(bool isArchive, QWidget* parent)
    : PageBase(tr("Retention Policy"), parent)
    , m_isArchive(isArchive)
{
    setSubTitle(tr("Specify retention policy for backup files"));
    if (isArchive)
        buildArchive();
    else
        buildLegacy();
}

void BackupPlanEditWizard::PageRetentionPolicy::buildLegacy()
{
    auto* layout = new QVBoxLayout(this);
    m_useDefault = new QRadioButton(tr("Use default"), this);
    auto* link = new QLabel(tr("Use default <a href=\"options\">options</a> specified for the whole product"), this);
    link->setContentsMargins(20, 0, 0, 0);
    link->setEnabled(false);
    connect(m_useDefault, &QRadioButton::toggled, link, &QWidget::setEnabled);
    connect(link, &QLabel::linkActivated, this, &PageRetentionPolicy::onShowDefaultOptions);
    m_useCustom = new QRadioButton(tr("Specify custom retention policy for backup plan"), this);
    connect(m_useCustom, &QRadioButton::toggled, this, &PageRetentionPolicy::onCustomPolicy);

    m_deleteOlder = new QCheckBox(tr("Delete versions older than"), this);
    m_deleteOlder->setEnabled(false);
    QHBoxLayout* ageLayout = nullptr;
    m_ageRow = indentedRow(this, ageLayout);
    m_age = new QSpinBox(m_ageRow);
    m_age->setRange(1, 999);
    m_unit = new QComboBox(m_ageRow);
    m_unit->addItems({tr("day(s)"), tr("week(s)"), tr("month(s)")});
    m_dateType = new QComboBox(m_ageRow);
    m_dateType->addItems({tr("modification date"), tr("backup date")});
    ageLayout->addWidget(m_age);
    ageLayout->addWidget(m_unit);
    ageLayout->addWidget(new QLabel(tr("from"), m_ageRow));
    ageLayout->addWidget(m_dateType);
    ageLayout->addStretch(1);
    m_keepLast = new QCheckBox(tr("Always keep the last version"), this);
    auto* keepLastRow = new QHBoxLayout();
    keepLastRow->setContentsMargins(20, 0, 0, 0);
    keepLastRow->addWidget(m_keepLast);
    m_ageRow->setEnabled(false);
    m_keepLast->setEnabled(false);
    connect(m_deleteOlder, &QCheckBox::toggled, m_ageRow, &QWidget::setEnabled);
    connect(m_deleteOlder, &QCheckBox::toggled, this, [this](bool on) {
        m_keepLast->setEnabled(on);
        onDeleteOlderDateTypeChanged();
    });
    connect(m_dateType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        &PageRetentionPolicy::onDeleteOlderDateTypeChanged);

    m_keepVersion = new QCheckBox(tr("Keep number of versions (for each file)"), this);
    m_keepVersion->setEnabled(false);
    QHBoxLayout* keepLayout = nullptr;
    m_keepVersionRow = indentedRow(this, keepLayout);
    m_keepVersionNumber = new QSpinBox(m_keepVersionRow);
    m_keepVersionNumber->setMinimum(1);
    m_keepVersionNumber->setMaximum(std::numeric_limits<int>::max());
    m_keepVersionNumber->setValue(3);
    keepLayout->addWidget(new QLabel(tr("Keep number of versions:"), m_keepVersionRow));
    keepLayout->addWidget(m_keepVersionNumber);
    keepLayout->addStretch(1);
    m_keepVersionRow->setEnabled(false);
    connect(m_keepVersion, &QCheckBox::toggled, m_keepVersionRow, &QWidget::setEnabled);

    m_deleteLocaly = new QCheckBox(tr("Delete files that have been deleted locally"), this);
    QHBoxLayout* localLayout = nullptr;
    m_deleteLocalyRow = indentedRow(this, localLayout);
    m_deleteLocalyDays = new QSpinBox(m_deleteLocalyRow);
    m_deleteLocalyDays->setRange(0, 99999);
    m_deleteLocalyDays->setValue(30);
    localLayout->addWidget(new QLabel(tr("Delete after:"), m_deleteLocalyRow));
    localLayout->addWidget(m_deleteLocalyDays);
    localLayout->addWidget(new QLabel(tr("days"), m_deleteLocalyRow));
    localLayout->addStretch(1);
    m_deleteLocalyRow->setEnabled(false);
    m_deleteLocalyAttention = new AttentionFrame(
        tr("It will permanently delete all files and all their versions from cloud storage that have been deleted "
           "from your local computer. You will not be able to restore it."),
        AttentionFrame::Warning, this);
    m_deleteLocalyAttention->setVisible(false);
    connect(m_deleteLocaly, &QCheckBox::toggled, m_deleteLocalyRow, &QWidget::setEnabled);
    connect(m_deleteLocaly, &QCheckBox::toggled, m_deleteLocalyAttention, &QWidget::setVisible);

    layout->addWidget(m_useDefault);
    layout->addWidget(link);
    layout->addWidget(m_useCustom);
    layout->addWidget(m_deleteOlder);
    layout->addWidget(m_ageRow);
    layout->addLayout(keepLastRow);
    layout->addWidget(m_keepVersion);
    layout->addWidget(m_keepVersionRow);
    layout->addWidget(m_deleteLocaly);
    layout->addWidget(m_deleteLocalyRow);
    layout->addWidget(m_deleteLocalyAttention);
    layout->addStretch(1);

    registerField(QLatin1String(FieldUseDefault), m_useDefault);
    registerField(QLatin1String(FieldUseCustom), m_useCustom);
    registerField(QLatin1String(FieldUseDeleteOlder), m_deleteOlder);
    registerField(QLatin1String(FieldUseDeleteOlderAge), m_age);
    registerField(QLatin1String(FieldUseDeleteOlderType), m_unit);
    registerField(QLatin1String(FieldUseDeleteDateType), m_dateType);
    registerField(QLatin1String(FieldUseDeleteOlderKeepLast), m_keepLast);
    registerField(QLatin1String(FieldUseKeepVersion), m_keepVersion);
    registerField(QLatin1String(FieldUseKeepVersionNumber), m_keepVersionNumber);
    registerField(QLatin1String(FieldUseDeleteLocalyFiles), m_deleteLocaly);
    registerField(QLatin1String(FieldUseDeleteLocalyFilesValue), m_deleteLocalyDays);
}

void BackupPlanEditWizard::PageRetentionPolicy::buildArchive()
{
    auto* layout = new QVBoxLayout(this);
    m_useDefault = new QRadioButton(tr("Do not Purge (Keep backup forever)"), this);
    m_useDefault->setChecked(true);
    m_useCustom = new QRadioButton(tr("Keep backup for:"), this);
    connect(m_useCustom, &QRadioButton::toggled, this, &PageRetentionPolicy::onCustomPolicy);
    QHBoxLayout* ageLayout = nullptr;
    m_ageRow = indentedRow(this, ageLayout);
    m_age = new QSpinBox(m_ageRow);
    m_age->setRange(1, 999);
    m_unit = new QComboBox(m_ageRow);
    m_unit->addItems({tr("year(s)"), tr("month(s)"), tr("week(s)"), tr("day(s)")});
    ageLayout->addWidget(m_age);
    ageLayout->addWidget(m_unit);
    ageLayout->addStretch(1);
    m_ageRow->setEnabled(false);
    auto* note = new QLabel(
        QStringLiteral("<table><tr><td><b>%1:</b> %2</td></tr><tr><td>%3</td></tr><tr><td>%4</td></tr></table>")
            .arg(tr("Note"), tr("current generation (a chain of a full backup and subsequent"),
                tr("incremental backups) is always stored on backup storage,"),
                tr("regardless of the retention policy settings")),
        this);

    layout->addWidget(m_useDefault);
    layout->addWidget(m_useCustom);
    layout->addWidget(m_ageRow);
    layout->addSpacing(12);
    layout->addWidget(note);
    layout->addStretch(1);

    registerField(QLatin1String(FieldUseDefault), m_useDefault);
    registerField(QLatin1String(FieldUseCustom), m_useCustom);
    registerField(QLatin1String(FieldUseDeleteOlderAge), m_age);
    registerField(QLatin1String(FieldUseDeleteOlderType), m_unit);
}

int BackupPlanEditWizard::PageRetentionPolicy::nextId() const
{
    if (const auto* owner = qobject_cast<const BackupPlanEditWizard*>(wizard()))
        return owner->retentionNextId();
    return PageSummaryId;
}

bool BackupPlanEditWizard::PageRetentionPolicy::filePlan() const
{
    const QWizard* owner = wizard();
    const unsigned char kind = owner ? owner->property(Property_BackupPlanType).value<unsigned char>() : PlanTypeFile;
    return kind == PlanTypeFile && m_filePlan;
}

int BackupPlanEditWizard::PageRetentionPolicy::intField(const char* name) const
{
    return field(QLatin1String(name)).toInt();
}

bool BackupPlanEditWizard::PageRetentionPolicy::flag(const char* name) const
{
    return field(QLatin1String(name)).toBool();
}

void BackupPlanEditWizard::PageRetentionPolicy::onCustomPolicy(bool on)
{
    if (m_isArchive) {
        // Flipped rather than set: the pair of radio toggles brings it in step.
        if (!on)
            m_ageRow->setEnabled(false);
        else
            m_ageRow->setEnabled(!m_ageRow->isEnabled());
        return;
    }
    if (on) {
        m_deleteOlder->setEnabled(true);
        m_ageRow->setEnabled(m_deleteOlder->isChecked());
        m_keepLast->setEnabled(m_deleteOlder->isChecked());
        m_keepVersion->setEnabled(true);
        m_keepVersionRow->setEnabled(m_keepVersion->isChecked());
        onDeleteOlderDateTypeChanged();
    } else {
        m_deleteOlder->setEnabled(false);
        m_ageRow->setEnabled(false);
        m_keepLast->setEnabled(false);
        m_keepVersion->setEnabled(false);
        m_keepVersionRow->setEnabled(false);
    }
}

void BackupPlanEditWizard::PageRetentionPolicy::onDeleteOlderDateTypeChanged()
{
    if (!m_dateType || !m_dateType->isEnabled())
        return;
    // Counting age from the backup date could purge a file's only copy.
    if (m_dateType->currentIndex() == 1) {
        m_keepLast->setChecked(true);
        m_keepLast->setEnabled(false);
    } else {
        m_keepLast->setEnabled(true);
    }
}

void BackupPlanEditWizard::PageRetentionPolicy::onShowDefaultOptions()
{
    emit defaultOptionsRequested();
    SettingSimpleDialog dialog(this);
    auto* policy = new Settings::RetentionPolicy(&dialog);
    dialog.setWidget(policy);
    dialog.exec();
}

QString BackupPlanEditWizard::PageRetentionPolicy::summary()
{
    // Built by the first page that asks, whichever format it has: later
    // wizards of the other format keep these rows.
    static const QMap<int, QString> olderType = m_isArchive
        ? QMap<int, QString> {{0, tr("year(s)")}, {1, tr("month(s)")}, {2, tr("week(s)")}}
        : QMap<int, QString> {{0, tr("days(s)")}, {1, tr("week(s)")}, {2, tr("month(s)")}};
    QMap<int, QString> units = olderType;

    QString rows = headingRow(tr("Retention policy:"));
    if (m_isArchive) {
        if (flag(FieldUseDefault))
            return rows + detailRow(tr("Do not Purge (Keep backup forever)"));
        units[3] = tr("days(s)");
        return rows
            + detailRow(QStringList {tr("purge version older than"), QString::number(intField(FieldUseDeleteOlderAge)),
                units.value(intField(FieldUseDeleteOlderType))});
    }
    if (flag(FieldUseDefault)) {
        rows += detailRow(tr("Default retention policy"));
    } else if (flag(FieldUseCustom)) {
        if (flag(FieldUseDeleteOlder)) {
            const QString date = intField(FieldUseDeleteDateType) == 1 ? tr("backup date") : tr("modification date");
            rows += detailRow(
                QStringList {tr("Delete version older than"), QString::number(intField(FieldUseDeleteOlderAge)),
                    units.value(intField(FieldUseDeleteOlderType)), tr("from"), date});
            if (flag(FieldUseDeleteOlderKeepLast))
                rows += detailRow(tr("Always keep the last version"));
        }
        if (flag(FieldUseKeepVersion))
            rows += detailRow(
                QStringList {tr("Keep only"), QString::number(intField(FieldUseKeepVersionNumber)), tr("versions")});
    }
    if (filePlan() && flag(FieldUseDeleteLocalyFiles))
        rows += detailRow(QStringList {tr("Delete files that have been deleted locally after"),
            QString::number(intField(FieldUseDeleteLocalyFilesValue)), tr("day(s)")});
    return rows;
}

bool BackupPlanEditWizard::PageRetentionPolicy::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    Policy& policy = backup->retentionPolicy();
    policy.setType(flag(FieldUseDefault) ? Policy::Default : Policy::Custom);
    const int age = intField(FieldUseDeleteOlderAge);
    const int index = intField(FieldUseDeleteOlderType);
    if (m_isArchive) {
        if (!flag(FieldUseCustom))
            return true;
        policy.setUseDeleteOlder(true);
        policy.setDeleteFileAge({age, archiveUnits[qBound(0, index, 3)]});
        return true;
    }
    if (flag(FieldUseDeleteOlder)) {
        policy.setUseDeleteOlder(true);
        policy.setDeleteFileAge({age, qBound(0, index, 2)});
        policy.setUseKeepLastVersion(flag(FieldUseDeleteOlderKeepLast));
    } else {
        policy.setUseDeleteOlder(false);
    }
    if (flag(FieldUseKeepVersion)) {
        policy.setUseKeepVersion(true);
        policy.setKeepVersion(intField(FieldUseKeepVersionNumber));
    } else {
        policy.setUseKeepVersion(false);
    }
    if (backup->type() != static_cast<int>(NVB::Info::Plan::SubType::File))
        return true;
    if (flag(FieldUseDeleteLocalyFiles)) {
        policy.setUseDeleteLocaly(true);
        policy.setDeleteLocalyAfter(intField(FieldUseDeleteLocalyFilesValue));
    } else {
        policy.setUseDeleteLocaly(false);
    }
    policy.setUseBackupDate(intField(FieldUseDeleteDateType) != 0);
    return true;
}

bool BackupPlanEditWizard::PageRetentionPolicy::fromPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    const Policy& policy = backup->retentionPolicy();
    const Policy::FileAge age = policy.deleteFileAge();
    if (m_isArchive) {
        setField(QLatin1String(policy.useDeleteOlder() ? FieldUseCustom : FieldUseDefault), true);
        setField(QLatin1String(FieldUseDeleteOlderAge), age.first);
        int index = 0;
        switch (age.second) {
        case Policy::Week:
            index = 2;
            break;
        case Policy::Month:
            index = 1;
            break;
        case Policy::Year:
            index = 0;
            break;
        default:
            // A plan that keeps backups forever shows years.
            index = policy.useDeleteOlder() ? 3 : 0;
            break;
        }
        setField(QLatin1String(FieldUseDeleteOlderType), index);
        return true;
    }
    m_filePlan = backup->type() == static_cast<int>(NVB::Info::Plan::SubType::File);
    setField(QLatin1String(FieldUseDeleteOlder), policy.useDeleteOlder());
    setField(QLatin1String(FieldUseDeleteOlderAge), age.first);
    if (age.second >= Policy::Day && age.second <= Policy::Month)
        setField(QLatin1String(FieldUseDeleteOlderType), age.second);
    setField(QLatin1String(FieldUseDeleteOlderKeepLast), policy.useKeepLastVersion());
    setField(QLatin1String(FieldUseKeepVersion), policy.useKeepVersion());
    setField(QLatin1String(FieldUseKeepVersionNumber), policy.keepVersion());
    m_deleteLocaly->setVisible(m_filePlan);
    m_deleteLocalyRow->setVisible(m_filePlan);
    if (m_filePlan) {
        setField(QLatin1String(FieldUseDeleteLocalyFiles), policy.useDeleteLocaly());
        setField(QLatin1String(FieldUseDeleteLocalyFilesValue), policy.deleteLocalyAfter());
    } else {
        m_deleteLocalyAttention->setVisible(false);
    }
    setField(QLatin1String(FieldUseDeleteDateType), policy.useBackupDate() ? 1 : 0);
    const bool custom = policy.type() == Policy::Custom;
    setField(QLatin1String(custom ? FieldUseCustom : FieldUseDefault), true);
    onCustomPolicy(custom);
    return true;
}

} // namespace NVB::GUI
