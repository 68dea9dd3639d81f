#include <QSignalSpy>

#include "planfixture.h"
#include "plans/planbackupmodel.h"
#include "plans/planrestoremodel.h"
#include "plans/planxmllist.h"
#include "records/plan/backupfile.h"
#include "records/plan/restorefile.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;
namespace ViewColumn = Models::Table::NvbPlanBackupModelInfo::Column;

// The backup view and, through the data rows marked restore, its twin.
class TestPlanBackupModel : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shouldFailWithoutSharedTable();
    void shouldShowOnlyItsJobKind_data();
    void shouldShowOnlyItsJobKind();
    void shouldSortNamesAsPeopleRead();
    void shouldFollowTableChanges();
    void shouldSwapRunTimeAndMessageColumns();
    void shouldFillStorageAndXmlOnceXmlArrives();
    void shouldKeepStorageBlankForPlanOfOtherKind();
    void shouldForwardErrors();

private:
    QString xmlOf(int job, const QUuid& id, const QUuid& storage) const;
    bool loadTable(const QList<QJsonObject>& plans);

    EngineTestPeer* m_peer = nullptr;
    PlanTest::Engine* m_engine = nullptr;
    PlanTableModel* m_table = nullptr;
    QHash<QUuid, QString> m_xml;
};

void TestPlanBackupModel::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
}

void TestPlanBackupModel::init()
{
    m_engine = new PlanTest::Engine(m_peer);
    m_peer->onCommand(QStringLiteral("PlanGetXML"), [this](const QJsonObject& request) {
        const QUuid id(request.value(QStringLiteral("params")).toObject().value(QStringLiteral("ID")).toString());
        return EngineTestPeer::Answer::reply({{QStringLiteral("planXML"), m_xml.value(id)}});
    });
    m_table = new PlanTableModel();
    PlanTest::creator().model = m_table;
}

void TestPlanBackupModel::cleanup()
{
    PlanTest::creator().model = nullptr;
    delete m_table;
    delete m_engine;
    QTRY_COMPARE(NVB::Common::Communication::ServiceLink::instance()->pendingCount(), 0);
}

bool TestPlanBackupModel::loadTable(const QList<QJsonObject>& plans)
{
    m_engine->plans = plans;
    QSignalSpy complite(m_table, &BaseModel::complite);
    m_table->init();
    return complite.wait();
}

QString TestPlanBackupModel::xmlOf(int job, const QUuid& id, const QUuid& storage) const
{
    QScopedPointer<NVB::Info::Plan::Base> plan;
    if (job == 1)
        plan.reset(new NVB::Info::Plan::BackupFile());
    else
        plan.reset(new NVB::Info::Plan::RestoreFile());
    plan->setId(id);
    plan->setName(QStringLiteral("plan"));
    plan->setStorage(storage);
    return plan->toXml();
}

