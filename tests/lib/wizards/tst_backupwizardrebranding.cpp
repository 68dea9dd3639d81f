#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include "records/plan/backupfile.h"
#include "testmain.h"
#include "widgets/checkbox.h"
#include "wizardfixture.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pagename.h"
#include "wizards/backup/pagesource.h"

using NVB::GUI::BackupPlanEditWizard;
using NVB::GUI::PlanWizardBase;

namespace {

// Stands in the slot of a page that a reseller's switches may hide.
class SlotPage : public PlanWizardBase::PageBase
{
public:
    SlotPage(const QString& name, int next)
        : PageBase(name)
        , m_next(next)
    { }
    int nextId() const override { return m_next; }
    QString summary() override { return QString(); }
    bool initPlan(NVB::Info::Plan::Base* plan) override { return plan != nullptr; }
    bool fromPlan(NVB::Info::Plan::Base* plan) override { return plan != nullptr; }

private:
    int m_next;
};

} // namespace

// A reseller who offers neither block level backup nor compression,
// encryption or any provider option.
class TestBackupWizardRebranding : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shouldHideBlockLevelBoxForLegacyFilePlan();
    void shouldNeverShowCompressionConsistencyOrSchedule();

private:
    QTemporaryDir m_dir;
};

void TestBackupWizardRebranding::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QFile file(m_dir.filePath(QStringLiteral("rebranding.json")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"AllowBlockLevel": false, "DefaultUseBlockLevel": true, "AllowCompression": false,
                   "AllowEncryption": false, "showSSE": false, "showSIA": false, "S3Accelerate": false})");
    file.close();
    // Read once, on first use: nothing has asked before this point.
    qputenv("NVB_REBRANDING_FILE", QFile::encodeName(file.fileName()));
}

void TestBackupWizardRebranding::shouldHideBlockLevelBoxForLegacyFilePlan()
{
    BackupPlanEditWizard wizard(false);
    auto* name = qobject_cast<BackupPlanEditWizard::PageName*>(wizard.page(BackupPlanEditWizard::PageNameId));
    QVERIFY(name->blockLevelBox()->isHidden());
    // Not offered, so not on by default either.
    QVERIFY(!name->blockLevelBox()->isChecked());
    QVERIFY(!name->saveOnCloudBox()->isHidden());
}

void TestBackupWizardRebranding::shouldNeverShowCompressionConsistencyOrSchedule()
{
    WizardVolume volume;
    WizardStorage::ensureRegistered();
    BackupPlanEditWizard wizard(true);
    wizard.removePage(BackupPlanEditWizard::PageCompressionEndEncryptionId);
    wizard.setPage(BackupPlanEditWizard::PageCompressionEndEncryptionId,
        new SlotPage(QStringLiteral("Compression"), BackupPlanEditWizard::PageConsistencyCheckId));
    QCOMPARE(wizard.advancedFilterNextId(), int(BackupPlanEditWizard::PageRetentionPolicyId));
    wizard.show();
    WizardStorage::pass(wizard);
    qobject_cast<BackupPlanEditWizard::PageName*>(wizard.page(BackupPlanEditWizard::PageNameId))
        ->nameEdit()
        ->setText(QStringLiteral("Docs"));
    wizard.next();
    auto* source = qobject_cast<BackupPlanEditWizard::PageSource*>(wizard.page(BackupPlanEditWizard::PageSourceId));
    QVERIFY(WizardVolume::expand(source->model(), volume.vol()));
    QVERIFY(WizardVolume::mark(source->model(), volume.vol(QStringLiteral("docs")), 2));
    for (int steps = 0; steps < 12 && wizard.currentId() != BackupPlanEditWizard::PageSummaryId; ++steps)
        wizard.next();
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageSummaryId));
    // Straight from the filter to retention, then actions and notification.
    QCOMPARE(wizard.visitedIds(), (QList<int> {0, 1, 4, 102, 103, 108, 8, 9}));
}

NVB_TEST_MAIN(TestBackupWizardRebranding)
#include "tst_backupwizardrebranding.moc"
