#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableView>
#include <QAbstractItemModelTester>
#include <QProcess>
#include <QTreeView>
#include <QTreeWidget>
#include <QtTest>
#include <unistd.h>

#include "accounts/local/localadd.h"
#include "accounts/storageseditlist.h"
#include "backupdatadeleter.h"
#include "app/delegates/storagenamedelegate.h"
#include "app/icons/iconmanager.h"
#include "disks/diskinfobackupmodel.h"
#include "diskspanel.h"
#include "engineprocess.h"
#include "historypanel.h"
#include "listing/filesystemlisting.h"
#include "mailserverdialog.h"
#include "mainwindow.h"
#include "modaldialog.h"
#include "models/filesystemcheckedmodel.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "planlistview.h"
#include "planprogresspanel.h"
#include "plans/history/historygetbyplanmodel.h"
#include "plans/progress/planfileprogress.h"
#include "plantablecreator.h"
#include "disks/diskinforestoremodel.h"
#include "records/plan/planresult.h"
#include "restoreimagedialog.h"
#include "service/connectionmanager.h"
#include "service/manager.h"
#include "service/v2/command.h"
#include "service/v2/commands/repository/getbunchrestorepointlist.h"
#include "service/v2/commands/repository/removedatageneration.h"
#include "service/notification/format.h"
#include "settings/retentionpolicy.h"
#include "settings/settingsimpledialog.h"
#include "stores/defaultsettings.h"
#include "storage/deletebackupdatadialog.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "stores/defaultsettings.h"
#include "testmain.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/backup/pageadvancedfilter.h"
#include "wizards/backup/pagebackupactions.h"
#include "wizards/backup/pagebackupdiskimageadvancedoptions.h"
#include "wizards/backup/pagebackupdiskimagesourceview.h"
#include "wizards/backup/pagebackuptype.h"
#include "wizards/backup/pagecompressionendencryption.h"
#include "wizards/backup/pagename.h"
#include "wizards/backup/pageretentionpolicy.h"
#include "wizards/backup/pagesource.h"
#include "wizards/backup/trynewbackupformatdialog.h"
#include "wizards/backup/postactionwidget.h"
#include "wizards/common/pagecloud.h"

using NVB::Console::MainWindow;
using NVB::GUI::BackupPlanEditWizard;
using NVB::GUI::IconManager;
using NvbTest::whenModal;
namespace Column = NVB::GUI::Models::Table::NvbPlanBackupModelInfo::Column;
namespace ProgressKeys = NVB::Common::Communication::Notification::Format::Worker::ReportProgress;

