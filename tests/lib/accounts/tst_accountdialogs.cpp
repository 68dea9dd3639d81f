#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStackedLayout>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include "accounts/advanced/advanced.h"
#include "accounts/local/local.h"
#include "accounts/local/localadd.h"
#include "accounts/selectitem.h"
#include "accounts/selectstandalon.h"
#include "accounts/sftp/sftp.h"
#include "accounts/sftp/sftpadd.h"
#include "accounts/sshhostkeydialog.h"
#include "accounts/storages.h"
#include "accounts/storageseditlist.h"
#include "cloud/cloudconfig.h"
#include "cloud/ioperation.h"
#include "cloud/operationmanager.h"
#include "cloud/sshprivatekey.h"
#include "crypt/cryptns.h"
#include "engineprocess.h"
#include "modaldialog.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "service/connectionmanager.h"
#include "sftptestserver.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "testmain.h"

using namespace NVB::GUI;
using namespace NVB::GUI::Settings;
using namespace NVB::GUI::Settings::Account;
using NvbTest::EngineProcess;
using NvbTest::SftpTestServer;
using NvbTest::whenModal;
namespace Column = Models::Table::NvbStorageConnectionModelInfo::Column;

namespace {

void type(QLineEdit* edit, const QString& text)
{
    edit->clear();
    QTest::keyClicks(edit, text);
}

} // namespace

class TestAccountDialogs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    void shouldAddEditAndRemoveLocalAccountOnThePage();
    void shouldRefuseRelativeLocalPath();
    void shouldAddEditAndRemoveSftpAccountOnThePage_data();
    void shouldAddEditAndRemoveSftpAccountOnThePage();
    void shouldShowServersErrorForWrongPassword();
    void shouldForgetListingCancelledWhileRunning();
    void shouldReadKeyFileOffTheGuiThread();
    void shouldAskForPassphraseOfEncryptedKey();
    void shouldOfferUnknownHostKeyAndConnectOnceAccepted();
    void shouldKeepProxyKeyApartFromRecord();

private:
    void fillSftp(Sftp::Add* dialog, const QString& name, bool withKey, const QString& password);
    int rowOf(const QString& name) const;
    QJsonObject record(const QString& name) const;
    Select::Item* tile(Storages& page, NVL::Cloud::Type type) const;

    EngineProcess* m_engine = nullptr;
    StorageConnectionsModelCreator m_creator;
    QAbstractItemModel* m_model = nullptr;
    QTemporaryDir m_home;
    QTemporaryDir m_remote;
    SftpTestServer m_server;
    QString m_sshdDir = m_server.dir();
    int m_port = m_server.port();
    QString m_user = m_server.user();
    QString m_password = m_server.password();
};

void TestAccountDialogs::initTestCase()
{
    // SFTP checks host keys against ~/.ssh/known_hosts: a home of our own.
    QVERIFY(m_home.isValid());
    QVERIFY(QDir(m_home.path()).mkpath(QStringLiteral(".ssh")));
    qputenv("HOME", m_home.path().toUtf8());

    m_engine = new EngineProcess;
    QVERIFY2(m_engine->start(), m_engine->output().constData());
    m_engine->exportSocketPath();
    QVERIFY(QTest::qWaitFor(
        [] {
            const auto connection = NVB::Common::Communication::ConnectionManager::instance();
            return connection && connection->isLocalManagmentConnected();
        },
        10000));
    QVERIFY(ModelManager::instance()->registrateCreator(m_creator));
    m_model = ModelManager::instance()->create(Models::Table::NvbStorageConnectionModelInfo::Type);
    QVERIFY(m_model);
    QTest::qWait(200);
    QCOMPARE(m_model->rowCount(), 0);

    // The tests without a server still run; each SFTP test asks again.
    if (!m_server.isAvailable())
        return;
    QVERIFY(
        QFile::copy(m_sshdDir + QStringLiteral("/known_hosts"), m_home.path() + QStringLiteral("/.ssh/known_hosts")));
    // The test writes as root; the server lists as the test user.
    const passwd* account = ::getpwnam(m_user.toLocal8Bit().constData());
    QVERIFY(account);
    QVERIFY(m_remote.isValid());
    QCOMPARE(::chown(QFile::encodeName(m_remote.path()).constData(), account->pw_uid, account->pw_gid), 0);
    QVERIFY(QDir(m_remote.path()).mkpath(QStringLiteral("NVB_existing")));
}

