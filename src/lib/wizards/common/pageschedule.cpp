#include "wizards/common/pageschedule.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWizard>

#include "records/plan/base.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/frequencydaily.h"
#include "wizards/backup/frequencymonthly.h"
#include "wizards/backup/frequencyweekly.h"

namespace NVB::GUI {

using NVB::Info::Plan::Schedule;

PlanWizardBase::PageSchedule::PageSchedule(bool isArchive, QWidget* parent)
    : PageBase(tr("Schedule"), parent)
    , m_isArchive(isArchive)
    , m_enable(new QCheckBox(tr("Enable schedule"), this))
    , m_block(new QWidget(this))
    , m_useDate(new QRadioButton(tr("Specific date:"), m_block))
    , m_date(new QDateTimeEdit(m_block))
    , m_useRecurring(new QRadioButton(tr("Recurring. Frequency Type:"), m_block))
    , m_frequency(new QComboBox(m_block))
    , m_stack(new QStackedWidget(m_block))
    , m_runMissed(new QCheckBox(tr("Run missed scheduled plan immediately upon boot-up"), this))
    , m_stop(new QCheckBox(tr("Stop plan if it runs for:"), this))
    , m_stopHours(new QSpinBox(this))
    , m_stopMinutes(new QSpinBox(this))
{
    setSubTitle(tr("Plan can be run manually or automatically by schedule"));
    m_editors.insert(0, new FrequencyDaily(FrequencyBase::Plan, this));
    m_editors.insert(1, new FrequencyWeekly(FrequencyBase::Plan, false, this));
    m_editors.insert(2, new FrequencyMonthly(FrequencyBase::Plan, false, this));

    m_date->setCalendarPopup(true);
    m_date->setDateTime(QDateTime::currentDateTime());
    m_stopHours->setRange(0, 99);
    m_stopMinutes->setRange(0, 59);
    m_stopHours->setEnabled(false);
    m_stopMinutes->setEnabled(false);
    m_block->setEnabled(false);
    m_runMissed->setEnabled(false);
    m_date->setEnabled(false);
    m_frequency->setEnabled(false);
    m_stack->setEnabled(false);

    auto* group = new QButtonGroup(this);
    group->addButton(m_useDate);
    group->addButton(m_useRecurring);

    auto* grid = new QGridLayout(m_block);
    grid->setContentsMargins(20, 0, 0, 0);
    grid->addWidget(m_useDate, 0, 0);
    grid->addWidget(m_date, 0, 1);
    grid->addWidget(m_useRecurring, 1, 0);
    grid->addWidget(m_frequency, 1, 1);
    grid->addWidget(m_stack, 2, 0, 1, 3);
    grid->setColumnStretch(2, 1);

    if (isArchive) {
        m_useDate->setVisible(false);
        m_date->setVisible(false);
        m_useRecurring->setVisible(false);
        m_useRecurring->setChecked(true);
        grid->addWidget(new QLabel(tr("Recurring. Frequency Type:"), m_block), 1, 0);
        m_frequency->addItems({tr(FrequencyWeekly::Name), tr(FrequencyMonthly::Name)});
        // The daily editor exists for its fields only.
        m_editors.value(0)->setVisible(false);
        m_stack->addWidget(m_editors.value(1));
        m_stack->addWidget(m_editors.value(2));
    } else {
        m_frequency->addItems({tr(FrequencyDaily::Name), tr(FrequencyWeekly::Name), tr(FrequencyMonthly::Name)});
        for (FrequencyBase* editor : qAsConst(m_editors))
            m_stack->addWidget(editor);
    }

    auto* stopRow = new QHBoxLayout();
    stopRow->addWidget(m_stop);
    stopRow->addWidget(m_stopHours);
    stopRow->addWidget(new QLabel(tr("hour(s)"), this));
    stopRow->addWidget(m_stopMinutes);
    stopRow->addWidget(new QLabel(tr("minute(s)"), this));
    stopRow->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_enable);
    layout->addWidget(m_block);
    layout->addWidget(m_runMissed);
    layout->addLayout(stopRow);
    layout->addStretch(1);

    connect(m_enable, &QCheckBox::toggled, m_block, &QWidget::setEnabled);
    connect(m_enable, &QCheckBox::toggled, m_runMissed, &QWidget::setEnabled);
    connect(m_useDate, &QRadioButton::toggled, m_date, &QWidget::setEnabled);
    connect(m_useRecurring, &QRadioButton::toggled, m_frequency, &QWidget::setEnabled);
    connect(m_useRecurring, &QRadioButton::toggled, m_stack, &QWidget::setEnabled);
    connect(
        m_frequency, QOverload<int>::of(&QComboBox::currentIndexChanged), m_stack, &QStackedWidget::setCurrentIndex);
    connect(m_stop, &QCheckBox::toggled, m_stopHours, &QWidget::setEnabled);
    connect(m_stop, &QCheckBox::toggled, m_stopMinutes, &QWidget::setEnabled);
    connect(group, QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked), this, &PageBase::completeChanged);
    connect(m_frequency, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &PageBase::completeChanged);
    connect(m_enable, &QCheckBox::toggled, this, &PageBase::completeChanged);
    connect(m_editors.value(1), &FrequencyBase::changed, this, &PageBase::completeChanged);
    connect(m_stop, &QCheckBox::toggled, this, &PageBase::completeChanged);
    connect(m_stopHours, QOverload<int>::of(&QSpinBox::valueChanged), this, &PageBase::completeChanged);
    connect(m_stopMinutes, QOverload<int>::of(&QSpinBox::valueChanged), this, &PageBase::completeChanged);

    registerField(QLatin1String(FieldScheduleEnable), m_enable);
    registerField(QLatin1String(FieldUseSpecificDate), m_useDate);
    registerField(QLatin1String(FieldSpecificDateValue), m_date);
    registerField(QLatin1String(FieldUseRecurring), m_useRecurring);
    registerField(QLatin1String(FieldFrequencyType), m_frequency);
    registerField(QLatin1String(FieldRunMissedPlan), m_runMissed);
    registerField(QLatin1String(FieldStopAutoEnable), m_stop);
    registerField(QLatin1String(FieldStopAutoHoursValue), m_stopHours);
    registerField(QLatin1String(FieldStopAutoMinutesValue), m_stopMinutes);
}

