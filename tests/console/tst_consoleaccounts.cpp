#include <QComboBox>
#include <QDialogButtonBox>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/accountfactory.h"
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

private slots:
    void initTestCase()
    {
        QVERIFY2(m_engine.start(), m_engine.output().constData());
        m_engine.exportSocketPath();
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_plans));
        QVERIFY(NVB::GUI::ModelManager::instance()->registrateCreator(m_storages));
    }

    void cleanupTestCase() { QVERIFY(m_engine.stop()); }

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
};

NVB_TEST_MAIN(TestConsoleAccounts)
#include "tst_consoleaccounts.moc"
