#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/azure/azurevalidator.h"
#include "accounts/openstack/openstackadd.h"
#include "accounts/openstack/openstacknamevalidator.h"
#include "accounts/openstack/oraclecloudadd.h"
#include "accounts/s3/amazons3compatiblevalidator.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/providers/swiftclient.h"
#include "swifttestserver.h"

using namespace NVB::GUI::Settings;
using Account::OpenStack;
namespace OS = NVL::Cloud::Config::OpenStack;

// The OpenStack family's dialog: name rules beside S3's and Azure's, the endpoint that
// follows the Keystone choice, and the dialog against a real Swift through
// our Keystone v3 fake.
class TestOpenStackAccounts : public QObject
{
    Q_OBJECT

private slots:
    void shouldDifferFromBucketRulesOnlyBySpace_data();
    void shouldDifferFromBucketRulesOnlyBySpace();
    void shouldNameAuthenticationInEndpoint();
    void shouldListContainersWithRegionThroughKeystone();

private:
    NvbTest::SwiftTestServer m_server;
};

void TestOpenStackAccounts::shouldDifferFromBucketRulesOnlyBySpace_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("s3");
    QTest::addColumn<int>("swift");
    QTest::addColumn<int>("azure");
    const int ok = QValidator::Acceptable;
    const int bad = QValidator::Invalid;
    QTest::newRow("space") << "my " << bad << ok << bad;
    QTest::newRow("dot") << "my." << ok << ok << bad;
    QTest::newRow("dot dot") << "a.." << bad << bad << bad;
    QTest::newRow("leading space") << " a" << bad << bad << bad;
    QTest::newRow("plain") << "abc" << ok << ok << ok;
    QTest::newRow("hyphen") << "ab-" << ok << ok << ok;
    QTest::newRow("slash") << "ab/" << bad << bad << bad;
}

void TestOpenStackAccounts::shouldDifferFromBucketRulesOnlyBySpace()
{
    QFETCH(QString, input);
    QFETCH(int, s3);
    QFETCH(int, swift);
    QFETCH(int, azure);
    int pos = input.size();
    QCOMPARE(int(Account::AmazonS3Compatible::Validator().validate(input, pos)), s3);
    QCOMPARE(int(OpenStack::NameValidator().validate(input, pos)), swift);
    QCOMPARE(int(Account::Azure::Validator().validate(input, pos)), azure);
}

void TestOpenStackAccounts::shouldNameAuthenticationInEndpoint()
{
    OpenStack::Add dialog(NVL::Cloud::Type::Openstack, {}, true, true, true);
    dialog.endpointEdit()->setText(QStringLiteral("https://swift.example.test/v2.0"));
    dialog.keystoneV3Box()->setChecked(true);
    QCOMPARE(dialog.endpointEdit()->text(), QStringLiteral("https://swift.example.test/v3"));
    dialog.keystoneV2Box()->setChecked(true);
    QVERIFY(!dialog.keystoneV3Box()->isChecked());
    QCOMPARE(dialog.endpointEdit()->text(), QStringLiteral("https://swift.example.test/v2.0"));
    dialog.keystoneV2Box()->setChecked(false);
    QCOMPARE(dialog.endpointEdit()->text(), QStringLiteral("https://swift.example.test/v1.0"));
    QCOMPARE(dialog.cloudConfig().value(OS::AuthType).toInt(), 1);

    // Oracle: presets, no Keystone v2; a preset keeps the v3 choice.
    Account::OracleCloud::Add oracle;
    QVERIFY(!oracle.keystoneV2Box());
    oracle.keystoneV3Box()->setChecked(true);
    const QList<QAction*> presets = oracle.presetButton()->menu()->actions();
    QCOMPARE(presets.size(), 7);
    presets.at(2)->trigger();
    QVERIFY(oracle.endpointEdit()->text().startsWith(QStringLiteral("https://ap1.")));
    QVERIFY(oracle.endpointEdit()->text().endsWith(QStringLiteral("/auth/v3")));
}

void TestOpenStackAccounts::shouldListContainersWithRegionThroughKeystone()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    // The catalog's Swift account holds at least this container.
    const QMap<QString, QVariant> direct {{NVL::Cloud::Config::Type, NVL::Cloud::Name::Openstack},
        {OS::Username, m_server.accessKey()}, {OS::ApiKey, m_server.secretKey()},
        {NVL::Cloud::Api::Config::Http::Endpoint, m_server.endpoint() + QStringLiteral("/auth/v1.0")},
        {NVL::Cloud::Api::Config::Http::UseSsl, false}};
    const int made = NVL::Cloud::SwiftClient()
                         .createContainer(direct, {{QStringLiteral("Name"), QStringLiteral("nvb keystone")}}, {})
                         .errorCode;
    QVERIFY(made == NVL::Cloud::OperationError::NoError || made == NVL::Cloud::OperationError::AlreadyExists);

    OpenStack::Add dialog(NVL::Cloud::Type::Openstack, {}, true, true, true);
    dialog.show();
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("Keystone"));
    QTest::keyClicks(dialog.userEdit(), QStringLiteral("demo"));
    QTest::keyClicks(dialog.apiKeyEdit(), QStringLiteral("secret"));
    QTest::keyClicks(dialog.endpointEdit(), QStringLiteral("http://127.0.0.1:%1").arg(m_server.keystonePort()));
    dialog.keystoneV3Box()->setChecked(true);
    dialog.domainKindCombo()->setCurrentIndex(1);
    // The v3 box needs its domain before the list may be opened.
    QVERIFY(!dialog.containerCombo()->isEnabled());
    QTest::keyClicks(dialog.domainEdit(), QStringLiteral("Default"));
    dialog.scopeBox()->setChecked(true);
    dialog.projectKindCombo()->setCurrentIndex(1);
    QTest::keyClicks(dialog.projectEdit(), QStringLiteral("demo"));
    QVERIFY(dialog.endpointEdit()->text().endsWith(QStringLiteral("/v3")));
    QVERIFY(dialog.containerCombo()->isEnabled());

    QTest::mousePress(dialog.containerCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.containersLoaded(), 20000);
    dialog.containerCombo()->hidePopup();
    const int index = dialog.containerCombo()->findText(QStringLiteral("nvb keystone (RegionOne)"));
    QVERIFY(index >= 0);
    dialog.containerCombo()->setCurrentIndex(index);
    QVERIFY(dialog.okButton()->isEnabled());
    const QMap<QString, QVariant> config = dialog.cloudConfig();
    QCOMPARE(config.value(OS::AuthType).toInt(), 3);
    QCOMPARE(config.value(OS::Auth_Keystore_V3::Region).toString(), QStringLiteral("RegionOne"));
    QCOMPARE(config.value(OS::Auth_Keystore_V3::UseScope::ProjectName).toString(), QStringLiteral("demo"));
    QCOMPARE(config.value(NVL::Cloud::OperationConfig::ContainerName).toString(), QStringLiteral("nvb keystone"));

    // A wrong key: the identity service's refusal, OK off, the key kept.
    QTest::keyClicks(dialog.apiKeyEdit(), QStringLiteral("x"));
    QVERIFY(!dialog.okButton()->isEnabled());
    QTest::mousePress(dialog.containerCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.messageLabel()->text().contains(QStringLiteral("refused")), 20000);
    dialog.containerCombo()->hidePopup();
    QVERIFY(!dialog.okButton()->isEnabled());
    QCOMPARE(dialog.apiKeyEdit()->text(), QStringLiteral("secretx"));
}

QTEST_MAIN(TestOpenStackAccounts)
#include "tst_openstackaccounts.moc"
