#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include "models/filesystemcheckedmodel.h"
#include "plans/planeditwait.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "records/plan/factory.h"
#include "testmain.h"
#include "widgets/checkbox.h"
#include "wizardfixture.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pagebackuptype.h"
#include "wizards/backup/pagefullschedule.h"
#include "wizards/backup/pagename.h"
#include "wizards/backup/pagesource.h"
#include "wizards/backup/pagesummary.h"
#include "wizards/common/pageschedule.h"

using NVB::GUI::BackupPlanEditWizard;
using NVB::GUI::PlanWizardBase;
using namespace NVB::Info::Plan;

namespace {

// The slot of the storage page of an edition with a single account: it has
// chosen by itself and is never visited.
class SingleStoragePage : public PlanWizardBase::PageBase
{
    Q_OBJECT
    Q_PROPERTY(bool single MEMBER single)
public:
    explicit SingleStoragePage(const QUuid& account)
        : PageBase(QStringLiteral("Cloud storage"))
        , id(new QLineEdit(account.toString(), this))
    {
        registerField(QStringLiteral("Field_CloudId"), id);
    }
    int nextId() const override { return BackupPlanEditWizard::PageNameId; }
    QString summary() override { return valueRow(QStringLiteral("Backup storage:"), QStringLiteral("x")); }
    bool initPlan(Base* plan) override { return plan != nullptr; }
    bool fromPlan(Base* plan) override { return plan != nullptr; }
    bool single = true;
    QLineEdit* id;
};

struct Saved
{
    int calls = 0;
    bool isEdit = false;
    QUuid id;
    QString xml;
    bool run = false;
    bool answer = true;

    BackupPlanEditWizard::PageSummary::Saver saver()
    {
        return [this](bool edit, const QUuid& planId, const QString& text, bool runNow, QWidget*) {
            ++calls;
            isEdit = edit;
            id = planId;
            xml = text;
            run = runNow;
            return answer;
        };
    }

    QSharedPointer<BackupFile> plan() const { return Factory::create(xml).dynamicCast<BackupFile>(); }
};

BackupPlanEditWizard::PageName* namePage(BackupPlanEditWizard& wizard)
{
    return qobject_cast<BackupPlanEditWizard::PageName*>(wizard.page(BackupPlanEditWizard::PageNameId));
}

BackupPlanEditWizard::PageSource* sourcePage(BackupPlanEditWizard& wizard)
{
    return qobject_cast<BackupPlanEditWizard::PageSource*>(wizard.page(BackupPlanEditWizard::PageSourceId));
}

BackupPlanEditWizard::PageSummary* summaryPage(BackupPlanEditWizard& wizard)
{
    return qobject_cast<BackupPlanEditWizard::PageSummary*>(wizard.page(BackupPlanEditWizard::PageSummaryId));
}

} // namespace

class TestBackupPlanEditWizard : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shouldOpenStoredPlanInItsFlow();
    void shouldWalkFromSourceThroughScheduleToSummary();
    void shouldFollowLicenceAfterRetention();
    void shouldKeepInputWhenGoingBack();
    void shouldFollowEnabledScheduleInNewFormat_data();
    void shouldFollowEnabledScheduleInNewFormat();
    void shouldKeepBlockLevelOnInNewFormat();
    void shouldWriteLegacyChoicesAndSkipFullScheduleWithoutBlockLevel_data();
    void shouldWriteLegacyChoicesAndSkipFullScheduleWithoutBlockLevel();
    void shouldNeverTurnBlockLevelOffWhenLoading();
    void shouldSaveEditedPlanUnderItsId();
    void shouldStayOpenWhenSaveFailsThenSaveWithRunFlag();
    void shouldResetPagesByChosenBackupType();
    void shouldStayOpenWhenPlanWaitEndsWithoutPlan();
    void shouldTakeAccountOfUnvisitedSingleStoragePage_data();
    void shouldTakeAccountOfUnvisitedSingleStoragePage();

