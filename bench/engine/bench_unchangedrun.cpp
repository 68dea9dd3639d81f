// The unchanged run over a large tree (1,000,000 empty or tiny files in
// 10,000 folders by default) against `rsync -a` finding nothing to do on the
// same tree: wall time and peak memory of each, for both backup formats.
// Three rounds taking turns, medians.
//
// The engine runs as its own process and is driven over its socket, as the
// console drives it; its peak memory is VmHWM from /proc after the unchanged
// run, in an engine started afresh for that run so the first run's peak does
// not count. rsync's peak is the largest of its processes (wait4's rusage).
//
//   NVB_BENCH_DIR    where the tree and the copies go (default: /tmp)
//   NVB_BENCH_FILES  how many files (default: 1000000), in FILES/100 folders
//   NVB_BENCH_KEEP   set: keep the tree, the storage and the engine's store
//   NVB_BENCH_ROUNDS how many rounds (default: 3); the rounds of one format
//                    should take as long as each other
//   NVB_BENCH_ONLY   "legacy" or "new": that format alone
//   NVB_BENCH_AFTER_ROUND  a shell command run after every round, with the
//                    round and the work folder as $1 and $2 (to count the
//                    store's rows, say)

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QUuid>

#include "channel/framecodec.h"
#include "records/plan/backupfile.h"
#include "service/notification/format.h"

using NVB::Channel::FrameCodec;
namespace Format = NVB::Common::Communication::Notification::Format;

namespace {

// Folders of 100 files each; one file in ten holds a few bytes.
bool makeTree(const QByteArray& root, int files)
{
    if (::mkdir(root.constData(), 0755) != 0 && errno != EEXIST)
        return false;
    const int rootFd = ::open(root.constData(), O_DIRECTORY | O_RDONLY | O_CLOEXEC);
    if (rootFd < 0)
        return false;
    const int folders = qMax(1, files / 100);
    char name[32];
    int made = 0;
    for (int folder = 0; folder < folders; ++folder) {
        std::snprintf(name, sizeof name, "d%05d", folder);
        if (::mkdirat(rootFd, name, 0755) != 0 && errno != EEXIST)
            return false;
        const int folderFd = ::openat(rootFd, name, O_DIRECTORY | O_RDONLY | O_CLOEXEC);
        if (folderFd < 0)
            return false;
        const int here = folder == folders - 1 ? files - made : files / folders;
        for (int file = 0; file < here; ++file, ++made) {
            std::snprintf(name, sizeof name, "f%07d", made);
            const int fd = ::openat(folderFd, name, O_CREAT | O_WRONLY | O_TRUNC | O_CLOEXEC, 0644);
            if (fd < 0)
                return false;
            if (made % 10 == 0 && ::write(fd, name, 8) != 8)
                return false;
            ::close(fd);
        }
        ::close(folderFd);
    }
    ::close(rootFd);
    return true;
}

struct Measure
{
    qint64 ms = -1;
    qint64 peakKb = -1;
    int result = -1;
};

// rsync with the largest resident size of its processes. A go-between
// process waits for rsync, so that its children's peak is rsync's alone and
// not that of the engines this benchmark started before.
Measure timeRsync(const QString& from, const QString& to)
{
    Measure measure;
    int channel[2];
    if (::pipe(channel) != 0)
        return measure;
    const QByteArray source = QFile::encodeName(from) + '/';
    const QByteArray target = QFile::encodeName(to);
    QElapsedTimer clock;
    clock.start();
    const pid_t between = ::fork();
    if (between == 0) {
        ::close(channel[0]);
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::execlp("rsync", "rsync", "-a", source.constData(), target.constData(), static_cast<char*>(nullptr));
            ::_exit(127);
        }
        int status = 0;
        long figures[2] = {-1, -1};
        if (pid > 0 && ::waitpid(pid, &status, 0) == pid) {
            struct rusage children
            {
            };
            ::getrusage(RUSAGE_CHILDREN, &children);
            figures[0] = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            figures[1] = children.ru_maxrss;
        }
        const bool sent = ::write(channel[1], figures, sizeof figures) == sizeof figures;
        ::_exit(sent ? 0 : 1);
    }
    ::close(channel[1]);
    long figures[2] = {-1, -1};
    const bool read = between > 0 && ::read(channel[0], figures, sizeof figures) == sizeof figures;
    ::close(channel[0]);
    int status = 0;
    if (between > 0)
        ::waitpid(between, &status, 0);
    measure.ms = clock.elapsed();
    if (read) {
        measure.result = int(figures[0]);
        measure.peakKb = figures[1];
    }
    return measure;
}

