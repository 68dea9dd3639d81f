#include <functional>

#include <QJsonDocument>
#include <QTest>

#include "logcapture.h"
#include "records/plan/backupfile.h"
#include "records/repository/archiveenums.h"
#include "records/repository/bunch.h"
#include "records/repository/contentobject.h"
#include "records/repository/generation.h"
#include "records/repository/restorepoint.h"
#include "records/storage/connection.h"
#include "testmain.h"

using namespace NVB::Info::Repository;

using RecordReader = std::function<bool(const QJsonObject&)>;
Q_DECLARE_METATYPE(RecordReader)

namespace {

// Every key is required on reading, so comparing the written records catches
// a field the writer or the reader forgets, as long as no field of the sample
// is left at its default; the first check makes sure of that.
template<typename T> QSharedPointer<T> roundTrip(const T& record)
{
    const QJsonObject written = record.toJson();
    const QJsonObject fresh = T().toJson();
    QStringList unfilled;
    for (auto it = written.begin(); it != written.end(); ++it) {
        if (fresh.value(it.key()) == it.value())
            unfilled.append(it.key());
    }
    if (!unfilled.isEmpty()) {
        qWarning("sample leaves at their default: %s", qPrintable(unfilled.join(QLatin1Char(' '))));
        return {};
    }
    const QSharedPointer<T> read = T::fromJson(written);
    if (read && read->toJson() != written) {
        qWarning("written again differently: %s", QJsonDocument(read->toJson()).toJson().constData());
        return {};
    }
    return read;
}

} // namespace

class TestRepositoryRecords : public QObject
{
    Q_OBJECT

private slots:
    void shouldRoundTripBunchWithAndWithoutPlan();
    void shouldRoundTripGeneration();
    void shouldRoundTripRestorePoint();
    void shouldRoundTripContentObject();
    void shouldRoundTripConnection();
    void shouldRefuseBrokenRecords_data();
    void shouldRefuseBrokenRecords();
};

void TestRepositoryRecords::shouldRoundTripBunchWithAndWithoutPlan()
{
    Bunch bunch;
    bunch.setId(QUuid::createUuid());
    bunch.setConnectionId(QUuid::createUuid());
    bunch.setDisplayName(QStringLiteral("Server \"alpha\""));
    bunch.setType(NVL::Archive::Type(17));
    const QSharedPointer<Bunch> bare = Bunch::fromJson(bunch.toJson());
    QVERIFY(bare);
    QCOMPARE(bare->toJson(), bunch.toJson());
    QVERIFY(!bare->backupPlan());

    auto plan = QSharedPointer<NVB::Info::Plan::BackupFile>::create();
    plan->setName(QStringLiteral("Nightly"));
    plan->encryption().setEnabled(true);
    bunch.setBackupPlan(plan);
    const QSharedPointer<Bunch> withPlan = roundTrip(bunch);
    QVERIFY(withPlan && withPlan->backupPlan());
    QCOMPARE(withPlan->backupPlan()->name(), QStringLiteral("Nightly"));
}

void TestRepositoryRecords::shouldRoundTripGeneration()
{
    Generation g;
    g.setId(QUuid::createUuid());
    g.setBunchId(QUuid::createUuid());
    g.setConnectionId(QUuid::createUuid());
    g.setFirstRestorePoint(QDateTime(QDate(2023, 1, 2), QTime(3, 4, 5, 6), Qt::UTC));
    g.setLastRestorePoint(QDateTime(QDate(2024, 7, 8), QTime(9, 10, 11, 12), Qt::OffsetFromUTC, -3600));
    g.setStatus(Generation::Error);
    g.setBrokenType(NVL::Archive::ToPurgeAfterSync);
    g.setDeepSync(NVL::Archive::DeepSyncRunning);
    g.setIsEncrypted(true);
    g.setHint(QString::fromLatin1(QStringLiteral("Hündin").toUtf8().toBase64()));
    g.setStorageSize(18446744073709551615ULL);
    const QSharedPointer<Generation> read = roundTrip(g);
    QVERIFY(read);
    // Given with an offset, kept as the same instant in UTC.
    QCOMPARE(read->lastRestorePoint(), g.lastRestorePoint());
    QCOMPARE(read->lastRestorePoint().timeSpec(), Qt::UTC);
    QCOMPARE(QString::fromUtf8(QByteArray::fromBase64(read->hint().toLatin1())), QStringLiteral("Hündin"));
    QCOMPARE(read->storageSize(), 18446744073709551615ULL);
}

