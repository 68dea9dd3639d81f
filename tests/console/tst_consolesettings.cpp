#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

#include "core/apppath.h"
#include "crypt/cryptns.h"
#include "engineprocess.h"
#include "mainwindow.h"
#include "masterpasswordgate.h"
#include "modaldialog.h"
#include "models/modelmanager.h"
#include "planlistview.h"
#include "plantablecreator.h"
#include "records/plan/backupfile.h"
#include "records/plan/restorefile.h"
#include "service/commands/plan.h"
#include "service/commands/system.h"
#include "service/connectionmanager.h"
#include "settings/advanced.h"
#include "settings/application.h"
#include "settings/checkmasterpassworddialog.h"
#include "settings/license.h"
#include "settings/movedatabase.h"
#include "settings/network.h"
#include "settings/repositorystatusdialog.h"
#include "settings/setmasterpassworddialog.h"
#include "settings/settingdialog.h"
#include "settings/ssltrustedstoragedialog.h"
#include "sql/database.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "stores/defaultsettings.h"
#include "synccommand.h"
#include "testmain.h"

using namespace NVB::GUI::Settings;
using NVB::GUI::SettingDialog;
using NVB::GUI::SslTrustedStorageDialog;
using NvbTest::whenModal;
namespace System = NVB::Common::Communication::Commands::Format::System;

// The settings dialog opened from the console, against the real engine.
class TestConsoleSettings : public QObject
{
    Q_OBJECT

private:
    // One home for console and engine, as on a user's machine: both must
    // agree on the settings and on where the database lies.
    NvbTest::EngineProcess m_engine {qEnvironmentVariable("NVB_HOME")};
    NVB::Console::PlanTableCreator m_plans;
    NVB::GUI::StorageConnectionsModelCreator m_storages;

    // What a process reading the settings file now would see.
    static QString storedOnDisk(const QString& key)
    {
        const auto* live = NVB::DefaultSettings::instance();
        return NVB::DefaultSettings(live->filePath(), NVB::DefaultSettings::defaultValues()).value(key);
    }

