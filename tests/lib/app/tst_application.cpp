#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include "app/application.h"
#include "core/apppath.h"
#include "testmain.h"

using NVB::GUI::Application;

class TestApplication : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void shouldTakeProductTextsFromRebranding();
    void shouldChooseImagesPathByEdition_data();
    void shouldChooseImagesPathByEdition();
    void shouldReadSupportEmailAndLicenceFromInstallationConfig();
    // Last: restart() asks the application to quit.
    void shouldStartConsoleDetachedAndQuitOnRestart();

private:
    QString m_root;
};

namespace {
void writeFile(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(content);
}
} // namespace

void TestApplication::initTestCase()
{
    m_root = NvbTest::TestEnvironment::current()->home();
    // The program may be reached through a symbolic link to the build folder;
    // what matters is that both name the same file.
    QCOMPARE(QFileInfo(QCoreApplication::arguments().first()).canonicalFilePath(),
        QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath());
}

void TestApplication::shouldTakeProductTextsFromRebranding()
{
    QCOMPARE(Application::applicationName(), QStringLiteral("Northvale Backup"));
    QCOMPARE(Application::companyName(), QStringLiteral("Northvale Labs"));
    QCOMPARE(Application::copyright(), QStringLiteral("(c) Northvale Labs"));
    QCOMPARE(Application::website(), QStringLiteral("https://northvale.example"));
}

void TestApplication::shouldChooseImagesPathByEdition_data()
{
    QTest::addColumn<QByteArray>("edition");
    QTest::addColumn<bool>("standalone");
    QTest::addColumn<QString>("images");
    QTest::newRow("standalone") << QByteArray("standalone") << true << QStringLiteral("/share/images");
    QTest::newRow("managed") << QByteArray("managed") << false << QStringLiteral("/share/gui/images");
}

void TestApplication::shouldChooseImagesPathByEdition()
{
    QFETCH(QByteArray, edition);
    QFETCH(bool, standalone);
    QFETCH(QString, images);
    qputenv("NVB_SHARE_DIR", (m_root + QStringLiteral("/share")).toUtf8());
    qputenv("NVB_EDITION", edition);
    QCOMPARE(Application::isStandalon(), standalone);
    QCOMPARE(Application::isMns(), !standalone);
    QCOMPARE(Application::getSharePath(), m_root + QStringLiteral("/share"));
    QCOMPARE(Application::getImagesPath(), m_root + images);
    qunsetenv("NVB_EDITION");
    qunsetenv("NVB_SHARE_DIR");
}

void TestApplication::shouldReadSupportEmailAndLicenceFromInstallationConfig()
{
    const QString config = NVB::Defines::AppPath::to().config() + QStringLiteral("/nvbBackup.conf");
    writeFile(config, "<nvbBackup edition=\"standalone\" supportEmail=\"help@northvale.example\"/>");
    QCOMPARE(Application::supportEmail(), QStringLiteral("help@northvale.example"));
    QCOMPARE(Application::licenseType(), QStringLiteral("Full"));
    writeFile(config, "<nvbBackup edition=\"standalone\" license=\"free\"/>");
    QCOMPARE(Application::supportEmail(), QString());
    QCOMPARE(Application::licenseType(), QStringLiteral("Free"));
    QFile::remove(config);
}

void TestApplication::shouldStartConsoleDetachedAndQuitOnRestart()
{
    // A blank in the directory checks that the quotes keep the path whole.
    const QString bin = m_root + QStringLiteral("/my bin");
    const QString marker = m_root + QStringLiteral("/started");
    writeFile(bin + QStringLiteral("/nvbgui"), "#!/bin/sh\ntouch \"$(dirname \"$0\")/../started\"\n");
    QFile::setPermissions(bin + QStringLiteral("/nvbgui"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("NVB_BIN_DIR", bin.toUtf8());
    Application::restart();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(marker), 10000);
    // The quit request makes the next event loop return at once.
    QEventLoop loop;
    QTimer::singleShot(3000, &loop, [&loop] { loop.exit(7); });
    QCOMPARE(loop.exec(), -1);
}

// The test runs inside the application object itself, with a rebranding file
// of its own.
int main(int argc, char* argv[])
{
    NvbTest::TestEnvironment environment;
    const QString rebranding = environment.home() + QStringLiteral("/rebranding.json");
    QFile file(rebranding);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    file.write(R"({"ProductName":"Northvale Backup","CompanyName":"Northvale Labs",)"
               R"("CopyrightText":"(c) Northvale Labs","WebSite":"https://northvale.example"})");
    file.close();
    qputenv("NVB_REBRANDING_FILE", rebranding.toUtf8());
    Application app(argc, argv);
    TestApplication test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
