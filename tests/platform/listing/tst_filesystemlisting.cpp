#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include "listing/filesystemlisting.h"
#include "listing/filesystemobjectitems.h"
#include "testmain.h"

using NVB::FileSystemListing;
namespace Items = NVB::Constants::SessionAccess::FileSystemObject::Items;

namespace {

void touch(const QString& path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

QStringList field(const QJsonArray& items, const char* key)
{
    QStringList values;
    for (const QJsonValue& value : items) {
        const QJsonValue entry = value.toObject().value(QLatin1String(key));
        values << (entry.isString() ? entry.toString() : QString::number(entry.toVariant().toInt()));
    }
    return values;
}

QJsonObject itemByRealPath(const QJsonArray& items, const QString& realPath)
{
    for (const QJsonValue& value : items) {
        if (value.toObject().value(QLatin1String(Items::RealPath)).toString() == realPath)
            return value.toObject();
    }
    return QJsonObject();
}

struct LockedListing
{
    bool ran = false;
    bool listedLocked = false;
    bool listedAll = false;
    QStringList names;
    QStringList skipped;
};

LockedListing listLocked(const QString& locked, const QString& top)
{
    LockedListing result;
    FileSystemListing lister;
    result.listedLocked = lister.list(locked);
    result.listedAll = lister.list(top, 3);
    result.names = field(lister.items(), Items::Name);
    result.skipped = lister.skippedPaths();
    result.ran = true;
    return result;
}

// Permissions don't stop root, so as root the listing runs in a child process
// that has given up its privileges for the user nobody.
LockedListing listAsUnprivileged(const QString& locked, const QString& top)
{
    if (::geteuid() != 0)
        return listLocked(locked, top);
    int channel[2];
    if (::pipe(channel) != 0)
        return LockedListing();
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(channel[0]);
        int code = 1;
        if (::setgid(65534) == 0 && ::setuid(65534) == 0) {
            const LockedListing inChild = listLocked(locked, top);
            const QByteArray text
                = QStringList {QString::number(inChild.listedLocked), QString::number(inChild.listedAll),
                    inChild.names.join(QLatin1Char('|')), inChild.skipped.join(QLatin1Char('|'))}
                      .join(QLatin1Char('\n'))
                      .toUtf8();
            code = ::write(channel[1], text.constData(), size_t(text.size())) == text.size() ? 0 : 1;
        }
        ::close(channel[1]);
        ::_exit(code);
    }
    ::close(channel[1]);
    QByteArray text;
    char buffer[4096];
    ssize_t got = 0;
    while ((got = ::read(channel[0], buffer, sizeof buffer)) > 0)
        text.append(buffer, int(got));
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    LockedListing result;
    const QStringList lines = QString::fromUtf8(text).split(QLatin1Char('\n'));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || lines.size() != 4)
        return result;
    result.ran = true;
    result.listedLocked = lines.at(0) == QLatin1String("1");
    result.listedAll = lines.at(1) == QLatin1String("1");
    result.names = lines.at(2).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    result.skipped = lines.at(3).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    return result;
}

} // namespace

class TestFileSystemListing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shouldListFolderFoldersFirstByName();
    void shouldLeaveHiddenOutOnlyWhenAsked();
    void shouldListToDepthAndStopAtLimit();
    void shouldFlagLinksAndNeverFollowThem();
    void shouldReportFolderThatIsGone();
    void shouldReportUnreadableFolderAndSkipItBelow();
    void shouldReadMountTable_data();
    void shouldReadMountTable();
    void shouldListVolumesOfMountTable();
    void shouldListRealMountAsVolume();

private:
    QScopedPointer<QTemporaryDir> m_dir;
};

void TestFileSystemListing::init()
{
    m_dir.reset(new QTemporaryDir());
    QVERIFY(m_dir->isValid());
    QDir dir(m_dir->path());
    QVERIFY(dir.mkpath(QStringLiteral("Beta/inner/deepest")));
    QVERIFY(dir.mkpath(QStringLiteral("alpha")));
    QVERIFY(dir.mkpath(QStringLiteral(".config")));
    touch(m_dir->path() + QStringLiteral("/zeta.txt"));
    touch(m_dir->path() + QStringLiteral("/Apple.txt"));
    touch(m_dir->path() + QStringLiteral("/.profile"));
    touch(m_dir->path() + QStringLiteral("/Beta/inner/deepest/file"));
}

