// Pages through a folder of 200,000 files over SFTP (the local test sshd,
// started and stopped here), 1,000 keys a page, as the prefix and restore
// listings do. Prints the time of the first page, of all the others, and the
// process's resident memory after the first page and at the end. Target: all
// pages in under 5 s, memory flat after the first page. Needs root (the
// test server makes its own user).

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/listing.h"

using namespace NVL::Cloud;

namespace {

// The number of files; the first argument overrides it.
int FileCount = 200000;

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}

long residentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

bool script(const QString& command, const QString& dir)
{
    return QProcess::execute(QStringLiteral("bash"), {QStringLiteral(NVB_SSHD_SCRIPT), command, dir}) == 0;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc > 1 && QByteArray(argv[1]).toInt() > 0)
        FileCount = QByteArray(argv[1]).toInt();
    QTemporaryDir dir;
    // The server reads the folder as its own user.
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup
            | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
    const QString server = dir.filePath(QStringLiteral("sshd"));
    if (!script(QStringLiteral("start"), server) || QFileInfo::exists(server + QStringLiteral("/unavailable"))) {
        std::fprintf(stderr, "no SFTP test server: %s\n", qUtf8Printable(readFile(server + "/unavailable")));
        return 1;
    }
    const QString folder = server + QStringLiteral("/data/many");
    QDir().mkpath(folder);
    const QByteArray base = QFile::encodeName(folder);
    for (int i = 0; i < FileCount; ++i) {
        const QByteArray name = base + "/f" + QByteArray::number(i).rightJustified(6, '0');
        const int fd = ::open(name.constData(), O_WRONLY | O_CREAT, 0644);
        if (fd >= 0)
            ::close(fd);
    }

    namespace Net = Config::Network;
    const QMap<QString, QVariant> config {{Config::Id, QUuid::createUuid()}, {Config::Type, Name::Sftp},
        {Net::Address, QStringLiteral("127.0.0.1")}, {Net::Port, readFile(server + "/port").toInt()},
        {Net::Sftp::Path, server + QStringLiteral("/data")}, {Net::Sftp::User, readFile(server + "/user")},
        {Net::Sftp::Password, readFile(server + "/password")},
        {Net::Sftp::KnownHostsFile, server + QStringLiteral("/known_hosts")}};

    QString marker;
    int pages = 0;
    int keys = 0;
    qint64 firstPage = 0;
    long afterFirst = 0;
    QElapsedTimer clock;
    clock.start();
    do {
        const QSharedPointer<IOperation> operation
            = OperationManager::instance().listing(config, QStringLiteral("many/"), QStringLiteral("/"), marker, 1000);
        QEventLoop loop;
        QObject::connect(operation.data(), &IOperation::finished, &loop, &QEventLoop::quit);
        operation->run();
        loop.exec();
        operation->remove();
        if (operation->isError()) {
            std::fprintf(stderr, "page %d failed: %s\n", pages, qUtf8Printable(operation->errorMessage()));
            break;
        }
        const auto* listing = qobject_cast<Operation::Listing*>(operation.data());
        keys += listing->data().size();
        marker = listing->marker();
        if (++pages == 1) {
            firstPage = clock.elapsed();
            afterFirst = residentKiB();
        }
    } while (!marker.isEmpty());
    const qint64 total = clock.elapsed();

    std::printf("SFTP listing of %d files: %d pages, %d keys\n", FileCount, pages, keys);
    std::printf("  first page (reads the folder): %lld ms\n", static_cast<long long>(firstPage));
    std::printf("  other %d pages:                 %lld ms\n", pages - 1, static_cast<long long>(total - firstPage));
    std::printf("  all pages:                      %lld ms (target < 5000 ms)\n", static_cast<long long>(total));
    std::printf("  resident after first page:      %ld KiB\n", afterFirst);
    std::printf("  resident at the end:            %ld KiB\n", residentKiB());
    OperationManager::instance().stopWorkers();
    script(QStringLiteral("stop"), server);
    return keys == FileCount ? 0 : 1;
}
