#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/lifecycle/amazonlifecyclepolicyedit.h"
#include "accounts/s3/amazones3chineadd.h"
#include "accounts/s3/amazons3compatibleadd.h"
#include "accounts/s3/amazons3compatibleaddcontainer.h"
#include "accounts/s3/amazons3compatiblevalidator.h"
#include "accounts/s3/minioadd.h"
#include "accounts/s3/wasabiadd.h"
#include "cloud/cloudconfig.h"
#include "modaldialog.h"
#include "swifttestserver.h"

using namespace NVB::GUI::Settings;
using Account::AmazonS3Compatible;
using NvbTest::whenModal;

// The S3 family's dialogs: the bucket name rules as typed, the new bucket
// dialog, the presets of the family, and the dialog against a real S3
// server (OpenStack Swift with s3api) from the first click on the bucket
// list to an enabled OK.
class TestS3Accounts : public QObject
{
    Q_OBJECT

private slots:
    void shouldJudgeBucketNameAsTyped_data();
    void shouldJudgeBucketNameAsTyped();
    void shouldEnableNewBucketOnlyForFreshLongNames();
    void shouldPresetEndpointsAndRegionsOfTheFamily();
    void shouldListCreateAndChooseBucketsOnRealServer();
    void shouldKeepWhatWasTypedWhenSecretIsWrong();
    void shouldEditOnlyOurTransitionRules();

private:
    NvbTest::SwiftTestServer m_server;
};

void TestS3Accounts::shouldJudgeBucketNameAsTyped_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("pos");
    QTest::addColumn<int>("state");
    QTest::newRow("empty") << "" << 0 << int(QValidator::Acceptable);
    QTest::newRow("first is a dash") << "-a" << 2 << int(QValidator::Invalid);
    QTest::newRow("one letter") << "a" << 1 << int(QValidator::Intermediate);
    QTest::newRow("letters") << "abc" << 3 << int(QValidator::Acceptable);
    QTest::newRow("underscore") << "ab_" << 3 << int(QValidator::Acceptable);
    QTest::newRow("second dot of three") << "a.." << 3 << int(QValidator::Invalid);
    QTest::newRow("one dot") << "ab." << 3 << int(QValidator::Acceptable);
    QTest::newRow("space") << "ab " << 3 << int(QValidator::Invalid);
    QTest::newRow("slash") << "ab/" << 3 << int(QValidator::Invalid);
    // Only the character before the cursor counts: a bad paste in the middle
    // is left to the server.
    QTest::newRow("pasted in the middle") << "a!!bc" << 5 << int(QValidator::Acceptable);
    QTest::newRow("upper case") << "ABC" << 3 << int(QValidator::Acceptable);
}

void TestS3Accounts::shouldJudgeBucketNameAsTyped()
{
    QFETCH(QString, input);
    QFETCH(int, pos);
    QFETCH(int, state);
    AmazonS3Compatible::Validator validator;
    QCOMPARE(int(validator.validate(input, pos)), state);
}

void TestS3Accounts::shouldEnableNewBucketOnlyForFreshLongNames()
{
    AmazonS3Compatible::AddContainer dialog({QStringLiteral("backup")}, true);
    QPushButton* ok = dialog.buttonBox()->button(QDialogButtonBox::Ok);
    QVERIFY(dialog.noteLabel()->text().contains(QStringLiteral("globally unique")));
    QTest::keyClicks(dialog.nameEdit(), QStringLiteral("ab"));
    QVERIFY(!ok->isEnabled());
    QTest::keyClicks(dialog.nameEdit(), QStringLiteral("c"));
    QVERIFY(ok->isEnabled());
    dialog.nameEdit()->clear();
    QTest::keyClicks(dialog.nameEdit(), QStringLiteral("backup"));
    QVERIFY(!ok->isEnabled());
    QTest::keyClicks(dialog.nameEdit(), QStringLiteral("..x"));
    QCOMPARE(dialog.nameEdit()->text(), QStringLiteral("backup.x"));
    dialog.setRegions({{QStringLiteral("eu-1"), {QStringLiteral("Europe"), QStringLiteral("s3.eu-1.test")}},
        {QStringLiteral("af-1"), {QStringLiteral("Africa"), QStringLiteral("s3.af-1.test")}}});
    QCOMPARE(dialog.regionCombo()->currentText(), QStringLiteral("Africa"));
    QCOMPARE(dialog.location(), QStringLiteral("af-1"));
}

