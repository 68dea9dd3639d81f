#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QToolButton>
#include <QtTest>

#include "accounts/google/googleadd.h"
#include "accounts/google/googleaddauthenticatioinstallapp.h"
#include "accounts/google/googleaddauthenticationaccesskey.h"
#include "accounts/google/googleaddauthenticationaccount.h"
#include "accounts/google/googleaddcontainer.h"
#include "cloud/cloudconfig.h"
#include "modaldialog.h"

using namespace NVB::GUI::Settings;
using Account::Google;
using NvbTest::whenModal;
namespace G = NVL::Cloud::Config::GoogleStorage;

// Stands in for the system browser: follows the sign-in page's redirect to
// wherever it leads, as a browser whose user is signed in would.
class Browser : public QObject
{
    Q_OBJECT

public:
    QNetworkAccessManager network;
    int opened = 0;

public slots:
    void open(const QUrl& url)
    {
        ++opened;
        QNetworkRequest request(url);
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
        QNetworkReply* reply = network.get(request);
        connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    }
};

// The Google dialog against our fake of Google's token endpoint and JSON
// API (tests/support/servers/google_fake.py), which verifies the service
// account's signature and the PKCE verifier of the browser sign-in.
class TestGoogleAccounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldSignInWithServiceAccountAndCreateBucket();
    void shouldSignInWithTheBrowserAndKeepTheRefreshToken();

private:
    QTemporaryDir m_dir;
    QProcess m_fake;
    QString m_base;
};

void TestGoogleAccounts::initTestCase()
{
    m_fake.start(QStringLiteral("python3"), {QStringLiteral(NVB_GOOGLE_FAKE), m_dir.path()});
    QVERIFY(m_fake.waitForStarted(10000));
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(m_dir.filePath(QStringLiteral("port"))); }, 20000));
    QFile port(m_dir.filePath(QStringLiteral("port")));
    QVERIFY(port.open(QIODevice::ReadOnly));
    m_base = QStringLiteral("http://127.0.0.1:") + QString::fromLatin1(port.readAll());
    qputenv("NVB_GOOGLE_STORAGE_URL", m_base.toLatin1());
    qputenv("NVB_GOOGLE_AUTH_URL", (m_base + QStringLiteral("/auth")).toLatin1());
    qputenv("NVB_GOOGLE_TOKEN_URL", (m_base + QStringLiteral("/token")).toLatin1());
    qputenv("NVB_GOOGLE_CLIENT_ID", "nvb-test-client");
    qputenv("NVB_GOOGLE_CLIENT_SECRET", "nvb-test-secret");
}

void TestGoogleAccounts::cleanupTestCase()
{
    m_fake.kill();
    m_fake.waitForFinished(5000);
}