void TestAccountDialogs::cleanupTestCase()
{
    if (m_engine)
        QVERIFY(m_engine->stop());
    delete m_engine;
}

void TestAccountDialogs::cleanup()
{
    QVERIFY(NVL::Cloud::OperationManager::instance().waitForDone(60000));
    QTRY_COMPARE(NVL::Cloud::OperationManager::instance().count(), 0);
    QTRY_VERIFY(!QApplication::activeModalWidget());
}

int TestAccountDialogs::rowOf(const QString& name) const
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->index(row, Column::DisplayName).data().toString() == name)
            return row;
    }
    return -1;
}

QJsonObject TestAccountDialogs::record(const QString& name) const
{
    return m_model->index(rowOf(name), Column::DetailParams).data().toJsonObject();
}

Select::Item* TestAccountDialogs::tile(Storages& page, NVL::Cloud::Type type) const
{
    auto* selector = page.findChild<SelectStandalon*>();
    return selector ? selector->item(int(type)) : nullptr;
}

void TestAccountDialogs::fillSftp(Sftp::Add* dialog, const QString& name, bool withKey, const QString& password)
{
    type(dialog->displayNameEdit(), name);
    type(dialog->serverEdit(), QStringLiteral("127.0.0.1"));
    type(dialog->pathEdit(), m_remote.path() + QStringLiteral("/"));
    dialog->portBox()->setValue(m_port);
    type(dialog->userEdit(), m_user);
    if (withKey) {
        dialog->authCombo()->setCurrentIndex(Sftp::Add::PrivateKey);
        type(dialog->keyPathEdit(), m_sshdDir + QStringLiteral("/user_key"));
    } else {
        dialog->authCombo()->setCurrentIndex(Sftp::Add::Password);
        type(dialog->passwordEdit(), password);
    }
}

void TestAccountDialogs::shouldAddEditAndRemoveLocalAccountOnThePage()
{
    QTemporaryDir folder;
    Storages page;
    page.resize(800, 500);
    page.show();
    QVERIFY(page.editList());
    QCOMPARE(page.stack()->currentIndex(), 0);

    // Add, through the File System tile.
    QString prefix;
    whenModal<Local::Add>([&](Local::Add* dialog) {
        QVERIFY(!dialog->okButton()->isEnabled());
        type(dialog->displayNameEdit(), QStringLiteral("Backup disk"));
        type(dialog->pathEdit(), folder.path());
        prefix = dialog->prefix();
        QVERIFY(dialog->okButton()->isEnabled());
        QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
    });
    Select::Item* local = tile(page, NVL::Cloud::Type::FileSystem);
    QVERIFY(local);
    QTest::mouseClick(local, Qt::LeftButton);
    // The click returns once the watcher saw the row.
    QCOMPARE(m_model->rowCount(), 1);
    const int row = rowOf(QStringLiteral("Backup disk"));
    QVERIFY(row >= 0);
    QCOMPARE(m_model->index(row, Column::Type).data().toInt(), 1);
    QCOMPARE(record(QStringLiteral("Backup disk")).value(QStringLiteral("Path")).toString(),
        folder.path() + QStringLiteral("/"));
    QCOMPARE(m_model->index(row, Column::Prefix).data().toString(), prefix);
    QVERIFY(QFileInfo(folder.path() + QStringLiteral("/NVB_") + prefix).isDir());

    // It is listed, and its view shows the record.
    QListView* list = page.editList()->view();
    QCOMPARE(list->model()->rowCount(), 1);
    const QModelIndex listed = list->model()->index(0, 0);
    QCOMPARE(listed.data().toString(), QStringLiteral("Backup disk"));
    // The page shows the account just added.
    QCOMPARE(page.editList()->currentIndex(), listed);
    auto* view = qobject_cast<Local*>(page.stack()->currentWidget());
    QVERIFY(view);
    QCOMPARE(view->title(), QStringLiteral("Backup disk"));
    QVERIFY(page.editList()->editButton()->isEnabled());

    // Edit: the dialog fills itself from the row, the watcher waits for it.
    whenModal<Local::Add>([&](Local::Add* dialog) {
        QVERIFY(QTest::qWaitFor([dialog] { return !dialog->displayNameEdit()->text().isEmpty(); }, 5000));
        QCOMPARE(dialog->pathEdit()->text(), folder.path() + QStringLiteral("/"));
        type(dialog->displayNameEdit(), QStringLiteral("Renamed disk"));
        QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
    });
    QTest::mouseClick(page.editList()->editButton(), Qt::LeftButton);
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->index(0, Column::DisplayName).data().toString(), QStringLiteral("Renamed disk"));
    QTRY_COMPARE(view->title(), QStringLiteral("Renamed disk"));
    QCOMPARE(page.editList()->currentIndex().data().toString(), QStringLiteral("Renamed disk"));

    // Remove, after the question.
    QString question;
    whenModal<QMessageBox>([&question](QMessageBox* box) {
        question = box->windowTitle() + QLatin1Char('|') + box->text();
        box->button(QMessageBox::Yes)->click();
    });
    QTest::mouseClick(page.editList()->removeButton(), Qt::LeftButton);
    QCOMPARE(question, QStringLiteral("Are you sure?|Delete \"Renamed disk\" account?"));
    QCOMPARE(m_model->rowCount(), 0);
    QTRY_COMPARE(page.stack()->currentIndex(), 0);
}

