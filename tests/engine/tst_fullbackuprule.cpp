#include <QtTest>

#include "records/plan/backupfile.h"
#include "schedule/fullbackuprule.h"
#include "testmain.h"

using NVB::Engine::FullBackupRule;
using NVB::Engine::StoredRestorePoint;

class TestFullBackupRule : public QObject
{
    Q_OBJECT

private slots:
    void shouldGoFullWhenChangesReachTheShare_data()
    {
        // Sizes of the points in order, the first of each generation full;
        // "|" starts a new generation.
        QTest::addColumn<QString>("points");
        QTest::addColumn<int>("percent");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("full");
        QTest::newRow("just under") << QStringLiteral("1000 200 290") << 50 << true << false;
        QTest::newRow("exactly the share") << QStringLiteral("1000 200 300") << 50 << true << true;
        QTest::newRow("condition off") << QStringLiteral("1000 900") << 50 << false << false;
        QTest::newRow("only the newest generation counts")
            << QStringLiteral("1000 900 900 | 4000 100") << 50 << true << false;
        QTest::newRow("no full yet") << QString() << 10 << true << false;
        QTest::newRow("empty full") << QStringLiteral("0 10") << 10 << true << false;
    }

    void shouldGoFullWhenChangesReachTheShare()
    {
        QFETCH(QString, points);
        QFETCH(int, percent);
        QFETCH(bool, enabled);
        QFETCH(bool, full);
        NVB::Info::Plan::BackupFile plan;
        plan.setForceFullDiffSizeConditionEnable(enabled);
        plan.setForceFullDiffSizeCondition(static_cast<unsigned short>(percent));
        QList<StoredRestorePoint> recorded;
        const QDateTime start(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);
        int sequence = 0;
        QUuid generation;
        for (const QString& word : points.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (word == QLatin1String("|")) {
                sequence = 0;
                continue;
            }
            StoredRestorePoint point;
            if (sequence == 0)
                generation = QUuid::createUuid();
            point.generationId = generation;
            point.sequenceNumber = ++sequence;
            point.backupType = sequence == 1 ? 0 : 2;
            point.sizeOnStorage = word.toLongLong();
            point.startUtc = start.addSecs(60 * recorded.size());
            recorded.prepend(point); // the rule must not rely on order
        }
        QCOMPARE(FullBackupRule::sizeConditionMet(plan, recorded), full);
    }
};

NVB_TEST_GUILESS_MAIN(TestFullBackupRule)
#include "tst_fullbackuprule.moc"