void TestRepositoryRecords::shouldRoundTripRestorePoint()
{
    RestorePoint p;
    p.setConnectionId(QUuid::createUuid());
    p.setBunchId(QUuid::createUuid());
    p.setGenerationId(QUuid::createUuid());
    p.setSequenceNumber(42);
    p.setStartDate(QDateTime(QDate(2024, 2, 29), QTime(23, 59, 59, 999), Qt::UTC));
    p.setBackupType(NVL::Archive::Incremental);
    p.setType(RestorePoint::Incomplete);
    p.setStatus(RestorePoint::Warning);
    p.setDeepSync(NVL::Archive::DeepSyncNeeded);
    p.setIsEncrypted(true);
    // Above 2^53: a double would round it.
    p.setSizeOnStorage(9007199254740993LL);
    const QSharedPointer<RestorePoint> read = roundTrip(p);
    QVERIFY(read);
    QCOMPARE(read->sizeOnStorage(), 9007199254740993LL);
}

void TestRepositoryRecords::shouldRoundTripContentObject()
{
    ContentObject o;
    o.setDisplayName(QStringLiteral("bericht.pdf"));
    o.setPath(QStringLiteral("NVB_ROOT/home/anna/bericht.pdf"));
    o.setType(ContentObject::Link);
    o.setModifyDate(QDateTime(QDate(2022, 5, 6), QTime(7, 8), Qt::UTC));
    o.setOriginalSize(123456789012ULL);
    o.setDeleted(true);
    const QSharedPointer<ContentObject> read = roundTrip(o);
    QVERIFY(read);
    QVERIFY(read->isLeaf());
}

void TestRepositoryRecords::shouldRoundTripConnection()
{
    NVB::Info::Storage::Connection c;
    c.setId(QUuid::createUuid());
    c.setDisplayName(QStringLiteral("Wasabi EU"));
    c.setType(29);
    c.setSyncInProgress(true);
    QVERIFY(roundTrip(c));
}

void TestRepositoryRecords::shouldRefuseBrokenRecords_data()
{
    QTest::addColumn<QJsonObject>("object");
    QTest::addColumn<RecordReader>("read");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<QString>("logged");
    Bunch b;
    b.setId(QUuid::createUuid());
    b.setConnectionId(QUuid::createUuid());
    Generation g;
    g.setId(QUuid::createUuid());
    g.setBunchId(QUuid::createUuid());
    g.setConnectionId(QUuid::createUuid());
    RestorePoint p;
    p.setConnectionId(QUuid::createUuid());
    p.setBunchId(QUuid::createUuid());
    p.setGenerationId(QUuid::createUuid());
    p.setStartDate(QDateTime::currentDateTimeUtc());
    ContentObject o;
    o.setPath(QStringLiteral("/a"));
    NVB::Info::Storage::Connection c;
    c.setId(QUuid::createUuid());
    c.setType(1);
    const auto row = [](const char* name, const QJsonObject& object, const RecordReader& read, const char* key,
                         const QJsonValue& value, const char* logged) {
        QTest::newRow(name) << object << read << QString::fromLatin1(key) << value << QString::fromLatin1(logged);
    };
    const RecordReader bunch = [](const QJsonObject& json) { return bool(Bunch::fromJson(json)); };
    const RecordReader generation = [](const QJsonObject& json) { return bool(Generation::fromJson(json)); };
    const RecordReader point = [](const QJsonObject& json) { return bool(RestorePoint::fromJson(json)); };
    const RecordReader object = [](const QJsonObject& json) { return bool(ContentObject::fromJson(json)); };
    const RecordReader connection
        = [](const QJsonObject& json) { return bool(NVB::Info::Storage::Connection::fromJson(json)); };
    row("bunch without id", b.toJson(), bunch, "id", QJsonValue(QJsonValue::Undefined), "Missing key \"id\"");
    row("bunch bad plan", b.toJson(), bunch, "backupPlan", QStringLiteral("<x/>"), "backupPlan");
    row("bunch plan number", b.toJson(), bunch, "backupPlan", 3, "neither plan XML nor null");
    row("generation status", g.toJson(), generation, "status", 3, "\"status\" of generation");
    row("generation hint", g.toJson(), generation, "hint", QStringLiteral("%%"), "Base64");
    row("generation size", g.toJson(), generation, "storageSize", 12, "decimal text");
    row("point date", p.toJson(), point, "startDate", QStringLiteral(""), "startDate");
    row("point fraction", p.toJson(), point, "sequenceNumber", 1.5, "sequenceNumber");
    row("point deep sync", p.toJson(), point, "deepSync", 4, "deepSync");
    row("object path", o.toJson(), object, "path", QStringLiteral(""), "path");
    row("connection type", c.toJson(), connection, "type", 99, "\"type\" of connection");
    row("connection sync", c.toJson(), connection, "syncInProgress", 1, "syncInProgress");
}

void TestRepositoryRecords::shouldRefuseBrokenRecords()
{
    QFETCH(QJsonObject, object);
    QFETCH(RecordReader, read);
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QFETCH(QString, logged);
    if (value.isUndefined())
        object.remove(key);
    else
        object.insert(key, value);
    const LogCapture log;
    QVERIFY(!read(object));
    QVERIFY2(log.text().contains(logged), qPrintable(log.text()));
}

NVB_TEST_GUILESS_MAIN(TestRepositoryRecords)
#include "tst_repositoryrecords.moc"
