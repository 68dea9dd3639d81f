#include <QAbstractButton>
#include <QAction>
#include <QDirIterator>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QtTest>

#include "accounts/local/localadd.h"
#include "accounts/storageseditlist.h"
#include "app/delegates/storagenamedelegate.h"
#include "engineprocess.h"
#include "listing/filesystemlisting.h"
#include "mainwindow.h"
#include "models/filesystemcheckedmodel.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "planlistview.h"
#include "plantablecreator.h"
#include "records/plan/planresult.h"
#include "service/connectionmanager.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "testmain.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pagename.h"
#include "wizards/backup/pagesource.h"
#include "wizards/common/pagecloud.h"

using NVB::Console::MainWindow;
using NVB::GUI::BackupPlanEditWizard;
namespace Column = NVB::GUI::Models::Table::NvbPlanBackupModelInfo::Column;

namespace {

// Acts on the next modal dialog of that class once it is open: the code that
// opens it blocks in exec() meanwhile.
template<class Dialog, class Action>
void whenModal(Action action)
{
    auto* timer = new QTimer;
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, [timer, action] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        const QPointer<Dialog> guard(dialog);
        action(dialog);
        if (QTest::currentTestFailed() && guard && guard->isVisible())
            guard->reject();
    });
    timer->start();
}

} // namespace

// The console end to end, against the real engine: an account added in the
// wizard, a plan made with it, a run started from the toolbar.
class TestConsole : public QObject
{
    Q_OBJECT

private:
    NvbTest::EngineProcess m_engine;
    QTemporaryDir m_volume;
    QTemporaryDir m_storage;
    NVB::Console::PlanTableCreator m_plans;
    NVB::GUI::StorageConnectionsModelCreator m_storages;

    QString source() const { return m_volume.path() + QStringLiteral("/docs"); }

    static bool expand(NVB::GUI::FileSystemCheckedModel* model, const QString& path)
    {
        const QModelIndex index = model->indexByPath(path);
        if (!index.isValid())
            return false;
        if (model->canFetchMore(index))
            model->fetchMore(index);
        return QTest::qWaitFor([&] { return model->rowCount(model->indexByPath(path)) > 0; });
    }

private slots:
    void initTestCase()
    {
        QDir().mkpath(source());
        for (const char* name : {"a.txt", "b.txt"}) {
            QFile file(source() + QLatin1Char('/') + QLatin1String(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(name);
        }
        // The file tree shows this folder as the machine's one volume.
        QFile table(m_volume.path() + QStringLiteral("/mountinfo"));
        QVERIFY(table.open(QIODevice::WriteOnly));
        table.write("28 1 254:1 / " + QFile::encodeName(m_volume.path()) + " rw - ext4 /dev/vdb rw\n");
        table.close();
        NVB::FileSystemListing::setMountTable(table.fileName());

        QVERIFY2(m_engine.start(), m_engine.output().constData());
        m_engine.exportSocketPath();
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_plans));
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_storages));
    }

    void cleanupTestCase()
    {
        NVB::FileSystemListing::setMountTable(QString());
        QVERIFY(m_engine.stop());
    }

    void shouldMakeAndRunPlanFromTheWindow()
    {
        MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        window.onEngineConnected();

        // The wizard: account, name, source, finish.
        window.findChild<QAction*>(QStringLiteral("newPlan"))->trigger();
        auto* wizard = window.findChild<BackupPlanEditWizard*>();
        QVERIFY(wizard);
        QVERIFY(QTest::qWaitForWindowExposed(wizard));
        QCOMPARE(wizard->currentId(), int(BackupPlanEditWizard::PageCloudId));
        auto* cloud = qobject_cast<NVB::GUI::PlanWizardBase::PageCloud*>(wizard->currentPage());
        QVERIFY(cloud);

        // A File System account, added from the storage page through its
        // dialog; the page waits until the engine has taken it.
        whenModal<NVB::GUI::Settings::Account::Local::Add>([this](NVB::GUI::Settings::Account::Local::Add* dialog) {
            QTest::keyClicks(dialog->displayNameEdit(), QStringLiteral("Local disk"));
            QTest::keyClicks(dialog->pathEdit(), m_storage.path());
            QVERIFY(dialog->okButton()->isEnabled());
            QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
        });
        QVERIFY(QMetaObject::invokeMethod(cloud, "onAddDestination", Q_ARG(int, 1)));
        QAbstractItemModel* storages =
            NVB::GUI::ModelManager::instance()->create(NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Type);
        QCOMPARE(storages->rowCount(), 1);
        cloud->list()->setCurrentIndex(cloud->list()->model()->index(0, 0));
        QVERIFY(cloud->isComplete());
        wizard->next();
        auto* name = qobject_cast<BackupPlanEditWizard::PageName*>(wizard->currentPage());
        QVERIFY(name);
        name->nameEdit()->setText(QStringLiteral("Console plan"));
        wizard->next();
        auto* page = qobject_cast<BackupPlanEditWizard::PageSource*>(wizard->currentPage());
        QVERIFY(page);
        QVERIFY(expand(page->model(), m_volume.path()));
        QVERIFY(page->model()->setData(page->model()->indexByPath(source()), 2, Qt::CheckStateRole));
        QVERIFY(QTest::qWaitFor([&] { return page->isComplete(); }));
        wizard->next();
        QCOMPARE(wizard->currentId(), int(BackupPlanEditWizard::PageSummaryId));
        wizard->button(QWizard::FinishButton)->click();

        // The plan appears in the backup table.
        NVB::Console::PlanListView* list = window.backupPlans();
        QVERIFY(QTest::qWaitFor([&] { return list->model()->rowCount() == 1; }, 15000));
        QCOMPARE(list->model()->index(0, Column::Name).data().toString(), QStringLiteral("Console plan"));
        // Its storage is shown by name once the plan's document has come.
        QVERIFY(QTest::qWaitFor(
            [&] {
                const QModelIndex cell = list->model()->index(0, Column::StorageID);
                return NVB::GUI::StorageNameDelegate::toText(cell.data(), QLocale()) == QLatin1String("Local disk");
            },
            10000));

        // Run it from the toolbar.
        list->selectRow(0);
        QVERIFY(!list->currentPlan().isNull());
        QAction* run = window.findChild<QAction*>(QStringLiteral("runPlan"));
        QVERIFY(run->isEnabled());
        run->trigger();
        QVERIFY(QTest::qWaitFor(
            [&] {
                return list->model()->index(0, Column::LastRunStatus).data().toInt()
                       == int(NVB::Info::Plan::PlanResult::Success);
            },
            30000));
        QStringList copied;
        QDirIterator files(m_storage.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            copied << QFileInfo(files.next()).fileName();
        copied.sort();
        QCOMPARE(copied, (QStringList{QStringLiteral("a.txt"), QStringLiteral("b.txt")}));
        const QImage picture = window.grab().toImage();
        QVERIFY(!picture.isNull());
        if (!qEnvironmentVariableIsEmpty("NVB_SCREENSHOT_DIR"))
            picture.save(qEnvironmentVariable("NVB_SCREENSHOT_DIR") + QStringLiteral("/console-main.png"));
    }
};

NVB_TEST_MAIN(TestConsole)
#include "tst_console.moc"
