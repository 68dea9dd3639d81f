#include <QDesktopServices>

#include "app/application.h"
#include "app/systemurlopenhandler.h"
#include "testmain.h"

using NVB::GUI::Handlers::SystemUrlOpenHandler;

class TestSystemUrlOpenHandler : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void shouldOpenWithSystemSearchPaths();
    void shouldUnsetVariablesThatWereUnset();
    void shouldRestoreEnvironmentAfterOpenUrl_data();
    void shouldRestoreEnvironmentAfterOpenUrl();
    void shouldLeaveNoHandlerRegistered();

private:
    QByteArray m_library;
    QByteArray m_path;
};

void TestSystemUrlOpenHandler::init()
{
    qputenv("LD_LIBRARY_PATH", "/opt/nvb/lib");
    qputenv("PATH", "/opt/nvb/bin:/usr/bin");
}

void TestSystemUrlOpenHandler::shouldOpenWithSystemSearchPaths()
{
    QUrl opened;
    QByteArray library;
    QByteArray path;
    SystemUrlOpenHandler handler(nullptr, [&](const QUrl& url) {
        opened = url;
        library = qgetenv("LD_LIBRARY_PATH");
        path = qgetenv("PATH");
        return true;
    });
    handler.handleUrl(QUrl(QStringLiteral("https://example.org/help")));
    QCOMPARE(opened, QUrl(QStringLiteral("https://example.org/help")));
    QCOMPARE(library, QByteArray("/usr/lib:/usr/local/lib"));
    QCOMPARE(path, QByteArray("/usr/bin:/usr/local/bin"));
    QCOMPARE(qgetenv("LD_LIBRARY_PATH"), QByteArray("/opt/nvb/lib"));
    QCOMPARE(qgetenv("PATH"), QByteArray("/opt/nvb/bin:/usr/bin"));
}

void TestSystemUrlOpenHandler::shouldUnsetVariablesThatWereUnset()
{
    qunsetenv("LD_LIBRARY_PATH");
    SystemUrlOpenHandler handler(nullptr, [](const QUrl&) { return true; });
    handler.handleUrl(QUrl(QStringLiteral("file:///tmp")));
    QVERIFY(!qEnvironmentVariableIsSet("LD_LIBRARY_PATH"));
    QCOMPARE(qgetenv("PATH"), QByteArray("/opt/nvb/bin:/usr/bin"));
}

void TestSystemUrlOpenHandler::shouldRestoreEnvironmentAfterOpenUrl_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::newRow("file") << QUrl::fromLocalFile(QStringLiteral("/tmp/report.html"));
    QTest::newRow("http") << QUrl(QStringLiteral("http://127.0.0.1:9/"));
    QTest::newRow("https") << QUrl(QStringLiteral("https://127.0.0.1:9/"));
}

void TestSystemUrlOpenHandler::shouldRestoreEnvironmentAfterOpenUrl()
{
    QFETCH(QUrl, url);
    const int before = SystemUrlOpenHandler::handledCount();
    NVB::GUI::Application::openURL(url);
    // The URL went through our handler, not straight to the system.
    QCOMPARE(SystemUrlOpenHandler::handledCount(), before + 1);
    QCOMPARE(qgetenv("LD_LIBRARY_PATH"), QByteArray("/opt/nvb/lib"));
    QCOMPARE(qgetenv("PATH"), QByteArray("/opt/nvb/bin:/usr/bin"));
}

void TestSystemUrlOpenHandler::shouldLeaveNoHandlerRegistered()
{
    NVB::GUI::Application::openURL(QUrl(QStringLiteral("http://127.0.0.1:9/")));
    const int after = SystemUrlOpenHandler::handledCount();
    // The handler object still lives until its deferred deletion; were it
    // still registered, these would reach it.
    QDesktopServices::openUrl(QUrl(QStringLiteral("http://127.0.0.1:9/")));
    QDesktopServices::openUrl(QUrl(QStringLiteral("https://127.0.0.1:9/")));
    QDesktopServices::openUrl(QUrl::fromLocalFile(QStringLiteral("/tmp")));
    QCOMPARE(SystemUrlOpenHandler::handledCount(), after);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(QCoreApplication::instance()->findChildren<SystemUrlOpenHandler*>().isEmpty());
}

NVB_TEST_MAIN(TestSystemUrlOpenHandler)
#include "tst_systemurlopenhandler.moc"
