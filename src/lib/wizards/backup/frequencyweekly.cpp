#include "wizards/backup/frequencyweekly.h"

#include <QBitArray>
#include <QCheckBox>
#include <QDate>
#include <QGridLayout>
#include <QLocale>
#include <QVBoxLayout>

#include "records/plan/backup.h"

namespace NVB::GUI {

FrequencyWeekly::FrequencyWeekly(Type type, bool inherited, PlanWizardBase::PageBase* page)
    : FrequencyDaily(type, QLatin1String(Prefix), page)
{
    addSubTitle(tr("Weekly frequency"));
    auto* grid = new QGridLayout();
    for (int day = 1; day <= 7; ++day)
        m_days << new QCheckBox(QLocale().dayName(day, QLocale::LongFormat), this);
    // Two columns: Monday, Wednesday, Friday, Saturday beside Tuesday,
    // Thursday, Sunday.
    const int left[] = {1, 3, 5, 6};
    const int right[] = {2, 4, 7};
    for (int row = 0; row < 4; ++row)
        grid->addWidget(m_days.at(left[row] - 1), row, 0);
    for (int row = 0; row < 3; ++row)
        grid->addWidget(m_days.at(right[row] - 1), row, 1);
    grid->setColumnStretch(2, 1);
    m_layout->addLayout(grid);
    for (int day = 1; day <= 7; ++day) {
        QCheckBox* box = m_days.at(day - 1);
        connect(box, &QCheckBox::clicked, this, &FrequencyBase::changed);
        if (page)
            page->registerField(
                QString::fromLatin1(fieldName(QLatin1String(FieldWeeklyDay) + QString::number(day)).toLatin1()), box);
    }
    init(type == FullPlan ? inherited : false);
}

QString FrequencyWeekly::fieldName(const QString& name) const
{
    return type() == FullPlan ? QLatin1String(FullPrefix) + name : name;
}

QString FrequencyWeekly::summary()
{
    QString rows = QStringLiteral("<tr><td></td><td>%1</td></tr>").arg(tr("Occurs every week on:"));
    for (int day = 1; day <= 7; ++day) {
        if (m_days.at(day - 1)->isChecked())
            rows += PlanWizardBase::PageBase::detailRow(QLocale().dayName(day, QLocale::LongFormat));
    }
    return rows + dailySummary();
}

void FrequencyWeekly::initPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return;
    initDaily(plan);
    NVB::Info::Plan::Schedule copy(schedule(plan));
    copy.setFrequencyType(NVB::Info::Plan::Schedule::Weekly);
    QBitArray days(7);
    for (int day = 1; day <= 7; ++day)
        days.setBit(day - 1, m_days.at(day - 1)->isChecked());
    copy.setWeeklyFrequency(days);
    assignBack(plan, copy);
}

void FrequencyWeekly::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return;
    FrequencyDaily::fromPlan(plan);
    const QBitArray days = schedule(plan).weeklyFrequency();
    for (int day = 1; day <= 7; ++day)
        m_days.at(day - 1)->setChecked(day - 1 < days.size() && days.testBit(day - 1));
}

bool FrequencyWeekly::validate()
{
    for (const QCheckBox* box : qAsConst(m_days)) {
        if (box->isChecked())
            return true;
    }
    return false;
}

} // namespace NVB::GUI
