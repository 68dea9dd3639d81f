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
    void shouldKeepUnknownResultValue();
};

void TestPlanValues::shouldKeepUnknownResultValue()
{
    const PlanResult result(4711);
    QCOMPARE(result.value(), 4711);
    QVERIFY(!result.isKnown());
    QCOMPARE(result.displayName(), QStringLiteral("Unknown"));
}

NVB_TEST_GUILESS_MAIN(TestPlanValues)
#include "tst_planvalues.moc"