private:
    void walkToSummary(BackupPlanEditWizard& wizard, const QString& name);
    // Next on every page after the source until the summary.
    static void nextToSummary(BackupPlanEditWizard& wizard);

    QScopedPointer<WizardVolume> m_volume;
};

void TestBackupPlanEditWizard::init()
{
    WizardStorage::ensureRegistered();
    m_volume.reset(new WizardVolume());
}

void TestBackupPlanEditWizard::cleanup()
{
    m_volume.reset();
}

void TestBackupPlanEditWizard::walkToSummary(BackupPlanEditWizard& wizard, const QString& name)
{
    wizard.show();
    WizardStorage::pass(wizard);
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageNameId));
    namePage(wizard)->nameEdit()->setText(name);
    wizard.next();
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageSourceId));
    auto* model = sourcePage(wizard)->model();
    QVERIFY(WizardVolume::expand(model, m_volume->vol()));
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("docs")), 2));
    nextToSummary(wizard);
}

void TestBackupPlanEditWizard::nextToSummary(BackupPlanEditWizard& wizard)
{
    wizard.next();
    for (int steps = 0; steps < 16 && wizard.currentId() != BackupPlanEditWizard::PageSummaryId; ++steps)
        wizard.next();
}

void TestBackupPlanEditWizard::shouldOpenStoredPlanInItsFlow()
{
    QVERIFY(!BackupPlanEditWizard(false).isEdit());
    BackupFile plan;
    plan.setName(QStringLiteral("Photos"));
    QScopedPointer<BackupPlanEditWizard> edit(BackupPlanEditWizard::createWizard(&plan));
    QVERIFY(edit->isEdit());
    QCOMPARE(edit->getPlanId(), plan.id());
    QCOMPARE(namePage(*edit)->nameEdit()->text(), QStringLiteral("Photos"));
    QVERIFY(!BackupPlanEditWizard::createWizard(nullptr));

    // A disk image plan opens in the image flow, named, with no file source.
    BackupDiskImage image;
    image.setIsArchive(false);
    image.setName(QStringLiteral("System"));
    QScopedPointer<BackupPlanEditWizard> other(BackupPlanEditWizard::createWizard(&image));
    QCOMPARE(other->backupPlanType(), BackupPlanEditWizard::PlanTypeDiskImage);
    QVERIFY(!sourcePage(*other)->fromPlan(&image));
    QCOMPARE(namePage(*other)->nameEdit()->text(), QStringLiteral("System"));
    other->show();
    WizardStorage::pass(*other);
    other->next();
    QCOMPARE(other->currentId(), int(BackupPlanEditWizard::PageBackupDiskImageSourceId));
}

void TestBackupPlanEditWizard::shouldWalkFromSourceThroughScheduleToSummary()
{
    BackupPlanEditWizard wizard(false);
    walkToSummary(wizard, QStringLiteral("Docs"));
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageSummaryId));
    QCOMPARE(wizard.visitedIds(), (QList<int> {0, 1, 4, 102, 5, 7, 103, 108, 8, 9}));
    QVERIFY(wizard.button(QWizard::FinishButton)->isVisible());
    const QString html = summaryPage(wizard)->summaryHtml();
    QVERIFY(html.startsWith(QStringLiteral("<table><tr><td>Backup storage:</td><td>Local disk</td></tr>")));
    QVERIFY(html.contains(QStringLiteral("<tr><td>Plan name:</td><td>Docs</td></tr>")));
    QVERIFY(html.contains(QStringLiteral("<tr><td>Backup source:</td><td></td></tr><tr><td></td><td>Include:</td></tr>")
        + QStringLiteral("<tr><td></td><td>%1</td></tr>").arg(m_volume->vol(QStringLiteral("docs")))));
}

