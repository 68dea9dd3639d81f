#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "app/delegates/incompletestatedelegate.h"
#include "models/filesystemcheckedproxymodel.h"
#include "models/filesystemcheckedsharecontrolmodel.h"
#include "records/plan/backupdiskimage.h"
#include "records/plan/backupfile.h"
#include "testmain.h"
#include "wizardfixture.h"
#include "wizards/backup/pagesource.h"
#include "wizards/common/pagecheckboxlegenddialog.h"

using NVB::GUI::BackupPlanEditWizard;
using NVB::GUI::FileSystemCheckedModel;
using NVB::GUI::PageCheckBoxLegendDialog;
using namespace NVB::Info::Plan;

class TestBackupPageSource : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shouldCompleteOnlyWithMarkedPath();
    void shouldWriteMarksIntoFilePlansOnly();
    void shouldMarkTreeFromPlan();
    void shouldShowHiddenFilesOnlyWhenAsked();
    void shouldHideLegendForEmptyTree();
    void shouldOpenLegendWithTreesOwnPictures();
    void shouldCountSharesUnderFreeLicence();

private:
    QScopedPointer<WizardVolume> m_volume;
};

void TestBackupPageSource::init()
{
    m_volume.reset(new WizardVolume());
}

void TestBackupPageSource::cleanup()
{
    m_volume.reset();
}

void TestBackupPageSource::shouldCompleteOnlyWithMarkedPath()
{
    BackupPlanEditWizard::PageSource page;
    FileSystemCheckedModel* model = page.model();
    QVERIFY(WizardVolume::expand(model, m_volume->vol()));
    QVERIFY(!page.isComplete());
    QVERIFY(!page.validatePage());
    QSignalSpy complete(&page, &BackupPlanEditWizard::PageSource::completeChanged);
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("music")), 2));
    QVERIFY(!complete.isEmpty());
    QVERIFY(page.isComplete());
    QVERIFY(page.validatePage());
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("music")), 0));
    QVERIFY(!page.isComplete());
}

void TestBackupPageSource::shouldWriteMarksIntoFilePlansOnly()
{
    BackupPlanEditWizard::PageSource page;
    FileSystemCheckedModel* model = page.model();
    QVERIFY(WizardVolume::expand(model, m_volume->vol()));
    QVERIFY(WizardVolume::expand(model, m_volume->vol(QStringLiteral("docs"))));
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("docs")), 2));
    QVERIFY(WizardVolume::mark(model, m_volume->vol(QStringLiteral("docs/a.txt")), 0));
    BackupFile file;
    QVERIFY(page.initPlan(&file));
    QCOMPARE(file.items(), QStringList {m_volume->vol(QStringLiteral("docs"))});
    QCOMPARE(file.excludeItems(), QStringList {m_volume->vol(QStringLiteral("docs/a.txt"))});
    BackupDiskImage image;
    QVERIFY(!page.initPlan(&image));
    QVERIFY(!page.initPlan(nullptr));
    QVERIFY(!page.fromPlan(&image));
}

void TestBackupPageSource::shouldMarkTreeFromPlan()
{
    BackupFile plan;
    plan.setItems({m_volume->vol(QStringLiteral("docs"))});
    plan.setExcludeItems({m_volume->vol(QStringLiteral("docs/b.txt"))});
    BackupPlanEditWizard::PageSource page;
    QVERIFY(page.fromPlan(&plan));
    FileSystemCheckedModel* model = page.model();
    QSignalSpy complete(&page, &BackupPlanEditWizard::PageSource::completeChanged);
    QVERIFY(QTest::qWaitFor([&] { return model->indexByPath(m_volume->vol(QStringLiteral("docs/b.txt"))).isValid(); }));
    // The marks arrive with the listing; the page says so, so that Next wakes up.
    QVERIFY(page.isComplete());
    QVERIFY(!complete.isEmpty());
    auto state
        = [&](const QString& path) { return model->indexByPath(m_volume->vol(path)).data(Qt::CheckStateRole).toInt(); };
    // The folder keeps its own mark, so that files made in it later are
    // taken too; the file left out is its one exclusion.
    QCOMPARE(state(QStringLiteral("docs")), 2);
    QCOMPARE(state(QStringLiteral("docs/a.txt")), 2);
    QCOMPARE(state(QStringLiteral("docs/b.txt")), 0);
    QCOMPARE(model->includePath(false), plan.items());
    QCOMPARE(model->excludePath(false), plan.excludeItems());
}