namespace {

// Pictures for scripts/screenshot.sh, only when it asks for them.
void keepPicture(QWidget* widget, const char* name)
{
    const QString dir = qEnvironmentVariable("NVB_SCREENSHOT_DIR");
    if (!dir.isEmpty())
        widget->grab().save(dir + QLatin1Char('/') + QLatin1String(name) + QStringLiteral(".png"));
}

bool command(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    const bool ok = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
    if (output)
        *output = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    return ok;
}

bool sameIcon(const QVariant& shown, IconManager::Type type)
{
    return shown.canConvert<QIcon>()
        && shown.value<QIcon>().pixmap(16).toImage() == IconManager::icon(type).pixmap(16).toImage();
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
        for (const char* name : {"a.txt", "b.txt", "photo.png"}) {
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

    void shouldKeepMailServerFromTheWindow()
    {
        MainWindow window;
        whenModal<NVB::Console::MailServerDialog>([](NVB::Console::MailServerDialog* dialog) {
            dialog->hostEdit()->setText(QStringLiteral("127.0.0.1"));
            dialog->portBox()->setValue(2525);
            dialog->passwordEdit()->setText(QStringLiteral("secret"));
            // A bad sender keeps the dialog open with its reason.
            dialog->senderEdit()->setText(QStringLiteral("not an address"));
            dialog->accept();
            QVERIFY(dialog->isVisible());
            dialog->senderEdit()->setText(QStringLiteral("backup@example.org"));
            dialog->accept();
        });
        window.findChild<QAction*>(QStringLiteral("mailServer"))->trigger();
        const NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
        QCOMPARE(settings->value(QStringLiteral("SMTP host")), QStringLiteral("127.0.0.1"));
        QCOMPARE(settings->value(QStringLiteral("SMTP port")), QStringLiteral("2525"));
        QCOMPARE(settings->value(QStringLiteral("SMTP sender")), QStringLiteral("backup@example.org"));
        const QString stored = settings->value(QStringLiteral("SMTP password"));
        QVERIFY(!stored.isEmpty() && stored != QLatin1String("secret"));
    }

    void shouldMakeAndRunPlanFromTheWindow()
    {
        MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        window.onEngineConnected();
        // The Disks tab holds what the engine read from this machine.
        QVERIFY(QTest::qWaitFor([&] { return window.disksPanel()->model()->isLoad(); }, 10000));

        // The format, then the wizard: account, name, source, finish.
        // The new format, which keeps the files in packs (checked below).
        whenModal<NVB::GUI::TryNewBackupFormatDialog>(
            [](NVB::GUI::TryNewBackupFormatDialog* dialog) { dialog->tryNewButton()->click(); });
        window.findChild<QAction*>(QStringLiteral("newPlan"))->trigger();
        auto* wizard = window.findChild<BackupPlanEditWizard*>();
        QVERIFY(wizard);
        QVERIFY(QTest::qWaitForWindowExposed(wizard));
        QCOMPARE(wizard->currentId(), int(BackupPlanEditWizard::PageBackupTypeId));
        wizard->next(); // files, as offered
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
        QAbstractItemModel* storages
            = NVB::GUI::ModelManager::instance()->create(NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Type);
        QCOMPARE(storages->rowCount(), 1);
        // The new account is chosen without a further click.
        QCOMPARE(cloud->field(QLatin1String(NVB::GUI::PlanWizardBase::PageCloud::Field_CloudName)).toString(),
            QStringLiteral("Local disk"));
        QVERIFY(cloud->isComplete());
        keepPicture(wizard, "wizard-storage");
        wizard->next();
        auto* name = qobject_cast<BackupPlanEditWizard::PageName*>(wizard->currentPage());
        QVERIFY(name);
        name->nameEdit()->setText(QStringLiteral("Console plan"));
        keepPicture(wizard, "wizard-name");
        wizard->next();
        auto* page = qobject_cast<BackupPlanEditWizard::PageSource*>(wizard->currentPage());
        QVERIFY(page);
        QVERIFY(expand(page->model(), m_volume.path()));
        QVERIFY(page->model()->setData(page->model()->indexByPath(source()), 2, Qt::CheckStateRole));
        QVERIFY(QTest::qWaitFor([&] { return page->isComplete(); }));
        keepPicture(wizard, "wizard-source");
        wizard->next();
        // Only text files: the picture beside them stays out.
        auto* filter = qobject_cast<BackupPlanEditWizard::PageAdvancedFilter*>(wizard->currentPage());
        QVERIFY(filter);
        filter->setField(QLatin1String(BackupPlanEditWizard::PageAdvancedFilter::FieldUseBackupFileTypes), true);
        filter->setField(QLatin1String(BackupPlanEditWizard::PageAdvancedFilter::FieldBackupFileTypesValue),
            QStringLiteral("*.txt; *.md"));
        // On through the schedule and the other pages; on the actions page a
        // command that leaves a mark, only after a successful backup.
        const QString mark = m_volume.path() + QStringLiteral("/post action ran");
        QString askedArchive;
        for (int steps = 0; steps < 12 && wizard->currentId() != BackupPlanEditWizard::PageSummaryId; ++steps) {
            wizard->next();
            // Enciphered: the storage must show neither names nor contents.
            if (auto* cipher = qobject_cast<BackupPlanEditWizard::PageCompressionEndEncryption*>(wizard->currentPage())) {
                cipher->encryptionBox()->setChecked(true);
                QTest::keyClicks(cipher->passwordEdit(), QStringLiteral("archive secret"));
                QTest::keyClicks(cipher->confirmEdit(), QStringLiteral("archive secret"));
                whenModal<QMessageBox>([&askedArchive](QMessageBox* box) {
                    askedArchive = box->windowTitle();
                    box->button(QMessageBox::Ok)->click();
                });
            }
            if (auto* actions = qobject_cast<BackupPlanEditWizard::PageBackupActions*>(wizard->currentPage())) {
                actions->postAction()->setActionEnabled(true);
                actions->postAction()->setProgram(QStringLiteral("\"/usr/bin/touch\" \"%1\"").arg(mark));
                QVERIFY(actions->postAction()->warningMessage().isEmpty());
            }
        }
        QCOMPARE(wizard->currentId(), int(BackupPlanEditWizard::PageSummaryId));
        QCOMPARE(askedArchive, QStringLiteral("Write down your password!"));
        QVERIFY(wizard->visitedIds().contains(BackupPlanEditWizard::PageBackupActionsId));
        keepPicture(wizard, "wizard-summary");
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

        // Run it from the toolbar; while it runs its name carries the running
        // icon, and the table told us so at least once.
        bool sawRunning = false;
        connect(list->model(), &QAbstractItemModel::dataChanged, this, [&] {
            const QModelIndex name = list->model()->index(0, Column::Name);
            if (list->model()->index(0, Column::Status).data().toInt() == 1)
                sawRunning = sawRunning || sameIcon(name.data(Qt::DecorationRole), IconManager::BackupPlanRunning);
        });
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
        // A new plan takes the new format: the two files share one pack of
        // the plan's repository, beside one index and one tree (its root
        // and one part).
        QMap<QString, int> objects;
        QString generationFolder;
        QDirIterator files(m_storage.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QStringList parts = files.next().split(QLatin1Char('/'));
            const int archive = parts.indexOf(QStringLiteral("archive"));
            if (archive <= 0)
                continue;
            ++objects[parts.value(archive + 3, parts.value(archive + 1))];
            if (parts.value(archive + 1) == QLatin1String("generations"))
                generationFolder = parts.mid(0, archive + 3).join(QLatin1Char('/'));
            if (parts.constLast() == QLatin1String("generation")) {
                QFile record(files.filePath());
                QVERIFY(record.open(QIODevice::ReadOnly));
                QVERIFY(record.readAll().contains("\"check\""));
            }
            QFile object(files.filePath());
            QVERIFY(object.open(QIODevice::ReadOnly));
            const QByteArray bytes = object.readAll();
            QVERIFY2(!bytes.contains("a.txt") && !bytes.contains("b.txt"), qPrintable(files.filePath()));
        }
        // The summary tells what the run read, found new and stored.
        const QString figures = list->model()->index(0, Column::LastRunMessage).data().toString();
        QVERIFY2(figures.contains(QStringLiteral("Read 10 bytes, new 10 bytes, stored ")), qPrintable(figures));
        QCOMPARE(objects,
            (QMap<QString, int> {{QStringLiteral("config"), 1}, {QStringLiteral("generation"), 1},
                {QStringLiteral("index"), 1}, {QStringLiteral("packs"), 1}, {QStringLiteral("parts"), 1},
                {QStringLiteral("points"), 1}}));
        QVERIFY(QFile::exists(mark));
        QVERIFY(QFile::remove(mark));
        QVERIFY(sawRunning);
        QVERIFY(
            sameIcon(list->model()->index(0, Column::Name).data(Qt::DecorationRole), IconManager::BackupPlanSuccess));
        keepPicture(&window, "console-main");

        // The global retention policy opens from the toolbar and writes
        // through as it is changed.
        whenModal<NVB::GUI::SettingSimpleDialog>([](NVB::GUI::SettingSimpleDialog* dialog) {
            auto* policy = dialog->findChild<NVB::GUI::Settings::RetentionPolicy*>();
            QVERIFY(policy);
            policy->keepVersionBox()->setChecked(true);
            policy->versionsBox()->setValue(7);
            dialog->reject();
        });
        window.findChild<QAction*>(QStringLiteral("retentionPolicy"))->trigger();
        QCOMPARE(NVB::DefaultSettings::instance()->getRetentionNumberOfVersions(), QStringLiteral("7"));

        // The panel below shows the selected plan's progress to its end...
        NVB::GUI::PlanFileProgress* progress = window.progressPanel()->fileProgress();
        QVERIFY(QTest::qWaitFor([&] { return progress->progressBar()->value() == 100; }, 10000));
        QCOMPARE(progress->progressBar()->maximum(), 100);
        QCOMPARE(progress->label(QLatin1String(ProgressKeys::FilesCopiedValue))->text(), QStringLiteral("2 of 2"));
        // ...and its history, which exports to CSV.
        NVB::Console::HistoryPanel* history = window.historyPanel();
        history->reload();
        QVERIFY(QTest::qWaitFor([&] { return history->view()->model()->rowCount() == 1; }, 10000));
        QCOMPARE(history->view()->model()->index(0, 0).data().toString(), QStringLiteral("Console plan"));
        const QString csv = m_volume.filePath(QStringLiteral("history.csv"));
        history->setExportTarget(csv);
        QSignalSpy exported(history, &NVB::Console::HistoryPanel::exported);
        QTest::mouseClick(history->exportButton(), Qt::LeftButton);
        QVERIFY(exported.wait());
        QFile saved(csv);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = saved.readAll().trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.at(1).startsWith("\"Console plan\""));
        history->kindBox()->setCurrentIndex(1); // by file: the two files copied
        QVERIFY(QTest::qWaitFor([&] { return history->view()->model()->rowCount() == 2; }, 10000));
        history->kindBox()->setCurrentIndex(0);

        // The generation is deleted from the toolbar once confirmed: its
        // objects and restore points go, and a second request finds nothing.
        namespace V2 = NVB::Common::Communication::V2;
        const QUuid storageId(list->model()->index(0, Column::StorageID).data().toString());
        const auto ask = [](const QUuid& commandId, const QSharedPointer<V2::Command::Request>& request) {
            auto* command = NVB::Common::Communication::Manager::instance()->commandFactoryV2(commandId);
            command->setRequest(request);
            command->exec();
            const bool ended = QTest::qWaitFor([command] { return command->isFinished(); }, 10000);
            command->deleteLater();
            return qMakePair(ended ? command->status() : -1, command->response());
        };
        const auto points = [&] {
            auto request = QSharedPointer<V2::Repository::GetBunchRestorePointList::Request>::create();
            request->setConnectionId(storageId);
            request->setBunchId(list->currentPlan());
            const auto reply = ask(V2::Repository::GetBunchRestorePointList::CommandId, request);
            const auto response = reply.second.dynamicCast<V2::Repository::GetBunchRestorePointList::Response>();
            return reply.first == V2::Command::Success && response ? response->restorePointList().size() : -1;
        };
        QCOMPARE(points(), 1);
        bool confirmed = false;
        whenModal<NVB::GUI::DeleteBackupDataDialog>([&confirmed](NVB::GUI::DeleteBackupDataDialog* dialog) {
            QPushButton* yes = dialog->buttonBox()->button(QDialogButtonBox::Yes);
            QTRY_VERIFY_WITH_TIMEOUT(!dialog->totalLabel()->text().isEmpty(), 10000);
            QTreeWidgetItem* bunch = dialog->tree()->topLevelItem(0)->child(0);
            QCOMPARE(bunch->childCount(), 1);
            auto* doomed = qobject_cast<QLabel*>(dialog->tree()->itemWidget(bunch->child(0), 0));
            QVERIFY(doomed && doomed->text().contains(QStringLiteral("WILL BE DELETED")));
            QVERIFY(!yes->isEnabled());
            dialog->confirmBox()->click();
            yes->click();
            confirmed = true;
        });
        QSignalSpy closed(window.findChild<NVB::Console::BackupDataDeleter*>(), &NVB::Console::BackupDataDeleter::finished);
        window.findChild<QAction*>(QStringLiteral("deleteBackupData"))->trigger();
        QVERIFY(closed.wait(20000));
        QVERIFY(confirmed);
        QCOMPARE(closed.constFirst().constFirst().toBool(), true);
        QVERIFY(!QFileInfo::exists(generationFolder + QStringLiteral("/generation")));
        QVERIFY(QDir(generationFolder).entryList(QDir::Files | QDir::NoDotAndDotDot).isEmpty());
        QCOMPARE(points(), 0);
        auto again = QSharedPointer<V2::Repository::RemoveDataGeneration::Request>::create();
        again->setConnectionId(storageId);
        again->setBunchId(list->currentPlan());
        again->setGenerationId(QUuid(QFileInfo(generationFolder).fileName()));
        QCOMPARE(ask(V2::Repository::RemoveDataGeneration::CommandId, again).first, int(V2::Command::Error));

        // With its source gone the next run fails, and the icon says so.
        QVERIFY(QDir().rename(source(), source() + QStringLiteral("-gone")));
        run->trigger();
        const bool failed = QTest::qWaitFor(
            [&] {
                return list->model()->index(0, Column::LastRunStatus).data().toInt()
                    == int(NVB::Info::Plan::PlanResult::Failed);
            },
            30000);
        QVERIFY(QDir().rename(source() + QStringLiteral("-gone"), source()));
        QVERIFY(failed);
        // Only after success: the failed run left no mark.
        QVERIFY(!QFile::exists(mark));
        QVERIFY(
            sameIcon(list->model()->index(0, Column::Name).data(Qt::DecorationRole), IconManager::BackupPlanFailed));
        // Only the failed run passes the result filter.
        history->resultBox()->setCurrentIndex(history->resultBox()->findData(8));
        QVERIFY(QTest::qWaitFor([&] { return history->planModel()->rowCount() == 2; }, 10000));
        QCOMPARE(history->view()->model()->rowCount(), 1);

        // A legacy-format plan enciphers its copies: no object is named after
        // its file or holds its bytes in clear.
        QTRY_VERIFY(!window.findChild<BackupPlanEditWizard*>());
        whenModal<NVB::GUI::TryNewBackupFormatDialog>(
            [](NVB::GUI::TryNewBackupFormatDialog* dialog) { dialog->useCurrentButton()->click(); });
        window.findChild<QAction*>(QStringLiteral("newPlan"))->trigger();
        auto* legacy = window.findChild<BackupPlanEditWizard*>();
        QVERIFY(legacy);
        QVERIFY(QTest::qWaitForWindowExposed(legacy));
        legacy->next();
        auto* storagePage = qobject_cast<NVB::GUI::PlanWizardBase::PageCloud*>(legacy->currentPage());
        QVERIFY(storagePage);
        const QModelIndex account = storagePage->list()->model()->index(0, 0);
        storagePage->list()->setCurrentIndex(account);
        QVERIFY(QMetaObject::invokeMethod(storagePage, "onCurrentItem", Q_ARG(QModelIndex, account)));
        QVERIFY(storagePage->isComplete());
        legacy->next();
        qobject_cast<BackupPlanEditWizard::PageName*>(legacy->currentPage())
            ->nameEdit()
            ->setText(QStringLiteral("Secret plan"));
        legacy->next();
        auto* legacySource = qobject_cast<BackupPlanEditWizard::PageSource*>(legacy->currentPage());
        QVERIFY(legacySource);
        QVERIFY(expand(legacySource->model(), m_volume.path()));
        QVERIFY(legacySource->model()->setData(
            legacySource->model()->indexByPath(source()), 2, Qt::CheckStateRole));
        QVERIFY(QTest::qWaitFor([&] { return legacySource->isComplete(); }));
        legacy->next();
        legacy->next();
        auto* legacyCipher = qobject_cast<BackupPlanEditWizard::PageCompressionEndEncryption*>(legacy->currentPage());
        QVERIFY(legacyCipher);
        legacyCipher->encryptionBox()->setChecked(true);
        QTest::keyClicks(legacyCipher->passwordEdit(), QStringLiteral("console secret"));
        QTest::keyClicks(legacyCipher->confirmEdit(), QStringLiteral("console secret"));
        QString asked;
        whenModal<QMessageBox>([&asked](QMessageBox* box) {
            asked = box->windowTitle();
            box->button(QMessageBox::Ok)->click();
        });
        for (int steps = 0; steps < 12 && legacy->currentId() != BackupPlanEditWizard::PageSummaryId; ++steps)
            legacy->next();
        QCOMPARE(asked, QStringLiteral("Write down your password!"));
        QCOMPARE(legacy->currentId(), int(BackupPlanEditWizard::PageSummaryId));
        legacy->button(QWizard::FinishButton)->click();
        QVERIFY(QTest::qWaitFor([&] { return list->model()->rowCount() == 2; }, 15000));
        const int row = list->model()->index(0, Column::Name).data().toString() == QLatin1String("Secret plan") ? 0 : 1;
        list->selectRow(row);
        run->trigger();
        QVERIFY(QTest::qWaitFor(
            [&] {
                return list->model()->index(row, Column::LastRunStatus).data().toInt()
                    == int(NVB::Info::Plan::PlanResult::Success);
            },
            30000));
        int sealed = 0;
        QDirIterator stored(m_storage.path(), QDir::Files, QDirIterator::Subdirectories);
        while (stored.hasNext()) {
            QFile object(stored.next());
            if (object.fileName().contains(QLatin1String("/archive/")) || object.fileName().endsWith(QLatin1String(".nvb-account")))
                continue;
            ++sealed;
            QVERIFY2(!object.fileName().contains(QLatin1String(".txt")), qPrintable(object.fileName()));
            QVERIFY(object.open(QIODevice::ReadOnly));
            const QByteArray bytes = object.readAll();
            QVERIFY(!bytes.contains("a.txt") && !bytes.contains("b.txt"));
        }
        QCOMPARE(sealed, 3); // the two text files and the picture, no filter here

        // The whole legacy backup goes at once: none of its objects stay.
        NVB::GUI::DeleteBackupDataDialog whole(QUuid(list->model()->index(row, Column::StorageID).data().toString()),
            list->currentPlan(), QUuid(), &window);
        whenModal<NVB::GUI::DeleteBackupDataDialog>([](NVB::GUI::DeleteBackupDataDialog* dialog) {
            QTRY_VERIFY_WITH_TIMEOUT(!dialog->totalLabel()->text().isEmpty(), 10000);
            QTreeWidgetItem* bunch = dialog->tree()->topLevelItem(0)->child(0);
            auto* label = qobject_cast<QLabel*>(dialog->tree()->itemWidget(bunch, 0));
            QVERIFY(label && label->text().contains(QStringLiteral("WILL BE DELETED")));
            QCOMPARE(bunch->childCount(), 1);
            dialog->confirmBox()->click();
            dialog->buttonBox()->button(QDialogButtonBox::Yes)->click();
        });
        QCOMPARE(whole.exec(), int(QDialog::Accepted));
        QDirIterator left(m_storage.path(), QDir::Files, QDirIterator::Subdirectories);
        while (left.hasNext()) {
            const QString path = left.next();
            QVERIFY2(path.contains(QLatin1String("/archive/")) || path.endsWith(QLatin1String(".nvb-account")),
                qPrintable(path));
        }
    }

    // A disk image plan made through the image pages, run, and restored over
    // the volume from the Restore image dialog; the files come back.
    void shouldImageAndRestoreVolumeFromTheWindow()
    {
        if (!QFile::exists(QStringLiteral("/dev/loop-control")) || ::geteuid() != 0)
            QSKIP("Loop devices are missing or the test does not run as root");
        const QString image = m_volume.filePath(QStringLiteral("volume.img"));
        QString device;
        QVERIFY(command(QStringLiteral("truncate"), {QStringLiteral("-s"), QStringLiteral("32M"), image}));
        QVERIFY(command(QStringLiteral("losetup"), {QStringLiteral("-f"), QStringLiteral("--show"), image}, &device));
        const auto detach = qScopeGuard([&] { command(QStringLiteral("losetup"), {QStringLiteral("-d"), device}); });
        QVERIFY(command(QStringLiteral("mkfs.ext4"), {QStringLiteral("-q"), device}));
        const QString mnt = m_volume.filePath(QStringLiteral("mnt"));
        QVERIFY(QDir().mkpath(mnt));
        const auto writeFile = [&](const QByteArray& bytes) {
            if (!command(QStringLiteral("mount"), {device, mnt}))
                return false;
            QFile file(mnt + QStringLiteral("/kept.txt"));
            const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
            file.close();
            return command(QStringLiteral("umount"), {mnt}) && written;
        };
        const QByteArray original = QByteArray("imaged\n").repeated(20000);
        QVERIFY(writeFile(original));
        const QString name = QFileInfo(device).fileName();

        MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        QTRY_VERIFY(!window.findChild<BackupPlanEditWizard*>());
        whenModal<NVB::GUI::TryNewBackupFormatDialog>(
            [](NVB::GUI::TryNewBackupFormatDialog* dialog) { dialog->tryNewButton()->click(); });
        window.findChild<QAction*>(QStringLiteral("newPlan"))->trigger();
        auto* wizard = window.findChild<BackupPlanEditWizard*>();
        QVERIFY(wizard && QTest::qWaitForWindowExposed(wizard));
        auto* type = qobject_cast<BackupPlanEditWizard::PageBackupType*>(wizard->currentPage());
        QVERIFY(type);
        type->imageButton()->setChecked(true);
        wizard->next();
        auto* storagePage = qobject_cast<NVB::GUI::PlanWizardBase::PageCloud*>(wizard->currentPage());
        QVERIFY(storagePage);
        const QModelIndex account = storagePage->list()->model()->index(0, 0);
        QVERIFY(account.isValid());
        storagePage->list()->setCurrentIndex(account);
        QVERIFY(QMetaObject::invokeMethod(storagePage, "onCurrentItem", Q_ARG(QModelIndex, account)));
        wizard->next();
        qobject_cast<BackupPlanEditWizard::PageName*>(wizard->currentPage())
            ->nameEdit()
            ->setText(QStringLiteral("Volume plan"));
        wizard->next();
        QCOMPARE(wizard->currentId(), int(BackupPlanEditWizard::PageBackupDiskImageSourceId));
        // A new image plan takes all drives; this one only the loop volume.
        QVERIFY(wizard->field(QStringLiteral("Field_AllDrives")).toBool());
        wizard->setField(QStringLiteral("Field_SelectedOnly"), true);
        wizard->next();
        auto* view = qobject_cast<BackupPlanEditWizard::PageBackupDiskImageSourceView*>(wizard->currentPage());
        QVERIFY(view);
        auto* disks = view->model();
        QVERIFY(QTest::qWaitFor([&] { return disks->isLoad() && view->isEnabled(); }, 10000));
        QVERIFY(!view->isComplete());
        QModelIndex volume;
        for (int row = 0; row < disks->rowCount() && !volume.isValid(); ++row) {
            const QModelIndex disk = disks->index(row, 0);
            if (disks->diskInfo()->disks().at(row).deviceName() == name) {
                QVERIFY(disks->setData(disk, 2, NVB::GUI::DiskInfoModel::EnabledRole));
                volume = disks->index(0, 0, disk);
            }
        }
        QVERIFY(volume.isValid());
        QVERIFY(disks->setData(volume, true, NVB::GUI::DiskInfoModel::EnabledRole));
        QVERIFY(view->isComplete());
        // No snapshot here: the page says so and reads the volume directly.
        auto* options = qobject_cast<BackupPlanEditWizard::PageBackupDiskImageAdvancedOptions*>(
            wizard->page(BackupPlanEditWizard::PageBackupDiskImageAdvancedOptionsId));
        QVERIFY(options);
        options->setInstallCheck([] { return false; });
        options->setInstallQuestion([](QWidget*) { return false; });
        wizard->next();
        QCOMPARE(wizard->currentPage(), options);
        QVERIFY(options->disableSnapshotBox()->isChecked() && !options->disableSnapshotBox()->isEnabled());
        options->blockSizeBox()->setCurrentIndex(options->blockSizeBox()->findText(QStringLiteral("256 KB")));
        for (int steps = 0; steps < 12 && wizard->currentId() != BackupPlanEditWizard::PageSummaryId; ++steps)
            wizard->next();
        QCOMPARE(wizard->currentId(), int(BackupPlanEditWizard::PageSummaryId));
        wizard->button(QWizard::FinishButton)->click();

        NVB::Console::PlanListView* list = window.backupPlans();
        int row = -1;
        QVERIFY(QTest::qWaitFor(
            [&] {
                for (int i = 0; i < list->model()->rowCount(); ++i) {
                    if (list->model()->index(i, Column::Name).data().toString() == QLatin1String("Volume plan"))
                        row = i;
                }
                return row >= 0;
            },
            15000));
        list->selectRow(row);
        window.findChild<QAction*>(QStringLiteral("runPlan"))->trigger();
        QVERIFY(QTest::qWaitFor(
            [&] {
                return list->model()->index(row, Column::LastRunStatus).data().toInt()
                    == int(NVB::Info::Plan::PlanResult::Success);
            },
            60000));
        QVERIFY(writeFile("changed after the image"));

        QAction* restore = window.findChild<QAction*>(QStringLiteral("restoreImage"));
        QVERIFY(restore->isEnabled());
        restore->trigger();
        auto* dialog = window.findChild<NVB::Console::RestoreImageDialog*>();
        QVERIFY(dialog);
        NVB::GUI::DiskInfoRestoreModel* content = dialog->imageModel();
        QAbstractItemModelTester tester(content, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(QTest::qWaitFor([&] { return content->isLoad() && dialog->targetBox()->count() > 0; }, 10000));
        // Only the imaged volume can be chosen; the image holds just that one.
        QModelIndex imaged;
        for (int i = 0; i < content->rowCount(); ++i) {
            const QModelIndex disk = content->index(i, 0);
            const bool taken = content->diskInfo()->disks().at(i).deviceName() == name;
            QCOMPARE(bool(content->flags(disk) & Qt::ItemIsUserCheckable), taken);
            if (taken)
                imaged = content->index(0, 0, disk);
        }
        QVERIFY(imaged.isValid());
        QCOMPARE(imaged.data(NVB::GUI::DiskInfoModel::EnabledRole).toInt(), 2);
        const int target = dialog->targetBox()->findText(QStringLiteral("/dev/%1 ").arg(name), Qt::MatchStartsWith);
        QVERIFY(target >= 0);
        dialog->targetBox()->setCurrentIndex(target);
        QVERIFY(dialog->restoreButton()->isEnabled());
        QTest::mouseClick(dialog->restoreButton(), Qt::LeftButton);

        NVB::Console::PlanListView* restores = window.restorePlans();
        namespace RestoreColumn = NVB::GUI::Models::Table::NvbPlanRestoreModelInfo::Column;
        QVERIFY(QTest::qWaitFor(
            [&] {
                const auto* model = restores->model();
                for (int i = 0; i < model->rowCount(); ++i) {
                    if (model->index(i, RestoreColumn::Name).data().toString() == QLatin1String("Restore Volume plan"))
                        return model->index(i, RestoreColumn::LastRunStatus).data().toInt()
                            == int(NVB::Info::Plan::PlanResult::Success);
                }
                return false;
            },
            60000));
        QVERIFY(command(QStringLiteral("mount"), {device, mnt}));
        QFile kept(mnt + QStringLiteral("/kept.txt"));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        const QByteArray back = kept.readAll();
        kept.close();
        QVERIFY(command(QStringLiteral("umount"), {mnt}));
        QCOMPARE(back, original);
    }

    // A legacy plan with block level backup: the history shows that the run
    // after a small change stored about one block, not the whole file.
    void shouldShowTheSmallSecondRunOfABlockLevelPlan()
    {
        const QString folder = m_volume.path() + QStringLiteral("/images");
        QDir().mkpath(folder);
        QFile image(folder + QStringLiteral("/disk.img"));
        QVERIFY(image.open(QIODevice::WriteOnly));
        for (int block = 0; block < 8 * 16; ++block)
            image.write(QByteArray(64 * 1024, char(block)));
        image.close();
        MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        window.onEngineConnected();
        whenModal<NVB::GUI::TryNewBackupFormatDialog>(
            [](NVB::GUI::TryNewBackupFormatDialog* dialog) { dialog->useCurrentButton()->click(); });
        window.findChild<QAction*>(QStringLiteral("newPlan"))->trigger();
        auto* wizard = window.findChild<BackupPlanEditWizard*>();
        QVERIFY(wizard && QTest::qWaitForWindowExposed(wizard));
        wizard->next(); // files, as offered
        auto* cloud = qobject_cast<NVB::GUI::PlanWizardBase::PageCloud*>(wizard->currentPage());
        QVERIFY(cloud);
        const QModelIndex account = cloud->list()->model()->index(0, 0);
        cloud->list()->setCurrentIndex(account);
        QVERIFY(QMetaObject::invokeMethod(cloud, "onCurrentItem", Q_ARG(QModelIndex, account)));
        wizard->next();
        auto* name = qobject_cast<BackupPlanEditWizard::PageName*>(wizard->currentPage());
        QVERIFY(name);
        name->nameEdit()->setText(QStringLiteral("Block plan"));
        name->blockLevelBox()->setChecked(true);
        wizard->next();
        auto* page = qobject_cast<BackupPlanEditWizard::PageSource*>(wizard->currentPage());
        QVERIFY(page && expand(page->model(), m_volume.path()));
        QVERIFY(page->model()->setData(page->model()->indexByPath(folder), 2, Qt::CheckStateRole));
        QVERIFY(QTest::qWaitFor([&] { return page->isComplete(); }));
        for (int steps = 0; steps < 12 && wizard->currentId() != BackupPlanEditWizard::PageSummaryId; ++steps)
            wizard->next();
        wizard->button(QWizard::FinishButton)->click();

        NVB::Console::PlanListView* list = window.backupPlans();
        int row = -1;
        QVERIFY(QTest::qWaitFor(
            [&] {
                for (int r = 0; r < list->model()->rowCount(); ++r)
                    row = list->model()->index(r, Column::Name).data() == QStringLiteral("Block plan") ? r : row;
                return row >= 0;
            },
            15000));
        list->selectRow(row);
        NVB::Console::HistoryPanel* history = window.historyPanel();
        for (int runs = 1; runs <= 2; ++runs) {
            if (runs == 2) {
                QVERIFY(image.open(QIODevice::ReadWrite) && image.seek(3 << 20));
                image.write("a small change");
                image.close();
            }
            window.findChild<QAction*>(QStringLiteral("runPlan"))->trigger();
            QVERIFY(QTest::qWaitFor([&] { return list->model()->index(row, Column::Status).data().toInt() == 1; }));
            QVERIFY(QTest::qWaitFor(
                [&] {
                    return list->model()->index(row, Column::Status).data().toInt() != 1
                        && list->model()->index(row, Column::LastRunStatus).data().toInt()
                        == int(NVB::Info::Plan::PlanResult::Success);
                },
                30000));
            history->reload();
            QVERIFY(QTest::qWaitFor([&] { return history->planModel()->rowCount() >= runs; }, 10000));
        }
        // Newest first: the block of 1 MiB around the change, then the file.
        QList<qint64> sizes;
        for (int r = 0; r < history->planModel()->rowCount(); ++r) {
            if (history->planModel()->index(r, 0).data() == QStringLiteral("Block plan"))
                sizes << history->planModel()->index(r, 2).data().toLongLong();
        }
        QCOMPARE(sizes.size(), 2);
        QCOMPARE(sizes.at(1), qint64(8 << 20));
        QVERIFY2(sizes.at(0) > 0 && sizes.at(0) < (1 << 20) + 4096, qPrintable(QString::number(sizes.at(0))));
    }
};

NVB_TEST_MAIN(TestConsole)
#include "tst_console.moc"