void TestBackupPlanEditWizard::shouldFollowLicenceAfterRetention()
{
    // The free edition runs no commands around a backup; the full walk
    // shows the actions page after retention.
    BackupPlanEditWizard wizard(false);
    {
        WizardLicence free("free");
        QCOMPARE(wizard.designNextId(BackupPlanEditWizard::PageRetentionPolicyId),
            int(BackupPlanEditWizard::PageNotificationStandaloneId));
    }
    WizardLicence full("full");
    QCOMPARE(wizard.designNextId(BackupPlanEditWizard::PageRetentionPolicyId),
        int(BackupPlanEditWizard::PageBackupActionsId));
}

void TestBackupPlanEditWizard::shouldKeepInputWhenGoingBack()
{
    BackupPlanEditWizard wizard(false);
    wizard.show();
    WizardStorage::pass(wizard);
    namePage(wizard)->nameEdit()->setText(QStringLiteral("Docs"));
    namePage(wizard)->blockLevelBox()->setChecked(true);
    wizard.next();
    auto* model = sourcePage(wizard)->model();
    QVERIFY(WizardVolume::expand(model, m_volume->vol()));
    QVERIFY(WizardVolume::expand(model, m_volume->vol(QStringLiteral("docs"))));
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("docs")), 2));
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("docs/b.txt")), 0));
    nextToSummary(wizard);
    QCOMPARE(wizard.currentId(), 9);
    while (wizard.currentId() != 1 && wizard.visitedIds().size() > 1)
        wizard.back();
    QCOMPARE(wizard.currentId(), 1);
    QCOMPARE(namePage(wizard)->nameEdit()->text(), QStringLiteral("Docs"));
    QVERIFY(namePage(wizard)->blockLevelBox()->isChecked());
    wizard.next();
    QCOMPARE(model->includePath(false), QStringList {m_volume->vol(QStringLiteral("docs"))});
    QCOMPARE(model->excludePath(false), QStringList {m_volume->vol(QStringLiteral("docs/b.txt"))});
    nextToSummary(wizard);
    const QString html = summaryPage(wizard)->summaryHtml();
    QVERIFY(html.contains(QStringLiteral("<tr><td></td><td>Use block level backup</td></tr>")));
    QVERIFY(html.contains(QStringLiteral("<tr><td></td><td>Exclude:</td></tr><tr><td></td><td>%1</td></tr>")
                              .arg(m_volume->vol(QStringLiteral("docs/b.txt")))));
}

void TestBackupPlanEditWizard::shouldFollowEnabledScheduleInNewFormat_data()
{
    QTest::addColumn<bool>("scheduleEnabled");
    QTest::newRow("enabled") << true;
    QTest::newRow("disabled") << false;
}

void TestBackupPlanEditWizard::shouldFollowEnabledScheduleInNewFormat()
{
    QFETCH(bool, scheduleEnabled);
    BackupPlanEditWizard wizard(true);
    auto* schedule = qobject_cast<PlanWizardBase::PageSchedule*>(wizard.page(BackupPlanEditWizard::PageScheduleId));
    QVERIFY(schedule);
    schedule->enableBox()->setChecked(scheduleEnabled);
    // Block level in the field must not matter in this format.
    namePage(wizard)->setField(QStringLiteral("Field_UseFileDiffirentialBackup"), false);
    wizard.show();
    WizardStorage::pass(wizard);
    namePage(wizard)->nameEdit()->setText(QStringLiteral("Docs"));
    wizard.next();
    QVERIFY(WizardVolume::expand(sourcePage(wizard)->model(), m_volume->vol()));
    QVERIFY(WizardVolume::mark(sourcePage(wizard)->model(), m_volume->vol(QStringLiteral("docs")), 2));
    wizard.next();
    passOptionPages(wizard);
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageConsistencyCheckId));
    wizard.next();
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageScheduleId));
    wizard.next();
    passOptionPages(wizard);
    QCOMPARE(wizard.currentId(),
        scheduleEnabled ? int(BackupPlanEditWizard::PageFullScheduleId)
                        : wizard.designNextId(BackupPlanEditWizard::PageRetentionPolicyId));
}

