#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include "app/delegates/incompletestatedelegate.h"
#include "models/filesystemcheckedmodel.h"
#include "testmain.h"
#include "wizardfixture.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pagename.h"
#include "wizards/backup/pagesource.h"
#include "wizards/backup/trynewbackupformatdialog.h"
#include "wizards/common/pagecheckboxlegenddialog.h"

using NVB::GUI::BackupPlanEditWizard;

namespace {

// Pixels dark enough to be text on the light page.
int darkPixels(const QImage& image)
{
    int dark = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            dark += qGray(image.pixel(x, y)) < 110;
    return dark;
}

} // namespace

// Takes a picture of every page and dialog, keeps it beside the test (or in
// NVB_PICTURES_DIR) for a human to look at, and checks that text was drawn.
class TestWizardPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shouldDrawEveryPageOfBackupWizard();
    void shouldDrawDialogs();

private:
    void keep(QWidget* widget, const QString& name);

    QString m_dir;
};

void TestWizardPictures::initTestCase()
{
    m_dir = qEnvironmentVariable("NVB_PICTURES_DIR");
    if (m_dir.isEmpty())
        m_dir = QCoreApplication::applicationDirPath() + QStringLiteral("/pictures");
    QVERIFY(QDir().mkpath(m_dir));
}

void TestWizardPictures::keep(QWidget* widget, const QString& name)
{
    const QImage image = widget->grab().toImage();
    QVERIFY(!image.isNull());
    QVERIFY(image.save(m_dir + QLatin1Char('/') + name + QStringLiteral(".png")));
    // The side band is dark too; a page's text must add a good deal to it.
    QVERIFY2(darkPixels(image) > 400, qPrintable(name));
}

void TestWizardPictures::shouldDrawEveryPageOfBackupWizard()
{
    WizardVolume volume;
    WizardStorage::ensureRegistered();
    BackupPlanEditWizard wizard(false);
    wizard.show();
    QVERIFY(QTest::qWaitForWindowExposed(&wizard));
    keep(&wizard, QStringLiteral("wizard-storage"));
    WizardStorage::pass(wizard);
    auto* name = qobject_cast<BackupPlanEditWizard::PageName*>(wizard.page(BackupPlanEditWizard::PageNameId));
    name->nameEdit()->setText(QStringLiteral("Documents"));
    const int blankName = darkPixels(name->grab().toImage());
    keep(&wizard, QStringLiteral("wizard-name"));

    wizard.next();
    auto* source = qobject_cast<BackupPlanEditWizard::PageSource*>(wizard.page(BackupPlanEditWizard::PageSourceId));
    QVERIFY(WizardVolume::expand(source->model(), volume.vol()));
    QVERIFY(WizardVolume::mark(source->model(), volume.vol(QStringLiteral("docs")), 2));
    source->view()->expandAll();
    keep(&wizard, QStringLiteral("wizard-source"));

    wizard.next();
    QCOMPARE(wizard.currentId(), int(BackupPlanEditWizard::PageSummaryId));
    keep(&wizard, QStringLiteral("wizard-summary"));
    // The name page really holds text: the check boxes' words.
    QVERIFY(blankName > 100);
}

void TestWizardPictures::shouldDrawDialogs()
{
    NVB::GUI::TryNewBackupFormatDialog format;
    format.show();
    QVERIFY(QTest::qWaitForWindowExposed(&format));
    keep(&format, QStringLiteral("try-new-backup-format"));

    NVB::GUI::PageCheckBoxLegendDialog legend;
    NVB::GUI::IncompleteStateDelegate delegate;
    for (int state : legend.states())
        legend.setPixmapLegend(state, delegate.stateImage(state, &legend));
    legend.show();
    QVERIFY(QTest::qWaitForWindowExposed(&legend));
    keep(&legend, QStringLiteral("legend"));
}

NVB_TEST_MAIN(TestWizardPictures)
#include "tst_wizardpictures.moc"
