#include <QSignalSpy>

#include "planfixture.h"
#include "plans/planxmllist.h"
#include "records/plan/backupfile.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;

namespace {

QString planXml(const QUuid& id, const QString& name)
{
    NVB::Info::Plan::BackupFile plan;
    plan.setId(id);
    plan.setName(name);
    plan.setStorage(QUuid::createUuid());
    return plan.toXml();
}

} // namespace

class TestPlanXmlList : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void shouldGiveEmptyDocumentForUnknownPlan();
    void shouldLoadXmlOnRequest();
    void shouldMakeRecordOnceAndKeepIt();
    void shouldRefetchCachedPlanOnUpdate();
    void shouldNotCacheUnknownPlanOnUpdate();
    void shouldForgetPlanOnRemove();
    void shouldReportErrors_data();
    void shouldReportErrors();
    void shouldGiveNullRecordForXmlThatIsNoPlan();

private:
    void load(const QUuid& id, const QString& xml);

    EngineTestPeer* m_peer = nullptr;
    QHash<QUuid, QString> m_xml;
};

void TestPlanXmlList::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
    QVERIFY(PlanXmlList::instance());
}

void TestPlanXmlList::init()
{
    m_peer->onCommand(QStringLiteral("PlanGetXML"), [this](const QJsonObject& request) {
        const QUuid id(request.value(QStringLiteral("params")).toObject().value(QStringLiteral("ID")).toString());
        return EngineTestPeer::Answer::reply({{QStringLiteral("planXML"), m_xml.value(id)}});
    });
}

void TestPlanXmlList::load(const QUuid& id, const QString& xml)
{
    m_xml.insert(id, xml);
    QSignalSpy complite(PlanXmlList::instance(), &PlanXmlList::complite);
    PlanXmlList::instance()->getPlan(id);
    QVERIFY(complite.wait());
    QCOMPARE(complite.last().first().toUuid(), id);
}

void TestPlanXmlList::shouldGiveEmptyDocumentForUnknownPlan()
{
    const QUuid id = QUuid::createUuid();
    QVERIFY(PlanXmlList::instance()->planXml(id).isNull());
    QVERIFY(!PlanXmlList::instance()->containts(id));
    QVERIFY(!PlanXmlList::instance()->plan(id));
}

void TestPlanXmlList::shouldLoadXmlOnRequest()
{
    const QUuid id = QUuid::createUuid();
    QSignalSpy begin(PlanXmlList::instance(), &PlanXmlList::beginLoad);
    load(id, planXml(id, QStringLiteral("Documents")));
    QCOMPARE(begin.count(), 1);
    const QJsonObject params = m_peer->lastParams(QStringLiteral("PlanGetXML"));
    QCOMPARE(QUuid(params.value(QStringLiteral("ID")).toString()), id);
    QVERIFY(PlanXmlList::instance()->containts(id));
    QVERIFY(!PlanXmlList::instance()->planXml(id).documentElement().isNull());
}

void TestPlanXmlList::shouldMakeRecordOnceAndKeepIt()
{
    const QUuid id = QUuid::createUuid();
    load(id, planXml(id, QStringLiteral("Photos")));
    NVB::Info::Plan::Base* plan = PlanXmlList::instance()->plan(id);
    QVERIFY(plan);
    QCOMPARE(plan->name(), QStringLiteral("Photos"));
    QCOMPARE(plan->subtype(), 1);
    QCOMPARE(PlanXmlList::instance()->plan(id), plan);
}

void TestPlanXmlList::shouldRefetchCachedPlanOnUpdate()
{
    const QUuid id = QUuid::createUuid();
    load(id, planXml(id, QStringLiteral("Before")));
    QVERIFY(PlanXmlList::instance()->plan(id));
    m_xml.insert(id, planXml(id, QStringLiteral("After")));
    QSignalSpy update(PlanXmlList::instance(), &PlanXmlList::update);
    QSignalSpy complite(PlanXmlList::instance(), &PlanXmlList::complite);
    m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
    QVERIFY(update.wait());
    // Between the update and the new XML the plan is not held.
    QVERIFY(!PlanXmlList::instance()->containts(id));
    QVERIFY(!PlanXmlList::instance()->plan(id));
    QVERIFY(complite.wait());
    QCOMPARE(PlanXmlList::instance()->plan(id)->name(), QStringLiteral("After"));
}

void TestPlanXmlList::shouldNotCacheUnknownPlanOnUpdate()
{
    const QUuid id = QUuid::createUuid();
    m_xml.insert(id, planXml(id, QStringLiteral("Unknown")));
    QSignalSpy begin(PlanXmlList::instance(), &PlanXmlList::beginLoad);
    m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
    const QUuid other = QUuid::createUuid();
    load(other, planXml(other, QStringLiteral("Other")));
    QCOMPARE(begin.count(), 1);
    QVERIFY(!PlanXmlList::instance()->containts(id));
}

void TestPlanXmlList::shouldForgetPlanOnRemove()
{
    const QUuid id = QUuid::createUuid();
    load(id, planXml(id, QStringLiteral("Gone")));
    QVERIFY(PlanXmlList::instance()->plan(id));
    QSignalSpy update(PlanXmlList::instance(), &PlanXmlList::update);
    m_peer->notify(PlanTest::Format::Plan::Remove::Type, {{QStringLiteral("id"), id.toString()}});
    QTRY_VERIFY(!PlanXmlList::instance()->containts(id));
    QVERIFY(!PlanXmlList::instance()->plan(id));
    QCOMPARE(update.count(), 0);
}

void TestPlanXmlList::shouldReportErrors_data()
{
    QTest::addColumn<bool>("engineError");
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("expected");
    QTest::newRow("engine refuses") << true << QString() << "No such plan";
    QTest::newRow("not xml") << false << "<plan><unclosed>"
                             << "Error on XML plan content";
    QTest::newRow("empty text") << false << QString() << "Error on XML plan content";
}

void TestPlanXmlList::shouldReportErrors()
{
    QFETCH(bool, engineError);
    QFETCH(QString, xml);
    QFETCH(QString, expected);
    const QUuid id = QUuid::createUuid();
    m_xml.insert(id, xml);
    if (engineError)
        m_peer->onCommand(QStringLiteral("PlanGetXML"), EngineTestPeer::Answer::error(expected));
    QSignalSpy error(PlanXmlList::instance(), &PlanXmlList::error);
    QSignalSpy complite(PlanXmlList::instance(), &PlanXmlList::complite);
    PlanXmlList::instance()->getPlan(id);
    QVERIFY(error.wait());
    QCOMPARE(error.first().first().toString(), expected);
    QCOMPARE(complite.count(), 0);
    QVERIFY(!PlanXmlList::instance()->containts(id));
}

void TestPlanXmlList::shouldGiveNullRecordForXmlThatIsNoPlan()
{
    const QUuid id = QUuid::createUuid();
    load(id, QStringLiteral("<Something><Else/></Something>"));
    QVERIFY(PlanXmlList::instance()->containts(id));
    QVERIFY(!PlanXmlList::instance()->plan(id));
}

NVB_TEST_MAIN(TestPlanXmlList)
#include "tst_planxmllist.moc"
