#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QTest>

#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "testmain.h"
#include "widgets/attentionframe.h"
#include "wizardfixture.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pageretentionpolicy.h"

using NVB::GUI::BackupPlanEditWizard;
using Page = NVB::GUI::BackupPlanEditWizard::PageRetentionPolicy;
using Policy = NVB::Info::Plan::BackupRetentionPolicy;
using NVB::Info::Plan::BackupFile;

class TestPageRetentionPolicy : public QObject
{
    Q_OBJECT
private slots:
    void init() { WizardStorage::ensureRegistered(); }
    void shouldMapUnitsOfNewFormat_data();
    void shouldMapUnitsOfNewFormat();
    void shouldWriteLegacyFieldsUnderDefaultRadio();
    void shouldForceKeepLastWithBackupDate();
    void shouldHideDeleteLocalyForDiskImages();
};

void TestPageRetentionPolicy::shouldMapUnitsOfNewFormat_data()
{
    QTest::addColumn<int>("unit");
    QTest::addColumn<bool>("deleteOlder");
    QTest::addColumn<int>("index");
    QTest::newRow("years") << int(Policy::Year) << true << 0;
    QTest::newRow("months") << int(Policy::Month) << true << 1;
    QTest::newRow("weeks") << int(Policy::Week) << true << 2;
    QTest::newRow("days") << int(Policy::Day) << true << 3;
    QTest::newRow("forever shows years") << int(Policy::Day) << false << 0;
}

void TestPageRetentionPolicy::shouldMapUnitsOfNewFormat()
{
    QFETCH(int, unit);
    QFETCH(bool, deleteOlder);
    QFETCH(int, index);
    BackupPlanEditWizard wizard(true);
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageRetentionPolicyId));
    BackupFile plan;
    plan.setIsArchive(true);
    plan.retentionPolicy().setUseDeleteOlder(deleteOlder);
    plan.retentionPolicy().setDeleteFileAge({5, unit});
    QVERIFY(page->fromPlan(&plan));
    QCOMPARE(page->unitBox()->currentIndex(), index);
    QCOMPARE(page->customRadio()->isChecked(), deleteOlder);
    QCOMPARE(page->ageRow()->isEnabled(), deleteOlder);

    BackupFile written;
    written.setIsArchive(true);
    QVERIFY(page->initPlan(&written));
    QCOMPARE(written.retentionPolicy().type(), deleteOlder ? Policy::Custom : Policy::Default);
    QCOMPARE(written.retentionPolicy().useDeleteOlder(), deleteOlder);
    if (deleteOlder)
        QCOMPARE(written.retentionPolicy().deleteFileAge(), Policy::FileAge(5, unit));
}

void TestPageRetentionPolicy::shouldWriteLegacyFieldsUnderDefaultRadio()
{
    BackupPlanEditWizard wizard(false);
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageRetentionPolicyId));
    BackupFile stored;
    stored.retentionPolicy().setType(Policy::Custom);
    stored.retentionPolicy().setUseDeleteOlder(true);
    stored.retentionPolicy().setDeleteFileAge({2, Policy::Week});
    stored.retentionPolicy().setUseBackupDate(false);
    stored.retentionPolicy().setUseKeepVersion(true);
    stored.retentionPolicy().setKeepVersion(7);
    QVERIFY(page->fromPlan(&stored));
    QVERIFY(page->deleteOlderBox()->isEnabled());
    QVERIFY(page->summary().contains(QStringLiteral("Delete version older than 2 week(s) from modification date")));
    QVERIFY(page->summary().contains(QStringLiteral("Keep only 7 versions")));

    page->defaultRadio()->setChecked(true);
    QVERIFY(!page->deleteOlderBox()->isEnabled());
    const QString summary = page->summary();
    QVERIFY(summary.contains(QStringLiteral("Default retention policy")));
    QVERIFY(!summary.contains(QStringLiteral("Keep only")));
    BackupFile written;
    QVERIFY(page->initPlan(&written));
    QCOMPARE(written.retentionPolicy().type(), Policy::Default);
    QVERIFY(written.retentionPolicy().useDeleteOlder());
    QCOMPARE(written.retentionPolicy().deleteFileAge(), Policy::FileAge(2, Policy::Week));
    QCOMPARE(written.retentionPolicy().keepVersion(), 7);
    QVERIFY(!written.retentionPolicy().useBackupDate());
}

void TestPageRetentionPolicy::shouldForceKeepLastWithBackupDate()
{
    BackupPlanEditWizard wizard(false);
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageRetentionPolicyId));
    page->customRadio()->setChecked(true);
    page->deleteOlderBox()->setChecked(true);
    page->dateBox()->setCurrentIndex(0);
    page->keepLastBox()->setChecked(false);
    page->dateBox()->setCurrentIndex(1);
    QVERIFY(page->keepLastBox()->isChecked());
    QVERIFY(!page->keepLastBox()->isEnabled());
    page->dateBox()->setCurrentIndex(0);
    QVERIFY(page->keepLastBox()->isEnabled());
    QVERIFY(page->keepLastBox()->isChecked());
}

void TestPageRetentionPolicy::shouldHideDeleteLocalyForDiskImages()
{
    BackupPlanEditWizard wizard(false);
    wizard.show();
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageRetentionPolicyId));
    page->deleteLocalyBox()->setChecked(true);
    QVERIFY(page->deleteLocalyAttention()->isVisibleTo(page));
    page->deleteLocalyBox()->setChecked(false);
    QVERIFY(!page->deleteLocalyAttention()->isVisibleTo(page));

    NVB::Info::Plan::BackupDiskImage image;
    image.retentionPolicy().setUseDeleteLocaly(true);
    QVERIFY(page->fromPlan(&image));
    QVERIFY(!page->deleteLocalyBox()->isVisibleTo(page));
    NVB::Info::Plan::BackupDiskImage written;
    written.retentionPolicy().setUseDeleteLocaly(true);
    page->setField(QLatin1String(Page::FieldUseDeleteLocalyFiles), false);
    QVERIFY(page->initPlan(&written));
    // Not a file plan: the delete-locally setting is left as the record has it.
    QVERIFY(written.retentionPolicy().useDeleteLocaly());
}

NVB_TEST_MAIN(TestPageRetentionPolicy)
#include "tst_pageretentionpolicy.moc"
