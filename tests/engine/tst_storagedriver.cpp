#include <QtTest>

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "storage/filesystemdriver.h"
#include "storage/memorydriver.h"
#include "testenvironment.h"

using namespace NVB::Engine;

// What every storage driver must do, run once per driver. A new driver (a
// server, a cloud) joins by adding its factory in main().
class TestStorageDriverConformance : public QObject
{
    Q_OBJECT

public:
    using Factory = std::function<std::unique_ptr<StorageDriver>(const QString& scratch)>;

    explicit TestStorageDriverConformance(Factory factory)
        : m_factory(std::move(factory))
    { }

private:
    static QStringList keys(const StorageListing& listing)
    {
        QStringList result;
        for (const StorageObjectInfo& object : listing.objects)
            result.append(object.key);
        return result;
    }

    Factory m_factory;
    std::unique_ptr<QTemporaryDir> m_scratch;
    std::unique_ptr<StorageDriver> m_driver;

private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        m_driver = m_factory(m_scratch->path());
    }

    void cleanup()
    {
        m_driver.reset();
        m_scratch.reset();
    }

    void shouldRoundTripAndOverwriteObjects()
    {
        const QByteArray binary("with\0nul\xff bytes", 15);
        QVERIFY(m_driver->write(QStringLiteral("top"), binary).ok());
        QVERIFY(m_driver->write(QStringLiteral("deep/er/still"), QByteArrayLiteral("nested")).ok());
        QVERIFY(m_driver->write(QStringLiteral("empty"), QByteArray()).ok());
        QCOMPARE(m_driver->read(QStringLiteral("top")).data, binary);
        QCOMPARE(m_driver->read(QStringLiteral("deep/er/still")).data, QByteArrayLiteral("nested"));
        const StorageRead empty = m_driver->read(QStringLiteral("empty"));
        QVERIFY(empty.ok() && empty.data.isEmpty());

        // A shorter object replaces a longer one whole.
        QVERIFY(m_driver->write(QStringLiteral("top"), QByteArrayLiteral("new")).ok());
        QCOMPARE(m_driver->read(QStringLiteral("top")).data, QByteArrayLiteral("new"));
        const StorageStat stat = m_driver->stat(QStringLiteral("top"));
        QVERIFY(stat.ok() && stat.exists);
        QCOMPARE(stat.size, qint64(3));

        // An object cannot also be a folder of others.
        QVERIFY(!m_driver->write(QStringLiteral("top/below"), QByteArrayLiteral("x")).ok());
        QVERIFY(!m_driver->write(QStringLiteral("deep/er"), QByteArrayLiteral("x")).ok());
        QCOMPARE(m_driver->read(QStringLiteral("deep/er/still")).data, QByteArrayLiteral("nested"));
    }

    void shouldReadRanges()
    {
        QByteArray data(1000, Qt::Uninitialized);
        for (int i = 0; i < data.size(); ++i)
            data[i] = char(i * 7);
        QVERIFY(m_driver->write(QStringLiteral("r"), data).ok());
        const struct
        {
            qint64 offset, length;
            QByteArray expected;
        } cases[] = {{0, -1, data}, {10, 20, data.mid(10, 20)}, {990, 50, data.mid(990)}, {1000, 10, {}}, {5000, 1, {}},
            {0, 0, {}}, {999, -1, data.right(1)}};
        for (const auto& range : cases) {
            const StorageRead read = m_driver->read(QStringLiteral("r"), range.offset, range.length);
            QVERIFY2(read.ok(), qPrintable(read.error));
            QCOMPARE(read.data, range.expected);
        }
        QVERIFY(!m_driver->read(QStringLiteral("r"), -1, 5).ok());
        const StorageRead missing = m_driver->read(QStringLiteral("no/such"));
        QVERIFY(!missing.ok());
        QVERIFY2(missing.error.contains(QLatin1String("no/such")), qPrintable(missing.error));
    }

    void shouldListUnderPrefixes()
    {
        for (const char* key : {"a/b/c", "a/b/d", "a/e", "ab/f", "g"})
            QVERIFY(m_driver->write(QString::fromLatin1(key), QByteArray(int(qstrlen(key)), 'x')).ok());
        const StorageListing all = m_driver->list(QString());
        QVERIFY2(all.ok(), qPrintable(all.error));
        QCOMPARE(keys(all), QStringList({"a/b/c", "a/b/d", "a/e", "ab/f", "g"}));
        QCOMPARE(all.objects.at(2).size, qint64(3));
        QCOMPARE(keys(m_driver->list(QStringLiteral("a"))), QStringList({"a/b/c", "a/b/d", "a/e"}));
        QCOMPARE(keys(m_driver->list(QStringLiteral("a/b"))), QStringList({"a/b/c", "a/b/d"}));
        for (const char* empty : {"nothing", "g", "a/b/c"}) {
            const StorageListing listing = m_driver->list(QString::fromLatin1(empty));
            QVERIFY2(listing.ok() && listing.objects.isEmpty(), empty);
        }
        QVERIFY(!m_driver->list(QStringLiteral("../a")).ok());
    }

    void shouldStatAndRemove()
    {
        const StorageStat missing = m_driver->stat(QStringLiteral("x/y"));
        QVERIFY(missing.ok() && !missing.exists);
        QVERIFY(m_driver->remove(QStringLiteral("x/y")).ok());
        QVERIFY(m_driver->write(QStringLiteral("x/y"), QByteArrayLiteral("1")).ok());
        QVERIFY(m_driver->write(QStringLiteral("x/z"), QByteArrayLiteral("2")).ok());
        QVERIFY(m_driver->remove(QStringLiteral("x/y")).ok());
        QVERIFY(m_driver->remove(QStringLiteral("x/y")).ok());
        QVERIFY(!m_driver->stat(QStringLiteral("x/y")).exists);
        QVERIFY(!m_driver->read(QStringLiteral("x/y")).ok());
        QCOMPARE(keys(m_driver->list(QString())), QStringList({"x/z"}));
    }

    void shouldRefuseBadKeys_data()
    {
        QTest::addColumn<QString>("key");
        for (const char* key : {"", "/abs", "a/../b", "./a", "a//b", "a/", "..", ".tmp-x", "a/.tmp-y", "a\\b"})
            QTest::newRow(key) << QString::fromLatin1(key);
    }

    void shouldRefuseBadKeys()
    {
        QFETCH(QString, key);
        QVERIFY(!m_driver->write(key, QByteArrayLiteral("x")).ok());
        QVERIFY(!m_driver->read(key).ok());
        QVERIFY(!m_driver->stat(key).ok());
        QVERIFY(!m_driver->remove(key).ok());
        QVERIFY(m_driver->list(QString()).objects.isEmpty());
    }

    void shouldNeverShowAHalfWrittenObject()
    {
        // Writers race on one key while a reader watches: every read must see
        // one whole version, never a mix or a prefix.
        const QByteArray versions[] = {QByteArray(3 << 20, 'a'), QByteArray(2 << 20, 'b'), QByteArray(1 << 20, 'c')};
        QVERIFY(m_driver->write(QStringLiteral("hot/object"), versions[0]).ok());
        std::atomic<int> failures {0};
        std::vector<std::thread> writers;
        for (const QByteArray& version : versions) {
            writers.emplace_back([&, version] {
                for (int i = 0; i < 8; ++i)
                    failures += m_driver->write(QStringLiteral("hot/object"), version).ok() ? 0 : 1;
            });
        }
        int torn = 0;
        for (int i = 0; i < 40; ++i) {
            const QByteArray seen = m_driver->read(QStringLiteral("hot/object")).data;
            torn += std::find(std::begin(versions), std::end(versions), seen) == std::end(versions) ? 1 : 0;
        }
        for (std::thread& writer : writers)
            writer.join();
        QCOMPARE(failures.load(), 0);
        QCOMPARE(torn, 0);
        QCOMPARE(m_driver->list(QStringLiteral("hot")).objects.size(), 1);
    }
};