void TestPlanBackupModel::shouldFailWithoutSharedTable()
{
    PlanTest::creator().model = nullptr;
    PlanBackupModel view;
    QAbstractItemModelTester tester(&view, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(!view.init());
    QCOMPARE(view.rowCount(), 0);
}

void TestPlanBackupModel::shouldShowOnlyItsJobKind_data()
{
    QTest::addColumn<bool>("restore");
    QTest::newRow("backup view") << false;
    QTest::newRow("restore view") << true;
}

void TestPlanBackupModel::shouldShowOnlyItsJobKind()
{
    QFETCH(bool, restore);
    QVERIFY(loadTable({PlanTest::summary(QUuid::createUuid(), QStringLiteral("Backup one"), 1),
        PlanTest::summary(QUuid::createUuid(), QStringLiteral("Restore one"), 2),
        PlanTest::summary(QUuid::createUuid(), QStringLiteral("Purge"), 5),
        PlanTest::summary(QUuid::createUuid(), QStringLiteral("Backup two"), 1)}));

    QScopedPointer<PlanFullTableModel> view(
        restore ? static_cast<PlanFullTableModel*>(new PlanRestoreModel()) : new PlanBackupModel());
    QAbstractItemModelTester tester(view.data(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy inserted(view.data(), &QAbstractItemModel::rowsInserted);
    QVERIFY(view->init());
    QStringList names;
    for (int row = 0; row < view->rowCount(); ++row)
        names << view->index(row, ViewColumn::Name).data().toString();
    if (restore)
        QCOMPARE(names, QStringList {QStringLiteral("Restore one")});
    else
        QCOMPARE(names, (QStringList {QStringLiteral("Backup one"), QStringLiteral("Backup two")}));
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(view->flags(view->index(0, 0)), Qt::ItemIsEnabled | Qt::ItemIsSelectable);
}

void TestPlanBackupModel::shouldSortNamesAsPeopleRead()
{
    QVERIFY(loadTable({PlanTest::summary(QUuid::createUuid(), QStringLiteral("Plan 10"), 1),
        PlanTest::summary(QUuid::createUuid(), QStringLiteral("Plan 9"), 1),
        PlanTest::summary(QUuid::createUuid(), QStringLiteral("Plan 2"), 1),
        PlanTest::summary(QUuid::createUuid(), QStringLiteral("Archive"), 1)}));
    PlanBackupModel view;
    QAbstractItemModelTester tester(&view, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(view.init());
    QStringList names;
    for (int row = 0; row < view.rowCount(); ++row)
        names << view.index(row, ViewColumn::Name).data().toString();
    QCOMPARE(names,
        (QStringList {
            QStringLiteral("Archive"), QStringLiteral("Plan 2"), QStringLiteral("Plan 9"), QStringLiteral("Plan 10")}));
}

void TestPlanBackupModel::shouldFollowTableChanges()
{
    const QUuid late = QUuid::createUuid();
    const QUuid gone = QUuid::createUuid();
    QVERIFY(loadTable({PlanTest::summary(gone, QStringLiteral("Plan 5"), 1)}));
    PlanBackupModel view;
    QAbstractItemModelTester tester(&view, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(view.init());
    QSignalSpy forwarded(&view, &BaseModel::complite);

    m_engine->plans.append(PlanTest::summary(late, QStringLiteral("Plan 1"), 1));
    QSignalSpy inserted(&view, &QAbstractItemModel::rowsInserted);
    m_peer->notify(PlanTest::Format::Plan::Add::Type, {{QStringLiteral("id"), late.toString()}});
    QVERIFY(inserted.wait());
    QCOMPARE(forwarded.count(), 1);
    QCOMPARE(view.rowCount(), 2);
    QCOMPARE(view.index(0, ViewColumn::Name).data().toString(), QStringLiteral("Plan 1"));

    // A rename moves the row; the view follows the proxy's new order.
    QPersistentModelIndex renamed = view.index(0, ViewColumn::Name);
    m_engine->set(late, QStringLiteral("Name"), QStringLiteral("Plan 7"));
    QSignalSpy changed(&view, &QAbstractItemModel::dataChanged);
    m_table->loadInfo(late);
    QVERIFY(changed.wait());
    QCOMPARE(view.index(1, ViewColumn::Name).data().toString(), QStringLiteral("Plan 7"));
    QCOMPARE(renamed.row(), 1);

    QSignalSpy removed(&view, &QAbstractItemModel::rowsRemoved);
    m_peer->notify(PlanTest::Format::Plan::Remove::Type, {{QStringLiteral("id"), gone.toString()}});
    QVERIFY(removed.wait());
    QCOMPARE(view.rowCount(), 1);
    QCOMPARE(view.index(0, ViewColumn::Name).data().toString(), QStringLiteral("Plan 7"));
}

void TestPlanBackupModel::shouldSwapRunTimeAndMessageColumns()
{
    QVERIFY(loadTable({PlanTest::summary(QUuid::createUuid(), QStringLiteral("A"), 1)}));
    PlanBackupModel view;
    QAbstractItemModelTester tester(&view, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(view.init());
    QCOMPARE(view.index(0, ViewColumn::LastRunTime).data().toDateTime(),
        QDateTime(QDate(2030, 5, 6), QTime(7, 8, 9), Qt::UTC));
    QCOMPARE(view.index(0, ViewColumn::LastRunMessage).data().toString(), QStringLiteral("done"));
    // The status icon comes through with its role: the same picture as the
    // table's, and the table has none for the plain display columns.
    const QVariant icon = view.index(0, ViewColumn::Name).data(Qt::DecorationRole);
    QCOMPARE(icon.userType(), int(QMetaType::QIcon));
    QCOMPARE(icon.value<QIcon>().pixmap(16).toImage(),
        m_table->index(0, Models::Table::NvbPlanModelInfo::Column::Name)
            .data(Qt::DecorationRole)
            .value<QIcon>()
            .pixmap(16)
            .toImage());
    QVERIFY(!icon.value<QIcon>().isNull());
}

void TestPlanBackupModel::shouldFillStorageAndXmlOnceXmlArrives()
{
    const QUuid id = QUuid::createUuid();
    const QUuid storage = QUuid::createUuid();
    m_xml.insert(id, xmlOf(1, id, storage));
    QVERIFY(loadTable({PlanTest::summary(id, QStringLiteral("A"), 1)}));
    PlanBackupModel view;
    QAbstractItemModelTester tester(&view, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(view.init());
    QVERIFY(!view.index(0, ViewColumn::StorageID).data().isValid());
    QVERIFY(!view.index(0, ViewColumn::PlanXML).data().isValid());

    QSignalSpy changed(&view, &QAbstractItemModel::dataChanged);
    PlanXmlList::instance()->getPlan(id);
    QVERIFY(changed.wait());
    QCOMPARE(changed.first().at(0).toModelIndex(), view.index(0, 0));
    QCOMPARE(changed.first().at(1).toModelIndex(), view.index(0, 15));
    QCOMPARE(view.index(0, ViewColumn::StorageID).data().toUuid(), storage);
    QCOMPARE(
        view.index(0, ViewColumn::PlanXML).data().toByteArray(), PlanXmlList::instance()->planXml(id).toByteArray(1));
    QVERIFY(view.index(0, ViewColumn::PlanXML).data().toByteArray().contains("plan"));
}

void TestPlanBackupModel::shouldKeepStorageBlankForPlanOfOtherKind()
{
    // The summary says backup, the XML says restore: the view trusts neither
    // half and shows nothing from the XML.
    const QUuid id = QUuid::createUuid();
    m_xml.insert(id, xmlOf(2, id, QUuid::createUuid()));
    QVERIFY(loadTable({PlanTest::summary(id, QStringLiteral("A"), 1)}));
    PlanBackupModel view;
    QVERIFY(view.init());
    QSignalSpy loaded(PlanXmlList::instance(), &PlanXmlList::complite);
    PlanXmlList::instance()->getPlan(id);
    QVERIFY(loaded.wait());
    QVERIFY(PlanXmlList::instance()->plan(id));
    QVERIFY(!view.index(0, ViewColumn::StorageID).data().isValid());
    QVERIFY(!view.index(0, ViewColumn::PlanXML).data().isValid());
}

void TestPlanBackupModel::shouldForwardErrors()
{
    PlanBackupModel view;
    QVERIFY(view.init());
    m_peer->onCommand(QStringLiteral("PlanGetList"), EngineTestPeer::Answer::error(QStringLiteral("Engine busy")));
    QSignalSpy errors(&view, &BaseModel::error);
    m_table->init();
    QVERIFY(errors.wait());
    QCOMPARE(errors.first().first().toString(), QStringLiteral("Engine busy"));
}

NVB_TEST_MAIN(TestPlanBackupModel)
#include "tst_planbackupmodel.moc"