void TestS3Accounts::shouldPresetEndpointsAndRegionsOfTheFamily()
{
    Account::Wasabi::Add wasabi;
    QCOMPARE(wasabi.endpointEdit()->text(), QStringLiteral("https://s3.wasabisys.com"));
    QVERIFY(wasabi.endpointEdit()->isHidden());
    QVERIFY(!wasabi.cloudConfig().contains(NVL::Cloud::Config::AmazonS3Like::Signature::Key));

    Account::Minio::Add minio;
    QVERIFY(minio.endpointEdit()->text().isEmpty());

    // China: the region combo has no row, and the first region is taken.
    Account::AmazoneS3Chine::Add china;
    whenModal<AmazonS3Compatible::AddContainer>([](AmazonS3Compatible::AddContainer* dialog) {
        QVERIFY(dialog->regionCombo()->isHidden());
        QCOMPARE(dialog->location(), QStringLiteral("cn-north-1"));
        dialog->reject();
    });
    china.addBucketButton()->setEnabled(true);
    china.addBucketButton()->click();

    AmazonS3Compatible::Add compatible(NVL::Cloud::Type::S3Compatible, true, true);
    QCOMPARE(compatible.cloudConfig().value(NVL::Cloud::Config::AmazonS3Like::Signature::Key).toString(),
        QStringLiteral("V4"));
}

void TestS3Accounts::shouldListCreateAndChooseBucketsOnRealServer()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    AmazonS3Compatible::Add dialog(NVL::Cloud::Type::S3Compatible, true, true);
    dialog.show();
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("Swift"));
    QTest::keyClicks(dialog.accessKeyEdit(), m_server.accessKey());
    QTest::keyClicks(dialog.secretKeyEdit(), m_server.secretKey());
    QTest::keyClicks(dialog.endpointEdit(), QStringLiteral("http://") + m_server.endpoint());
    QVERIFY(dialog.bucketCombo()->isEnabled());
    QVERIFY(!dialog.okButton()->isEnabled());

    // The first press on the list is the test of the account.
    QTest::mousePress(dialog.bucketCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.containersLoaded(), 20000);
    dialog.bucketCombo()->hidePopup();
    QVERIFY(dialog.addBucketButton()->isEnabled());

    // A new bucket is made and selected once the list comes again.
    const QString name = QStringLiteral("nvb-dialog-%1").arg(QDateTime::currentMSecsSinceEpoch());
    whenModal<AmazonS3Compatible::AddContainer>([name](AmazonS3Compatible::AddContainer* add) {
        QVERIFY(add->regionCombo()->isHidden());
        QTest::keyClicks(add->nameEdit(), name);
        add->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.addBucketButton()->click();
    QTRY_COMPARE_WITH_TIMEOUT(dialog.bucketCombo()->currentText(), name, 20000);
    QVERIFY(dialog.okButton()->isEnabled());
    QCOMPARE(dialog.cloudConfig().value(NVL::Cloud::Api::Config::Http::Endpoint).toString(), m_server.endpoint());
    QCOMPARE(dialog.cloudConfig().value(NVL::Cloud::Api::Config::Http::UseSsl).toBool(), false);

    // Clearing the name after a listing leaves OK alone; a key change does not.
    dialog.displayNameEdit()->clear();
    QVERIFY(dialog.okButton()->isEnabled());
    QTest::keyClicks(dialog.secretKeyEdit(), QStringLiteral("x"));
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(!dialog.containersLoaded());
    QCOMPARE(dialog.bucketCombo()->count(), 0);
}

void TestS3Accounts::shouldKeepWhatWasTypedWhenSecretIsWrong()
{
    if (!m_server.require(__FILE__, __LINE__))
        return;
    AmazonS3Compatible::Add dialog(NVL::Cloud::Type::S3Compatible, true, true);
    dialog.show();
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("Swift"));
    QTest::keyClicks(dialog.accessKeyEdit(), m_server.accessKey());
    QTest::keyClicks(dialog.secretKeyEdit(), QStringLiteral("wrong"));
    QTest::keyClicks(dialog.endpointEdit(), QStringLiteral("http://") + m_server.endpoint());
    QTest::mousePress(dialog.bucketCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.messageLabel()->text().contains(QStringLiteral("secret key")), 20000);
    dialog.bucketCombo()->hidePopup();
    QVERIFY(dialog.messageLabel()->text().startsWith(QStringLiteral("<font color='red'>")));
    QVERIFY(!dialog.okButton()->isEnabled());
    QVERIFY(!dialog.containersLoaded());
    QCOMPARE(dialog.secretKeyEdit()->text(), QStringLiteral("wrong"));
    QCOMPARE(dialog.displayNameEdit()->text(), QStringLiteral("Swift"));
}

