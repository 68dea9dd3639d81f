#include <QTemporaryDir>
#include <QtTest>

#include "records/plan/backupfile.h"
#include "retention/retentionplanner.h"
#include "stores/defaultsettings.h"
#include "testmain.h"

using NVB::Engine::RetentionPlanner;
using NVB::Engine::RetentionRules;
using NVB::Engine::StoredContent;

namespace {

const QDateTime Start(QDate(2026, 1, 1), QTime(2, 0), Qt::UTC);

StoredContent file(const QString& path, int versionDay)
{
    StoredContent item;
    item.path = path;
    item.type = StoredContent::File;
    item.object = QStringLiteral("run%1%2").arg(versionDay).arg(path);
    item.modifiedUtc = Start.addDays(versionDay);
    return item;
}

// A year of daily runs: /a changes weekly, /b is deleted locally on day 200.
QList<RetentionPlanner::Point> year()
{
    QList<RetentionPlanner::Point> points;
    for (int day = 0; day < 365; ++day) {
        RetentionPlanner::Point point;
        point.point.rowId = day + 1;
        point.point.startUtc = Start.addDays(day);
        point.content.append(file(QStringLiteral("/a"), day / 7 * 7));
        if (day < 200)
            point.content.append(file(QStringLiteral("/b"), 0));
        StoredContent folder;
        folder.path = QStringLiteral("/");
        folder.type = StoredContent::Folder;
        point.content.append(folder);
        points.append(point);
    }
    return points;
}

} // namespace

class TestRetentionPlanner : public QObject
{
    Q_OBJECT
private slots:
    void shouldExpireExactlyOverAYear_data();
    void shouldExpireExactlyOverAYear();
    void shouldTakeGlobalDefaultsForDefaultPolicy();
};

void TestRetentionPlanner::shouldExpireExactlyOverAYear_data()
{
    QTest::addColumn<int>("ageDays");
    QTest::addColumn<int>("keepVersions");
    QTest::addColumn<int>("deleteLocalyDays");
    QTest::addColumn<int>("versions");
    QTest::addColumn<int>("firstKeptPoint");
    // Backup-date age 90: /a's versions before day 274 and /b, gone since
    // day 200 for more than 30 days; points up to day 279 named only those.
    QTest::newRow("older than 90 days, deleted after 30") << 90 << 0 << 30 << 41 << 281;
    // Three versions of /a stay (days 350, 357, 364); /b's only version is
    // its newest. Points from day 200 to 349 named only expired versions.
    QTest::newRow("keep 3 versions") << -1 << 3 << -1 << 50 << 1;
}

void TestRetentionPlanner::shouldExpireExactlyOverAYear()
{
    QFETCH(int, ageDays);
    QFETCH(int, keepVersions);
    QFETCH(int, deleteLocalyDays);
    QFETCH(int, versions);
    QFETCH(int, firstKeptPoint);
    RetentionRules rules;
    rules.ageDays = ageDays;
    rules.useBackupDate = true;
    rules.keepVersions = keepVersions;
    rules.deleteLocalyDays = deleteLocalyDays;
    const QList<RetentionPlanner::Point> points = year();
    const auto result = RetentionPlanner::plan(points, rules, Start.addDays(364));
    QCOMPARE(result.versions, versions);
    QCOMPARE(result.objects.size(), versions);

    // No point that stays names a removed object, and the newest is whole.
    QSet<qint64> removedPoints(result.points.cbegin(), result.points.cend());
    const QSet<QString> removed(result.objects.cbegin(), result.objects.cend());
    QVERIFY(!removedPoints.contains(365));
    QVERIFY(!result.pathsByPoint.contains(365));
    for (const auto& point : points) {
        if (removedPoints.contains(point.point.rowId))
            continue;
        for (const StoredContent& item : point.content) {
            const bool gone = result.pathsByPoint.value(point.point.rowId).contains(item.path);
            QCOMPARE(gone, removed.contains(item.object));
        }
    }
    if (firstKeptPoint > 1) {
        QCOMPARE(result.points.size(), firstKeptPoint - 1);
        QCOMPARE(*std::max_element(result.points.cbegin(), result.points.cend()), qint64(firstKeptPoint - 1));
    } else {
        QCOMPARE(result.points.size(), 150);
    }
}

void TestRetentionPlanner::shouldTakeGlobalDefaultsForDefaultPolicy()
{
    QTemporaryDir dir;
    NVB::DefaultSettings defaults(dir.filePath(QStringLiteral("defaults.json")), NVB::DefaultSettings::defaultValues());
    QVERIFY(defaults.setSerializationSupportRetentionTime(QStringLiteral("60.00:00:00")));
    QVERIFY(defaults.setRetentionDeleteLastVersion(QStringLiteral("true")));
    QVERIFY(defaults.setRetentionNumberOfVersions(QStringLiteral("5")));
    NVB::Info::Plan::BackupFile plan;
    plan.setIsArchive(false);
    plan.retentionPolicy().setUseKeepVersion(true); // ignored: the plan follows the defaults
    plan.retentionPolicy().setKeepVersion(1);
    RetentionRules rules = RetentionRules::fromPlan(plan, &defaults);
    QCOMPARE(rules.ageDays, 60);
    QVERIFY(!rules.keepLast);
    QCOMPARE(rules.keepVersions, 5);
    // The backup date always keeps the last version.
    QVERIFY(defaults.setRetentionUseBackupDate(QStringLiteral("true")));
    QVERIFY(RetentionRules::fromPlan(plan, &defaults).keepLast);
    // Off constants and a text without the dot switch the rules off.
    QVERIFY(defaults.setSerializationSupportRetentionTime(QStringLiteral("60")));
    QVERIFY(defaults.setRetentionNumberOfVersions(QStringLiteral("-1")));
    QVERIFY(RetentionRules::fromPlan(plan, &defaults).isEmpty());

    plan.retentionPolicy().setType(NVB::Info::Plan::BackupRetentionPolicy::Custom);
    plan.retentionPolicy().setUseDeleteOlder(true);
    plan.retentionPolicy().setDeleteFileAge({2, NVB::Info::Plan::BackupRetentionPolicy::Month});
    plan.retentionPolicy().setUseBackupDate(false);
    plan.retentionPolicy().setUseKeepLastVersion(false);
    rules = RetentionRules::fromPlan(plan, &defaults);
    QCOMPARE(rules.ageDays, 60);
    QCOMPARE(rules.keepVersions, 1);
    QVERIFY(!rules.keepLast);
    // The new format follows the same rules.
    plan.setIsArchive(true);
    QCOMPARE(RetentionRules::fromPlan(plan, &defaults).ageDays, 60);
}

NVB_TEST_GUILESS_MAIN(TestRetentionPlanner)
#include "tst_retentionplanner.moc"
