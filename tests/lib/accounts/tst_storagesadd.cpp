#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QtTest>

#include "accounts/sslcertmaketrustdialog.h"
#include "accounts/storagesadd.h"
#include "cloud/certificatepins.h"
#include "cloud/cloudconfig.h"
#include "cloud/info/azureblob.h"
#include "cloud/info/infofactory.h"
#include "cloud/ioperation.h"
#include "cloud/operationmanager.h"
#include "cloud/operationresult.h"
#include "enginetestpeer.h"
#include "modaldialog.h"
#include "models/models.h"
#include "service/commands/storage.h"
#include "service/commands/system.h"
#include "service/connectionmanager.h"
#include "service/servicelink.h"
#include "testmain.h"

using namespace NVB::GUI::Settings;
using NvbTest::EngineTestPeer;
using NvbTest::whenModal;
namespace System = NVB::Common::Communication::Commands::Format::System;
namespace Storage = NVB::Common::Communication::Commands::Format::Storage;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

namespace {

// An operation whose answer the test decides, so that the frame's handling
// of each error code can be driven without a provider that produces it.
class ScriptedOperation : public NVL::Cloud::IOperation
{
public:
    ScriptedOperation(const QMap<QString, QVariant>& config, int code, const QString& message,
        const QMap<QString, QVariant>& learnt = {})
        : IOperation(NVL::Cloud::OperationType::ListContainers, config)
        , m_code(code)
        , m_message(message)
        , m_learnt(learnt)
    { }

protected:
    Job job() const override
    {
        const int code = m_code;
        const QString message = m_message;
        const QMap<QString, QVariant> learnt = m_learnt;
        return [code, message, learnt](
                   NVL::Cloud::ProviderClient&, const QMap<QString, QVariant>& config, const NVL::Cloud::CancelToken&) {
            NVL::Cloud::OperationResult result = NVL::Cloud::OperationResult::failure(code, message);
            if (!learnt.isEmpty()) {
                result.config = config;
                for (auto it = learnt.cbegin(); it != learnt.cend(); ++it)
                    result.config.insert(it.key(), it.value());
            }
            return result;
        };
    }

private:
    int m_code;
    QString m_message;
    QMap<QString, QVariant> m_learnt;
};

class Probe : public Storages::Add
{
public:
    explicit Probe(NVL::Cloud::Type type, const QString& endpoint = QString())
        : Storages::Add(type)
        , m_endpoint(endpoint)
    { }

    QMap<QString, QVariant> cloudConfig() const override
    {
        QMap<QString, QVariant> config = Storages::Add::cloudConfig();
        if (!m_endpoint.isEmpty())
            config.insert(NVL::Cloud::Api::Config::Http::Endpoint, m_endpoint);
        return config;
    }

    // Runs an operation that fails with the code, as loadContainers() runs
    // a listing.
    void runFailing(int code, const QString& message, const QMap<QString, QVariant>& learnt = {})
    {
        beginLockUI();
        QSharedPointer<NVL::Cloud::IOperation> operation(
            new ScriptedOperation(cloudConfig(), code, message, learnt), &QObject::deleteLater);
        setOperation(operation);
        connect(operation.data(), &NVL::Cloud::IOperation::finished, this, &Probe::onLoadContainerOperationFinished);
        operation->run();
    }

    bool save(const QJsonObject& record, const QString& name, QString& error)
    {
        return updateAccount(record, name, error);
    }

    QModelIndex setItemIndex;
    int setItemCalls = 0;

protected:
    void onAccept() override { }
    void onSetItem(const QModelIndex& index) override
    {
        ++setItemCalls;
        setItemIndex = index;
        endLockUI();
    }
    void onAdvancedClicked() override { }

private:
    QString m_endpoint;
};

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class TestStoragesAdd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void shouldBuildLockAndReport();
    void shouldOpenOnStoredAccount();
    void shouldShowOperationErrorInRed();
    void shouldAskTrustAndListAgainForUntrustedCertificate();
    void shouldAskAboutCertificateTheFailedConnectionSaw();
    void shouldAskForDefaultEndpointWhenNoneIsTyped();
    void shouldShowCertificateFetchFailure();
    void shouldSendTheRecordAndCloseOnSuccess();
    void shouldStayOpenWhenSaveFails();
    void shouldDropOperationOnCancel();

private:
    EngineTestPeer* m_peer = nullptr;
    QString m_pem;
};

