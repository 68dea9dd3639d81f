#include "wizards/backup/frequencymonthly.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QSpinBox>
#include <QVBoxLayout>

#include "records/plan/backup.h"

namespace NVB::GUI {

QMap<int, QString> FrequencyMonthly::OccurrenceType()
{
    return {{0, tr("Day of Month")}, {1, tr("First")}, {2, tr("Second")}, {3, tr("Third")}, {4, tr("Fourth")},
        {5, tr("Penultimate")}, {6, tr("Last")}};
}

FrequencyMonthly::FrequencyMonthly(Type type, bool inherited, PlanWizardBase::PageBase* page)
    : FrequencyDaily(type, QLatin1String(Prefix), page)
    , m_occurrence(new QComboBox(this))
    , m_day(new QComboBox(this))
    , m_repeat(new QSpinBox(this))
    , m_fromDate(new QDateEdit(QDate::currentDate(), this))
{
    addSubTitle(tr("Monthly frequency"));
    const QMap<int, QString> occurrences = OccurrenceType();
    for (auto it = occurrences.cbegin(); it != occurrences.cend(); ++it)
        m_occurrence->addItem(it.value(), it.key());
    m_repeat->setRange(1, 12);
    m_fromDate->setCalendarPopup(true);
    m_fromDate->setMinimumDate(QDate::currentDate());

    auto* form = new QFormLayout();
    form->addRow(tr("Occurrence:"), m_occurrence);
    form->addRow(tr("Day:"), m_day);
    auto* repeatRow = new QHBoxLayout();
    repeatRow->addWidget(m_repeat);
    repeatRow->addWidget(new QLabel(tr("months"), this));
    repeatRow->addStretch(1);
    form->addRow(tr("Repeat every:"), repeatRow);
    form->addRow(tr("From:"), m_fromDate);
    m_layout->addLayout(form);

    connect(
        m_occurrence, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &FrequencyMonthly::onOccurrenceChange);
    onOccurrenceChange(0);

    if (page) {
        page->registerField(
            QString::fromLatin1(fieldName(QLatin1String(FieldOccurrenceType)).toLatin1()), m_occurrence);
        page->registerField(QString::fromLatin1(fieldName(QLatin1String(FieldDay)).toLatin1()), m_day);
        page->registerField(QString::fromLatin1(fieldName(QLatin1String(FieldRepeatEvery)).toLatin1()), m_repeat);
        page->registerField(QString::fromLatin1(fieldName(QLatin1String(FieldFrom)).toLatin1()), m_fromDate);
    }
    init(type == FullPlan ? inherited : false);
}

QString FrequencyMonthly::fieldName(const QString& name) const
{
    return type() == FullPlan ? QLatin1String(FullPrefix) + name : name;
}

void FrequencyMonthly::onOccurrenceChange(int index)
{
    const int kept = m_day->currentIndex();
    m_day->clear();
    if (index == 0) {
        for (int day = 1; day <= 31; ++day)
            m_day->addItem(QString::number(day));
    } else {
        for (int day = 1; day <= 7; ++day)
            m_day->addItem(QLocale().dayName(day, QLocale::LongFormat));
    }
    m_day->setCurrentIndex(qBound(0, kept, m_day->count() - 1));
}

QString FrequencyMonthly::summary()
{
    QString rows;
    const int occurrence = m_occurrence->currentIndex();
    if (occurrence == 0)
        rows += PlanWizardBase::PageBase::detailRow(
            QStringLiteral("%1 %2 %3").arg(tr("Occurs every month on"), tr("day"), m_day->currentText()));
    else
        rows += PlanWizardBase::PageBase::detailRow(
            QStringLiteral("%1 %2 %3")
                .arg(tr("Occurs every month on"), m_occurrence->currentText(),
                    QLocale().dayName(m_day->currentIndex() + 1, QLocale::LongFormat)));
    rows += PlanWizardBase::PageBase::detailRow(
        QStringLiteral("%1 %2 %3 %4")
            .arg(tr("Repeat every"), QString::number(m_repeat->value()), tr("month. Start from:"),
                m_fromDate->date().toString(Qt::TextDate)));
    return rows + dailySummary();
}

void FrequencyMonthly::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return;
    initDaily(plan);
    NVB::Info::Plan::Schedule copy(schedule(plan));
    const int occurrence = m_occurrence->currentIndex();
    if (occurrence == 0) {
        copy.setFrequencyType(NVB::Info::Plan::Schedule::DayOfMonth);
        copy.setDayOfMonthFrequency(m_day->currentIndex() + 1);
    } else {
        copy.setFrequencyType(NVB::Info::Plan::Schedule::Monthly);
        copy.setMonthlyFrequency(NVB::Info::Plan::Schedule::WeekNumber(occurrence - 1), m_day->currentIndex() + 1);
    }
    copy.setMonthRepeat(m_repeat->value(), m_fromDate->date());
    assignBack(plan, copy);
}

void FrequencyMonthly::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return;
    FrequencyDaily::fromPlan(plan);
    const NVB::Info::Plan::Schedule& source = schedule(plan);
    if (source.frequencyType() == NVB::Info::Plan::Schedule::DayOfMonth) {
        m_occurrence->setCurrentIndex(0);
        m_day->setCurrentIndex(qBound(0, source.dayOfMonthFrequency() - 1, 30));
    } else {
        const auto monthly = source.monthlyFrequency();
        m_occurrence->setCurrentIndex(qBound(1, int(monthly.weekNumber) + 1, 6));
        m_day->setCurrentIndex(qBound(0, monthly.day - 1, 6));
    }
    const auto repeat = source.monthRepeat();
    m_repeat->setValue(repeat.months);
    // A start date in the past is clamped to today by the edit's minimum.
    if (repeat.start.isValid())
        m_fromDate->setDate(repeat.start);
}

bool FrequencyMonthly::validate()
{
    return true;
}

} // namespace NVB::GUI
