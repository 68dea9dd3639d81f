#include <QIcon>
#include <QSignalSpy>

#include "app/icons/iconmanager.h"
#include "planfixture.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;
namespace Column = Models::Table::NvbPlanModelInfo::Column;

namespace {

QByteArray iconBytes(const QIcon& icon)
{
    const QImage image = icon.pixmap(24, 24).toImage();
    return QByteArray(reinterpret_cast<const char*>(image.constBits()), int(image.sizeInBytes()));
}

} // namespace

class TestPlanTableModel : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shouldFillFromPlanList();
    void shouldReportEngineErrorAndKeepRows();
    void shouldAddPlanOnAddNotification();
    void shouldAddUnknownPlanOnUpdateNotification();
    void shouldReplaceSummaryOnUpdateNotification();
    void shouldRemovePlanOnRemoveNotification();
    void shouldShowStateAtOnceThenRefreshedSummary();
    void shouldGiveRunTimesAsUtcDateAndLocalText();
    void shouldGiveNoValueForEmptyOrBadTimes_data();
    void shouldGiveNoValueForEmptyOrBadTimes();
    void shouldPickStatusIcon_data();
    void shouldPickStatusIcon();

private:
    void load(const QList<QJsonObject>& plans);

    EngineTestPeer* m_peer = nullptr;
    PlanTest::Engine* m_engine = nullptr;
    PlanTableModel* m_model = nullptr;
    QAbstractItemModelTester* m_tester = nullptr;
};

void TestPlanTableModel::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
}

void TestPlanTableModel::init()
{
    m_engine = new PlanTest::Engine(m_peer);
    m_model = new PlanTableModel();
    m_tester = new QAbstractItemModelTester(m_model, QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestPlanTableModel::cleanup()
{
    delete m_tester;
    delete m_model;
    delete m_engine;
    QTRY_COMPARE(NVB::Common::Communication::ServiceLink::instance()->pendingCount(), 0);
}

void TestPlanTableModel::load(const QList<QJsonObject>& plans)
{
    m_engine->plans = plans;
    QSignalSpy complite(m_model, &BaseModel::complite);
    QVERIFY(m_model->init());
    QVERIFY(complite.wait());
}

void TestPlanTableModel::shouldFillFromPlanList()
{
    const QUuid first = QUuid::createUuid();
    const QUuid second = QUuid::createUuid();
    m_engine->plans = {PlanTest::summary(first, QStringLiteral("Documents"), 1),
        PlanTest::summary(second, QStringLiteral("Photos back"), 2)};
    QSignalSpy updated(m_model, &BaseModel::updated);
    QSignalSpy complite(m_model, &BaseModel::complite);
    QSignalSpy inserted(m_model, &QAbstractItemModel::rowsInserted);
    QVERIFY(m_model->init());
    QCOMPARE(updated.count(), 1);
    QVERIFY(complite.wait());
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 0);
    QCOMPARE(inserted.first().at(2).toInt(), 1);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->columnCount(), 15);
    QCOMPARE(QUuid(m_model->index(0, Column::ID).data().toString()), first);
    QCOMPARE(m_model->index(1, Column::Name).data().toString(), QStringLiteral("Photos back"));
    QCOMPARE(m_model->index(1, Column::SubType).data().toInt(), 2);
    QCOMPARE(m_model->index(0, Column::LastUploadedSize).data().toLongLong(), 4096);
    const QJsonObject params = m_peer->lastParams(QStringLiteral("PlanGetList"));
    QCOMPARE(params.value(QStringLiteral("profile")).toString(), QString::fromLocal8Bit(qgetenv("USER")));
}

void TestPlanTableModel::shouldReportEngineErrorAndKeepRows()
{
    load({PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), 1)});
    m_peer->onCommand(QStringLiteral("PlanGetList"), EngineTestPeer::Answer::error(QStringLiteral("Database busy")));
    QSignalSpy errors(m_model, &BaseModel::error);
    m_model->init();
    QVERIFY(errors.wait());
    QCOMPARE(errors.first().first().toString(), QStringLiteral("Database busy"));
    QCOMPARE(m_model->rowCount(), 1);
}

void TestPlanTableModel::shouldAddPlanOnAddNotification()
{
    load({PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), 1)});
    const QUuid id = QUuid::createUuid();
    m_engine->plans.append(PlanTest::summary(id, QStringLiteral("New"), 1));
    QSignalSpy inserted(m_model, &QAbstractItemModel::rowsInserted);
    m_peer->notify(PlanTest::Format::Plan::Add::Type, {{QStringLiteral("id"), id.toString()}});
    QVERIFY(inserted.wait());
    QCOMPARE(inserted.first().at(1).toInt(), 1);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->index(1, Column::Name).data().toString(), QStringLiteral("New"));
}