void TestFileSystemListing::cleanup()
{
    FileSystemListing::setMountTable(QString());
}

void TestFileSystemListing::shouldListFolderFoldersFirstByName()
{
    FileSystemListing lister;
    QVERIFY(lister.list(m_dir->path(), 0, 0, true));
    QVERIFY(!lister.hasError());
    const QJsonArray items = lister.items();
    QCOMPARE(
        field(items, Items::Name), (QStringList {".config", "alpha", "Beta", ".profile", "Apple.txt", "zeta.txt"}));
    QCOMPARE(field(items, Items::Type::Key), (QStringList {"1", "1", "1", "5", "5", "5"}));
    const QJsonObject beta = items.at(2).toObject();
    QCOMPARE(beta.value(QLatin1String(Items::Path)).toString(), m_dir->path() + QStringLiteral("/Beta"));
    QCOMPARE(beta.value(QLatin1String(Items::RealPath)).toString(), m_dir->path() + QStringLiteral("/Beta"));
    QCOMPARE(beta.value(QLatin1String(Items::IsHidden)).toBool(), false);
    QCOMPARE(beta.value(QLatin1String(Items::IsSymlink)).toBool(), false);
    QCOMPARE(items.at(0).toObject().value(QLatin1String(Items::IsHidden)).toBool(), true);
}

void TestFileSystemListing::shouldLeaveHiddenOutOnlyWhenAsked()
{
    FileSystemListing lister;
    QVERIFY(lister.list(m_dir->path(), 0, 0, false));
    QCOMPARE(field(lister.items(), Items::Name), (QStringList {"alpha", "Beta", "Apple.txt", "zeta.txt"}));
    // Defaults list everything, which is what the file tree asks for.
    QVERIFY(lister.list(m_dir->path()));
    QCOMPARE(lister.items().size(), 6);
    // Taking the items leaves nothing behind for the lister to hold.
    QCOMPARE(lister.takeItems().size(), 6);
    QVERIFY(lister.items().isEmpty());
}

void TestFileSystemListing::shouldListToDepthAndStopAtLimit()
{
    FileSystemListing lister;
    QVERIFY(lister.list(m_dir->path() + QStringLiteral("/Beta"), 0));
    QCOMPARE(field(lister.items(), Items::Name), QStringList {"inner"});
    QVERIFY(lister.list(m_dir->path() + QStringLiteral("/Beta"), 2));
    QCOMPARE(field(lister.items(), Items::Name), (QStringList {"inner", "deepest", "file"}));
    QCOMPARE(lister.items().at(2).toObject().value(QLatin1String(Items::Path)).toString(),
        m_dir->path() + QStringLiteral("/Beta/inner/deepest/file"));
    QVERIFY(lister.list(m_dir->path(), 5, 4));
    QCOMPARE(lister.items().size(), 4);
}

void TestFileSystemListing::shouldFlagLinksAndNeverFollowThem()
{
    const QString inner = m_dir->path() + QStringLiteral("/Beta/inner");
    QVERIFY(QFile::link(m_dir->path(), inner + QStringLiteral("/loop")));
    QVERIFY(QFile::link(m_dir->path() + QStringLiteral("/nothing"), inner + QStringLiteral("/dangling")));
    FileSystemListing lister;
    QVERIFY(lister.list(m_dir->path(), 50));
    const QJsonArray items = lister.items();
    const QJsonObject loop = itemByRealPath(items, inner + QStringLiteral("/loop"));
    QCOMPARE(loop.value(QLatin1String(Items::IsSymlink)).toBool(), true);
    QCOMPARE(loop.value(QLatin1String(Items::Type::Key)).toInt(), int(Items::Type::Folder));
    const QJsonObject dangling = itemByRealPath(items, inner + QStringLiteral("/dangling"));
    QCOMPARE(dangling.value(QLatin1String(Items::IsSymlink)).toBool(), true);
    QCOMPARE(dangling.value(QLatin1String(Items::Type::Key)).toInt(), int(Items::Type::File));
    for (const QString& path : field(items, Items::RealPath))
        QVERIFY2(!path.contains(QStringLiteral("/loop/")), qPrintable(path));
    QCOMPARE(items.size(), 11);

    // Asked for directly, a link to a folder is listed like the folder.
    QVERIFY(lister.list(inner + QStringLiteral("/loop")));
    QCOMPARE(lister.items().size(), 6);
}

