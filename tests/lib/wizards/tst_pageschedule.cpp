#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QTimeEdit>

#include "modaldialog.h"
#include "records/plan/backupfile.h"
#include "testmain.h"
#include "widgets/checkbox.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/frequencymonthly.h"
#include "wizards/backup/frequencyweekly.h"
#include "wizards/backup/pagefullschedule.h"
#include "wizards/common/pageschedule.h"

using NVB::GUI::BackupPlanEditWizard;
using NVB::GUI::FrequencyMonthly;
using NVB::GUI::FrequencyWeekly;
using NVB::GUI::PlanWizardBase;
using namespace NVB::Info::Plan;

namespace {

PlanWizardBase::PageSchedule* schedulePage(BackupPlanEditWizard& wizard)
{
    return qobject_cast<PlanWizardBase::PageSchedule*>(wizard.page(BackupPlanEditWizard::PageScheduleId));
}

BackupPlanEditWizard::PageFullSchedule* fullPage(BackupPlanEditWizard& wizard)
{
    return qobject_cast<BackupPlanEditWizard::PageFullSchedule*>(wizard.page(BackupPlanEditWizard::PageFullScheduleId));
}

QBitArray days(std::initializer_list<int> numbers)
{
    QBitArray bits(7);
    for (int day : numbers)
        bits.setBit(day - 1);
    return bits;
}

} // namespace

class TestPageSchedule : public QObject
{
    Q_OBJECT

private slots:
    void shouldRoundTripSchedulesInBothFormats_data();
    void shouldRoundTripSchedulesInBothFormats();
    void shouldKeepNextDisabledForNoDayOrZeroLimit();
    void shouldNeverShareFieldsBetweenTheTwoSchedules();
    void shouldAskOnceForPastDate();
    void shouldCopyStartTimeIntoFullScheduleByItsIndex();
    void shouldSummarise();
};

void TestPageSchedule::shouldRoundTripSchedulesInBothFormats_data()
{
    QTest::addColumn<bool>("isArchive");
    QTest::addColumn<int>("frequency");
    QTest::addColumn<int>("comboIndex");
    QTest::addColumn<qulonglong>("stopAfter");
    QTest::addColumn<qulonglong>("savedStop");
    QTest::newRow("legacy weekly, 1h30") << false << int(Schedule::Weekly) << 1 << 5400ull << 5400ull;
    QTest::newRow("new weekly") << true << int(Schedule::Weekly) << 0 << 0ull << 0ull;
    QTest::newRow("legacy day of month") << false << int(Schedule::DayOfMonth) << 2 << 0ull << 0ull;
    QTest::newRow("new day of month") << true << int(Schedule::DayOfMonth) << 1 << 0ull << 0ull;
    QTest::newRow("new nth weekday") << true << int(Schedule::Monthly) << 1 << 0ull << 0ull;
    // 59 seconds loads as 0 hours 0 minutes, which saves as no limit.
    QTest::newRow("legacy daily, 59 s") << false << int(Schedule::Daily) << 0 << 59ull << 0ull;
}

void TestPageSchedule::shouldRoundTripSchedulesInBothFormats()
{
    QFETCH(bool, isArchive);
    QFETCH(int, frequency);
    QFETCH(int, comboIndex);
    QFETCH(qulonglong, stopAfter);
    QFETCH(qulonglong, savedStop);
    BackupFile stored;
    stored.setIsArchive(isArchive);
    stored.setRunMissedPlan(true);
    Schedule& schedule = stored.schedule();
    schedule.setEnable(true);
    schedule.setType(Schedule::Recurring);
    schedule.setFrequencyType(Schedule::FrequencyType(frequency));
    schedule.setDailyRecurrence(true);
    schedule.setOccursEvery(15, QTime(9, 0), QTime(18, 0));
    schedule.setWeeklyFrequency(days({1, 5}));
    schedule.setDayOfMonthFrequency(31);
    schedule.setMonthlyFrequency(Schedule::Penultimate, 7);
    schedule.setMonthRepeat(3, QDate::currentDate().addDays(3));
    schedule.setStopAfter(stopAfter);

    QScopedPointer<BackupPlanEditWizard> wizard(BackupPlanEditWizard::createWizard(&stored));
    auto* page = schedulePage(*wizard);
    QCOMPARE(page->frequencyBox()->currentIndex(), comboIndex);
    // A limit under a minute loads as 0 hours 0 minutes: Next waits for a change.
    QCOMPARE(page->isComplete(), !(stopAfter > 0 && stopAfter < 60));
    BackupFile saved;
    QVERIFY(page->initPlan(&saved));
    const Schedule& out = saved.schedule();
    QVERIFY(out.isEnable());
    QVERIFY(saved.runMuissedPlan());
    QCOMPARE(out.type(), Schedule::Recurring);
    QCOMPARE(int(out.frequencyType()), frequency);
    QVERIFY(out.dailyRecurrence());
    QCOMPARE(out.occursEvery().minutes, 15);
    QCOMPARE(out.occursEvery().from, QTime(9, 0));
    QCOMPARE(out.occursEvery().to, QTime(18, 0));
    QCOMPARE(out.stopAfter(), savedStop);
    if (frequency == Schedule::Weekly)
        QCOMPARE(out.weeklyFrequency(), days({1, 5}));
    if (frequency == Schedule::DayOfMonth)
        QCOMPARE(out.dayOfMonthFrequency(), 31);
    if (frequency == Schedule::Monthly) {
        QCOMPARE(out.monthlyFrequency().weekNumber, Schedule::Penultimate);
        QCOMPARE(out.monthlyFrequency().day, 7);
    }
    if (frequency >= Schedule::Monthly) {
        QCOMPARE(out.monthRepeat().months, 3);
        QCOMPARE(out.monthRepeat().start, QDate::currentDate().addDays(3));
    }
}