qint64 highWaterKb(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// One engine process and a plain socket to it.
class Engine
{
public:
    Engine(const QString& binary, const QString& home)
        : m_socketPath(home + QStringLiteral("/run/engine.sock"))
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(binary, {QStringLiteral("--socket"), m_socketPath, QStringLiteral("--data"),
                                 home + QStringLiteral("/data")});
    }

    ~Engine()
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_process.terminate();
        if (!m_process.waitForFinished(30000))
            m_process.kill();
        m_process.waitForFinished();
    }

    qint64 pid() const { return m_process.processId(); }

    bool connectToEngine()
    {
        struct sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray path = QFile::encodeName(m_socketPath);
        std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
        for (int attempt = 0; attempt < 200; ++attempt) {
            m_fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
            if (::connect(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
                return true;
            ::close(m_fd);
            m_fd = -1;
            QThread::msleep(50);
        }
        return false;
    }

    // The reply's status text ("success" or the error); the reply's data
    // in `data` when asked.
    QString command(const QString& name, const QJsonObject& params, QJsonObject* data = nullptr)
    {
        const QString id = QUuid::createUuid().toString();
        const QByteArray frame =
            FrameCodec::encode({{"type", "request"}, {"id", id}, {"command", name}, {"params", params}});
        if (::send(m_fd, frame.constData(), size_t(frame.size()), MSG_NOSIGNAL) != frame.size())
            return QStringLiteral("cannot send");
        for (;;) {
            const QJsonObject reply = next();
            if (reply.isEmpty())
                return QStringLiteral("no reply");
            if (reply.value("id").toString() != id)
                continue;
            const QString status = reply.value("status").toString();
            if (data)
                *data = reply.value("data").toObject();
            return status == QLatin1String("success") ? status : reply.value("error_string").toString();
        }
    }

    // Waits for the plan to go idle again; answers its run's result.
    int waitForIdle(const QUuid& plan)
    {
        for (;;) {
            const QJsonObject frame = next();
            if (frame.isEmpty())
                return -1;
            if (QUuid(frame.value(QLatin1String(Format::Header::Type)).toString()) != Format::Plan::StateChange::Type)
                continue;
            const QJsonObject message = frame.value(QLatin1String(Format::Header::Message)).toObject();
            if (QUuid(message.value("id").toString()) == plan && message.value("state").toInt() == 2) {
                QJsonObject data;
                command(QStringLiteral("PlanGetInfo"), {{"id", plan.toString()}}, &data);
                return data.value("planInfo").toObject().value("LastRunStatus").toInt(-1);
            }
        }
    }

private:
    QJsonObject next()
    {
        char buffer[65536];
        for (;;) {
            const FrameCodec::Result result = m_codec.next();
            if (result.status == FrameCodec::Status::Frame)
                return result.object;
            if (result.status == FrameCodec::Status::Broken)
                return {};
            const ssize_t got = ::recv(m_fd, buffer, sizeof buffer, 0);
            if (got <= 0)
                return {};
            m_codec.append(QByteArray(buffer, int(got)));
        }
    }

    QString m_socketPath;
    QProcess m_process;
    FrameCodec m_codec;
    int m_fd = -1;
};

Measure engineRun(const QString& binary, const QString& home, const QUuid& account, const QString& storage,
                  NVB::Info::Plan::BackupFile* plan, bool setUp)
{
    Measure measure;
    Engine engine(binary, home);
    if (!engine.connectToEngine()) {
        std::fprintf(stderr, "the engine did not come up\n");
        return measure;
    }
    if (setUp) {
        const QString saved = engine.command(
            QStringLiteral("SaveStorage"),
            {{"ID", account.toString()}, {"displayName", "Bench"}, {"type", 1}, {"prefix", "bench"},
             {"params", QJsonObject{{"Path", storage + QLatin1Char('/')}}}});
        const QString planSaved = engine.command(QStringLiteral("CommonPlanEdit"),
                                                 {{"ID", plan->id().toString()}, {"planXML", plan->toXml()}});
        if (saved != QLatin1String("success") || planSaved != QLatin1String("success")) {
            std::fprintf(stderr, "cannot set up: %s / %s\n", qUtf8Printable(saved), qUtf8Printable(planSaved));
            return measure;
        }
    }
    QElapsedTimer clock;
    clock.start();
    const QString started = engine.command(QStringLiteral("PlanExecuteStart"), {{"ID", plan->id().toString()}});
    if (started != QLatin1String("success")) {
        std::fprintf(stderr, "cannot start: %s\n", qUtf8Printable(started));
        return measure;
    }
    measure.result = engine.waitForIdle(plan->id());
    measure.ms = clock.elapsed();
    measure.peakKb = highWaterKb(engine.pid());
    return measure;
}

void print(const char* what, const Measure& m)
{
    std::printf("%-48s %10lld %12lld   (result %d)\n", what, m.ms, m.peakKb / 1024, m.result);
}

qint64 median(QList<qint64> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? -1 : values.at(values.size() / 2);
}

Measure medianOf(const QList<Measure>& runs)
{
    QList<qint64> times;
    QList<qint64> peaks;
    Measure result;
    for (const Measure& run : runs) {
        times << run.ms;
        peaks << run.peakKb;
        result.result = run.result != 0 && run.result != 6 ? run.result : qMax(result.result, run.result);
    }
    result.ms = median(times);
    result.peakKb = median(peaks);
    return result;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QString base = qEnvironmentVariable("NVB_BENCH_DIR", QStringLiteral("/tmp"));
    const int files = qEnvironmentVariableIsSet("NVB_BENCH_FILES") ? qEnvironmentVariableIntValue("NVB_BENCH_FILES")
                                                                   : 1000000;
    QTemporaryDir work(base + QStringLiteral("/nvb-bench-XXXXXX"));
    if (!work.isValid() || files <= 0) {
        std::fprintf(stderr, "cannot use %s\n", qUtf8Printable(base));
        return 1;
    }
    work.setAutoRemove(!qEnvironmentVariableIsSet("NVB_BENCH_KEEP"));
    const QString binary = QStringLiteral(NVB_ENGINE_BINARY);
    const QString source = work.filePath(QStringLiteral("source"));
    QElapsedTimer clock;
    clock.start();
    if (!makeTree(QFile::encodeName(source), files)) {
        std::fprintf(stderr, "cannot make the tree: %s\n", std::strerror(errno));
        return 1;
    }
    std::printf("Made %d files in %d folders under %s in %lld ms\n", files, qMax(1, files / 100),
                qUtf8Printable(source), clock.elapsed());

    const QString copy = work.filePath(QStringLiteral("rsync-copy"));
    const Measure rsyncFirst = timeRsync(source, copy);

    // One plan per format, each with its own storage and engine home, so
    // that neither run sees the other's points.
    struct Format
    {
        const char* name;
        bool archive;
        QString home;
        QString storage;
        NVB::Info::Plan::BackupFile plan;
        QUuid account;
        Measure first;
        QList<Measure> again;
    };
    Format formats[2]
        = {{"legacy format", false, {}, {}, {}, {}, {}, {}}, {"new format", true, {}, {}, {}, {}, {}, {}}};
    const QString only = qEnvironmentVariable("NVB_BENCH_ONLY");
    const auto skipped = [&only](const Format& format) {
        return !only.isEmpty() && only != QLatin1String(format.archive ? "new" : "legacy");
    };
    for (Format& format : formats) {
        if (skipped(format))
            continue;
        const QString name = QString::fromLatin1(format.archive ? "archive" : "legacy");
        format.account = QUuid::createUuid();
        format.storage = work.filePath(QStringLiteral("storage-") + name);
        format.home = work.filePath(QStringLiteral("engine-") + name);
        QDir().mkpath(format.storage);
        format.plan.setId(QUuid::createUuid());
        format.plan.setName(QStringLiteral("Bench"));
        format.plan.setStorage(format.account);
        format.plan.setItems({source});
        format.plan.setIsArchive(format.archive);
        format.first = engineRun(binary, format.home, format.account, format.storage, &format.plan, true);
    }

    // Rounds taking turns, so that the load of a shared machine falls on
    // every contender alike; a fresh engine for every unchanged run, so its
    // peak is that run's own.
    QList<Measure> rsyncAgain;
    const int rounds
        = qEnvironmentVariableIsSet("NVB_BENCH_ROUNDS") ? qMax(1, qEnvironmentVariableIntValue("NVB_BENCH_ROUNDS")) : 3;
    const QByteArray afterRound = qgetenv("NVB_BENCH_AFTER_ROUND");
    for (int round = 0; round < rounds; ++round) {
        rsyncAgain << timeRsync(source, copy);
        for (Format& format : formats) {
            format.again << (skipped(format)
                    ? Measure()
                    : engineRun(binary, format.home, format.account, format.storage, &format.plan, false));
        }
        std::printf("round %d: rsync %lld ms, legacy %lld ms (%lld MiB), new format %lld ms (%lld MiB)\n", round + 1,
            rsyncAgain.last().ms, formats[0].again.last().ms, formats[0].again.last().peakKb / 1024,
            formats[1].again.last().ms, formats[1].again.last().peakKb / 1024);
        std::fflush(stdout);
        if (!afterRound.isEmpty()) {
            QProcess hook;
            hook.setProcessChannelMode(QProcess::ForwardedChannels);
            hook.start(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromLocal8Bit(afterRound),
                                                 QStringLiteral("sh"), QString::number(round + 1), work.path()});
            hook.waitForFinished(-1);
        }
    }
    const Measure rsyncMedian = medianOf(rsyncAgain);

    std::printf("\n%-48s %10s %12s\n", "", "wall ms", "peak MiB");
    print("rsync -a, first copy", rsyncFirst);
    print("rsync -a, nothing to do (median)", rsyncMedian);
    bool met = true;
    for (const Format& format : formats) {
        if (skipped(format))
            continue;
        const Measure again = medianOf(format.again);
        print(qPrintable(QStringLiteral("engine, %1, first run").arg(QLatin1String(format.name))), format.first);
        print(qPrintable(QStringLiteral("engine, %1, unchanged run (median)").arg(QLatin1String(format.name))),
            again);
        const double ratio = rsyncMedian.ms > 0 ? double(again.ms) / double(rsyncMedian.ms) : 0.0;
        std::printf("  %s: unchanged / rsync %.2f (target at most 1), peak %lld MiB (target under 300), "
                    "first run / rsync %.2f\n",
            format.name, ratio, again.peakKb / 1024,
            rsyncFirst.ms > 0 ? double(format.first.ms) / double(rsyncFirst.ms) : 0.0);
        met = met && again.ms >= 0 && ratio <= 1.0 && again.peakKb >= 0 && again.peakKb < 300 * 1024;
    }
    return met ? 0 : 2;
}