void TestAccountDialogs::shouldRefuseRelativeLocalPath()
{
    Local::Add dialog;
    dialog.show();
    type(dialog.displayNameEdit(), QStringLiteral("Relative"));
    type(dialog.pathEdit(), QStringLiteral("backups/here"));
    QTest::mouseClick(dialog.okButton(), Qt::LeftButton);
    QCOMPARE(
        dialog.messageLabel()->text(), QStringLiteral("<font color='red'>Wrong local container specified!</font>"));
    QVERIFY(dialog.isVisible());
    // With and without a final slash the folder is the same.
    type(dialog.pathEdit(), QStringLiteral("/srv/backup"));
    const QString folder = dialog.backupFolder();
    type(dialog.pathEdit(), QStringLiteral("/srv/backup/"));
    QCOMPARE(dialog.backupFolder(), folder);
    QVERIFY(folder.startsWith(QStringLiteral("/srv/backup/NVB_")));
}

void TestAccountDialogs::shouldAddEditAndRemoveSftpAccountOnThePage_data()
{
    QTest::addColumn<bool>("withKey");
    QTest::newRow("password") << false;
    QTest::newRow("private key") << true;
}

void TestAccountDialogs::shouldAddEditAndRemoveSftpAccountOnThePage()
{
    QFETCH(bool, withKey);
    if (!m_server.require(__FILE__, __LINE__))
        return;
    const QString name = withKey ? QStringLiteral("NAS by key") : QStringLiteral("NAS by password");
    Storages page;
    page.resize(800, 500);
    page.show();

    QString shownPath;
    QString success;
    QStringList prefixes;
    bool okBeforeTest = true;
    whenModal<Sftp::Add>([&](Sftp::Add* dialog) {
        fillSftp(dialog, name, withKey, m_password);
        okBeforeTest = dialog->okButton()->isEnabled();
        QTest::mouseClick(dialog->testButton(), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([dialog] { return dialog->isTested(); }, 60000));
        QVERIFY(dialog->okButton()->isEnabled());
        shownPath = dialog->pathEdit()->text();
        success = dialog->messageLabel()->text();
        // The destination's backup prefixes are offered once it is tested.
        Advanced advanced(*dialog, !dialog->canRequestPrefixes(), dialog);
        advanced.show();
        QTest::mouseClick(advanced.prefixCombo(), Qt::LeftButton);
        QVERIFY(QTest::qWaitFor([&advanced] { return advanced.prefixCombo()->count() > 1; }, 60000));
        advanced.prefixCombo()->hidePopup();
        for (int i = 0; i < advanced.prefixCombo()->count(); ++i)
            prefixes.append(advanced.prefixCombo()->itemText(i));
        advanced.close();
        QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
    });
    QTest::mouseClick(tile(page, NVL::Cloud::Type::Sftp), Qt::LeftButton);
    // OK needs the fields, not a test; the test is what offers the prefixes.
    QVERIFY(okBeforeTest);
    QCOMPARE(success, QStringLiteral("<font color='green'>Connection Successful</font>"));
    QCOMPARE(shownPath, m_remote.path());
    QVERIFY(prefixes.contains(QStringLiteral("existing")));
    QVERIFY(prefixes.contains(Advanced::defaultPrefix()));

    const int row = rowOf(name);
    QVERIFY(row >= 0);
    QCOMPARE(m_model->index(row, Column::Type).data().toInt(), 33);
    const QJsonObject stored = record(name);
    QCOMPARE(stored.value(QStringLiteral("Address")).toString(), QStringLiteral("127.0.0.1"));
    QCOMPARE(stored.value(QStringLiteral("Port")).toInt(), m_port);
    QCOMPARE(stored.value(QStringLiteral("Path")).toString(), m_remote.path());
    QCOMPARE(stored.value(QStringLiteral("User")).toString(), m_user);
    // No secret in the clear anywhere in the record.
    const QString text = QString::fromUtf8(QJsonDocument(stored).toJson());
    if (withKey) {
        const QString key = SftpTestServer::readFile(m_sshdDir + QStringLiteral("/user_key"));
        QVERIFY(!stored.contains(QStringLiteral("Password")));
        QVERIFY(!text.contains(QStringLiteral("PRIVATE KEY")));
        QCOMPARE(SHARED::cryptNS::decrypt_local_password(stored.value(QStringLiteral("PrivateKey")).toString()), key);
    } else {
        QVERIFY(!stored.contains(QStringLiteral("PrivateKey")));
        QVERIFY(!text.contains(m_password));
        QCOMPARE(
            SHARED::cryptNS::decrypt_local_password(stored.value(QStringLiteral("Password")).toString()), m_password);
    }

    // The view shows the account.
    const QModelIndex listed
        = page.editList()
              ->view()
              ->model()
              ->match(page.editList()->view()->model()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly)
              .value(0);
    QVERIFY(listed.isValid());
    page.editList()->setCurrentIndex(listed);
    auto* view = qobject_cast<Sftp*>(page.stack()->currentWidget());
    QVERIFY(view);
    QCOMPARE(view->fieldText(QStringLiteral("KeepAlive")), QStringLiteral("no"));
    QVERIFY(!view->isFieldVisible(QStringLiteral("Password")));

    // Edit: opening tests the stored account by itself.
    whenModal<Sftp::Add>([&](Sftp::Add* dialog) {
        QVERIFY(QTest::qWaitFor([dialog] { return dialog->isTested() && dialog->okButton()->isEnabled(); }, 60000));
        if (!withKey)
            QCOMPARE(dialog->passwordEdit()->text(), m_password);
        QCOMPARE(dialog->authCombo()->currentIndex(), withKey ? 1 : 0);
        type(dialog->displayNameEdit(), name + QStringLiteral(" 2"));
        dialog->keepAliveBox()->setChecked(true);
        QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
    });
    QTest::mouseClick(page.editList()->editButton(), Qt::LeftButton);
    QVERIFY(rowOf(name + QStringLiteral(" 2")) >= 0);
    QVERIFY(record(name + QStringLiteral(" 2")).value(QStringLiteral("KeepAlive")).toBool());
    QTRY_COMPARE(view->fieldText(QStringLiteral("KeepAlive")), QStringLiteral("yes"));

    // Remove.
    whenModal<QMessageBox>([](QMessageBox* box) { box->button(QMessageBox::Yes)->click(); });
    QTest::mouseClick(page.editList()->removeButton(), Qt::LeftButton);
    QCOMPARE(rowOf(name + QStringLiteral(" 2")), -1);
}