void TestFileSystemListing::shouldReportFolderThatIsGone()
{
    const QString gone = m_dir->path() + QStringLiteral("/alpha");
    QVERIFY(QDir(gone).removeRecursively());
    FileSystemListing lister;
    QVERIFY(!lister.list(gone));
    QVERIFY(lister.hasError());
    QVERIFY(lister.errorString().contains(gone));
    QVERIFY(lister.items().isEmpty());
    // The next listing starts clean.
    QVERIFY(lister.list(m_dir->path()));
    QVERIFY(!lister.hasError());
}

void TestFileSystemListing::shouldReportUnreadableFolderAndSkipItBelow()
{
    const QString locked = m_dir->path() + QStringLiteral("/alpha");
    touch(locked + QStringLiteral("/secret"));
    QVERIFY(::chmod(QFile::encodeName(m_dir->path()).constData(), 0755) == 0);
    QVERIFY(::chmod(QFile::encodeName(locked).constData(), 0) == 0);
    const LockedListing result = listAsUnprivileged(locked, m_dir->path());
    QVERIFY(::chmod(QFile::encodeName(locked).constData(), 0700) == 0);
    QVERIFY2(result.ran, "the listing process failed");
    QVERIFY(!result.listedLocked);
    // The siblings of the locked folder are listed all the same.
    QVERIFY(result.listedAll);
    QVERIFY(result.names.contains(QStringLiteral("alpha")));
    QVERIFY(result.names.contains(QStringLiteral("deepest")));
    QVERIFY(!result.names.contains(QStringLiteral("secret")));
    QCOMPARE(result.skipped, QStringList {locked});
}

void TestFileSystemListing::shouldReadMountTable_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("expected"); // name, path, real path, share; empty when left out
    QTest::newRow("root file system") << QByteArray("27 1 254:0 / / rw,relatime - ext4 /dev/vda rw")
                                      << QStringList {"/", "/", "/", "0"};
    QTest::newRow("second disk") << QByteArray("40 27 8:17 / /srv/data rw,relatime shared:5 - xfs /dev/sdb1 rw")
                                 << QStringList {"/srv/data", "/NVB_VOLUMES/srv/data", "/srv/data", "0"};
    QTest::newRow("escaped blank") << QByteArray("41 27 8:18 / /mnt/my\\040disk rw - ext4 /dev/sdc1 rw")
                                   << QStringList {"/mnt/my disk", "/NVB_VOLUMES/mnt/my disk", "/mnt/my disk", "0"};
    QTest::newRow("cifs share") << QByteArray("42 27 0:50 / /mnt/office rw - cifs //fileserver/office rw,vers=3.0")
                                << QStringList {
                                       "//fileserver/office", "/NVB_SHARES/fileserver/office", "/mnt/office", "1"};
    QTest::newRow("nfs share") << QByteArray("43 27 0:51 / /mnt/home rw - nfs4 nas:/export/home rw")
                               << QStringList {"nas:/export/home", "/NVB_SHARES/nas/export/home", "/mnt/home", "1"};
    QTest::newRow("proc") << QByteArray("22 27 0:21 / /proc rw - proc proc rw") << QStringList();
    QTest::newRow("tmpfs") << QByteArray("30 27 0:27 / /scratch rw - tmpfs tmpfs rw") << QStringList();
    QTest::newRow("device folder") << QByteArray("31 27 0:28 / /dev/mapper rw - ext4 /dev/dm-0 rw") << QStringList();
    QTest::newRow("cut line") << QByteArray("31 27 0:28 / /data rw") << QStringList();
}

