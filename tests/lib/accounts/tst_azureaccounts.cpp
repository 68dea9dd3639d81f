#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/azure/azureadd.h"
#include "accounts/azure/azureaddcontainer.h"
#include "cloud/cloudconfig.h"
#include "modaldialog.h"

using namespace NVB::GUI::Settings;
using Account::Azure;
using NvbTest::whenModal;
namespace AZ = NVL::Cloud::Config::AzureBlob;

// The Azure dialog against Azurite, as an Azure Stack endpoint.
class TestAzureAccounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shouldUseEndpointOnlyForAzureStack();
    void shouldListAndCreateContainersOnAzurite();

private:
    void fill(Azure::Add& dialog, const QString& key);

    int m_port = 0;
};

void TestAzureAccounts::initTestCase()
{
    QFile port(qEnvironmentVariable("NVB_TEST_AZURITE_DIR") + QStringLiteral("/port"));
    if (port.open(QIODevice::ReadOnly))
        m_port = port.readAll().trimmed().toInt();
}

void TestAzureAccounts::fill(Azure::Add& dialog, const QString& key)
{
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("Azurite"));
    QTest::keyClicks(dialog.accountEdit(), QStringLiteral("devstoreaccount1"));
    QTest::keyClicks(dialog.keyEdit(), key);
    dialog.accountTypeCombo()->setCurrentIndex(
        dialog.accountTypeCombo()->findData(AZ::AccountTypes::Value::AzureStack));
    QTest::keyClicks(dialog.endpointEdit(), QStringLiteral("http://127.0.0.1:%1").arg(m_port));
}

void TestAzureAccounts::shouldUseEndpointOnlyForAzureStack()
{
    Azure::Add dialog;
    dialog.show();
    QVERIFY(dialog.endpointEdit()->isHidden());
    fill(dialog, QStringLiteral("a2V5"));
    QVERIFY(!dialog.endpointEdit()->isHidden());
    QCOMPARE(dialog.cloudConfig().value(NVL::Cloud::Api::Config::Http::Endpoint).toString(),
        QStringLiteral("127.0.0.1:%1").arg(m_port));
    dialog.accountTypeCombo()->setCurrentIndex(dialog.accountTypeCombo()->findData(AZ::AccountTypes::Value::Public));
    QVERIFY(dialog.endpointEdit()->isHidden());
    QVERIFY(!dialog.endpointEdit()->text().isEmpty());
    QVERIFY(!dialog.cloudConfig().contains(NVL::Cloud::Api::Config::Http::Endpoint));
    QCOMPARE(dialog.cloudConfig().value(AZ::AccountTypes::Key).toString(), AZ::AccountTypes::Value::Public);
}

void TestAzureAccounts::shouldListAndCreateContainersOnAzurite()
{
    if (m_port <= 0) {
        if (qEnvironmentVariableIsSet("CI"))
            QFAIL("no Azurite runs (NVB_TEST_AZURITE_DIR)");
        QSKIP("no Azurite runs (NVB_TEST_AZURITE_DIR)");
    }
    Azure::Add wrong;
    wrong.show();
    fill(wrong, QStringLiteral("d3Jvbmc="));
    QTest::mousePress(wrong.containerCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(wrong.messageLabel()->text().contains(QStringLiteral("Wrong Shared Key")), 20000);
    wrong.containerCombo()->hidePopup();
    QVERIFY(!wrong.okButton()->isEnabled());

    Azure::Add dialog;
    dialog.show();
    fill(dialog,
        QStringLiteral("Eby8vdM02xNOcqFlqUwJPLlmEtlCDXJ1OUzFT50uSRZ6IFsuFq2UVErCz4I6tq/K1SZFPTOtr/KBHBeksoGMGw=="));
    QTest::mousePress(dialog.containerCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.containersLoaded(), 20000);
    dialog.containerCombo()->hidePopup();
    const QString name = QStringLiteral("nvb-dialog-%1").arg(QDateTime::currentMSecsSinceEpoch());
    whenModal<Azure::AddContainer>([name](Azure::AddContainer* add) {
        // A dot is refused as typed.
        QTest::keyClicks(add->nameEdit(), name + QStringLiteral("."));
        QCOMPARE(add->nameEdit()->text(), name);
        add->accessCombo()->setCurrentIndex(add->accessCombo()->findData(QStringLiteral("blob")));
        add->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.addContainerButton()->click();
    QTRY_COMPARE_WITH_TIMEOUT(dialog.containerCombo()->currentText(), name, 20000);
    QVERIFY(dialog.okButton()->isEnabled());
}

QTEST_MAIN(TestAzureAccounts)
#include "tst_azureaccounts.moc"