void TestPageSchedule::shouldKeepNextDisabledForNoDayOrZeroLimit()
{
    BackupPlanEditWizard wizard(false);
    auto* page = schedulePage(wizard);
    page->enableBox()->setChecked(true);
    page->recurringRadio()->setChecked(true);
    page->frequencyBox()->setCurrentIndex(1);
    auto* weekly = static_cast<FrequencyWeekly*>(page->editor(1));
    for (int day = 1; day <= 7; ++day)
        weekly->dayBox(day)->setChecked(false);
    QVERIFY(!page->isComplete());
    QVERIFY(!page->validatePage());
    weekly->dayBox(7)->setChecked(true);
    QVERIFY(page->isComplete());
    page->stopBox()->setChecked(true);
    QVERIFY(!page->isComplete());
    page->stopMinutesBox()->setValue(1);
    QVERIFY(page->isComplete());
    BackupFile saved;
    page->initPlan(&saved);
    QCOMPARE(saved.schedule().stopAfter(), 60ull);
    QCOMPARE(saved.schedule().weeklyFrequency(), days({7}));
}

void TestPageSchedule::shouldNeverShareFieldsBetweenTheTwoSchedules()
{
    BackupPlanEditWizard wizard(false);
    const QTime plan(6, 10);
    const QTime full(21, 40);
    wizard.setField(QStringLiteral("Weekly_Field_UsedOccursAtValue"), QDateTime(QDate::currentDate(), plan));
    wizard.setField(QStringLiteral("Full_Weekly_Field_UsedOccursAtValue"), QDateTime(QDate::currentDate(), full));
    wizard.setField(QStringLiteral("Full_Field_WeeklyDay_3"), true);
    wizard.setField(QStringLiteral("Field_WeeklyDay_3"), false);
    wizard.setField(QStringLiteral("Full_Monthly_Field_UsedOccursEveryTo"), QDateTime(QDate::currentDate(), full));
    QCOMPARE(static_cast<FrequencyWeekly*>(schedulePage(wizard)->editor(1))->atEdit()->time(), plan);
    QCOMPARE(static_cast<FrequencyWeekly*>(fullPage(wizard)->editor(1))->atEdit()->time(), full);
    QVERIFY(static_cast<FrequencyWeekly*>(fullPage(wizard)->editor(1))->dayBox(3)->isChecked());
    QVERIFY(!static_cast<FrequencyWeekly*>(schedulePage(wizard)->editor(1))->dayBox(3)->isChecked());
    QCOMPARE(static_cast<FrequencyMonthly*>(fullPage(wizard)->editor(2))->toEdit()->time(), full);
    QVERIFY(static_cast<FrequencyMonthly*>(schedulePage(wizard)->editor(2))->toEdit()->time() != full);

    // The full schedule lands in forceFullSchedule only; the weekly editor's
    // last write (frequency type 1) is what stays.
    fullPage(wizard)->enableBox()->setChecked(true);
    fullPage(wizard)->frequencyBox()->setCurrentIndex(1);
    BackupFile saved;
    QVERIFY(fullPage(wizard)->initPlan(&saved));
    QCOMPARE(saved.forceFullSchedule().frequencyType(), Schedule::Weekly);
    QVERIFY(saved.forceFullSchedule().weeklyFrequency().testBit(2));
    BackupFile fresh;
    QCOMPARE(saved.schedule().frequencyType(), fresh.schedule().frequencyType());
    QCOMPARE(saved.schedule().weeklyFrequency(), fresh.schedule().weeklyFrequency());
}