void TestBackupPageSource::shouldShowHiddenFilesOnlyWhenAsked()
{
    BackupPlanEditWizard::PageSource page;
    FileSystemCheckedModel* model = page.model();
    QVERIFY(WizardVolume::expand(model, m_volume->vol()));
    QVERIFY(WizardVolume::expand(model, m_volume->vol(QStringLiteral("docs"))));
    QAbstractItemModel* proxy = page.view()->model();
    auto docsRows = [&] {
        const QModelIndex volume = proxy->index(0, 0);
        for (int row = 0; row < proxy->rowCount(volume); ++row) {
            const QModelIndex child = proxy->index(row, 0, volume);
            if (child.data().toString() == QStringLiteral("docs"))
                return proxy->rowCount(child);
        }
        return -1;
    };
    QCOMPARE(docsRows(), 2);
    QVERIFY(!page.showHiddenBox()->isChecked());
    page.showHiddenBox()->click();
    QCOMPARE(docsRows(), 3);
    page.showHiddenBox()->click();
    QCOMPARE(docsRows(), 2);
}

void TestBackupPageSource::shouldHideLegendForEmptyTree()
{
    {
        BackupPlanEditWizard::PageSource page;
        QVERIFY(!page.legendLink()->isHidden());
    }
    m_volume->makeEmpty();
    BackupPlanEditWizard::PageSource page;
    QCOMPARE(page.model()->rowCount(), 0);
    QVERIFY(page.legendLink()->isHidden());
    QVERIFY(!page.isComplete());
}

void TestBackupPageSource::shouldOpenLegendWithTreesOwnPictures()
{
    BackupPlanEditWizard::PageSource page;
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QList<int> pictured;
    QTimer::singleShot(0, &page, [&] {
        auto* legend = qobject_cast<PageCheckBoxLegendDialog*>(QApplication::activeModalWidget());
        if (!legend)
            return;
        for (int state : legend->states())
            if (!legend->pixmapLegend(state).isNull())
                pictured << state;
        legend->accept();
    });
    QTimer::singleShot(10000, &page, [] {
        if (QWidget* modal = QApplication::activeModalWidget())
            modal->close();
    });
    emit page.legendLink()->linkActivated(QStringLiteral("#"));
    std::sort(pictured.begin(), pictured.end());
    QCOMPARE(pictured, (QList<int> {0, 1, 2, 1001}));
}

void TestBackupPageSource::shouldCountSharesUnderFreeLicence()
{
    using NVB::GUI::FileSystemCheckedShareControlModel;
    {
        BackupPlanEditWizard::PageSource full;
        QVERIFY(!qobject_cast<FileSystemCheckedShareControlModel*>(full.model()));
    }
    WizardLicence free("free");
    BackupPlanEditWizard::PageSource page;
    auto* shares = qobject_cast<FileSystemCheckedShareControlModel*>(page.model());
    QVERIFY(shares);
    QCOMPARE(shares->shareLimit(), 1);
    // The tree and the plan's marks work as with the plain model.
    BackupFile plan;
    plan.setItems({m_volume->vol(QStringLiteral("music"))});
    QVERIFY(page.fromPlan(&plan));
    QTRY_COMPARE(shares->includePath(false), plan.items());
}

NVB_TEST_MAIN(TestBackupPageSource)
#include "tst_backuppagesource.moc"
