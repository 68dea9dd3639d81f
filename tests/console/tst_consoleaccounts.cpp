#include <QComboBox>
#include <QDialogButtonBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/accountfactory.h"
#include "accounts/google/googleadd.h"
#include "accounts/google/googleaddauthenticationaccount.h"
#include "accounts/s3/amazons3compatibleadd.h"
#include "accounts/s3/amazons3compatibleaddcontainer.h"
#include "accounts/storages.h"
#include "cloud/storageaccountconfigformat.h"
#include "crypt/cryptns.h"
#include "engineprocess.h"
#include "mainwindow.h"
#include "modaldialog.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "plantablecreator.h"
#include "service/connectionmanager.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "swifttestserver.h"
#include "testmain.h"

using NVB::GUI::Settings::Account::AmazonS3Compatible;
using NVB::GUI::Settings::Account::Google;
using NvbTest::whenModal;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
namespace Record = NVB::Info::StorageAccountConfigFormat;

// Cloud accounts added from the console's storage tab, against the real
// engine and a real S3 server (OpenStack Swift with s3api).
class TestConsoleAccounts : public QObject
{
    Q_OBJECT

private:
    NvbTest::EngineProcess m_engine;
    NvbTest::SwiftTestServer m_server;
    NVB::Console::PlanTableCreator m_plans;
    NVB::GUI::StorageConnectionsModelCreator m_storages;
    QTemporaryDir m_googleDir;
    QProcess m_google;

private slots:
    void initTestCase()
    {
        QVERIFY2(m_engine.start(), m_engine.output().constData());
        m_engine.exportSocketPath();
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_plans));
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_storages));
    }

    void cleanupTestCase()
    {
        m_google.kill();
        m_google.waitForFinished(5000);
        QVERIFY(m_engine.stop());
    }

    void shouldAddS3AccountAndFindItsBucketAgain()
    {
        if (!m_server.require(__FILE__, __LINE__))
            return;
        NVB::Console::MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        window.onEngineConnected();
        auto* page = window.findChild<NVB::GUI::Settings::Storages*>();
        QVERIFY(page);

        // Named in upper case here, listed in lower case by the server: the
        // edited account must find it again all the same.
        const QString bucket = QStringLiteral("nvb-console-%1").arg(QDateTime::currentMSecsSinceEpoch());
        whenModal<AmazonS3Compatible::Add>([this, bucket](AmazonS3Compatible::Add* dialog) {
            QTest::keyClicks(dialog->displayNameEdit(), QStringLiteral("Swift S3"));
            QTest::keyClicks(dialog->accessKeyEdit(), m_server.accessKey());
            QTest::keyClicks(dialog->secretKeyEdit(), m_server.secretKey());
            QTest::keyClicks(dialog->endpointEdit(), QStringLiteral("http://") + m_server.endpoint());
            QTest::mousePress(dialog->bucketCombo(), Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(dialog->containersLoaded(), 20000);
            dialog->bucketCombo()->hidePopup();
            whenModal<AmazonS3Compatible::AddContainer>([bucket](AmazonS3Compatible::AddContainer* add) {
                QTest::keyClicks(add->nameEdit(), bucket);
                add->buttonBox()->button(QDialogButtonBox::Ok)->click();
            });
            dialog->addBucketButton()->click();
            QTRY_COMPARE_WITH_TIMEOUT(dialog->bucketCombo()->currentText(), bucket, 20000);
            QVERIFY(dialog->okButton()->isEnabled());
            QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
        });
        page->onCreateSelected(int(NVL::Cloud::Type::S3Compatible));

        QAbstractItemModel* storages
            = NVB::GUI::ModelManager::instance()->create(NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Type);
        QTRY_COMPARE(storages->rowCount(), 1);
        QCOMPARE(storages->index(0, Column::Type).data().toInt(), int(NVL::Cloud::Type::S3Compatible));
        QCOMPARE(storages->index(0, Column::DisplayName).data().toString(), QStringLiteral("Swift S3"));
        const QJsonObject record = storages->index(0, Column::DetailParams).data().toJsonObject();
        QCOMPARE(record.value(Record::Cloud::ContainerName).toString(), bucket);
        QCOMPARE(record.value(Record::Cloud::AmazonS3Like::Signature).toInt(), 4);
        QVERIFY(record.value(Record::Cloud::AmazonS3Like::SecretKey).toString() != m_server.secretKey());
        QCOMPARE(
            SHARED::cryptNS::decrypt_local_password(record.value(Record::Cloud::AmazonS3Like::SecretKey).toString()),
            m_server.secretKey());

        // Opened again, the account lists its buckets by itself and selects
        // the stored one.
        QScopedPointer<QDialog> edit(NVB::GUI::Settings::Account::AccountFactory::edit(storages->index(0, 0), &window));
        auto* dialog = qobject_cast<AmazonS3Compatible::Add*>(edit.data());
        QVERIFY(dialog);
        dialog->show();
        QTRY_VERIFY_WITH_TIMEOUT(dialog->containersLoaded(), 20000);
        QCOMPARE(dialog->bucketCombo()->currentText(), bucket);
        QVERIFY(dialog->okButton()->isEnabled());
        dialog->reject();
    }

    // A Google account signed in with a service account's key, against our
    // fake of Google's token endpoint and JSON API; the engine keeps every
    // credential of it enciphered.
    void shouldAddGoogleServiceAccount()
    {
        m_google.start(QStringLiteral("python3"), {QStringLiteral(NVB_GOOGLE_FAKE), m_googleDir.path()});
        QVERIFY(m_google.waitForStarted(10000));
        const QString portFile = m_googleDir.filePath(QStringLiteral("port"));
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(portFile); }, 20000));
        QFile port(portFile);
        QVERIFY(port.open(QIODevice::ReadOnly));
        qputenv("NVB_GOOGLE_STORAGE_URL", "http://127.0.0.1:" + port.readAll());

        NVB::Console::MainWindow window;
        window.show();
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        window.onEngineConnected();
        auto* page = window.findChild<NVB::GUI::Settings::Storages*>();
        QVERIFY(page);
        const QString key = m_googleDir.filePath(QStringLiteral("key.json"));
        whenModal<Google::Add>([key](Google::Add* dialog) {
            QTest::keyClicks(dialog->displayNameEdit(), QStringLiteral("Google SA"));
            whenModal<Google::Add::AuthenticationAccount>([key](Google::Add::AuthenticationAccount* account) {
                QVERIFY(account->importFile(key));
                account->buttonBox()->button(QDialogButtonBox::Ok)->click();
            });
            dialog->authenticationCombo()->setCurrentIndex(Google::Add::ServiceAccount);
            QTest::mousePress(dialog->bucketCombo(), Qt::LeftButton);
            QTRY_VERIFY_WITH_TIMEOUT(dialog->containersLoaded(), 20000);
            dialog->bucketCombo()->hidePopup();
            dialog->bucketCombo()->setCurrentIndex(dialog->bucketCombo()->findText(QStringLiteral("nvb-seeded")));
            QVERIFY(dialog->okButton()->isEnabled());
            QTest::mouseClick(dialog->okButton(), Qt::LeftButton);
        });
        page->onCreateSelected(int(NVL::Cloud::Type::GoogleStorage));

        QAbstractItemModel* storages
            = NVB::GUI::ModelManager::instance()->create(NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Type);
        auto googleRow = [storages] {
            for (int row = 0; row < storages->rowCount(); ++row) {
                if (storages->index(row, Column::Type).data().toInt() == int(NVL::Cloud::Type::GoogleStorage))
                    return row;
            }
            return -1;
        };
        QTRY_VERIFY(googleRow() >= 0);
        const int row = googleRow();
        QCOMPARE(storages->index(row, Column::DisplayName).data().toString(), QStringLiteral("Google SA"));
        const QJsonObject record = storages->index(row, Column::DetailParams).data().toJsonObject();
        namespace GoogleRecord = Record::Cloud::GoogleStorage;
        QCOMPARE(record.value(GoogleRecord::AuthType).toInt(), 1);
        QCOMPARE(record.value(Record::Cloud::ContainerName).toString(), QStringLiteral("nvb-seeded"));
        QCOMPARE(SHARED::cryptNS::decrypt_local_password(record.value(GoogleRecord::SAccount::ProjectId).toString()),
            QStringLiteral("nvb-project"));
        QFile keyFile(key);
        QVERIFY(keyFile.open(QIODevice::ReadOnly));
        QCOMPARE(SHARED::cryptNS::decrypt_local_password(record.value(GoogleRecord::SAccount::PrivateKey).toString()),
            QString::fromLatin1(keyFile.readAll().toBase64()));
    }
};

NVB_TEST_MAIN(TestConsoleAccounts)
#include "tst_consoleaccounts.moc"
