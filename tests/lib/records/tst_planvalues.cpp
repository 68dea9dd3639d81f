#include <QTest>

#include "records/plan/planenums.h"
#include "records/plan/planobject.h"
#include "records/plan/planresult.h"
#include "records/plan/planstatus.h"
#include "records/plan/plansubtype.h"
#include "testmain.h"

using namespace NVB::Info::Plan;

class TestPlanValues : public QObject
{
    Q_OBJECT

private slots:
    void shouldNameEveryKnownResult_data();
    void shouldNameEveryKnownResult();
    void shouldKeepUnknownResultValue();
    void shouldCompareResultsByValue();
    void shouldCompareStatusesByValue();
    void shouldCompareSubTypes();
    void shouldMapTypesAndSubTypesToText();
    void shouldCarryPlanObjectFields();
};

void TestPlanValues::shouldNameEveryKnownResult_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << -1 << QStringLiteral("Unknown");
    QTest::newRow("success") << 6 << QStringLiteral("Success");
    QTest::newRow("warning") << 7 << QStringLiteral("Warning");
    QTest::newRow("failed") << 8 << QStringLiteral("Failed");
    QTest::newRow("interrupted") << 5 << QStringLiteral("Interrupted");
    QTest::newRow("purging") << 102 << QStringLiteral("Purging");
}

void TestPlanValues::shouldNameEveryKnownResult()
{
    QFETCH(int, value);
    QFETCH(QString, text);
    const PlanResult result(value);
    QCOMPARE(result.value(), value);
    QCOMPARE(result.displayName(), text);
    QVERIFY(result.isKnown());
}

void TestPlanValues::shouldKeepUnknownResultValue()
{
    const PlanResult result(4711);
    QCOMPARE(result.value(), 4711);
    QVERIFY(!result.isKnown());
    QCOMPARE(result.displayName(), QStringLiteral("Unknown"));
}

void TestPlanValues::shouldCompareResultsByValue()
{
    QVERIFY(PlanResult(8) == PlanResult(PlanResult::Failed));
    QVERIFY(PlanResult(6) != PlanResult(PlanResult::Failed));
    QVERIFY(PlanResult() == PlanResult(-1));
}

void TestPlanValues::shouldCompareStatusesByValue()
{
    QVERIFY(PlanStatus(1) == PlanStatus(PlanStatus::Running));
    QVERIFY(PlanStatus(1).isRunning());
    QVERIFY(!PlanStatus(2).isRunning());
    QVERIFY(PlanStatus(2) != PlanStatus(PlanStatus::Running));
    QCOMPARE(PlanStatus(2).displayName(), QStringLiteral("Idle"));
}

void TestPlanValues::shouldCompareSubTypes()
{
    QVERIFY(PlanSubType(SubType::File) == PlanSubType(SubType::File));
    QVERIFY(PlanSubType(SubType::File) != PlanSubType(SubType::DiskImage));
    QCOMPARE(PlanSubType(SubType::DiskImage).type(), SubType::DiskImage);
    QCOMPARE(PlanSubType(SubType::DiskImage).displayName(), QStringLiteral("Disk Image"));
}

void TestPlanValues::shouldMapTypesAndSubTypesToText()
{
    QCOMPARE(typeToStr.size(), 4);
    QCOMPARE(typeToStr.value(Type::Backup), QStringLiteral("Backup"));
    QCOMPARE(typeToStr.value(Type(2)), QStringLiteral("Restore"));
    QCOMPARE(typeToStr.value(Type(4)), QStringLiteral("Purge"));
    QCOMPARE(subtypeToStr.size(), 4);
    QCOMPARE(subtypeToStr.value(SubType(0)), QStringLiteral("File"));
    QCOMPARE(subtypeToStr.value(SubType(2)), QStringLiteral("System Full File"));
}

void TestPlanValues::shouldCarryPlanObjectFields()
{
    const QUuid id = QUuid::createUuid();
    PlanObject object(
        id, QStringLiteral("Documents"), PlanStatus::Running, PlanResult::Warning, PlanSubType(SubType::DiskImage));
    QCOMPARE(object.id(), id);
    QCOMPARE(object.displayName(), QStringLiteral("Documents"));
    QVERIFY(object.status() == PlanStatus(1));
    QCOMPARE(object.lastRunStatus().value(), 7);
    QVERIFY(object.subType() == PlanSubType(SubType::DiskImage));
    object.setLastRunStatus(PlanResult(8));
    QCOMPARE(object.lastRunStatus().displayName(), QStringLiteral("Failed"));
}

NVB_TEST_GUILESS_MAIN(TestPlanValues)
#include "tst_planvalues.moc"