void TestAccountDialogs::shouldShowServersErrorForWrongPassword()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    Sftp::Add dialog;
    dialog.show();
    fillSftp(&dialog, QStringLiteral("Wrong"), false, QStringLiteral("not-the-password"));
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QVERIFY(dialog.operation());
    QTRY_VERIFY_WITH_TIMEOUT(!dialog.operation(), 60000);
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(!dialog.isTested());
    // The same login, made directly, fails with the text the dialog shows.
    const auto direct = NVL::Cloud::OperationManager::instance().listing(
        dialog.cloudConfig(), QString(), QStringLiteral("/"), QString(), 1);
    QSignalSpy finished(direct.data(), &NVL::Cloud::IOperation::finished);
    direct->run();
    QVERIFY(finished.wait(60000));
    direct->remove();
    QVERIFY(direct->isError());
    QCOMPARE(dialog.messageLabel()->text(),
        QStringLiteral("<font color='red'>%1</font>").arg(direct->errorMessage().toHtmlEscaped()));
    QVERIFY(dialog.messageLabel()->isVisible());
    // Typing the right one clears the failure; OK follows the fields again.
    type(dialog.passwordEdit(), m_password);
    QVERIFY(dialog.okButton()->isEnabled());
    QVERIFY(!dialog.isTested());
    QVERIFY(!dialog.messageLabel()->isVisible());
}

