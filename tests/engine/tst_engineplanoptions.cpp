#include <QDirIterator>
#include <QJsonArray>
#include <QSignalSpy>
#include <QtTest>

#include "engineprocess.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "records/plan/restorefile.h"
#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "synccommand.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineProcess;
using NvbTest::SyncCommand;
namespace Format = NVB::Common::Communication::Notification::Format;

namespace {

const QByteArray Sentence = "Meet me by the old lighthouse at half past nine.";

} // namespace

// What a plan asks of its data, through the real engine: filters,
// encryption, retention.
class TestEnginePlanOptions : public QObject
{
    Q_OBJECT

private:
    EngineProcess* m_engine = nullptr;
    QTemporaryDir m_source;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
    QList<QJsonObject> m_notifications;

    bool waitForState(const QUuid& plan, int state)
    {
        return QTest::qWaitFor(
            [&] {
                for (const QJsonObject& note : std::as_const(m_notifications)) {
                    const QJsonObject message = note.value(QLatin1String(Format::Header::Message)).toObject();
                    if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString())
                            == Format::Plan::StateChange::Type
                        && QUuid(message.value(QStringLiteral("id")).toString()) == plan
                        && message.value(QStringLiteral("state")).toInt() == state)
                        return true;
                }
                return false;
            },
            60000);
    }

    bool save(const NVB::Info::Plan::Base& plan)
    {
        const auto reply = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
            {{QStringLiteral("ID"), plan.id().toString()}, {QStringLiteral("planXML"), plan.toXml()}});
        return reply.answered && !reply.isError;
    }

    bool run(const QUuid& plan)
    {
        m_notifications.clear();
        const auto reply
            = SyncCommand::run(QStringLiteral("PlanExecuteStart"), {{QStringLiteral("ID"), plan.toString()}});
        return reply.answered && !reply.isError && waitForState(plan, 2);
    }

    QJsonObject info(const QUuid& plan)
    {
        return SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
            .data.value(QStringLiteral("planInfo"))
            .toObject();
    }

    static QMap<QString, QByteArray> tree(const QString& root)
    {
        QMap<QString, QByteArray> files;
        QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                files.insert(it.filePath().mid(root.size()), file.readAll());
        }
        return files;
    }

    // Source paths of the files the plan's latest run stored.
    QStringList storedSources(const QUuid& plan) const
    {
        const QString folder = m_storage.path() + QStringLiteral("/NVB_tester/") + plan.toString(QUuid::WithoutBraces);
        QStringList files;
        QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << QLatin1Char('/') + it.next().mid(folder.size() + 1).section(QLatin1Char('/'), 2);
        files.sort();
        return files;
    }

    static void write(const QString& path, const QByteArray& data)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(data);
    }

    QUuid restore(const QUuid& backup, const QString& password, const QString& target, const QDateTime& at = {})
    {
        NVB::Info::Plan::RestoreFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Back"));
        plan.setStorage(m_account);
        plan.setRestorePoint(QStringLiteral("NVB_Archive\\%1\\latest").arg(backup.toString(QUuid::WithoutBraces)));
        plan.setDestination(target);
        plan.setRestoreToOriginalLocation(false);
        plan.setEncryptionPassword(password);
        if (at.isValid()) {
            plan.setRestoreType(NVB::Info::Plan::Restore::PointInTime);
            plan.setPointInTime(at);
        }
        return save(plan) && run(plan.id()) ? plan.id() : QUuid();
    }