void TestStoragesAdd::initTestCase()
{
    m_pem = readFile(QStringLiteral(NVB_TEST_DATA_DIR "/test-cert.pem"));
    QVERIFY(m_pem.contains(QStringLiteral("BEGIN CERTIFICATE")));
    m_peer = new EngineTestPeer(this);
    m_peer->exportSocketPath();
    NVB::Common::Communication::ServiceLink::instance()->client()->setReconnectDelays(10, 50);
    QTRY_VERIFY(NVB::Common::Communication::ConnectionManager::instance()->isLocalManagmentConnected());
    m_peer->onCommand(QLatin1String(System::GetPeerSslCertificate::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("pem"), m_pem}, {QStringLiteral("success"), true}}));
    m_peer->onCommand(QLatin1String(System::AppendToSslStorage::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("success"), true}}));
}

void TestStoragesAdd::cleanup()
{
    QVERIFY(NVL::Cloud::OperationManager::instance().waitForDone(30000));
    QTest::qWait(50);
    QTRY_COMPARE(NVL::Cloud::OperationManager::instance().count(), 0);
}

void TestStoragesAdd::shouldBuildLockAndReport()
{
    Probe dialog(NVL::Cloud::Type::Sftp);
    dialog.show();
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(!dialog.id().isNull());
    QVERIFY(!dialog.prefix().isEmpty());
    const QMap<QString, QVariant> config = dialog.cloudConfig();
    QCOMPARE(config.value(NVL::Cloud::Config::Type).toString(), QStringLiteral("Sftp"));
    QVERIFY(!config.value(NVL::Cloud::Config::Id).toUuid().isNull());
    QVERIFY(config.value(NVL::Cloud::Config::Id) != dialog.cloudConfig().value(NVL::Cloud::Config::Id));

    // Everything but Cancel is locked while an operation runs; unlocking
    // enables everything, whatever OK was before.
    dialog.okButton()->setEnabled(true);
    dialog.beginLockUI();
    QVERIFY(!dialog.advancedButton()->isEnabled());
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(dialog.cancelButton()->isEnabled());
    dialog.endLockUI();
    QVERIFY(dialog.advancedButton()->isEnabled());
    dialog.lockWidgetsAfterError(true);
    QVERIFY(!dialog.okButton()->isEnabled());
    dialog.beginLockUI();
    dialog.endLockUI();
    QVERIFY(dialog.okButton()->isEnabled());

    // Messages are text, never markup.
    dialog.setErrorMessage(QStringLiteral("bad <thing>"));
    QVERIFY(dialog.messageLabel()->isVisible());
    QCOMPARE(dialog.messageLabel()->text(), QStringLiteral("<font color='red'>bad &lt;thing&gt;</font>"));
    dialog.setSuccessMessage(QStringLiteral("fine"));
    QCOMPARE(dialog.messageLabel()->text(), QStringLiteral("<font color='green'>fine</font>"));
    dialog.setErrorMessage(QStringLiteral("quiet"), false);
    QVERIFY(!dialog.messageLabel()->isVisible());
}

void TestStoragesAdd::shouldOpenOnStoredAccount()
{
    QStandardItemModel model(1, Column::Count);
    const QUuid id = QUuid::createUuid();
    model.setData(model.index(0, Column::DisplayName), QStringLiteral("Stored"));
    model.setData(model.index(0, Column::ID), id.toString());
    model.setData(model.index(0, Column::Prefix), QStringLiteral("nas-01"));
    Probe dialog(NVL::Cloud::Type::Sftp);
    dialog.show();
    dialog.setItem(model.index(0, 0));
    QCOMPARE(dialog.id(), id);
    QCOMPARE(dialog.prefix(), QStringLiteral("nas-01"));
    // Locked and still empty until the provider fills it, a moment later.
    QCOMPARE(dialog.setItemCalls, 0);
    QVERIFY(!dialog.advancedButton()->isEnabled());
    QTRY_COMPARE(dialog.setItemCalls, 1);
    QCOMPARE(dialog.setItemIndex, model.index(0, 0));
    QVERIFY(dialog.advancedButton()->isEnabled());
}

