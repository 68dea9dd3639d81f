#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>

#include "cloud/canceltoken.h"
#include "cloud/providers/curlhttp.h"
#include "crypt/cryptns.h"
#include "stores/defaultsettings.h"
#include "testmain.h"

using NVL::Cloud::CurlHttp;
using NVL::Cloud::HttpExchange;

namespace {

// A forward proxy that answers every request itself: a reply proves the
// request went through it. It notes each request line and its credentials.
const char ProxyScript[] = R"(
import http.server, sys
log = open(sys.argv[1], 'a', buffering=1)
class Proxy(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        log.write(self.requestline + ' | ' + str(self.headers.get('Proxy-Authorization')) + '\n')
        size = int(self.path.split('size=')[1]) if 'size=' in self.path else int(sys.argv[2])
        body = b'x' * size if self.command == 'GET' else b''
        self.send_response(200)
        self.send_header('Content-Length', str(len(body)))
        self.end_headers()
        self.wfile.write(body)
    def do_PUT(self):
        self.rfile.read(int(self.headers['Content-Length']))
        self.do_GET()
    def log_message(self, *args):
        pass
server = http.server.ThreadingHTTPServer(('127.0.0.1', 0), Proxy)
print(server.server_address[1], flush=True)
server.serve_forever()
)";

} // namespace

// The proxy and speed settings of the console reach libcurl transfers.
class TestNetworkSettings : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QProcess m_proxy;
    int m_port = 0;

    QString log() const
    {
        QFile file(m_dir.filePath(QStringLiteral("proxy.log")));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    static HttpExchange get(bool accountUsesProxy, const QByteArray& upload = {}, int downloadSize = 0)
    {
        CurlHttp::Options options;
        options.timeoutSeconds = 5;
        options.useProxy = accountUsesProxy;
        CurlHttp http(options);
        HttpExchange exchange;
        // Port 9 (discard) is closed here: only a proxy can answer.
        exchange.url = QUrl(QStringLiteral("http://127.0.0.1:9/bucket/object"));
        if (downloadSize > 0)
            exchange.url.setQuery(QStringLiteral("size=%1").arg(downloadSize));
        if (!upload.isEmpty()) {
            exchange.method = QByteArrayLiteral("PUT");
            exchange.requestBody = upload;
        }
        http.perform(exchange, NVL::Cloud::CancelToken());
        return exchange;
    }

private slots:
    void initTestCase()
    {
        m_proxy.setProgram(QStringLiteral("python3"));
        m_proxy.setArguments({QStringLiteral("-c"), QString::fromLatin1(ProxyScript),
            m_dir.filePath(QStringLiteral("proxy.log")), QStringLiteral("64")});
        m_proxy.start();
        QVERIFY(m_proxy.waitForReadyRead(10000));
        m_port = m_proxy.readLine().trimmed().toInt();
        QVERIFY(m_port > 0);
    }

    void cleanupTestCase()
    {
        m_proxy.kill();
        m_proxy.waitForFinished(5000);
    }

    void shouldSendRequestsThroughTheManualProxyWithItsCredentials()
    {
        NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
        QVERIFY(settings->setValue(QStringLiteral("ProxyEnabled"), QStringLiteral("true")));
        QVERIFY(settings->setValue(QStringLiteral("ProxyHost"), QStringLiteral("127.0.0.1")));
        QVERIFY(settings->setValue(QStringLiteral("ProxyPort"), QString::number(m_port)));
        QVERIFY(settings->setValue(QStringLiteral("ProxyUseAuthentication"), QStringLiteral("true")));
        QVERIFY(settings->setValue(QStringLiteral("ProxyUser"), QStringLiteral("walker")));
        QVERIFY(settings->setValue(
            QStringLiteral("ProxyPassword"), SHARED::cryptNS::encrypt_local_password(QStringLiteral("s3cret"))));

        const HttpExchange through = get(true);
        QCOMPARE(through.status, 200L);
        QVERIFY2(log().contains(QStringLiteral("GET http://127.0.0.1:9/bucket/object HTTP/1.1 | Basic ")
                     + QString::fromLatin1(QByteArray("walker:s3cret").toBase64())),
            qPrintable(log()));

        // A proxy without a valid port stops the request rather than going around it.
        QVERIFY(settings->setValue(QStringLiteral("ProxyPort"), QStringLiteral("0")));
        QVERIFY(get(true).transportError.contains(QStringLiteral("proxy setting is incomplete")));
        QVERIFY(settings->setValue(QStringLiteral("ProxyPort"), QString::number(m_port)));

        // An account that wants no proxy, and a proxy switched off, go direct.
        QVERIFY(get(false).curlCode != 0);
        QVERIFY(settings->setValue(QStringLiteral("ProxyEnabled"), QStringLiteral("false")));
        QVERIFY(get(true).curlCode != 0);
        QCOMPARE(log().count(QLatin1Char('\n')), 1);
    }

    void shouldHoldUploadsToTheCloudBandwidth()
    {
        NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
        QVERIFY(settings->setValue(QStringLiteral("ProxyEnabled"), QStringLiteral("true")));
        QVERIFY(settings->setValue(QStringLiteral("ProxyUseAuthentication"), QStringLiteral("false")));
        // 100 KByte/s for 200 KiB.
        QVERIFY(settings->setCloudBandwidth(QStringLiteral("100")));
        QElapsedTimer clock;
        clock.start();
        const HttpExchange slow = get(true, QByteArray(204800, 'u'));
        QVERIFY2(slow.status == 200, qPrintable(slow.transportError + QString::number(slow.status)));
        QVERIFY2(clock.elapsed() >= 1500, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(settings->setCloudBandwidth(QStringLiteral("-1")));
    }

    // libcurl's own receive limit lets a loopback link run far past it; the
    // write callback's wait holds it.
    void shouldHoldDownloadsToTheCloudBandwidth()
    {
        NVB::DefaultSettings* settings = NVB::DefaultSettings::instance();
        QVERIFY(settings->setValue(QStringLiteral("ProxyEnabled"), QStringLiteral("true")));
        QVERIFY(settings->setValue(QStringLiteral("ProxyUseAuthentication"), QStringLiteral("false")));
        // 100 KByte/s for 300 KiB: at least 2.75 s beyond the quarter
        // second of burst.
        QVERIFY(settings->setCloudBandwidth(QStringLiteral("100")));
        QElapsedTimer clock;
        clock.start();
        const HttpExchange slow = get(true, {}, 307200);
        QVERIFY2(slow.status == 200, qPrintable(slow.transportError + QString::number(slow.status)));
        QCOMPARE(slow.body.size(), 307200);
        QVERIFY2(clock.elapsed() >= 2500, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(settings->setCloudBandwidth(QStringLiteral("-1")));
    }
};

NVB_TEST_GUILESS_MAIN(TestNetworkSettings)
#include "tst_networksettings.moc"