void TestAccountDialogs::shouldForgetListingCancelledWhileRunning()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    Sftp::Add dialog;
    dialog.show();
    fillSftp(&dialog, QStringLiteral("Cancelled"), false, m_password);
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    const QSharedPointer<NVL::Cloud::IOperation> running = dialog.operation();
    QVERIFY(running);
    QVERIFY(!dialog.advancedButton()->isEnabled());
    QTest::mouseClick(dialog.cancelButton(), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(!dialog.operation());
    QVERIFY(running->isRemoved());
    QVERIFY(NVL::Cloud::OperationManager::instance().waitForDone(60000));
    QTest::qWait(50);
    // A finish that still comes is ignored.
    emit running->finished();
    QVERIFY(!dialog.messageLabel()->isVisible());
    QVERIFY(!dialog.isTested());
    QVERIFY(!dialog.okButton()->isEnabled());
}

void TestAccountDialogs::shouldReadKeyFileOffTheGuiThread()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    QTemporaryDir dir;
    const QString fifo = dir.filePath(QStringLiteral("key.fifo"));
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    Sftp::Add dialog;
    dialog.show();
    fillSftp(&dialog, QStringLiteral("Fifo"), true, QString());

    // Whoever opens the FIFO for reading waits for a writer. This one comes
    // only once the test has seen the message, or after ten seconds, so a
    // GUI thread blocked on the FIFO shows up as a message after the writer.
    std::promise<void> release;
    std::atomic_bool writerCame{false};
    std::thread writer([fifo, &writerCame, released = release.get_future()] {
        released.wait_for(std::chrono::seconds(10));
        writerCame = true;
        const int fd = ::open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK);
        if (fd >= 0)
            ::close(fd);
    });
    const auto join = qScopeGuard([&writer, &release] {
        release.set_value();
        writer.join();
    });
    type(dialog.keyPathEdit(), fifo);
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QVERIFY(QTest::qWaitFor([&dialog] { return dialog.messageLabel()->isVisible(); }, 15000));
    QVERIFY2(!writerCame, "the message waited for the FIFO's writer");
    QVERIFY2(dialog.messageLabel()->text().contains(QStringLiteral("is not a regular file")),
        qPrintable(dialog.messageLabel()->text()));
    QVERIFY(!dialog.operation());
    QVERIFY(!dialog.isTested());

    // A file too large to be a key is not read either.
    QFile big(dir.filePath(QStringLiteral("big")));
    QVERIFY(big.open(QIODevice::WriteOnly));
    QVERIFY(big.resize(NVL::Cloud::SshPrivateKey::MaxSize + 1));
    big.close();
    type(dialog.keyPathEdit(), big.fileName());
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.messageLabel()->text().contains(QStringLiteral("larger than 64 KiB")));
}