void TestBackupPlanEditWizard::shouldKeepBlockLevelOnInNewFormat()
{
    BackupFile stored;
    stored.setIsArchive(true);
    stored.setName(QStringLiteral("Docs"));
    stored.setUseDifferentialUpload(false);
    stored.setItems({m_volume->vol(QStringLiteral("music"))});
    QScopedPointer<BackupPlanEditWizard> wizard(BackupPlanEditWizard::createWizard(&stored));
    QVERIFY(namePage(*wizard)->blockLevelBox()->isHidden());
    QVERIFY(namePage(*wizard)->saveOnCloudBox()->isHidden());
    wizard->show();
    WizardStorage::pass(*wizard);
    wizard->next();
    QCOMPARE(wizard->currentId(), 4);
    QVERIFY(QTest::qWaitFor([&] { return sourcePage(*wizard)->isComplete(); }));
    nextToSummary(*wizard);
    Saved saved;
    summaryPage(*wizard)->setSaver(saved.saver());
    wizard->button(QWizard::FinishButton)->click();
    const QSharedPointer<BackupFile> plan = saved.plan();
    QVERIFY(plan);
    QVERIFY(plan->isArchive());
    QVERIFY(plan->useDifferentialUpload());
    QCOMPARE(plan->items(), QStringList {m_volume->vol(QStringLiteral("music"))});
}

void TestBackupPlanEditWizard::shouldWriteLegacyChoicesAndSkipFullScheduleWithoutBlockLevel_data()
{
    QTest::addColumn<bool>("blockLevel");
    QTest::addColumn<bool>("saveOnCloud");
    // Opposite choices catch a box stuck either way and the two swapped.
    QTest::newRow("block level only") << true << false;
    QTest::newRow("save on cloud only") << false << true;
}

void TestBackupPlanEditWizard::shouldWriteLegacyChoicesAndSkipFullScheduleWithoutBlockLevel()
{
    QFETCH(bool, blockLevel);
    QFETCH(bool, saveOnCloud);
    BackupPlanEditWizard wizard(false);
    // In the legacy format the full schedule follows block level backup; a
    // skipped page stays out of the summary and the record.
    auto* full
        = qobject_cast<BackupPlanEditWizard::PageFullSchedule*>(wizard.page(BackupPlanEditWizard::PageFullScheduleId));
    QVERIFY(full);
    full->enableBox()->setChecked(true);
    QVERIFY(!namePage(wizard)->blockLevelBox()->isHidden());
    QVERIFY(!namePage(wizard)->saveOnCloudBox()->isHidden());
    namePage(wizard)->blockLevelBox()->setChecked(blockLevel);
    namePage(wizard)->saveOnCloudBox()->setChecked(saveOnCloud);
    walkToSummary(wizard, QStringLiteral("Docs"));
    QCOMPARE(wizard.visitedIds().contains(BackupPlanEditWizard::PageFullScheduleId), blockLevel);
    const QString html = summaryPage(wizard)->summaryHtml();
    QCOMPARE(html.contains(QStringLiteral("Full Schedule:")), blockLevel);
    QCOMPARE(html.contains(QStringLiteral("Save configuration to Cloud")), saveOnCloud);
    Saved saved;
    summaryPage(wizard)->setSaver(saved.saver());
    wizard.button(QWizard::FinishButton)->click();
    QCOMPARE(saved.calls, 1);
    const QSharedPointer<BackupFile> plan = saved.plan();
    QVERIFY(plan);
    QVERIFY(!plan->isArchive());
    QCOMPARE(plan->forceFullSchedule().isEnable(), blockLevel);
    QCOMPARE(plan->useDifferentialUpload(), blockLevel);
    QCOMPARE(plan->savePlanInCloud(), saveOnCloud);
}