void TestPlanTableModel::shouldAddUnknownPlanOnUpdateNotification()
{
    // An empty list completes with no row and no error.
    QSignalSpy errors(m_model, &BaseModel::error);
    load({});
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(errors.count(), 0);
    const QUuid id = QUuid::createUuid();
    m_engine->plans.append(PlanTest::summary(id, QStringLiteral("Late"), 2));
    QSignalSpy inserted(m_model, &QAbstractItemModel::rowsInserted);
    m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
    QVERIFY(inserted.wait());
    QCOMPARE(m_model->rowCount(), 1);
    // The Add that arrives after it changes the row instead of doubling it.
    QSignalSpy changed(m_model, &QAbstractItemModel::dataChanged);
    m_peer->notify(PlanTest::Format::Plan::Add::Type, {{QStringLiteral("id"), id.toString()}});
    QVERIFY(changed.wait());
    QCOMPARE(m_model->rowCount(), 1);
}

void TestPlanTableModel::shouldReplaceSummaryOnUpdateNotification()
{
    const QUuid id = QUuid::createUuid();
    load({PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), 1),
        PlanTest::summary(id, QStringLiteral("B"), 1)});
    m_engine->set(id, QStringLiteral("Name"), QStringLiteral("B renamed"));
    QSignalSpy changed(m_model, &QAbstractItemModel::dataChanged);
    m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
    QVERIFY(changed.wait());
    QCOMPARE(changed.first().at(0).toModelIndex(), m_model->index(1, 0));
    QCOMPARE(changed.first().at(1).toModelIndex(), m_model->index(1, 14));
    QCOMPARE(m_model->index(1, Column::Name).data().toString(), QStringLiteral("B renamed"));
}

void TestPlanTableModel::shouldRemovePlanOnRemoveNotification()
{
    const QUuid a = QUuid::createUuid();
    const QUuid b = QUuid::createUuid();
    const QUuid c = QUuid::createUuid();
    load({PlanTest::summary(a, QStringLiteral("A"), 1), PlanTest::summary(b, QStringLiteral("B"), 1),
        PlanTest::summary(c, QStringLiteral("C"), 2)});
    QSignalSpy removed(m_model, &QAbstractItemModel::rowsRemoved);
    m_peer->notify(PlanTest::Format::Plan::Remove::Type, {{QStringLiteral("id"), b.toString()}});
    QVERIFY(removed.wait());
    QCOMPARE(removed.first().at(1).toInt(), 1);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(QUuid(m_model->index(1, Column::ID).data().toString()), c);
    // The rows behind the removed one are still found by their id.
    m_engine->set(c, QStringLiteral("Name"), QStringLiteral("C2"));
    QSignalSpy changed(m_model, &QAbstractItemModel::dataChanged);
    m_model->loadInfo(c);
    QVERIFY(changed.wait());
    QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
    QCOMPARE(m_model->index(1, Column::Name).data().toString(), QStringLiteral("C2"));

    // A plan nobody knows is neither removed nor added; the reply to the
    // info request behind it proves the notification was handled first.
    removed.clear();
    QSignalSpy inserted(m_model, &QAbstractItemModel::rowsInserted);
    QSignalSpy complite(m_model, &BaseModel::complite);
    m_peer->notify(PlanTest::Format::Plan::Remove::Type, {{QStringLiteral("id"), QUuid::createUuid().toString()}});
    m_model->loadInfo(QUuid::createUuid());
    QVERIFY(complite.wait());
    QCOMPARE(removed.count() + inserted.count(), 0);
    QCOMPARE(m_model->rowCount(), 2);
}

