#include <QCheckBox>
#include <QTest>

#include "records/plan/backupfile.h"
#include "testmain.h"
#include "wizardfixture.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pageadvancedfilter.h"

using NVB::GUI::BackupPlanEditWizard;
using Page = NVB::GUI::BackupPlanEditWizard::PageAdvancedFilter;
using NVB::Info::Plan::BackupFile;

class TestPageAdvancedFilter : public QObject
{
    Q_OBJECT
private slots:
    void init() { WizardStorage::ensureRegistered(); }
    void shouldSplitAtSemicolonsKeepingBlanks_data();
    void shouldSplitAtSemicolonsKeepingBlanks();
    void shouldOfferEmptyFoldersByProvider_data();
    void shouldOfferEmptyFoldersByProvider();
    void shouldWriteFilterAndReadItBack();
    void shouldBlockNextForEmptyValues();
};

void TestPageAdvancedFilter::shouldSplitAtSemicolonsKeepingBlanks_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("parts");
    QTest::newRow("blank after separator") << "*.png; *.txt" << QStringList {"*.png", " *.txt"};
    QTest::newRow("empty parts dropped") << ";;*.doc;;" << QStringList {"*.doc"};
    QTest::newRow("blank-only part kept") << "a; ;b" << QStringList {"a", " ", "b"};
    QTest::newRow("nothing") << "" << QStringList {};
}

void TestPageAdvancedFilter::shouldSplitAtSemicolonsKeepingBlanks()
{
    QFETCH(QString, value);
    QFETCH(QStringList, parts);
    QCOMPARE(Page::splitPatterns(value), parts);
}

void TestPageAdvancedFilter::shouldOfferEmptyFoldersByProvider_data()
{
    QTest::addColumn<bool>("isArchive");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("shown");
    QTest::newRow("new format, file system") << true << 8 << true;
    QTest::newRow("legacy, Amazon S3") << false << 2 << true;
    QTest::newRow("legacy, S3 compatible") << false << 11 << true;
    QTest::newRow("legacy, type 21") << false << 21 << false;
    QTest::newRow("legacy, type 1") << false << 1 << true;
    QTest::newRow("legacy, type 33") << false << 33 << true;
    QTest::newRow("legacy, Azure") << false << 3 << false;
}

void TestPageAdvancedFilter::shouldOfferEmptyFoldersByProvider()
{
    QFETCH(bool, isArchive);
    QFETCH(int, type);
    QFETCH(bool, shown);
    QCOMPARE(Page::emptyFoldersVisible(isArchive, type), shown);

    BackupPlanEditWizard wizard(isArchive);
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageAdvancedFilterId));
    page->setField(QStringLiteral("Field_CloudType"), QString::number(type));
    page->initializePage();
    QCOMPARE(!page->emptyFoldersBox()->isHidden(), shown);
    // A hidden box writes false, even when it was on.
    page->setField(QLatin1String(Page::FieldBackuEmptyFolders), true);
    BackupFile plan;
    QVERIFY(page->initPlan(&plan));
    QCOMPARE(plan.backupEmptyFolders(), shown);
    QCOMPARE(page->summary().contains(QStringLiteral("Backup empty folders")), shown);
}

void TestPageAdvancedFilter::shouldWriteFilterAndReadItBack()
{
    BackupPlanEditWizard wizard(false);
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageAdvancedFilterId));
    page->setField(QLatin1String(Page::FieldUseNotBakupFileTypes), true);
    page->setField(QLatin1String(Page::FieldNotBakupFileTypesValue), QStringLiteral("*.tmp; *.bak;"));
    page->setField(QLatin1String(Page::FieldSkipFolders), true);
    page->setField(QLatin1String(Page::FieldSkipFoldersValue), QStringLiteral("tmp;My*"));
    page->setField(QLatin1String(Page::FieldExcludeSystemFolders), true);
    page->setField(QLatin1String(Page::FieldSkipInUseFiles), true);
    BackupFile plan;
    QVERIFY(page->initPlan(&plan));
    QCOMPARE(plan.filterType(), BackupFile::AllButListed);
    QCOMPARE(plan.filter(), (QStringList {"*.tmp", " *.bak"}));
    QCOMPARE(plan.excludeFolderList(), (QStringList {"tmp", "My*"}));
    QVERIFY(plan.excludeSystemAndHidden());
    QVERIFY(plan.skipInUseFiles());
    QVERIFY(page->summary().contains(QStringLiteral("Do not backup files types: *.tmp; *.bak;")));

    BackupPlanEditWizard other(false);
    auto* reread = qobject_cast<Page*>(other.page(BackupPlanEditWizard::PageAdvancedFilterId));
    QVERIFY(reread->fromPlan(&plan));
    QVERIFY(reread->field(QLatin1String(Page::FieldUseNotBakupFileTypes)).toBool());
    QCOMPARE(
        reread->field(QLatin1String(Page::FieldNotBakupFileTypesValue)).toString(), QStringLiteral("*.tmp; *.bak"));
    QCOMPARE(reread->field(QLatin1String(Page::FieldSkipFoldersValue)).toString(), QStringLiteral("tmp;My*"));
    // The folder box off writes no list at all.
    reread->setField(QLatin1String(Page::FieldSkipFolders), false);
    BackupFile fresh;
    QVERIFY(reread->initPlan(&fresh));
    QVERIFY(fresh.excludeFolderList().isEmpty());
}

void TestPageAdvancedFilter::shouldBlockNextForEmptyValues()
{
    BackupPlanEditWizard wizard(false);
    auto* page = qobject_cast<Page*>(wizard.page(BackupPlanEditWizard::PageAdvancedFilterId));
    QVERIFY(page->isComplete());
    page->setField(QLatin1String(Page::FieldSkipFolders), true);
    QVERIFY(!page->isComplete());
    page->setField(QLatin1String(Page::FieldSkipFoldersValue), QStringLiteral("tmp"));
    QVERIFY(page->isComplete());
    page->setField(QLatin1String(Page::FieldUseBackupFileTypes), true);
    QVERIFY(!page->isComplete());
    page->setField(QLatin1String(Page::FieldBackupFileTypesValue), QStringLiteral(" "));
    QVERIFY(page->isComplete());
}

NVB_TEST_MAIN(TestPageAdvancedFilter)
#include "tst_pageadvancedfilter.moc"