void TestBackupPlanEditWizard::shouldNeverTurnBlockLevelOffWhenLoading()
{
    BackupPlanEditWizard wizard(false);
    auto* page = namePage(wizard);
    BackupFile on;
    on.setIsArchive(false);
    on.setUseDifferentialUpload(true);
    on.setSavePlanInCloud(false);
    QVERIFY(page->fromPlan(&on));
    QVERIFY(page->blockLevelBox()->isChecked());
    QVERIFY(!page->saveOnCloudBox()->isChecked());
    BackupFile off;
    off.setIsArchive(false);
    QVERIFY(page->fromPlan(&off));
    QVERIFY(page->blockLevelBox()->isChecked());
    QVERIFY(page->saveOnCloudBox()->isChecked());
    QVERIFY(!page->fromPlan(nullptr));
    QVERIFY(!page->initPlan(nullptr));
    // A legacy image has no block level to offer.
    BackupDiskImage image;
    image.setIsArchive(false);
    QVERIFY(page->fromPlan(&image));
    QVERIFY(page->blockLevelBox()->isHidden());
    QVERIFY(!page->saveOnCloudBox()->isHidden());
}

void TestBackupPlanEditWizard::shouldSaveEditedPlanUnderItsId()
{
    BackupFile stored;
    stored.setIsArchive(false);
    stored.setName(QStringLiteral("Old"));
    stored.setItems({m_volume->vol(QStringLiteral("docs"))});
    // Written only by the full schedule page, which this flow passes by.
    stored.setForceFullDiffSizeConditionEnable(true);
    QScopedPointer<BackupPlanEditWizard> wizard(BackupPlanEditWizard::createWizard(&stored));
    wizard->show();
    WizardStorage::pass(*wizard);
    namePage(*wizard)->nameEdit()->setText(QStringLiteral("New"));
    wizard->next();
    QVERIFY(QTest::qWaitFor([&] { return wizard->button(QWizard::NextButton)->isEnabled(); }));
    nextToSummary(*wizard);
    Saved saved;
    summaryPage(*wizard)->setSaver(saved.saver());
    wizard->button(QWizard::FinishButton)->click();
    QCOMPARE(saved.calls, 1);
    QVERIFY(saved.isEdit);
    QCOMPARE(saved.id, stored.id());
    const QSharedPointer<BackupFile> plan = saved.plan();
    QVERIFY(plan);
    QCOMPARE(plan->id(), stored.id());
    QCOMPARE(plan->name(), QStringLiteral("New"));
    QCOMPARE(plan->items(), QStringList {m_volume->vol(QStringLiteral("docs"))});
    QVERIFY(!plan->forceFullDiffSizeConditionEnable());
    QCOMPARE(wizard->result(), 1);
}

void TestBackupPlanEditWizard::shouldStayOpenWhenSaveFailsThenSaveWithRunFlag()
{
    BackupPlanEditWizard wizard(true);
    walkToSummary(wizard, QStringLiteral("Docs"));
    summaryPage(wizard)->setField(QStringLiteral("Field_SummaryRunNow"), true);
    Saved saved;
    saved.answer = false;
    summaryPage(wizard)->setSaver(saved.saver());
    wizard.button(QWizard::FinishButton)->click();
    QCOMPARE(saved.calls, 1);
    QVERIFY(wizard.isVisible());
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageSummaryId));
    QCOMPARE(namePage(wizard)->nameEdit()->text(), QStringLiteral("Docs"));

    saved.answer = true;
    wizard.button(QWizard::FinishButton)->click();
    QCOMPARE(saved.calls, 2);
    QVERIFY(!wizard.isVisible());
    QVERIFY(!saved.isEdit);
    QVERIFY(saved.run);
    QVERIFY(!saved.id.isNull());
    QCOMPARE(saved.plan()->id(), saved.id);
    QCOMPARE(saved.plan()->name(), QStringLiteral("Docs"));
}