int PlanWizardBase::PageSchedule::frequencyKey() const
{
    return m_frequency->currentIndex() + (m_isArchive ? 1 : 0);
}

bool PlanWizardBase::PageSchedule::isComplete() const
{
    bool days = true;
    if (m_enable->isChecked() && m_useRecurring->isChecked() && frequencyKey() == 1)
        days = m_editors.value(1)->validate();
    const bool limit = !(m_stop->isChecked() && m_stopHours->value() == 0 && m_stopMinutes->value() == 0);
    return days && limit;
}

bool PlanWizardBase::PageSchedule::validatePage()
{
    if (!m_enable->isChecked())
        return true;
    if (m_useDate->isChecked()) {
        if (m_date->dateTime() < QDateTime::currentDateTime()) {
            const auto answer = QMessageBox::information(this, wizard() ? wizard()->windowTitle() : QString(),
                tr("The scheduled date is in the past. Do you want to continue?"), QMessageBox::Yes | QMessageBox::No);
            if (answer == QMessageBox::No)
                return false;
        }
        return true;
    }
    if (m_useRecurring->isChecked()) {
        FrequencyBase* editor = m_editors.value(frequencyKey());
        return editor && editor->validate();
    }
    return true;
}

int PlanWizardBase::PageSchedule::nextId() const
{
    if (const auto* backup = qobject_cast<const BackupPlanEditWizard*>(wizard()))
        return backup->scheduleNextId();
    return PageBase::nextId();
}

QString PlanWizardBase::PageSchedule::stopRow(int hours, int minutes)
{
    return detailRow(QStringLiteral("%1 %2 %3 %4 %5")
                         .arg(tr("Stop plan if it runs for:"), QString::number(hours), tr("hour(s)"),
                             QString::number(minutes), tr("minutes(s)")));
}

QString PlanWizardBase::PageSchedule::summary()
{
    QString rows = headingRow(tr("Schedule:"));
    if (!m_enable->isChecked()) {
        rows += detailRow(tr("Not scheduled"));
    } else {
        if (m_runMissed->isChecked())
            rows += detailRow(tr("Run missed plan"));
        if (m_useDate->isChecked())
            rows += detailRow(QStringLiteral("%1 %2").arg(tr("Occurs on"), m_date->dateTime().toString(Qt::TextDate)));
        else if (FrequencyBase* editor = m_editors.value(frequencyKey()))
            rows += editor->summary();
    }
    if (m_stop->isChecked())
        rows += stopRow(m_stopHours->value(), m_stopMinutes->value());
    return rows;
}

bool PlanWizardBase::PageSchedule::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    plan->setRunMissedPlan(m_runMissed->isChecked());
    Schedule& schedule = plan->schedule();
    if (m_stop->isChecked() && (m_stopHours->value() != 0 || m_stopMinutes->value() != 0))
        schedule.setStopAfter(static_cast<unsigned long long>(m_stopHours->value()) * 3600
            + static_cast<unsigned long long>(m_stopMinutes->value()) * 60);
    else
        schedule.setStopAfter(0);
    if (!m_enable->isChecked()) {
        schedule.setEnable(false);
        return true;
    }
    if (m_useDate->isChecked()) {
        schedule.setEnable(true);
        schedule.setType(Schedule::Once);
        const QDateTime chosen = m_date->dateTime();
        schedule.setSpecificDate(QDateTime(chosen.date(), QTime(chosen.time().hour(), chosen.time().minute())));
    } else if (m_useRecurring->isChecked()) {
        schedule.setEnable(true);
        schedule.setType(Schedule::Recurring);
        if (FrequencyBase* editor = m_editors.value(frequencyKey()))
            editor->initPlan(plan);
    }
    return true;
}

bool PlanWizardBase::PageSchedule::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return false;
    const Schedule& schedule = plan->schedule();
    if (schedule.specificDate().isValid())
        m_date->setDateTime(schedule.specificDate());
    if (schedule.type() == Schedule::Once) {
        m_useDate->setChecked(true);
    } else {
        m_useRecurring->setChecked(true);
        int index = int(schedule.frequencyType());
        if (index == Schedule::DayOfMonth)
            index = m_isArchive ? 1 : 2;
        else if (m_isArchive && index > 0)
            index -= 1;
        m_frequency->setCurrentIndex(qBound(0, index, m_frequency->count() - 1));
    }
    m_enable->setChecked(schedule.isEnable());
    for (auto it = m_editors.cbegin(); it != m_editors.cend(); ++it) {
        if (it.key() != 0 || !m_isArchive)
            it.value()->fromPlan(plan);
    }
    if (schedule.stopAfter() != 0) {
        m_stop->setChecked(true);
        m_stopHours->setValue(int(qMin<unsigned long long>(schedule.stopAfter() / 3600, 99)));
        m_stopMinutes->setValue(int((schedule.stopAfter() % 3600) / 60));
    }
    m_runMissed->setChecked(plan->runMuissedPlan());
    return true;
}

} // namespace NVB::GUI
