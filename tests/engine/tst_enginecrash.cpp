#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QtTest>

#include <memory>

#include "archive/archiverestorejob.h"
#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "runs/filerestorejob.h"
#include "service/connectionmanager.h"
#include "store/enginestore.h"
#include "synccommand.h"
#include "testmain.h"

using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
using namespace NVB::Engine;

// Backs up a changing tree again and again and kills the engine at a random
// moment of each run, as a power cut or the OOM killer would. Whatever the
// next engine lists as a restore point must give back exactly the tree the
// test had when that run started.
class TestEngineCrash : public QObject
{
    Q_OBJECT

private:
    using Tree = QMap<QString, QByteArray>; // path below the source: SHA-256

    QTemporaryDir m_home;
    QTemporaryDir m_source;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
    QUuid m_plan;

    static QByteArray sha(const QByteArray& data) { return QCryptographicHash::hash(data, QCryptographicHash::Sha256); }

    static bool connected()
    {
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        return connection && connection->isLocalManagmentConnected();
    }

    std::unique_ptr<EngineProcess> startEngine()
    {
        auto engine = std::make_unique<EngineProcess>(m_home.path());
        if (!engine->start())
            qWarning() << engine->output();
        return engine;
    }

    // Changes a few files (some keeping their size), adds and removes some.
    void change(QRandomGenerator& random, Tree* tree)
    {
        // One large file changes every time, so that a run lasts long enough
        // for many kills to land in the middle of its copying.
        QVector<quint32> words(int(random.bounded(2, 6)) << 18);
        random.fillRange(words.data(), words.size());
        const QByteArray large(reinterpret_cast<const char*>(words.constData()), words.size() * 4);
        QFile big(m_source.filePath(QStringLiteral("large.bin")));
        QVERIFY(big.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(big.write(large), qint64(large.size()));
        tree->insert(QStringLiteral("large.bin"), sha(large));
        for (int n = 0; n < 12; ++n) {
            const QString name = QStringLiteral("d%1/f%2.bin").arg(random.bounded(6)).arg(random.bounded(40));
            const QString path = m_source.filePath(name);
            if (random.bounded(5) == 0 && tree->contains(name)) {
                QVERIFY(QFile::remove(path));
                tree->remove(name);
                continue;
            }
            QByteArray data(int(random.bounded(1, 48 * 1024)), Qt::Uninitialized);
            if (tree->contains(name) && random.bounded(2) == 0)
                data.resize(int(QFileInfo(path).size())); // same size, other bytes
            for (char& byte : data)
                byte = char(random.bounded(256));
            QDir().mkpath(QFileInfo(path).absolutePath());
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            QCOMPARE(file.write(data), qint64(data.size()));
            tree->insert(name, sha(data));
        }
    }

    // Restores the point into a fresh folder and compares it with the tree
    // the test recorded for its run, and with the checksums the store kept.
    void checkPoint(EngineStore& store, const StoredRestorePoint& point, const Tree& expected, bool archive)
    {
        const QList<StoredContent> content = store.content(point.rowId);
        QTemporaryDir target;
        std::atomic_bool stop {false};
        if (archive) {
            ArchiveRestoreJob::Parameters parameters;
            parameters.storageRoot = m_storage.path();
            parameters.repositoryRoot
                = QStringLiteral("NVB_crash/%1/archive").arg(m_plan.toString(QUuid::WithoutBraces));
            parameters.generation = point.generationId;
            parameters.sequence = point.sequenceNumber;
            parameters.destination = target.path();
            const auto result = ArchiveRestoreJob(parameters).run(stop, {});
            QVERIFY2(result.planResult == NVB::Info::Plan::PlanResult::Success, qPrintable(result.message));
        } else {
            FileRestoreJob::Parameters parameters;
            parameters.storageRoot = m_storage.path();
            parameters.content = content;
            parameters.destination = target.path();
            const auto result = FileRestoreJob(parameters).run(stop, {});
            QVERIFY2(result.totals.failedCount == 0, qPrintable(result.message));
        }

        Tree restored;
        const QString base = target.path() + m_source.path();
        QDirIterator it(base, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            restored.insert(path.mid(base.size() + 1), sha(file.readAll()));
        }
        QCOMPARE(restored, expected);
        for (const StoredContent& item : content) {
            if (item.type == StoredContent::File)
                QCOMPARE(item.checksum, expected.value(item.path.mid(m_source.path().size() + 1)));
        }
    }

private slots:
    void initTestCase() { qputenv("NVB_ENGINE_SOCKET", (m_home.path() + QStringLiteral("/run/engine.sock")).toUtf8()); }

    void shouldKeepEveryListedPointWholeThroughKills_data()
    {
        QTest::addColumn<bool>("archive");
        QTest::newRow("legacy format") << false;
        QTest::newRow("new format") << true;
    }

    void shouldKeepEveryListedPointWholeThroughKills()
    {
        QFETCH(bool, archive);
        QDir(m_source.path()).removeRecursively();
        QDir().mkpath(m_source.path());
        const quint32 seed = QRandomGenerator::global()->generate();
        qInfo("seed %u", seed);
        QRandomGenerator random(seed);

        auto engine = startEngine();
        QVERIFY(engine->isRunning());
        QVERIFY(QTest::qWaitFor(connected, 10000));
        QVERIFY(!SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), m_account.toString()},
                {QStringLiteral("displayName"), QStringLiteral("Crash disk")}, {QStringLiteral("type"), 1},
                {QStringLiteral("prefix"), QStringLiteral("crash")},
                {QStringLiteral("params"),
                    QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}})
                     .isError);
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Crash loop"));
        plan.setStorage(m_account);
        plan.setItems({m_source.path()});
        plan.setUseCompression(true); // the default, and the harder path for a kill
        plan.setIsArchive(archive);
        m_plan = plan.id();
        QVERIFY(!SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}})
                     .isError);

        Tree tree;
        // The tree as each run found it, by the time the run was asked for.
        QList<QPair<QDateTime, Tree>> recorded;
        const auto startRun = [&] {
            change(random, &tree);
            recorded.append({QDateTime::currentDateTimeUtc(), tree});
            const auto started
                = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), m_plan.toString()}});
            QVERIFY2(started.answered && !started.isError, qPrintable(started.errorString));
        };
        const auto listedPoints = [&] {
            EngineStore store;
            return store.open(engine->dataDirectory() + QStringLiteral("/nvbackup.db"))
                ? store.restorePoints(m_account, m_plan).size()
                : -1;
        };

        // One whole run first tells how long a run takes on this machine (a
        // sanitizer build is many times slower); the kills then fall within
        // twice that, so about half of them land after a run has ended.
        QElapsedTimer clock;
        clock.start();
        startRun();
        if (QTest::currentTestFailed())
            return;
        QVERIFY(QTest::qWaitFor([&] { return listedPoints() == 1; }, 120000));
        const quint32 span = quint32(qMax<qint64>(50, 2 * clock.elapsed()));
        qInfo("a whole run took %lld ms", clock.elapsed());

        int points = 0;
        for (int round = 0; round < 20; ++round) {
            startRun();
            if (QTest::currentTestFailed())
                return;
            QTest::qWait(int(random.bounded(span)));
            engine->kill();
            QVERIFY(QTest::qWaitFor([] { return !connected(); }, 10000));

            engine = startEngine();
            QVERIFY(engine->isRunning());
            QVERIFY(QTest::qWaitFor(connected, 10000));

            EngineStore store;
            QVERIFY2(store.open(engine->dataDirectory() + QStringLiteral("/nvbackup.db")), qPrintable(store.lastError()));
            const QList<StoredRestorePoint> listed = store.restorePoints(m_account, m_plan);
            points = listed.size();
            for (const StoredRestorePoint& point : listed) {
                // Each point against the tree of the run that made it: the
                // last one asked for before the point's start.
                int made = -1;
                for (int i = 0; i < recorded.size(); ++i) {
                    if (recorded.at(i).first <= point.startUtc)
                        made = i;
                }
                QVERIFY(made >= 0);
                checkPoint(store, point, recorded.at(made).second, archive);
                if (QTest::currentTestFailed())
                    return;
            }
        }
        qInfo("%d restore points survived 20 kills", points);
        // Half the kills fall after their run has ended, so a loop that adds
        // no point to the first run's means finished runs were lost.
        QVERIFY(points > 1);
        QVERIFY(engine->stop());
    }
};

NVB_TEST_GUILESS_MAIN(TestEngineCrash)
#include "tst_enginecrash.moc"