void TestBackupPlanEditWizard::shouldResetPagesByChosenBackupType()
{
    BackupPlanEditWizard legacy(false);
    BackupPlanEditWizard::PageBackupType legacyType(false);
    QVERIFY(!legacyType.imageButton()->isEnabled());
    QVERIFY(legacyType.fileButton()->isChecked());
    QCOMPARE(legacyType.nextId(), 0);

    BackupPlanEditWizard wizard(true);
    auto* type = new BackupPlanEditWizard::PageBackupType(true);
    wizard.setPage(50, type);
    QVERIFY(type->imageButton()->isEnabled());
    namePage(wizard)->nameEdit()->setText(QStringLiteral("Typed"));
    type->imageButton()->setChecked(true);
    QVERIFY(type->validatePage());
    QCOMPARE(wizard.backupPlanType(), BackupPlanEditWizard::PlanTypeDiskImage);
    // Every page starts again from a fresh record of the chosen kind.
    QVERIFY(namePage(wizard)->nameEdit()->text().isEmpty());
    QCOMPARE(namePage(wizard)->nextId(), int(BackupPlanEditWizard::PageBackupDiskImageSourceId));
    QVERIFY(type->summary().isEmpty());
    QVERIFY(type->isComplete());
}

void TestBackupPlanEditWizard::shouldStayOpenWhenPlanWaitEndsWithoutPlan()
{
    // No engine answers here: the plan wait turns until the user leaves it,
    // and the wizard keeps everything for another try.
    BackupPlanEditWizard wizard(false);
    walkToSummary(wizard, QStringLiteral("Docs"));
    QString waited;
    QTimer::singleShot(100, &wizard, [&] {
        auto* wait = qobject_cast<NVB::GUI::PlanEditWait*>(QApplication::activeModalWidget());
        if (wait) {
            waited = wait->planId().toString();
            wait->reject();
        }
    });
    QTimer::singleShot(15000, &wizard, [] {
        if (auto* wait = qobject_cast<NVB::GUI::PlanEditWait*>(QApplication::activeModalWidget()))
            wait->reject();
    });
    wizard.button(QWizard::FinishButton)->click();
    QVERIFY(!waited.isEmpty());
    QVERIFY(wizard.isVisible());
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageSummaryId));
    QCOMPARE(namePage(wizard)->nameEdit()->text(), QStringLiteral("Docs"));
}

void TestBackupPlanEditWizard::shouldTakeAccountOfUnvisitedSingleStoragePage_data()
{
    QTest::addColumn<bool>("single");
    QTest::newRow("single account") << true;
    QTest::newRow("choice of accounts") << false;
}

void TestBackupPlanEditWizard::shouldTakeAccountOfUnvisitedSingleStoragePage()
{
    QFETCH(bool, single);
    const QUuid account = QUuid::createUuid();
    BackupPlanEditWizard wizard(true);
    auto* storage = new SingleStoragePage(account);
    storage->single = single;
    wizard.removePage(BackupPlanEditWizard::PageCloudId);
    wizard.setPage(BackupPlanEditWizard::PageCloudId, storage);
    wizard.setStartId(BackupPlanEditWizard::PageNameId);
    walkToSummary(wizard, QStringLiteral("Docs"));
    QVERIFY(!wizard.visitedIds().contains(BackupPlanEditWizard::PageCloudId));
    QVERIFY(!summaryPage(wizard)->summaryHtml().contains(QStringLiteral("Backup storage:")));
    const QSharedPointer<Base> plan = summaryPage(wizard)->createPlan();
    QVERIFY(plan);
    QCOMPARE(plan->storage(), single ? account : QUuid());
}

NVB_TEST_MAIN(TestBackupPlanEditWizard)
#include "tst_backupplaneditwizard.moc"