void TestStoragesAdd::shouldShowOperationErrorInRed()
{
    Probe dialog(NVL::Cloud::Type::S3Compatible, QStringLiteral("https://s3.example.test"));
    dialog.show();
    dialog.okButton()->setEnabled(true);
    dialog.loadContainers();
    QVERIFY(dialog.operation());
    QTRY_VERIFY(!dialog.operation());
    QVERIFY(dialog.messageLabel()->text().startsWith(QStringLiteral("<font color='red'>")));
    QVERIFY(dialog.messageLabel()->text().contains(QStringLiteral("Access key or secret key is empty")));
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(dialog.advancedButton()->isEnabled());
}

void TestStoragesAdd::shouldAskTrustAndListAgainForUntrustedCertificate()
{
    const int appends = m_peer->requestCount(QLatin1String(System::AppendToSslStorage::Name));
    const int fetches = m_peer->requestCount(QLatin1String(System::GetPeerSslCertificate::Name));
    Probe dialog(NVL::Cloud::Type::S3Compatible, QStringLiteral("https://127.0.0.1:9443"));
    dialog.show();

    // Refused: fetched to be shown, nothing trusted, nothing listed again.
    bool asked = false;
    whenModal<Account::SslCertMakeTrustDialog>([&asked](Account::SslCertMakeTrustDialog* trust) {
        asked = true;
        trust->reject();
    });
    dialog.runFailing(5, QStringLiteral("certificate not trusted"));
    QTRY_VERIFY(asked);
    QTRY_VERIFY(dialog.advancedButton()->isEnabled());
    QTest::qWait(100);
    QCOMPARE(m_peer->requestCount(QLatin1String(System::GetPeerSslCertificate::Name)), fetches + 1);
    QCOMPARE(m_peer->requestCount(QLatin1String(System::AppendToSslStorage::Name)), appends);
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(!dialog.operation());

    // Trusted: the fetched certificate goes to the engine.
    QString shownIssuer;
    whenModal<Account::SslCertMakeTrustDialog>([&shownIssuer](Account::SslCertMakeTrustDialog* trust) {
        for (const QLabel* label : trust->findChildren<QLabel*>())
            shownIssuer += label->text();
        trust->trustButton()->click();
    });
    dialog.runFailing(5, QStringLiteral("certificate not trusted"));
    QTRY_COMPARE(m_peer->requestCount(QLatin1String(System::AppendToSslStorage::Name)), appends + 1);
    QCOMPARE(m_peer->lastParams(QLatin1String(System::GetPeerSslCertificate::Name))
                 .value(QStringLiteral("endpoint"))
                 .toString(),
        QStringLiteral("https://127.0.0.1:9443"));
    QCOMPARE(
        m_peer->lastParams(QLatin1String(System::AppendToSslStorage::Name)).value(QStringLiteral("pem")).toString(),
        m_pem);
    QVERIFY(shownIssuer.contains(QStringLiteral("nvb-test-server")));
    // The listing runs again with the certificate trusted; this provider
    // then answers with its own error.
    QTRY_VERIFY(dialog.messageLabel()->text().contains(QStringLiteral("Access key or secret key is empty")));
    QTRY_VERIFY(!dialog.operation());
}

