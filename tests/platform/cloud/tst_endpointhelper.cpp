#include <QtTest>

#include "cloud/endpointhelper.h"
#include "testmain.h"

using NVL::Utitlity::EndpointHelper;

class TestEndpointHelper : public QObject
{
    Q_OBJECT

private slots:
    void shouldParseWhatUsersType_data();
    void shouldParseWhatUsersType();
    void shouldSwitchSchemeWithSsl();
    void shouldSplitIntoPair_data();
    void shouldSplitIntoPair();
    void shouldAddSchemeOnlyToBareEndpoint_data();
    void shouldAddSchemeOnlyToBareEndpoint();
};

void TestEndpointHelper::shouldParseWhatUsersType_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("useSslIn");
    QTest::addColumn<bool>("error");
    QTest::addColumn<bool>("useSslOut");
    QTest::addColumn<QString>("withScheme");

    QTest::newRow("bare host, ssl") << "s3.example.com" << true << false << true << "https://s3.example.com";
    QTest::newRow("bare host, no ssl") << "s3.example.com" << false << false << false << "http://s3.example.com";
    QTest::newRow("https wins over flag")
        << "https://minio.local:9000" << false << false << true << "https://minio.local:9000";
    QTest::newRow("scheme in capitals") << "HTTPS://Host.Example" << false << false << true << "https://Host.Example";
    QTest::newRow("spaces around") << "  host.example  " << true << false << true << "https://host.example";
    QTest::newRow("trailing slashes dropped")
        << "http://host.example//" << true << false << false << "http://host.example";
    QTest::newRow("path kept") << "https://auth.example/v1.0" << true << false << true << "https://auth.example/v1.0";
    QTest::newRow("ipv6 with port") << "http://[::1]:8080" << true << false << false << "http://[::1]:8080";
    QTest::newRow("empty") << "" << true << true << true << "";
    QTest::newRow("ftp scheme") << "ftp://host.example" << true << true << true << "";
    QTest::newRow("scheme without host") << "https://" << true << true << true << "";
    QTest::newRow("space in host") << "my host.example" << true << true << true << "";
    QTest::newRow("port not a number") << "host.example:http" << true << true << true << "";
    QTest::newRow("port zero") << "host.example:0" << true << true << true << "";
    QTest::newRow("port too large") << "host.example:65536" << true << true << true << "";
    QTest::newRow("double dot") << "host..example" << true << true << true << "";
    QTest::newRow("query") << "host.example/path?x=1" << true << true << true << "";
}

void TestEndpointHelper::shouldParseWhatUsersType()
{
    QFETCH(QString, text);
    QFETCH(bool, useSslIn);
    QFETCH(bool, error);
    QFETCH(bool, useSslOut);
    QFETCH(QString, withScheme);

    const EndpointHelper helper(text, useSslIn);
    QCOMPARE(helper.hasError(), error);
    QCOMPARE(helper.lastErrorMessage().isEmpty(), !error);
    QCOMPARE(helper.useSsl(), useSslOut);
    QCOMPARE(helper.endpointWithScheme(), withScheme);
}

void TestEndpointHelper::shouldSwitchSchemeWithSsl()
{
    EndpointHelper helper(QStringLiteral("https://s3.example.com:9000/base"), true);
    QVERIFY(!helper.hasError());
    helper.setUseSsl(false);
    QCOMPARE(helper.endpointWithScheme(), QStringLiteral("http://s3.example.com:9000/base"));
    QCOMPARE(helper.endpoint(), QStringLiteral("s3.example.com:9000/base"));
}

void TestEndpointHelper::shouldSplitIntoPair_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("endpoint");
    QTest::addColumn<bool>("useSsl");

    QTest::newRow("https") << "https://s3.example.com"
                           << "s3.example.com" << true;
    QTest::newRow("http") << "http://s3.example.com:80"
                          << "s3.example.com:80" << false;
    QTest::newRow("bare means ssl") << "s3.example.com"
                                    << "s3.example.com" << true;
    QTest::newRow("unreadable kept") << " bad host "
                                     << "bad host" << true;
}

void TestEndpointHelper::shouldSplitIntoPair()
{
    QFETCH(QString, text);
    QFETCH(QString, endpoint);
    QFETCH(bool, useSsl);

    const QPair<QString, bool> pair = EndpointHelper::toPair(text);
    QCOMPARE(pair.first, endpoint);
    QCOMPARE(pair.second, useSsl);
    QCOMPARE(EndpointHelper::toEndpoint(text), endpoint);
}

void TestEndpointHelper::shouldAddSchemeOnlyToBareEndpoint_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("useSsl");
    QTest::addColumn<QString>("shown");

    QTest::newRow("bare, ssl") << "s3.example.com" << true << "https://s3.example.com";
    QTest::newRow("bare, plain") << "s3.example.com" << false << "http://s3.example.com";
    QTest::newRow("http kept though ssl") << "http://s3.example.com" << true << "http://s3.example.com";
    QTest::newRow("https kept though plain") << "https://s3.example.com" << false << "https://s3.example.com";
    QTest::newRow("empty") << "" << true << "";
}

void TestEndpointHelper::shouldAddSchemeOnlyToBareEndpoint()
{
    QFETCH(QString, stored);
    QFETCH(bool, useSsl);
    QFETCH(QString, shown);

    QCOMPARE(EndpointHelper::toEndpointWithScheme(stored, useSsl), shown);
}

NVB_TEST_GUILESS_MAIN(TestEndpointHelper)
#include "tst_endpointhelper.moc"