// What only a folder on disk can get wrong: links and stray temporary files.
class TestFileSystemDriver : public QObject
{
    Q_OBJECT

private slots:
    void shouldNeverFollowLinksBelowTheRoot()
    {
        QTemporaryDir root;
        QTemporaryDir outside;
        QVERIFY(QFile::link(outside.path(), root.filePath(QStringLiteral("escape"))));
        QFile secret(outside.filePath(QStringLiteral("secret")));
        QVERIFY(secret.open(QIODevice::WriteOnly) && secret.write("secret") == 6);
        secret.close();
        QVERIFY(QFile::link(secret.fileName(), root.filePath(QStringLiteral("secretlink"))));

        FileSystemDriver driver(root.path());
        const StorageStatus written = driver.write(QStringLiteral("escape/planted"), QByteArrayLiteral("x"));
        QVERIFY(!written.ok());
        QVERIFY2(written.error.contains(QLatin1String("link")), qPrintable(written.error));
        QVERIFY(!QFile::exists(outside.filePath(QStringLiteral("planted"))));
        QVERIFY(!driver.read(QStringLiteral("escape/secret")).ok());
        QVERIFY(!driver.read(QStringLiteral("secretlink")).ok());
        QVERIFY(!driver.stat(QStringLiteral("secretlink")).ok());
        QVERIFY(driver.list(QString()).objects.isEmpty());
    }

    void shouldSkipUnfinishedWritesAndReportAMissingRoot()
    {
        QTemporaryDir root;
        QFile stray(root.filePath(QStringLiteral(".tmp-0123")));
        QVERIFY(stray.open(QIODevice::WriteOnly));
        stray.close();
        FileSystemDriver driver(root.path());
        QVERIFY(driver.write(QStringLiteral("kept"), QByteArrayLiteral("1")).ok());
        QCOMPARE(driver.list(QString()).objects.size(), 1);
        QCOMPARE(QDir(root.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);

        FileSystemDriver gone(root.filePath(QStringLiteral("unmounted")));
        for (const QString& error :
            {gone.list(QString()).error, gone.list(QStringLiteral("a")).error, gone.stat(QStringLiteral("a")).error,
                gone.remove(QStringLiteral("a")).error, gone.write(QStringLiteral("a"), "1").error}) {
            QVERIFY2(error.contains(QLatin1String("unmounted")), qPrintable(error));
        }
        QVERIFY(!QFile::exists(root.filePath(QStringLiteral("unmounted"))));
    }
};

int main(int argc, char* argv[])
{
    NvbTest::TestEnvironment environment;
    QCoreApplication app(argc, argv);
    int failures = 0;
    TestStorageDriverConformance memory([](const QString&) { return std::make_unique<MemoryDriver>(); });
    failures += QTest::qExec(&memory, argc, argv);
    TestStorageDriverConformance folder(
        [](const QString& scratch) { return std::make_unique<FileSystemDriver>(scratch); });
    failures += QTest::qExec(&folder, argc, argv);
    TestFileSystemDriver fileSystem;
    failures += QTest::qExec(&fileSystem, argc, argv);
    return failures;
}

#include "tst_storagedriver.moc"