void TestStoragesAdd::shouldAskAboutCertificateTheFailedConnectionSaw()
{
    const int fetches = m_peer->requestCount(QLatin1String(System::GetPeerSslCertificate::Name));
    const QSslCertificate seen(m_pem.toLatin1());
    NVL::Cloud::CertificatePins::instance().set({});
    Probe dialog(NVL::Cloud::Type::S3Compatible, QStringLiteral("https://S3.Example.test:9443"));
    dialog.show();

    // The engine refuses the pin: its own words reach the user.
    m_peer->onCommand(QLatin1String(System::AppendToSslStorage::Name),
        EngineTestPeer::Answer::error(QStringLiteral("Exactly one certificate can be trusted, not 2")));
    QString shown;
    bool plain = true;
    whenModal<Account::SslCertMakeTrustDialog>([&shown, &plain](Account::SslCertMakeTrustDialog* trust) {
        shown = trust->text();
        for (const QLabel* label : trust->findChildren<QLabel*>())
            plain = plain && (label->textFormat() == Qt::PlainText || label->buddy());
        trust->trustButton()->click();
    });
    const QMap<QString, QVariant> learnt {{NVL::Cloud::Api::Config::Http::PeerCertificate, m_pem},
        {NVL::Cloud::Api::Config::Http::PeerCertificateErrors, QStringList {"The certificate is <b>self-signed</b>"}}};
    dialog.runFailing(5, QStringLiteral("certificate not trusted"), learnt);
    QTRY_VERIFY(dialog.messageLabel()->text().contains(QStringLiteral("Exactly one certificate")));
    QVERIFY2(shown.contains(QStringLiteral("The certificate is <b>self-signed</b>")), qPrintable(shown));
    QVERIFY(shown.contains(QStringLiteral("CN=nvb-test-server")));
    QVERIFY(
        shown.contains(NVL::Cloud::CertificatePins::fingerprintText(NVL::Cloud::CertificatePins::fingerprint(seen))));
    // Markup from the network stays text.
    QVERIFY(plain);
    QVERIFY(!NVL::Cloud::CertificatePins::instance().isPinned(QStringLiteral("s3.example.test"), 9443, seen));

    // Accepted by the engine: pinned here at once for that endpoint, before
    // the listing runs again.
    m_peer->onCommand(QLatin1String(System::AppendToSslStorage::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("success"), true}}));
    whenModal<Account::SslCertMakeTrustDialog>(
        [](Account::SslCertMakeTrustDialog* trust) { trust->trustButton()->click(); });
    dialog.runFailing(5, QStringLiteral("certificate not trusted"), learnt);
    QTRY_VERIFY(NVL::Cloud::CertificatePins::instance().isPinned(QStringLiteral("s3.example.test"), 9443, seen));
    QCOMPARE(m_peer->lastParams(QLatin1String(System::AppendToSslStorage::Name)).value("endpoint").toString(),
        QStringLiteral("https://S3.Example.test:9443"));
    QTRY_VERIFY(dialog.messageLabel()->text().contains(QStringLiteral("Access key or secret key is empty")));
    QCOMPARE(m_peer->requestCount(QLatin1String(System::GetPeerSslCertificate::Name)), fetches);
    QVERIFY(!NVL::Cloud::CertificatePins::instance().isPinned(QStringLiteral("other.example.test"), 9443, seen));
    NVL::Cloud::CertificatePins::instance().set({});
}

void TestStoragesAdd::shouldAskForDefaultEndpointWhenNoneIsTyped()
{
    Probe dialog(NVL::Cloud::Type::AzureBlob);
    dialog.show();
    whenModal<Account::SslCertMakeTrustDialog>([](Account::SslCertMakeTrustDialog* trust) { trust->reject(); });
    const int fetches = m_peer->requestCount(QLatin1String(System::GetPeerSslCertificate::Name));
    dialog.runFailing(5, QStringLiteral("certificate not trusted"));
    QTRY_COMPARE(m_peer->requestCount(QLatin1String(System::GetPeerSslCertificate::Name)), fetches + 1);
    const QString endpoint = m_peer->lastParams(QLatin1String(System::GetPeerSslCertificate::Name))
                                 .value(QStringLiteral("endpoint"))
                                 .toString();
    const QUrl preset = NVL::Cloud::Info::InfoFactory::create(NVL::Cloud::Type::AzureBlob)
                            .dynamicCast<NVL::Cloud::Info::AzureBlob>()
                            ->defaultEndpoint();
    QVERIFY(!preset.host().isEmpty());
    QVERIFY2(endpoint.contains(preset.host()), qPrintable(endpoint));
    QTRY_VERIFY(dialog.advancedButton()->isEnabled());
}