void TestAccountDialogs::shouldAskForPassphraseOfEncryptedKey()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    Sftp::Add dialog;
    dialog.show();
    fillSftp(&dialog, QStringLiteral("Encrypted"), true, QString());
    QVERIFY(dialog.passphraseEdit()->isHidden());
    type(dialog.keyPathEdit(), m_sshdDir + QStringLiteral("/enc_key"));
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QTRY_VERIFY(dialog.passphraseEdit()->isVisible());
    QVERIFY(!dialog.operation());
    QVERIFY(dialog.messageLabel()->text().contains(QStringLiteral("passphrase")));

    type(dialog.passphraseEdit(), SftpTestServer::readFile(m_sshdDir + QStringLiteral("/enc_passphrase")).trimmed());
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QVERIFY(QTest::qWaitFor([&dialog] { return dialog.isTested(); }, 60000));
    // Key and passphrase travel together, each enciphered in the record.
    const auto config = dialog.cloudConfig();
    QVERIFY(config.value(NVL::Cloud::Config::Network::Sftp::PrivateKey).toString().contains("PRIVATE KEY"));
    QVERIFY(!config.value(NVL::Cloud::Config::Network::Sftp::Passphrase).toString().isEmpty());
}

void TestAccountDialogs::shouldOfferUnknownHostKeyAndConnectOnceAccepted()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    const QString knownHosts = m_home.path() + QStringLiteral("/.ssh/known_hosts");
    QVERIFY(QFile::remove(knownHosts));
    const auto restore = qScopeGuard([this, knownHosts] {
        QFile::remove(knownHosts);
        QFile::copy(m_sshdDir + QStringLiteral("/known_hosts"), knownHosts);
    });
    const QString fingerprint = SftpTestServer::readFile(m_sshdDir + QStringLiteral("/host_fingerprint")).trimmed();

    Sftp::Add dialog;
    dialog.show();
    fillSftp(&dialog, QStringLiteral("New host"), false, m_password);

    // Refused once: nothing is learnt.
    QString asked;
    whenModal<SshHostKeyDialog>([&asked](SshHostKeyDialog* question) {
        asked = question->text();
        question->reject();
    });
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(!asked.isEmpty(), 60000);
    QVERIFY2(asked.contains(fingerprint), qPrintable(asked));
    QVERIFY2(asked.contains(QStringLiteral("[127.0.0.1]:%1").arg(m_port)), qPrintable(asked));
    QTRY_VERIFY(!QApplication::activeModalWidget());
    QVERIFY(!QFileInfo::exists(knownHosts));
    QVERIFY(!dialog.isTested());

    // Accepted: recorded for that host:port, and the test goes through.
    whenModal<SshHostKeyDialog>([](SshHostKeyDialog* question) { question->acceptButton()->click(); });
    QTest::mouseClick(dialog.testButton(), Qt::LeftButton);
    QVERIFY(QTest::qWaitFor([&dialog] { return dialog.isTested(); }, 60000));
    QVERIFY(SftpTestServer::readFile(knownHosts).startsWith(QStringLiteral("[127.0.0.1]:%1 ssh-ed25519 ").arg(m_port)));
    QCOMPARE(dialog.messageLabel()->text(), QStringLiteral("<font color='green'>Connection Successful</font>"));
}

void TestAccountDialogs::shouldKeepProxyKeyApartFromRecord()
{
    // The record spells it "UseProy" (the converter's tests hold that); the
    // dialog's own configuration must keep the configuration's spelling.
    Sftp::Add dialog;
    dialog.useProxyBox()->setChecked(true);
    const auto own = dialog.cloudConfig();
    QVERIFY(own.value(NVL::Cloud::Config::Network::UseProxy).toBool());
    QVERIFY(!own.contains(QStringLiteral("UseProy")));
}

NVB_TEST_MAIN(TestAccountDialogs)
#include "tst_accountdialogs.moc"
