#include "wizards/backup/pagefullschedule.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "records/plan/backup.h"
#include "widgets/checkbox.h"
#include "wizards/backup/frequencydaily.h"
#include "wizards/backup/frequencymonthly.h"
#include "wizards/backup/frequencyweekly.h"
#include "wizards/common/pageschedule.h"

namespace NVB::GUI {

using NVB::Info::Plan::Schedule;

BackupPlanEditWizard::PageFullSchedule::PageFullSchedule(bool isArchive, QWidget* parent)
    : PageBase(tr("Full Schedule"), parent)
    , m_isArchive(isArchive)
    , m_enable(new CheckBox(this))
    , m_block(new QWidget(this))
    , m_frequency(new QComboBox(m_block))
    , m_stack(new QStackedWidget(m_block))
    , m_runIsModified(new QCheckBox(tr("Run full if previous backup has changed more than:"), m_block))
    , m_runIsModifiedValue(new QSpinBox(m_block))
    , m_stop(new QCheckBox(tr("Stop plan if it runs for:"), m_block))
    , m_stopHours(new QSpinBox(m_block))
    , m_stopMinutes(new QSpinBox(m_block))
{
    setSubTitle(tr("Specify full backup schedule options"));
    m_enable->setHtml(
        QStringLiteral("<table><tr><td>%1</td></tr><tr><td><small><b>%2</b> %3</small></td></tr></table>")
            .arg(tr("Schedule Full Backup"), tr("Note:"),
                tr("It is strongly recommended to run regular full backup when using block level "
                   "backup. Otherwise you will not be able to apply retention policy for old versions.")));
    if (!isArchive)
        m_editors.insert(0, new FrequencyDaily(FrequencyBase::FullPlan, this));
    m_editors.insert(1, new FrequencyWeekly(FrequencyBase::FullPlan, isArchive, this));
    m_editors.insert(2, new FrequencyMonthly(FrequencyBase::FullPlan, isArchive, this));
    for (FrequencyBase* editor : qAsConst(m_editors))
        m_stack->addWidget(editor);
    if (isArchive)
        m_frequency->addItems({tr(FrequencyWeekly::Name), tr(FrequencyMonthly::Name)});
    else
        m_frequency->addItems({tr(FrequencyDaily::Name), tr(FrequencyWeekly::Name), tr(FrequencyMonthly::Name)});

    m_runIsModifiedValue->setRange(10, 100);
    m_runIsModifiedValue->setValue(50);
    auto* percentLabel = new QLabel(tr("% last full"), m_block);
    // The size condition is kept out of sight but goes through load and save.
    m_runIsModified->setVisible(false);
    m_runIsModifiedValue->setVisible(false);
    percentLabel->setVisible(false);
    m_stopHours->setRange(0, 99);
    m_stopMinutes->setRange(0, 59);
    m_stopHours->setEnabled(false);
    m_stopMinutes->setEnabled(false);
    m_block->setEnabled(false);

    auto* grid = new QGridLayout(m_block);
    grid->setContentsMargins(20, 0, 0, 0);
    grid->addWidget(new QLabel(tr("Recurring. Frequency Type:"), m_block), 0, 0);
    grid->addWidget(m_frequency, 0, 1);
    grid->addWidget(m_stack, 1, 0, 1, 3);
    auto* modifiedRow = new QHBoxLayout();
    modifiedRow->addWidget(m_runIsModified);
    modifiedRow->addWidget(m_runIsModifiedValue);
    modifiedRow->addWidget(percentLabel);
    modifiedRow->addStretch(1);
    grid->addLayout(modifiedRow, 2, 0, 1, 3);
    auto* stopRow = new QHBoxLayout();
    stopRow->addWidget(m_stop);
    stopRow->addWidget(m_stopHours);
    stopRow->addWidget(new QLabel(tr("hour(s)"), m_block));
    stopRow->addWidget(m_stopMinutes);
    stopRow->addWidget(new QLabel(tr("minute(s)"), m_block));
    stopRow->addStretch(1);
    grid->addLayout(stopRow, 3, 0, 1, 3);
    grid->setColumnStretch(2, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_enable);
    layout->addWidget(m_block);
    layout->addStretch(1);

    connect(m_enable, &QCheckBox::toggled, m_block, &QWidget::setEnabled);
    connect(
        m_frequency, QOverload<int>::of(&QComboBox::currentIndexChanged), m_stack, &QStackedWidget::setCurrentIndex);
    connect(m_stop, &QCheckBox::toggled, m_stopHours, &QWidget::setEnabled);
    connect(m_stop, &QCheckBox::toggled, m_stopMinutes, &QWidget::setEnabled);
    connect(m_enable, &QCheckBox::toggled, this, &PageBase::completeChanged);
    connect(m_frequency, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &PageBase::completeChanged);
    connect(m_editors.value(1), &FrequencyBase::changed, this, &PageBase::completeChanged);
    connect(m_stop, &QCheckBox::toggled, this, &PageBase::completeChanged);
    connect(m_stopHours, QOverload<int>::of(&QSpinBox::valueChanged), this, &PageBase::completeChanged);
    connect(m_stopMinutes, QOverload<int>::of(&QSpinBox::valueChanged), this, &PageBase::completeChanged);

    registerField(QLatin1String(FieldFullScheduleEnable), m_enable);
    registerField(QLatin1String(FieldFullScheduleFrequencyType), m_frequency);
    registerField(QLatin1String(FieldFullScheduleRunIsModified), m_runIsModified);
    registerField(QLatin1String(FieldFullScheduleRunIsModifiedValue), m_runIsModifiedValue);
    registerField(QLatin1String(FieldFullShceduleStopAutoEnable), m_stop);
    registerField(QLatin1String(FieldFullShceduleStopAutoHoursValue), m_stopHours);
    registerField(QLatin1String(FieldFullShceduleStopAutoMinutesValue), m_stopMinutes);
}

int BackupPlanEditWizard::PageFullSchedule::frequencyKey() const
{
    return m_frequency->currentIndex() + (m_isArchive ? 1 : 0);
}

void BackupPlanEditWizard::PageFullSchedule::initializePage()
{
    PageBase::initializePage();
    if (m_subtype != 1)
        return;
    // The start time comes from the recurring schedule's editor, found by
    // that page's frequency index. In the new format the index runs one
    // ahead of this list, and in the legacy format the daily editor has no
    // prefixed field: both are how existing plans were made, and are kept.
    const QStringList names = m_isArchive
        ? QStringList {QLatin1String(FrequencyWeekly::Name), QLatin1String(FrequencyMonthly::Name)}
        : QStringList {QLatin1String(FrequencyDaily::Name), QLatin1String(FrequencyWeekly::Name),
            QLatin1String(FrequencyMonthly::Name)};
    const int index
        = field(QLatin1String(PlanWizardBase::PageSchedule::FieldFrequencyType)).toInt() + (m_isArchive ? 1 : 0);
    const QString name = index >= 0 && index < names.size() ? names.at(index) : QLatin1String(FrequencyWeekly::Name);
    if (name == QLatin1String(FrequencyDaily::Name))
        return;
    const QVariant value
        = field(QStringLiteral("%1_%2").arg(name, QLatin1String(FrequencyDaily::FieldUsedOccursAtValue)));
    if (!value.toDateTime().isValid())
        return;
    for (const QString& target : names) {
        if (target == QLatin1String(FrequencyDaily::Name))
            continue;
        setField(QStringLiteral("%1%2_%3").arg(QLatin1String(FrequencyBase::FullPrefix), target,
                     QLatin1String(FrequencyDaily::FieldUsedOccursAtValue)),
            value.toDateTime());
    }
}

bool BackupPlanEditWizard::PageFullSchedule::isComplete() const
{
    bool days = true;
    if (m_enable->isChecked() && frequencyKey() == 1)
        days = m_editors.value(1)->validate();
    const bool limit = !(m_stop->isChecked() && m_stopHours->value() == 0 && m_stopMinutes->value() == 0);
    return days && limit;
}

bool BackupPlanEditWizard::PageFullSchedule::validatePage()
{
    if (!m_enable->isChecked())
        return true;
    FrequencyBase* editor = m_editors.value(frequencyKey());
    return editor && editor->validate();
}

int BackupPlanEditWizard::PageFullSchedule::nextId() const
{
    return PageRetentionPolicyId;
}

QString BackupPlanEditWizard::PageFullSchedule::summary()
{
    QString rows = headingRow(tr("Full Schedule:"));
    if (!m_enable->isChecked())
        rows += detailRow(tr("Not scheduled"));
    else if (FrequencyBase* editor = m_editors.value(frequencyKey()))
        rows += editor->summary();
    if (m_stop->isChecked())
        rows += PlanWizardBase::PageSchedule::stopRow(m_stopHours->value(), m_stopMinutes->value());
    if (m_runIsModified->isChecked())
        rows += detailRow(QStringLiteral("%1 %2 %3")
                              .arg(tr("Run full if previous backup has changed more than:"),
                                  QString::number(m_runIsModifiedValue->value()), tr("% last full")));
    return rows;
}

bool BackupPlanEditWizard::PageFullSchedule::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup || backup->subtype() != 1)
        return false;
    Schedule& full = backup->forceFullSchedule();
    if (!m_enable->isChecked()) {
        full.setEnable(false);
    } else {
        full.setEnable(true);
        full.setType(Schedule::Recurring);
        if (FrequencyBase* editor = m_editors.value(frequencyKey()))
            editor->initPlan(plan);
    }
    Schedule& written = backup->forceFullSchedule();
    if (m_stop->isChecked() && (m_stopHours->value() != 0 || m_stopMinutes->value() != 0))
        written.setStopAfter(static_cast<unsigned long long>(m_stopHours->value()) * 3600
            + static_cast<unsigned long long>(m_stopMinutes->value()) * 60);
    else
        written.setStopAfter(0);
    backup->setForceFullDiffSizeConditionEnable(m_runIsModified->isChecked());
    backup->setForceFullDiffSizeCondition(static_cast<unsigned short>(m_runIsModifiedValue->value()));
    return true;
}

bool BackupPlanEditWizard::PageFullSchedule::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    m_subtype = plan->subtype();
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (m_subtype != 1 || !backup)
        return false;
    const Schedule& full = backup->forceFullSchedule();
    m_enable->setChecked(full.isEnable());
    if (full.type() == Schedule::Recurring) {
        int index = int(full.frequencyType());
        if (index == Schedule::DayOfMonth)
            index = m_isArchive ? 1 : 2;
        else if (m_isArchive && index > 0)
            index -= 1;
        m_frequency->setCurrentIndex(qBound(0, index, m_frequency->count() - 1));
    }
    for (FrequencyBase* editor : qAsConst(m_editors))
        editor->fromPlan(plan);
    if (full.stopAfter() != 0) {
        m_stop->setChecked(true);
        m_stopHours->setValue(int(qMin<unsigned long long>(full.stopAfter() / 3600, 99)));
        m_stopMinutes->setValue(int((full.stopAfter() % 3600) / 60));
    }
    m_runIsModified->setChecked(backup->forceFullDiffSizeConditionEnable());
    m_runIsModifiedValue->setValue(backup->forceFullDiffSizeCondition());
    return true;
}

} // namespace NVB::GUI
