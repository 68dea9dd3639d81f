#include <QtTest>

#include <atomic>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <libssh/libssh.h>
#include <libssh/sftp.h>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/operationerror.h"
#include "cloud/providers/sshconnection.h"
#include "sftptestserver.h"
#include "testmain.h"

using namespace NVL::Cloud;
using NvbTest::SftpTestServer;

namespace {

// A TCP relay to the test sshd that can go silent: once frozen it keeps both
// connections open but moves no more bytes, as a server whose host still
// acknowledges but whose sshd no longer answers (or a route that swallows
// everything) looks to the client.
class Relay
{
public:
    explicit Relay(int targetPort)
        : m_target(targetPort)
    {
        m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        if (::bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 || ::listen(m_listener, 1) != 0
            || ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            return;
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this]() { run(); });
    }
    ~Relay()
    {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        ::close(m_listener);
    }

    int port() const { return m_port; }
    void freeze() { m_frozen = true; }

private:
    void run()
    {
        pollfd accepting {m_listener, POLLIN, 0};
        while (!m_stop && ::poll(&accepting, 1, 50) <= 0) { }
        if (m_stop)
            return;
        const int client = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(quint16(m_target));
        if (client >= 0 && ::connect(server, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0) {
            char buffer[16384];
            while (!m_stop) {
                if (m_frozen) {
                    ::usleep(50000);
                    continue;
                }
                pollfd ends[2] = {{client, POLLIN, 0}, {server, POLLIN, 0}};
                if (::poll(ends, 2, 50) <= 0)
                    continue;
                bool closed = false;
                for (int i = 0; i < 2 && !closed; ++i) {
                    if (!(ends[i].revents & (POLLIN | POLLHUP | POLLERR)))
                        continue;
                    const ssize_t got = ::read(ends[i].fd, buffer, sizeof(buffer));
                    closed = got <= 0 || ::write(ends[1 - i].fd, buffer, size_t(got)) != got;
                }
                if (closed)
                    break;
            }
        }
        ::close(server);
        if (client >= 0)
            ::close(client);
    }

    int m_target;
    int m_listener = -1;
    int m_port = 0;
    std::atomic_bool m_stop {false};
    std::atomic_bool m_frozen {false};
    std::thread m_thread;
};

} // namespace

// A session that sat idle must prove its server alive before the next
// request: against the test sshd through a relay that goes silent.
class TestSshKeepAlive : public QObject
{
    Q_OBJECT

private slots:
    void shouldEndIdleSessionWhoseServerStoppedAnswering();
};

void TestSshKeepAlive::shouldEndIdleSessionWhoseServerStoppedAnswering()
{
    const SftpTestServer server;
    if (!server.require(__FILE__, __LINE__))
        return;
    QTemporaryDir home;
    QVERIFY(home.isValid());
    Relay relay(server.port());
    QVERIFY(relay.port() > 0);
    namespace Net = Config::Network;
    const QMap<QString, QVariant> config {{Config::Type, Name::Sftp}, {Net::Address, QStringLiteral("127.0.0.1")},
        {Net::Port, relay.port()}, {Net::KeepAlive, true}, {Net::Sftp::KeepAliveInterval, 1}, {Net::Sftp::Timeout, 3},
        {Net::Sftp::User, server.user()},
        {Net::Sftp::PrivateKey, SftpTestServer::readFile(server.path(QStringLiteral("user_key")))},
        {Net::Sftp::KnownHostsFile, home.filePath(QStringLiteral("known_hosts"))}};
    // The relay's port is another host:port for known_hosts.
    QFile knownHosts(home.filePath(QStringLiteral("known_hosts")));
    QVERIFY(knownHosts.open(QIODevice::WriteOnly));
    knownHosts.write(QStringLiteral("[127.0.0.1]:%1 %2\n")
                         .arg(relay.port())
                         .arg(SftpTestServer::readFile(server.path(QStringLiteral("host_ed25519_key.pub")))
                                  .section(QLatin1Char(' '), 0, 1))
                         .toUtf8());
    knownHosts.close();

    SshConnection ssh;
    QVERIFY(!ssh.configure(config).isError());
    OperationResult result = ssh.connect(config, CancelToken());
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));

    // Idle past the interval, a live server answers the keepalive and the
    // request goes on.
    QTest::qWait(1500);
    ssh.beginStep(QStringLiteral("starting SFTP"));
    sftp_session sftp = sftp_new(ssh.session());
    const bool started = sftp && sftp_init(sftp) == SSH_OK;
    ssh.endStep();
    QVERIFY2(started, qPrintable(ssh.sshError()));
    QVERIFY(!ssh.interrupted().isError());

    QTest::qWait(1500);
    relay.freeze();
    ssh.beginStep(QStringLiteral("reading a folder's attributes"));
    sftp_attributes attributes = sftp_stat(sftp, "/");
    ssh.endStep();
    QVERIFY(!attributes);
    result = ssh.interrupted();
    QCOMPARE(result.errorCode, int(OperationError::Timeout));
    QVERIFY2(result.errorMessage.contains(QStringLiteral("keepalive")), qPrintable(result.errorMessage));
    QVERIFY2(result.errorMessage.contains(QStringLiteral("127.0.0.1")), qPrintable(result.errorMessage));
    sftp_free(sftp);
}

NVB_TEST_GUILESS_MAIN(TestSshKeepAlive)
#include "tst_sshkeepalive.moc"