void TestS3Accounts::shouldEditOnlyOurTransitionRules()
{
    // One rule of ours, one expiration of another tool's that must survive.
    QDomDocument document;
    QVERIFY(document.setContent(QByteArrayLiteral(
        "<LifecycleConfiguration xmlns=\"http://s3.amazonaws.com/doc/2006-03-01/\">"
        "<Rule><ID>a</ID><Filter><Prefix>NVB_a/</Prefix></Filter><Status>Enabled</Status>"
        "<Transition><Days>30</Days><StorageClass>STANDARD_IA</StorageClass></Transition>"
        "<Transition><Days>90</Days><StorageClass>GLACIER</StorageClass></Transition></Rule>"
        "<Rule><ID>logs</ID><Prefix>logs/</Prefix><Status>Enabled</Status><Expiration><Days>7</Days></Expiration>"
        "</Rule></LifecycleConfiguration>")));
    NVB::Cloud::AmazonLifecyclePolicyEdit edit;
    QVERIFY(edit.init(document));
    QCOMPARE(edit.policy().keys(), QStringList {QStringLiteral("NVB_a/")});
    QCOMPARE(edit.policy().value(QStringLiteral("NVB_a/")), NVB::Cloud::AmazonLifecyclePolicy(30, -1, 90, -1, -1, -1));

    auto policy = edit.policy();
    policy.insert(QStringLiteral("NVB_b/"), NVB::Cloud::AmazonLifecyclePolicy(-1, -1, 0, -1, -1, -1));
    policy.remove(QStringLiteral("NVB_a/"));
    edit.save(policy);
    NVB::Cloud::AmazonLifecyclePolicyEdit again;
    QVERIFY(again.init(edit.lifecyclePolice()));
    QCOMPARE(again.policy().keys(), QStringList {QStringLiteral("NVB_b/")});
    QVERIFY(edit.lifecyclePolice().toString().contains(QStringLiteral("<Expiration>")));

    // With every rule of ours gone, the other tool's rule still stands.
    again.save({});
    QVERIFY(!again.lifecyclePolice().documentElement().firstChildElement().isNull());

    QDomDocument listing;
    QVERIFY(listing.setContent(QByteArrayLiteral("<ListBucketResult/>")));
    QString error;
    QVERIFY(!again.init(listing, &error));
    QVERIFY(error.contains(QStringLiteral("ListBucketResult")));
}

QTEST_MAIN(TestS3Accounts)
#include "tst_s3accounts.moc"