void TestStoragesAdd::shouldShowCertificateFetchFailure()
{
    m_peer->onCommand(QLatin1String(System::GetPeerSslCertificate::Name),
        EngineTestPeer::Answer::error(QStringLiteral("Can't get the certificate of 127.0.0.1:9443")));
    Probe dialog(NVL::Cloud::Type::S3Compatible, QStringLiteral("https://127.0.0.1:9443"));
    dialog.show();
    dialog.runFailing(5, QStringLiteral("certificate not trusted"));
    QTRY_VERIFY(dialog.messageLabel()->text().contains(QStringLiteral("Can't get the certificate of 127.0.0.1:9443")));
    QVERIFY(dialog.messageLabel()->text().contains(QStringLiteral("red")));
    QVERIFY(!dialog.okButton()->isEnabled());
    m_peer->onCommand(QLatin1String(System::GetPeerSslCertificate::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("pem"), QString()}}));
    dialog.runFailing(5, QStringLiteral("certificate not trusted"));
    QTRY_VERIFY(dialog.messageLabel()->text().contains(QStringLiteral("Peer certificate is empty")));
    m_peer->onCommand(QLatin1String(System::GetPeerSslCertificate::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("pem"), m_pem}, {QStringLiteral("success"), true}}));
}

void TestStoragesAdd::shouldSendTheRecordAndCloseOnSuccess()
{
    m_peer->onCommand(QLatin1String(Storage::SaveStorage::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("SaveStorage"), QStringLiteral("success")}}));
    Probe dialog(NVL::Cloud::Type::Sftp);
    dialog.setPrefix(QStringLiteral("office"));
    QSignalSpy done(&dialog, &Storages::Add::updateComplite);
    QString error;
    QVERIFY(dialog.save({{QStringLiteral("Address"), QStringLiteral("nas")}}, QStringLiteral("My NAS"), error));
    QVERIFY(done.wait(5000));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    const QJsonObject params = m_peer->lastParams(QLatin1String(Storage::SaveStorage::Name));
    QCOMPARE(QUuid(params.value(QStringLiteral("ID")).toString()), dialog.id());
    QCOMPARE(params.value(QStringLiteral("displayName")).toString(), QStringLiteral("My NAS"));
    QCOMPARE(params.value(QStringLiteral("prefix")).toString(), QStringLiteral("office"));
    QCOMPARE(params.value(QStringLiteral("type")).toInt(), 33);
    QCOMPARE(params.value(QStringLiteral("params")).toObject().value(QStringLiteral("Address")).toString(),
        QStringLiteral("nas"));
    QVERIFY(params.contains(QStringLiteral("profile")));
}

void TestStoragesAdd::shouldStayOpenWhenSaveFails()
{
    Probe dialog(NVL::Cloud::Type::Sftp);
    dialog.show();
    QSignalSpy failed(&dialog, &Storages::Add::updateError);
    QString boxText;
    whenModal<QMessageBox>([&boxText](QMessageBox* box) {
        boxText = box->windowTitle() + QLatin1Char('|') + box->text();
        box->accept();
    });
    m_peer->onCommand(QLatin1String(Storage::SaveStorage::Name),
        EngineTestPeer::Answer::error(QStringLiteral("The storage account has no name")));
    QString error;
    QVERIFY(dialog.save({}, QString(), error));
    QVERIFY(failed.wait(5000));
    QTRY_COMPARE(boxText, QStringLiteral("Error on save/update operation!|The storage account has no name"));
    QVERIFY(dialog.isVisible());
    m_peer->onCommand(QLatin1String(Storage::SaveStorage::Name),
        EngineTestPeer::Answer::reply({{QStringLiteral("SaveStorage"), QStringLiteral("error")}}));
    boxText.clear();
    whenModal<QMessageBox>([&boxText](QMessageBox* box) {
        boxText = box->text();
        box->accept();
    });
    QVERIFY(dialog.save({}, QStringLiteral("x"), error));
    QTRY_COMPARE(boxText, QStringLiteral("Error on exec command"));
    QVERIFY(dialog.isVisible());
}

void TestStoragesAdd::shouldDropOperationOnCancel()
{
    Probe dialog(NVL::Cloud::Type::S3Compatible, QStringLiteral("https://s3.example.test"));
    dialog.show();
    dialog.loadContainers();
    const QSharedPointer<NVL::Cloud::IOperation> running = dialog.operation();
    QVERIFY(running);
    dialog.cancelButton()->click();
    QVERIFY(!dialog.operation());
    QVERIFY(running->isRemoved());
    // An answer that still arrives changes nothing.
    emit running->finished();
    QVERIFY(!dialog.messageLabel()->isVisible());
}

NVB_TEST_MAIN(TestStoragesAdd)
#include "tst_storagesadd.moc"