private slots:
    void initTestCase()
    {
        m_engine = new EngineProcess;
        QVERIFY2(m_engine->start(), m_engine->output().constData());
        m_engine->exportSocketPath();
        connect(NVB::Common::Communication::NotificationCenter::instance(),
            &NVB::Common::Communication::NotificationCenter::notification, this,
            [this](const QJsonDocument& document) { m_notifications.append(document.object()); });
        const auto connection = NVB::Common::Communication::ConnectionManager::instance();
        QVERIFY(QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000));
        const auto saved = SyncCommand::run(QStringLiteral("SaveStorage"),
            {{QStringLiteral("ID"), m_account.toString()}, {QStringLiteral("displayName"), QStringLiteral("Disk")},
                {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), QStringLiteral("tester")},
                {QStringLiteral("params"),
                    QJsonObject {{QStringLiteral("Path"), m_storage.path() + QLatin1Char('/')}}}});
        QVERIFY2(saved.answered && !saved.isError, qPrintable(saved.errorString));

        QDir(m_source.path()).mkpath(QStringLiteral("letters/old"));
        QByteArray text;
        for (int i = 0; i < 4000; ++i)
            text += Sentence + ' ' + QByteArray::number(i) + '\n';
        QFile big(m_source.filePath(QStringLiteral("letters/long.txt")));
        QVERIFY(big.open(QIODevice::WriteOnly));
        big.write(text);
        big.close();
        QFile small(m_source.filePath(QStringLiteral("letters/old/note.txt")));
        QVERIFY(small.open(QIODevice::WriteOnly));
        small.write(Sentence);
    }

    void cleanupTestCase()
    {
        if (m_engine)
            QVERIFY(m_engine->stop());
        delete m_engine;
    }

    void shouldStoreExactlyWhatTheFiltersTake()
    {
        QTemporaryDir source;
        const QString root = source.path();
        for (const char* name : {"keep.txt", "Readme.MD", "skip.png", ".hidden.txt", "tmp/in-tmp.txt",
                 "cache-1/in-cache.txt", "docs/deep.txt", "docs/.secret/inside.txt", "busy.txt"})
            write(root + QLatin1Char('/') + QLatin1String(name), "data");
        // Held open for writing by this process while the run reads it.
        QFile busy(root + QStringLiteral("/busy.txt"));
        QVERIFY(busy.open(QIODevice::Append));

        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Filtered"));
        // Filters, in-use files and encryption are the legacy format's.
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({root});
        plan.setUseCompression(false);
        plan.setFilterType(NVB::Info::Plan::BackupFile::OnlyListed);
        // As the wizard writes it: blanks kept around the patterns.
        plan.setFilter({QStringLiteral("*.txt"), QStringLiteral(" *.md")});
        plan.setExcludeFolderList({QStringLiteral("tmp"), QStringLiteral(" cache*")});
        plan.setExcludeSystemAndHidden(true);
        plan.setSkipInUseFiles(true);
        QVERIFY(save(plan));
        QVERIFY(run(plan.id()));
        const QJsonObject summary = info(plan.id());
        QCOMPARE(summary.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Warning));
        QVERIFY2(summary.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("in use")),
            qPrintable(summary.value(QStringLiteral("LastRunMessage")).toString()));
        QCOMPARE(storedSources(plan.id()),
            (QStringList {root + QStringLiteral("/Readme.MD"), root + QStringLiteral("/docs/deep.txt"),
                root + QStringLiteral("/keep.txt")}));

        // Closed, it is taken by the next run.
        busy.close();
        QVERIFY(run(plan.id()));
        QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QVERIFY(storedSources(plan.id()).contains(root + QStringLiteral("/busy.txt")));
    }

    void shouldKeepOnlyTheNewestVersionsAndRestoreKeptPoints()
    {
        QTemporaryDir source;
        const QString file = source.path() + QStringLiteral("/diary.txt");
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setIsArchive(false);
        plan.setName(QStringLiteral("Versions"));
        plan.setStorage(m_account);
        plan.setItems({source.path()});
        plan.retentionPolicy().setType(NVB::Info::Plan::BackupRetentionPolicy::Custom);
        plan.retentionPolicy().setUseKeepVersion(true);
        plan.retentionPolicy().setKeepVersion(2);
        QVERIFY(save(plan));
        for (int day = 1; day <= 4; ++day) {
            write(file, "entry of day " + QByteArray::number(day));
            QVERIFY(run(plan.id()));
            QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
            QTest::qWait(1100); // points a second apart, to restore each by its time
        }
        // Two versions stay; the points that named only older ones are gone.
        QCOMPARE(storedSources(plan.id()), (QStringList {file, file}));
        const QJsonArray runs = SyncCommand::run(
            QStringLiteral("HistoryListByPlan"), {{QStringLiteral("planID"), plan.id().toString(QUuid::WithoutBraces)}})
                                    .data.value(QStringLiteral("HistoryListByPlan"))
                                    .toArray();
        QCOMPARE(runs.size(), 4); // newest first
        for (int day : {4, 3, 1}) {
            QDateTime start
                = QDateTime::fromString(runs.at(4 - day).toObject().value(QStringLiteral("StartTimeUTC")).toString(),
                    QStringLiteral("yyyyMMddhhmmss"));
            start.setTimeSpec(Qt::UTC);
            QTemporaryDir target;
            const QUuid back = restore(plan.id(), QString(), target.path(), start);
            const QJsonObject result = info(back);
            if (day == 1) {
                QCOMPARE(result.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
                continue;
            }
            QCOMPARE(result.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
            QFile restored(target.path() + file);
            QVERIFY(restored.open(QIODevice::ReadOnly));
            QCOMPARE(restored.readAll(), "entry of day " + QByteArray::number(day));
        }
    }

    void shouldStoreNothingReadableAndRestoreOnlyWithPassword_data()
    {
        QTest::addColumn<bool>("compress");
        QTest::addColumn<int>("type");
        QTest::newRow("AES 128") << false << 0;
        QTest::newRow("zstd and AES 256") << true << 2;
    }

    void shouldStoreNothingReadableAndRestoreOnlyWithPassword()
    {
        QFETCH(bool, compress);
        QFETCH(int, type);
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(QStringLiteral("Secret letters"));
        plan.setIsArchive(false);
        plan.setStorage(m_account);
        plan.setItems({m_source.path()});
        plan.setUseCompression(compress);
        plan.encryption().setEnabled(true);
        plan.encryption().setEncryptionType(NVB::Info::Plan::BackupEncyption::Type(type));
        plan.encryption().setPassword(QStringLiteral("s3cret"));
        QVERIFY(save(plan));
        QVERIFY(run(plan.id()));
        QCOMPARE(info(plan.id()).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));

        const QMap<QString, QByteArray> stored = tree(m_storage.path());
        QVERIFY(!stored.isEmpty());
        for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
            QVERIFY2(!it.value().contains(Sentence.left(20)), qPrintable(it.key()));
            QVERIFY2(!it.value().contains("s3cret"), qPrintable(it.key()));
            QVERIFY2(!it.key().contains(QStringLiteral("letters")) && !it.key().contains(QStringLiteral("note")),
                qPrintable(it.key()));
        }

        // A second run with a changed file keeps the plan's salt: one key
        // derivation restores the whole point.
        write(m_source.filePath(QStringLiteral("letters/old/note.txt")), Sentence + " Again.");
        QVERIFY(run(plan.id()));
        QSet<QByteArray> salts;
        const QMap<QString, QByteArray> objects = tree(m_storage.path());
        for (auto it = objects.cbegin(); it != objects.cend(); ++it) {
            if (it.key().contains(plan.id().toString(QUuid::WithoutBraces)) && it.value().startsWith("NVBC"))
                salts.insert(it.value().mid(12, 16));
        }
        QCOMPARE(salts.size(), 1);

        QTemporaryDir wrong;
        const QUuid refused = restore(plan.id(), QStringLiteral("guess"), wrong.path());
        QVERIFY(!refused.isNull());
        const QJsonObject failed = info(refused);
        QCOMPARE(failed.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY2(failed.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("wrong password")),
            qPrintable(failed.value(QStringLiteral("LastRunMessage")).toString()));
        QVERIFY(QDir(wrong.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));

        QTemporaryDir right;
        const QUuid restored = restore(plan.id(), QStringLiteral("s3cret"), right.path());
        QCOMPARE(info(restored).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QMap<QString, QByteArray> back;
        const QMap<QString, QByteArray> all = tree(right.path());
        for (auto it = all.cbegin(); it != all.cend(); ++it)
            back.insert(it.key().mid(m_source.path().size()), it.value());
        QCOMPARE(back, tree(m_source.path()));
    }
};

NVB_TEST_GUILESS_MAIN(TestEnginePlanOptions)
#include "tst_engineplanoptions.moc"
