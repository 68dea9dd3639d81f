#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include <QtTest>

#include "../lib/records/logcapture.h"
#include "channel/framecodec.h"
#include "server/engineserver.h"
#include "testmain.h"

using NVB::Channel::FrameCodec;
using NVB::Engine::EngineServer;

// The serving side of the engine on a real socket: who may take the socket,
// and what happens to a console that stops reading.
class TestEngineServer : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString socketPath(const char* name) const { return m_dir.filePath(QStringLiteral("run/%1").arg(name)); }

    // A plain socket that the test reads only when it says so.
    static int dial(const QString& path)
    {
        struct sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray bytes = QFile::encodeName(path);
        memcpy(address.sun_path, bytes.constData(), size_t(bytes.size()));
        const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (fd >= 0 && ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            ::close(fd);
            return -1;
        }
        return fd;
    }

    static QJsonObject request(int serial)
    {
        return {{"type", "request"}, {"id", QUuid::createUuid().toString()}, {"command", "Echo"}, {"serial", serial}};
    }

    static bool writeAll(int fd, const QByteArray& bytes)
    {
        return ::send(fd, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
    }

    // Reads what arrives on the socket until the engine closes it (true) or
    // nothing comes for a while (false).
    static bool drainUntilClosed(int fd, int timeoutMs)
    {
        QElapsedTimer timer;
        timer.start();
        char buffer[65536];
        while (timer.elapsed() < timeoutMs) {
            QCoreApplication::processEvents();
            const ssize_t got = ::recv(fd, buffer, sizeof buffer, MSG_DONTWAIT);
            if (got == 0 || (got < 0 && errno == ECONNRESET))
                return true;
            if (got < 0)
                QTest::qWait(10);
        }
        return false;
    }

private slots:
    void shouldKeepALiveEnginesSocket()
    {
        const auto echo = [](const QJsonObject& frame, const EngineServer::Reply& reply) { reply(frame); };
        EngineServer first(echo);
        QString error;
        QVERIFY2(first.listen(socketPath("engine.sock"), &error), qPrintable(error));

        // A second engine (with another data folder, so its lock does not
        // stop it) must not unlink the live one's socket.
        EngineServer second(echo);
        QVERIFY(!second.listen(socketPath("engine.sock"), &error));
        QVERIFY2(error.contains(QStringLiteral("Another engine is already serving")), qPrintable(error));
        const int fd = dial(socketPath("engine.sock"));
        QVERIFY(fd >= 0);
        QVERIFY(writeAll(fd, FrameCodec::encode(request(1))));
        QTRY_COMPARE(first.clientCount(), 1);
        ::close(fd);

        // A socket file nobody listens on any more is taken over.
        first.close();
        EngineServer third(echo);
        QVERIFY2(third.listen(socketPath("engine.sock"), &error), qPrintable(error));
    }

    void shouldDropAConsoleThatStopsReading()
    {
        // Every request gets a reply of about 256 KiB.
        const QString padding(256 * 1024, QLatin1Char('x'));
        EngineServer server([&padding](const QJsonObject& frame, const EngineServer::Reply& reply) {
            QJsonObject answer = frame;
            answer.insert("padding", padding);
            reply(answer);
        });
        server.setWriteQueueLimit(4 * 1024 * 1024);
        QString error;
        QVERIFY2(server.listen(socketPath("stall.sock"), &error), qPrintable(error));

        LogCapture log;
        const int reader = dial(socketPath("stall.sock"));
        const int staller = dial(socketPath("stall.sock"));
        QVERIFY(reader >= 0 && staller >= 0);
        QTRY_COMPARE(server.clientCount(), 2);

        // Far more than the socket buffers and the limit hold, never read.
        for (int serial = 0; serial < 64 && server.clientCount() == 2; ++serial) {
            QVERIFY(writeAll(staller, FrameCodec::encode(request(serial))));
            QTest::qWait(5);
        }
        QTRY_COMPARE(server.clientCount(), 1);
        QVERIFY(drainUntilClosed(staller, 5000));
        QVERIFY(log.text().contains(QStringLiteral("A console that stopped reading was disconnected")));

        // The console that reads is still served.
        QVERIFY(writeAll(reader, FrameCodec::encode(request(100))));
        FrameCodec codec;
        FrameCodec::Result result;
        char buffer[65536];
        QVERIFY(QTest::qWaitFor(
            [&] {
                const ssize_t got = ::recv(reader, buffer, sizeof buffer, MSG_DONTWAIT);
                if (got > 0)
                    codec.append(QByteArray(buffer, int(got)));
                result = codec.next();
                return result.status == FrameCodec::Status::Frame;
            },
            5000));
        QCOMPARE(result.object.value("serial").toInt(), 100);
        ::close(reader);
        ::close(staller);
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineServer)
#include "tst_engineserver.moc"