void TestPlanTableModel::shouldShowStateAtOnceThenRefreshedSummary()
{
    const QUuid id = QUuid::createUuid();
    load({PlanTest::summary(id, QStringLiteral("A"), 1, 2, 6)});
    m_engine->set(id, QStringLiteral("Status"), 1);
    m_engine->set(id, QStringLiteral("LastRunStatus"), 1);
    // The engine's answer to GetInfo is held back until the state is seen.
    m_peer->onCommand(QStringLiteral("PlanGetInfo"), EngineTestPeer::Answer::silence());
    QSignalSpy changed(m_model, &QAbstractItemModel::dataChanged);
    const int asked = m_peer->requestCount(QStringLiteral("PlanGetInfo"));
    m_peer->notify(PlanTest::Format::Plan::StateChange::Type,
        {{QStringLiteral("id"), id.toString()}, {QStringLiteral("state"), 1}, {QStringLiteral("last_state"), 2}});
    QVERIFY(changed.wait());
    QCOMPARE(changed.first().at(0).toModelIndex(), m_model->index(0, 0));
    QCOMPARE(changed.first().at(1).toModelIndex(), m_model->index(0, 14));
    QCOMPARE(m_model->index(0, Column::Status).data().toInt(), 1);
    QCOMPARE(m_model->index(0, Column::LastRunStatus).data().toInt(), 6);
    QTRY_COMPARE(m_peer->requestCount(QStringLiteral("PlanGetInfo")), asked + 1);

    // Now the summary arrives.
    const QJsonObject request = m_peer->lastRequest(QStringLiteral("PlanGetInfo"));
    QJsonObject refreshed = PlanTest::summary(id, QStringLiteral("A"), 1, 1, 1);
    m_peer->sendFrame(NVB::Common::Communication::Envelope::reply(request, {{QStringLiteral("planInfo"), refreshed}}));
    QVERIFY(changed.wait());
    QCOMPARE(m_model->index(0, Column::LastRunStatus).data().toInt(), 1);
}

void TestPlanTableModel::shouldGiveRunTimesAsUtcDateAndLocalText()
{
    load({PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), 1)});
    const QVariant last = m_model->index(0, Column::LastRunTime).data();
    QCOMPARE(last.userType(), int(QMetaType::QDateTime));
    QCOMPARE(last.toDateTime().timeSpec(), Qt::UTC);
    QCOMPARE(last.toDateTime(), QDateTime(QDate(2030, 5, 6), QTime(7, 8, 9), Qt::UTC));
    const QVariant next = m_model->index(0, Column::NextRunTime).data();
    QCOMPARE(next.userType(), int(QMetaType::QString));
    const QDateTime expected = QDateTime(QDate(2030, 5, 7), QTime(7, 8, 9), Qt::UTC).toLocalTime();
    QCOMPARE(next.toString(), QLocale::system().toString(expected, QLocale::ShortFormat));
}

void TestPlanTableModel::shouldGiveNoValueForEmptyOrBadTimes_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("last run empty") << Column::LastRunTime << "LastRunTime"
                                    << "";
    QTest::newRow("last run garbage") << Column::LastRunTime << "LastRunTime"
                                      << "yesterday";
    QTest::newRow("next run garbage") << Column::NextRunTime << "NextRun"
                                      << "2030-13-45";
}

void TestPlanTableModel::shouldGiveNoValueForEmptyOrBadTimes()
{
    QFETCH(int, column);
    QFETCH(QString, key);
    QFETCH(QString, text);
    QJsonObject plan = PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), 1);
    plan.insert(key, text);
    load({plan});
    QVERIFY(!m_model->index(0, column).data().isValid());
}

void TestPlanTableModel::shouldPickStatusIcon_data()
{
    QTest::addColumn<int>("subType");
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("icon");
    QTest::newRow("backup running") << 1 << 1 << 6 << int(IconManager::BackupPlanRunning);
    QTest::newRow("backup warning") << 1 << 2 << 7 << int(IconManager::BackupPlanWarning);
    QTest::newRow("backup failed") << 1 << 2 << 8 << int(IconManager::BackupPlanFailed);
    QTest::newRow("backup other") << 1 << 2 << 5 << int(IconManager::BackupPlan);
    QTest::newRow("restore running") << 2 << 1 << 8 << int(IconManager::RestorePlanRunning);
    QTest::newRow("restore success") << 2 << 2 << 6 << int(IconManager::RestorePlanSuccess);
    QTest::newRow("restore other") << 2 << 4 << -1 << int(IconManager::RestorePlan);
    QTest::newRow("other job") << 3 << 1 << 6 << int(IconManager::Empty);
}

void TestPlanTableModel::shouldPickStatusIcon()
{
    QFETCH(int, subType);
    QFETCH(int, status);
    QFETCH(int, result);
    QFETCH(int, icon);
    load({PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), subType, status, result)});
    const QVariant value = m_model->index(0, Column::Name).data(Qt::DecorationRole);
    if (icon == IconManager::Empty) {
        QVERIFY(!value.isValid());
        return;
    }
    const QIcon expected = IconManager::icon(IconManager::Type(icon));
    QVERIFY(!expected.pixmap(24, 24).isNull());
    QCOMPARE(iconBytes(value.value<QIcon>()), iconBytes(expected));
    QVERIFY(!m_model->index(0, Column::ID).data(Qt::DecorationRole).isValid());
}

NVB_TEST_MAIN(TestPlanTableModel)
#include "tst_plantablemodel.moc"
