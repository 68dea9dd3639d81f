#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/backblaze/backblazeb2add.h"
#include "accounts/backblaze/backblazeb2addcontainer.h"
#include "accounts/backblaze/backblazeb2validator.h"
#include "cloud/cloudconfig.h"
#include "modaldialog.h"

using namespace NVB::GUI::Settings;
using Account::BackblazeB2;
using NvbTest::whenModal;

// The Backblaze B2 dialog against our fake of B2's API. The dialog has no
// endpoint; the test points the client at the fake through the
// configuration's endpoint key, which only the client reads.
class Probe : public BackblazeB2::Add
{
public:
    QString endpoint;
    QMap<QString, QVariant> cloudConfig() const override
    {
        QMap<QString, QVariant> config = BackblazeB2::Add::cloudConfig();
        config.insert(NVL::Cloud::Api::Config::Http::Endpoint, endpoint);
        config.insert(NVL::Cloud::Api::Config::Http::UseSsl, false);
        return config;
    }
};

class TestBackblazeAccounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldJudgeWholeBucketName_data();
    void shouldJudgeWholeBucketName();
    void shouldListAndCreateBucketsOnTheFake();

private:
    QTemporaryDir m_dir;
    QProcess m_fake;
    int m_port = 0;
};

void TestBackblazeAccounts::initTestCase()
{
    const QString portFile = m_dir.filePath(QStringLiteral("port"));
    m_fake.start(QStringLiteral("python3"), {QStringLiteral(NVB_B2_FAKE), portFile});
    QVERIFY(m_fake.waitForStarted(10000));
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(portFile); }, 10000));
    QFile port(portFile);
    QVERIFY(port.open(QIODevice::ReadOnly));
    m_port = port.readAll().toInt();
}

void TestBackblazeAccounts::cleanupTestCase()
{
    m_fake.kill();
    m_fake.waitForFinished(5000);
}

void TestBackblazeAccounts::shouldJudgeWholeBucketName_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<bool>("acceptable");
    QTest::newRow("letters, digits, hyphen") << "My-bucket-2" << true;
    QTest::newRow("b2 prefix") << "b2-x" << false;
    QTest::newRow("b2 without hyphen") << "b2x" << true;
    QTest::newRow("dot") << "a.b" << false;
    // The whole name is judged, not only the character before the cursor.
    QTest::newRow("bad in the middle") << "ab_cd" << false;
}

void TestBackblazeAccounts::shouldJudgeWholeBucketName()
{
    QFETCH(QString, input);
    QFETCH(bool, acceptable);
    int pos = 1;
    QCOMPARE(BackblazeB2::Validator().validate(input, pos) == QValidator::Acceptable, acceptable);
}

void TestBackblazeAccounts::shouldListAndCreateBucketsOnTheFake()
{
    Probe wrong;
    wrong.endpoint = QStringLiteral("127.0.0.1:%1").arg(m_port);
    wrong.show();
    QTest::keyClicks(wrong.displayNameEdit(), QStringLiteral("B2"));
    QTest::keyClicks(wrong.keyIdEdit(), QStringLiteral("nvbkey"));
    QTest::keyClicks(wrong.keyEdit(), QStringLiteral("nope"));
    QTest::mousePress(wrong.bucketCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(
        wrong.messageLabel()->text().contains(QStringLiteral("Wrong Key ID or Application Key")), 20000);
    wrong.bucketCombo()->hidePopup();

    Probe dialog;
    dialog.endpoint = wrong.endpoint;
    dialog.show();
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("B2"));
    QTest::keyClicks(dialog.keyIdEdit(), QStringLiteral("nvbkey"));
    QTest::keyClicks(dialog.keyEdit(), QStringLiteral("nvbsecret"));
    QTest::mousePress(dialog.bucketCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.containersLoaded(), 20000);
    dialog.bucketCombo()->hidePopup();
    QVERIFY(dialog.bucketCombo()->findText(QStringLiteral("nvb-seeded")) >= 0);
    whenModal<BackblazeB2::AddContainer>([](BackblazeB2::AddContainer* add) {
        QTest::keyClicks(add->nameEdit(), QStringLiteral("nvb-b"));
        QVERIFY(!add->buttonBox()->button(QDialogButtonBox::Ok)->isEnabled());
        QTest::keyClicks(add->nameEdit(), QStringLiteral("2dialog"));
        QVERIFY(add->buttonBox()->button(QDialogButtonBox::Ok)->isEnabled());
        add->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.addBucketButton()->click();
    QTRY_COMPARE_WITH_TIMEOUT(dialog.bucketCombo()->currentText(), QStringLiteral("nvb-b2dialog"), 20000);
    QVERIFY(dialog.okButton()->isEnabled());
    const QString bucket = dialog.cloudConfig().value(NVL::Cloud::OperationConfig::ContainerName).toString();
    QVERIFY2(bucket.startsWith(QStringLiteral("b-")) && bucket.endsWith(QStringLiteral("|nvb-b2dialog")),
        qPrintable(bucket));
}

QTEST_MAIN(TestBackblazeAccounts)
#include "tst_backblazeaccounts.moc"