void TestPageSchedule::shouldAskOnceForPastDate()
{
    BackupPlanEditWizard wizard(false);
    auto* page = schedulePage(wizard);
    page->enableBox()->setChecked(true);
    page->specificDateRadio()->setChecked(true);
    page->specificDateEdit()->setDateTime(QDateTime::currentDateTime().addDays(-1));
    int asked = 0;
    NvbTest::whenModal<QMessageBox>([&asked](QMessageBox* box) {
        ++asked;
        QCOMPARE(box->text(), QStringLiteral("The scheduled date is in the past. Do you want to continue?"));
        box->button(QMessageBox::No)->click();
    });
    QVERIFY(!page->validatePage());
    NvbTest::whenModal<QMessageBox>([&asked](QMessageBox* box) {
        ++asked;
        box->button(QMessageBox::Yes)->click();
    });
    QVERIFY(page->validatePage());
    QCOMPARE(asked, 2);
    BackupFile saved;
    page->initPlan(&saved);
    QCOMPARE(saved.schedule().type(), Schedule::Once);
    QCOMPARE(saved.schedule().specificDate().time().second(), 0);
    page->specificDateEdit()->setDateTime(QDateTime::currentDateTime().addDays(1));
    QVERIFY(page->validatePage());
}

void TestPageSchedule::shouldCopyStartTimeIntoFullScheduleByItsIndex()
{
    // In the new format the index runs one ahead: a weekly plan's full
    // schedule takes the monthly editor's time.
    BackupPlanEditWizard wizard(true);
    wizard.setField(QStringLiteral("Weekly_Field_UsedOccursAtValue"), QDateTime(QDate::currentDate(), QTime(5, 5)));
    wizard.setField(QStringLiteral("Monthly_Field_UsedOccursAtValue"), QDateTime(QDate::currentDate(), QTime(7, 15)));
    schedulePage(wizard)->frequencyBox()->setCurrentIndex(0);
    fullPage(wizard)->initializePage();
    for (int key : {1, 2})
        QCOMPARE(static_cast<NVB::GUI::FrequencyDaily*>(fullPage(wizard)->editor(key))->atEdit()->time(), QTime(7, 15));
    // The inherited time is what the full schedule saves.
    fullPage(wizard)->enableBox()->setChecked(true);
    BackupFile saved;
    fullPage(wizard)->initPlan(&saved);
    QVERIFY(!saved.forceFullSchedule().dailyRecurrence());
    QCOMPARE(saved.forceFullSchedule().occursAt(), QTime(7, 15));
}

void TestPageSchedule::shouldSummarise()
{
    BackupPlanEditWizard wizard(false);
    auto* page = schedulePage(wizard);
    page->enableBox()->setChecked(false);
    page->stopBox()->setChecked(true);
    page->stopHoursBox()->setValue(2);
    QCOMPARE(page->summary(),
        QStringLiteral("<tr><td>Schedule:</td><td></td></tr><tr><td></td><td>Not scheduled</td></tr>"
                       "<tr><td></td><td>Stop plan if it runs for: 2 hour(s) 0 minutes(s)</td></tr>"));
    page->enableBox()->setChecked(true);
    page->recurringRadio()->setChecked(true);
    page->frequencyBox()->setCurrentIndex(2);
    auto* monthly = static_cast<FrequencyMonthly*>(page->editor(2));
    monthly->occurrenceBox()->setCurrentIndex(6);
    monthly->dayBox()->setCurrentIndex(6);
    monthly->everyRadio()->setChecked(true);
    monthly->minutesBox()->setValue(15);
    monthly->fromEdit()->setTime(QTime(22, 0));
    monthly->toEdit()->setTime(QTime(2, 0));
    const QString html = page->summary();
    QVERIFY2(
        html.contains(QStringLiteral("Occurs every month on Last %1").arg(QLocale().dayName(7))), qPrintable(html));
    QVERIFY(html.contains(QStringLiteral("Occurs every day every 15 minute(s) between 22:00:00 and 02:00:00")));
    QVERIFY(html.contains(QStringLiteral("Repeat every 1 month. Start from:")));
    // The day combo offers every day number whatever the month.
    monthly->occurrenceBox()->setCurrentIndex(0);
    QCOMPARE(monthly->dayBox()->count(), 31);
}

NVB_TEST_MAIN(TestPageSchedule)
#include "tst_pageschedule.moc"