void TestFileSystemListing::shouldReadMountTable()
{
    QFETCH(QByteArray, line);
    QFETCH(QStringList, expected);
    const QList<FileSystemListing::Volume> volumes = FileSystemListing::volumesFromMountInfo(line + '\n');
    if (expected.isEmpty()) {
        QCOMPARE(volumes.size(), 0);
        return;
    }
    QCOMPARE(volumes.size(), 1);
    const FileSystemListing::Volume& volume = volumes.first();
    QCOMPARE((QStringList {volume.name, volume.path, volume.realPath, volume.isShare ? "1" : "0"}), expected);
}

void TestFileSystemListing::shouldListVolumesOfMountTable()
{
    const QString disk = m_dir->path() + QStringLiteral("/Beta");
    const QString share = m_dir->path() + QStringLiteral("/alpha");
    QFile table(m_dir->path() + QStringLiteral("/mountinfo"));
    QVERIFY(table.open(QIODevice::WriteOnly));
    table.write("27 1 254:0 / " + QFile::encodeName(disk) + " rw - ext4 /dev/vda rw\n");
    table.write("28 27 0:50 / " + QFile::encodeName(share) + " rw - cifs //srv/docs rw\n");
    table.write("29 27 0:51 / " + QFile::encodeName(m_dir->path()) + "/zeta.txt rw - ext4 /dev/vdb rw\n");
    table.write("30 27 0:52 / " + QFile::encodeName(m_dir->path()) + "/missing rw - ext4 /dev/vdc rw\n");
    table.close();
    FileSystemListing::setMountTable(table.fileName());

    FileSystemListing lister;
    QVERIFY(lister.list(QString(), 0, 0, true));
    const QJsonArray items = lister.items();
    // A mount over a file and one whose folder is missing are no volumes.
    QCOMPARE(field(items, Items::RealPath), (QStringList {disk, share}));
    QCOMPARE(field(items, Items::Type::Key), (QStringList {"3", "4"}));
    QCOMPARE(field(items, Items::Path), (QStringList {"/NVB_VOLUMES" + disk, "/NVB_SHARES/srv/docs"}));

    QVERIFY(lister.list(QString(), 1));
    const QJsonObject inner = itemByRealPath(lister.items(), disk + QStringLiteral("/inner"));
    QCOMPARE(inner.value(QLatin1String(Items::Path)).toString(), "/NVB_VOLUMES" + disk + QStringLiteral("/inner"));

    FileSystemListing::setMountTable(m_dir->path() + QStringLiteral("/no-such-table"));
    FileSystemListing unmounted;
    QVERIFY(!unmounted.list(QString()));
    QVERIFY(unmounted.hasError());
    QVERIFY(unmounted.items().isEmpty());
}

void TestFileSystemListing::shouldListRealMountAsVolume()
{
    // A mount of our own, in a mount namespace of this process alone, so that
    // nothing outside the test sees it and it goes away with the process.
    if (::unshare(CLONE_NEWNS) != 0)
        QSKIP("No permission for a private mount namespace here");
    QVERIFY(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0);
    const QString target = m_dir->path() + QStringLiteral("/mounted");
    QVERIFY(QDir().mkpath(target));
    const QString source = m_dir->path() + QStringLiteral("/Beta");
    QVERIFY(
        ::mount(QFile::encodeName(source).constData(), QFile::encodeName(target).constData(), nullptr, MS_BIND, nullptr)
        == 0);

    FileSystemListing lister;
    QVERIFY(lister.list(QString()));
    const QJsonObject volume = itemByRealPath(lister.items(), target);
    QVERIFY(!volume.isEmpty());
    QCOMPARE(volume.value(QLatin1String(Items::Path)).toString(), "/NVB_VOLUMES" + target);
    QCOMPARE(volume.value(QLatin1String(Items::Type::Key)).toInt(), int(Items::Type::Volume));
    QVERIFY(lister.list(target));
    QCOMPARE(field(lister.items(), Items::Name), QStringList {"inner"});
    QVERIFY(::umount(QFile::encodeName(target).constData()) == 0);
}

NVB_TEST_GUILESS_MAIN(TestFileSystemListing)
#include "tst_filesystemlisting.moc"