    // Answers every message box with Yes or OK while the test goes on.
    static void closeMessageBoxes(QObject* owner)
    {
        auto* timer = new QTimer(owner);
        QObject::connect(timer, &QTimer::timeout, [] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box && box->button(QMessageBox::Yes))
                box->button(QMessageBox::Yes)->click();
            else if (box)
                box->accept();
        });
        timer->start(20);
    }

    static QString selfSignedPem()
    {
        QTemporaryDir dir;
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
            {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("rsa:2048"),
                QStringLiteral("-nodes"), QStringLiteral("-subj"), QStringLiteral("/CN=pinned.test"),
                QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-keyout"),
                dir.filePath(QStringLiteral("key.pem")), QStringLiteral("-out"),
                dir.filePath(QStringLiteral("cert.pem"))});
        if (!openssl.waitForFinished(20000) || openssl.exitCode() != 0)
            return QString();
        QFile file(dir.filePath(QStringLiteral("cert.pem")));
        return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(m_engine.start(), m_engine.output().constData());
        m_engine.exportSocketPath();
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_plans));
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_storages));
    }

    void cleanupTestCase() { QVERIFY(m_engine.stop()); }

    void shouldChangeSettingsAndAskForMasterPasswordAfterwards()
    {
        NVB::Console::MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        const QString pem = selfSignedPem();
        QVERIFY(!pem.isEmpty());
        const auto pinned = NvbTest::SyncCommand::run(QString::fromLatin1(System::AppendToSslStorage::Name),
            {{QLatin1String(System::AppendToSslStorage::Request::EndPoint), QStringLiteral("127.0.0.1:8443")},
                {QLatin1String(System::AppendToSslStorage::Request::Pem), pem}});
        QVERIFY2(pinned.answered && !pinned.isError, qPrintable(pinned.errorString));
        closeMessageBoxes(this);

        bool opened = false;
        whenModal<SettingDialog>([&opened](SettingDialog* dialog) {
            opened = true;
            QCOMPARE(dialog->tabs()->count(), 6);
            // The edition follows the installation's config file.
            QCOMPARE(dialog->licensePage()->editionLabel()->text(), QStringLiteral("Free edition"));
            QVERIFY(dialog->licensePage()->allowsLabel()->text().contains(
                QStringLiteral("Encryption: not in this edition")));
            dialog->advancedPage()->threadBox()->setValue(7);
            QCOMPARE(storedOnDisk(QStringLiteral("MultiThread threads count")), QStringLiteral("7"));

            // The engine's pin list, shown and emptied from the dialog.
            whenModal<SslTrustedStorageDialog>([](SslTrustedStorageDialog* ssl) {
                QTRY_COMPARE_WITH_TIMEOUT(ssl->list()->topLevelItemCount(), 1, 10000);
                QCOMPARE(ssl->list()->topLevelItem(0)->text(0), QStringLiteral("127.0.0.1:8443"));
                ssl->list()->topLevelItem(0)->setSelected(true);
                ssl->removeButton()->click();
                QTRY_COMPARE_WITH_TIMEOUT(ssl->list()->topLevelItemCount(), 0, 10000);
                QVERIFY(ssl->errorLabel()->isHidden());
                ssl->reject();
            });
            dialog->networkPage()->sslCertificatesButton()->click();

            whenModal<SetMasterPasswordDialog>([](SetMasterPasswordDialog* set) {
                QTest::keyClicks(set->passwordEdit(), QStringLiteral("guard"));
                QTest::keyClicks(set->confirmEdit(), QStringLiteral("guard"));
                set->buttonBox()->button(QDialogButtonBox::Ok)->click();
            });
            QTest::mouseClick(dialog->applicationPage()->masterPasswordBox(), Qt::LeftButton);
            QVERIFY(dialog->applicationPage()->masterPasswordBox()->isChecked());
            dialog->reject();
        });
        const QString config = NVB::Defines::AppPath::to().config() + QStringLiteral("/nvbBackup.conf");
        QVERIFY(QDir().mkpath(QFileInfo(config).absolutePath()));
        QFile edition(config);
        QVERIFY(edition.open(QIODevice::WriteOnly));
        edition.write("<nvbBackup edition=\"standalone\" license=\"free\"/>");
        edition.close();
        QAction* settings = window.findChild<QAction*>(QStringLiteral("settings"));
        settings->trigger();
        QFile::remove(config);
        QVERIFY(opened);
        QCOMPARE(storedOnDisk(QStringLiteral("MasterPassword")),
            SHARED::cryptNS::encrypt_local_password(QStringLiteral("guard")));
        const auto pins = NvbTest::SyncCommand::run(QString::fromLatin1(System::ReadFromSslStorage::Name));
        QVERIFY(pins.answered);
        QCOMPARE(pins.data.value(QLatin1String(System::ReadFromSslStorage::Reply::Certificates)).toArray().size(), 0);

        // Now the dialog is behind the password: a wrong one is refused, the
        // right one opens it.
        bool asked = false;
        opened = false;
        whenModal<CheckMasterPasswordDialog>([&asked](CheckMasterPasswordDialog* check) {
            asked = true;
            QTest::keyClicks(check->passwordEdit(), QStringLiteral("guess"));
            check->buttonBox()->button(QDialogButtonBox::Ok)->click();
            QVERIFY(check->isVisible());
            check->passwordEdit()->clear();
            QTest::keyClicks(check->passwordEdit(), QStringLiteral("guard"));
            check->buttonBox()->button(QDialogButtonBox::Ok)->click();
        });
        whenModal<SettingDialog>([&opened](SettingDialog* dialog) {
            opened = true;
            dialog->reject();
        });
        settings->trigger();
        QVERIFY(asked);
        QVERIFY(opened);

        // Three wrong tries and the console stays shut.
        whenModal<CheckMasterPasswordDialog>([](CheckMasterPasswordDialog* check) {
            for (int i = 0; i < NVB::Console::MasterPasswordGate::MaxTries; ++i) {
                check->passwordEdit()->clear();
                QTest::keyClicks(check->passwordEdit(), QStringLiteral("wrong %1").arg(i));
                check->buttonBox()->button(QDialogButtonBox::Ok)->click();
            }
        });
        QVERIFY(!NVB::Console::MasterPasswordGate::unlock(&window));
        NVB::DefaultSettings::instance()->setMasterPassword(QString());
    }

    void shouldMoveTheDatabaseAndKeepThePlans()
    {
        const auto savePlan = [](const QString& name) {
            NVB::Info::Plan::BackupFile plan;
            plan.setId(QUuid::createUuid());
            plan.setName(name);
            plan.setItems({QStringLiteral("/tmp")});
            const auto reply = NvbTest::SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
            return reply.answered && !reply.isError;
        };
        const auto planNames = [] {
            QStringList names;
            namespace Plan = NVB::Common::Communication::Commands::Format::Plan;
            const auto reply = NvbTest::SyncCommand::run(QString::fromLatin1(Plan::GetList::Name));
            for (const QJsonValue& plan : reply.data.value(QLatin1String(Plan::GetList::Reply::Key)).toArray())
                names.append(plan.toObject().value(QLatin1String(Plan::DataType::Info::Name)).toString());
            names.sort();
            return names;
        };
        NVB::Console::MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        QVERIFY(savePlan(QStringLiteral("Before the move")));
        QTRY_COMPARE_WITH_TIMEOUT(window.backupPlans()->model()->rowCount(), 1, 10000);
        const QString before = NVB::SQL::Database::connectionString();
        QVERIFY2(QFileInfo(before).isFile(), qPrintable(before));
        QTemporaryDir folder;
        const QString target = folder.filePath(QStringLiteral("nvbackup.db"));
        closeMessageBoxes(this);

        QString shown;
        whenModal<SettingDialog>([&](SettingDialog* dialog) {
            whenModal<Application::MoveDatabase>([&](Application::MoveDatabase* move) {
                QCOMPARE(move->pathEdit()->text(), before);
                QVERIFY(!move->buttonBox()->button(QDialogButtonBox::Ok)->isEnabled());
                move->setTargetFolder(folder.path());
                move->buttonBox()->button(QDialogButtonBox::Ok)->click();
                QTRY_VERIFY_WITH_TIMEOUT(!move->isVisible() || !move->errorLabel()->isHidden(), 30000);
                QVERIFY2(move->errorLabel()->isHidden(), qPrintable(move->errorLabel()->text()));
            });
            dialog->applicationPage()->moveButton()->click();
            shown = dialog->applicationPage()->locationLabel()->toolTip();
            dialog->reject();
        });
        window.findChild<QAction*>(QStringLiteral("settings"))->trigger();

        QCOMPARE(storedOnDisk(QStringLiteral("DatabasePath")), target);
        QCOMPARE(NVB::SQL::Database::connectionString(), target);
        QCOMPARE(shown, target);
        QVERIFY(QFileInfo(target).isFile());
        QVERIFY(!QFileInfo::exists(before));
        // The engine keeps working on the new file: a plan saved now is in it.
        QVERIFY(savePlan(QStringLiteral("After the move")));
        QCOMPARE(planNames(), QStringList({QStringLiteral("After the move"), QStringLiteral("Before the move")}));
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("moved"));
            db.setDatabaseName(target);
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
            QVERIFY(db.open());
            QSqlQuery query(QStringLiteral("SELECT name FROM plans ORDER BY name"), db);
            QStringList stored;
            while (query.next())
                stored.append(query.value(0).toString());
            QCOMPARE(stored, QStringList({QStringLiteral("After the move"), QStringLiteral("Before the move")}));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("moved"));
        QTRY_COMPARE_WITH_TIMEOUT(window.backupPlans()->model()->rowCount(), 2, 10000);
    }

    // A reinstalled machine: the engine's store is gone, the storage is
    // not. The account added again and synchronized from the settings
    // dialog, the old backup restores byte for byte.
    void shouldRestoreFromAStorageReadBackIntoAFreshStore()
    {
        const auto info = [](const QUuid& plan) {
            return NvbTest::SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
                .data.value(QStringLiteral("planInfo"))
                .toObject();
        };
        const auto runToSuccess = [&info](const QUuid& plan) {
            const auto started = NvbTest::SyncCommand::run(
                QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
            return started.answered && !started.isError
                && QTest::qWaitFor(
                    [&] { return info(plan).value(QStringLiteral("LastRunStatus")).toInt() == 6; }, 30000);
        };
        const auto addAccount = [](const QString& path) {
            const QUuid id = QUuid::createUuid();
            const auto saved = NvbTest::SyncCommand::run(QStringLiteral("SaveStorage"),
                {{QStringLiteral("ID"), id.toString()}, {QStringLiteral("displayName"), QStringLiteral("Backup disk")},
                    {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("home")},
                    {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), path}}}});
            return saved.answered && !saved.isError ? id : QUuid();
        };
        const auto savePlan = [](const NVB::Info::Plan::Base& plan) {
            const auto reply = NvbTest::SyncCommand::run(QStringLiteral("CommonPlanEdit"),
                {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
            return reply.answered && !reply.isError;
        };
        QTemporaryDir storage;
        QTemporaryDir source;
        QTemporaryDir target;
        QByteArray bytes(700 * 1024, Qt::Uninitialized);
        for (int i = 0; i < bytes.size(); ++i)
            bytes[i] = char((quint32(i) * 7919u) >> 3);
        QFile file(source.filePath(QStringLiteral("report.bin")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();

        NVB::Console::MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        const auto restartOnAnEmptyStore = [&] {
            // Wherever the store was moved to, it goes; the new one takes
            // the default place.
            const QString store = NVB::SQL::Database::connectionString();
            if (!m_engine.stop() || !QTest::qWaitFor([&] { return !connection->isLocalManagmentConnected(); }, 10000))
                return false;
            for (const char* suffix : {"", "-wal", "-shm"})
                QFile::remove(store + QLatin1String(suffix));
            return NVB::DefaultSettings::instance()->setValue(QStringLiteral("DatabasePath"), QString())
                && m_engine.start() && QTest::qWaitFor([&] { return connection->isLocalManagmentConnected(); }, 15000);
        };
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        QVERIFY(restartOnAnEmptyStore());
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Reports"));
        plan.setStorage(addAccount(storage.path()));
        plan.setItems({source.path()});
        QVERIFY(savePlan(plan));
        QVERIFY2(runToSuccess(plan.id()), QJsonDocument(info(plan.id())).toJson().constData());

        // A reinstallation: the engine starts on an empty store.
        QVERIFY(restartOnAnEmptyStore());
        const QUuid account = addAccount(storage.path());
        QVERIFY(!account.isNull());

        QStringList said;
        whenModal<SettingDialog>([&](SettingDialog* dialog) {
            whenModal<RepositoryStatusDialog>([&](RepositoryStatusDialog* sync) {
                QTRY_VERIFY_WITH_TIMEOUT(sync->storageBox()->findData(account) >= 0, 10000);
                sync->storageBox()->setCurrentIndex(sync->storageBox()->findData(account));
                sync->synchronizeButton()->click();
                QTRY_COMPARE_WITH_TIMEOUT(
                    sync->stateLabel()->text(), QStringLiteral("Synchronization finished"), 30000);
                QVERIFY(sync->synchronizeButton()->isEnabled());
                for (int i = 0; i < sync->statusList()->count(); ++i)
                    said << sync->statusList()->item(i)->text();
                sync->reject();
            });
            dialog->applicationPage()->synchronizeButton()->click();
            dialog->reject();
        });
        window.findChild<QAction*>(QStringLiteral("settings"))->trigger();
        QVERIFY2(said.contains(QStringLiteral("Synchronization finished: 1 restore points added, 0 removed")),
            qPrintable(said.join(QLatin1Char('\n'))));

        NVB::Info::Plan::RestoreFile restore;
        restore.setId(QUuid::createUuid());
        restore.setName(QStringLiteral("Reports back"));
        restore.setStorage(account);
        restore.setRestorePoint(QStringLiteral("NVB_Archive\\%1\\now").arg(plan.id().toString(QUuid::WithoutBraces)));
        restore.setRestoreToOriginalLocation(false);
        restore.setDestination(target.path());
        QVERIFY(savePlan(restore));
        QVERIFY2(runToSuccess(restore.id()), QJsonDocument(info(restore.id())).toJson().constData());
        QFile restored(target.path() + source.filePath(QStringLiteral("report.bin")));
        QVERIFY(restored.open(QIODevice::ReadOnly));
        QVERIFY(restored.readAll() == bytes);
        QVERIFY(
            !NvbTest::SyncCommand::run(QStringLiteral("PlanRemove"), {{QStringLiteral("ID"), restore.id().toString()}})
                 .isError);
    }
};

NVB_TEST_MAIN(TestConsoleSettings)
#include "tst_consolesettings.moc"