void TestGoogleAccounts::shouldSignInWithServiceAccountAndCreateBucket()
{
    Google::Add dialog;
    dialog.show();
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("Google"));

    // A cancelled form leaves no method chosen.
    whenModal<Google::Add::AuthenticationAccessKey>([](Google::Add::AuthenticationAccessKey* keys) {
        keys->buttonBox()->button(QDialogButtonBox::Cancel)->click();
    });
    dialog.authenticationCombo()->setCurrentIndex(Google::Add::AccessKey);
    QCOMPARE(dialog.authenticationCombo()->currentIndex(), -1);
    QVERIFY(!dialog.settingsButton()->isEnabled());

    const QString key = m_dir.filePath(QStringLiteral("key.json"));
    whenModal<Google::Add::AuthenticationAccount>([key](Google::Add::AuthenticationAccount* account) {
        QVERIFY(!account->buttonBox()->button(QDialogButtonBox::Ok)->isEnabled());
        QVERIFY(account->importFile(key));
        QCOMPARE(account->keyLabel()->text(), QStringLiteral("Imported"));
        QCOMPARE(account->projectIdEdit()->text(), QStringLiteral("nvb-project"));
        account->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.authenticationCombo()->setCurrentIndex(Google::Add::ServiceAccount);
    QVERIFY(dialog.settingsButton()->isEnabled());
    QTest::mousePress(dialog.bucketCombo(), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(dialog.containersLoaded() || !dialog.messageLabel()->text().isEmpty(), 20000);
    dialog.bucketCombo()->hidePopup();
    QVERIFY2(dialog.containersLoaded(), qPrintable(dialog.messageLabel()->text()));
    QVERIFY(dialog.bucketCombo()->findText(QStringLiteral("nvb-seeded")) >= 0);

    whenModal<Google::AddContainer>([](Google::AddContainer* add) {
        QTest::keyClicks(add->nameEdit(), QStringLiteral("nvb-seeded"));
        QVERIFY(!add->buttonBox()->button(QDialogButtonBox::Ok)->isEnabled());
        add->nameEdit()->selectAll();
        QTest::keyClicks(add->nameEdit(), QStringLiteral("nvb-dialog"));
        QVERIFY(add->buttonBox()->button(QDialogButtonBox::Ok)->isEnabled());
        add->locationCombo()->setCurrentIndex(add->locationCombo()->findData(QStringLiteral("EU")));
        add->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.addBucketButton()->click();
    QTRY_COMPARE_WITH_TIMEOUT(dialog.bucketCombo()->currentText(), QStringLiteral("nvb-dialog"), 20000);
    QVERIFY(dialog.okButton()->isEnabled());
    const QMap<QString, QVariant> config = dialog.cloudConfig();
    QCOMPARE(config.value(G::AuthType).toInt(), 1);
    QCOMPARE(config.value(G::Auth_ServiceAccount::ServiceAccount).toString(),
        QStringLiteral("backup@nvb-project.iam.gserviceaccount.com"));
}

void TestGoogleAccounts::shouldSignInWithTheBrowserAndKeepTheRefreshToken()
{
    Browser browser;
    QDesktopServices::setUrlHandler(QStringLiteral("http"), &browser, "open");
    Google::Add dialog;
    dialog.show();
    QTest::keyClicks(dialog.displayNameEdit(), QStringLiteral("Google app"));
    whenModal<Google::Add::AuthenticatioInstallApp>([](Google::Add::AuthenticatioInstallApp* app) {
        QTest::keyClicks(app->projectIdEdit(), QStringLiteral("nvb-project"));
        app->getTokenButton()->click();
        QTRY_VERIFY_WITH_TIMEOUT(!app->codeEdit()->text().isEmpty(), 20000);
        QVERIFY(app->redirectUri().startsWith(QStringLiteral("http://127.0.0.1:")));
        app->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    dialog.authenticationCombo()->setCurrentIndex(Google::Add::InstalledApp);
    QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
    QCOMPARE(browser.opened, 1);
    // The accepted code is traded for the refresh token at once, and the
    // buckets load with that token.
    QTRY_VERIFY_WITH_TIMEOUT(dialog.containersLoaded() || !dialog.messageLabel()->text().isEmpty(), 20000);
    QVERIFY2(dialog.containersLoaded(), qPrintable(dialog.messageLabel()->text()));
    QVERIFY(!dialog.refreshToken().isEmpty());
    const QMap<QString, QVariant> config = dialog.cloudConfig();
    QVERIFY(config.value(G::Auth_InstalledApplication::InitCode).toByteArray().isEmpty());
    // A code is good for one trade: a second one is refused by the server.
    dialog.refreshTokenInstalledApp(QByteArrayLiteral("spent-or-made-up-code"));
    QTRY_VERIFY_WITH_TIMEOUT(!dialog.messageLabel()->text().isEmpty(), 20000);
    dialog.bucketCombo()->setCurrentIndex(dialog.bucketCombo()->findText(QStringLiteral("nvb-seeded")));
    QVERIFY(dialog.okButton()->isEnabled());
}

QTEST_MAIN(TestGoogleAccounts)
#include "tst_googleaccounts.moc"
