#include <QLabel>
#include <QSignalSpy>
#include <QTimer>

#include "planfixture.h"
#include "plans/planeditwait.h"
#include "plans/planxmllist.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;

class TestPlanEditWait : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shouldEndOnlyWhenTableShowsNewPlan();
    void shouldStartPlanOnceWhenTableReportsTwice();
    void shouldKeepWaitingForOtherPlansChanges();
    void shouldKeepWaitingAfterRefusedSave();
    void shouldSwallowEscape();

private:
    // Runs setPlan; a guard ends a wait that would never end, so that a
    // broken dialog fails the test instead of hanging it.
    bool runDialog(PlanEditWait& dialog, const QUuid& id, bool run, std::function<void()> onWaiting = {});

    EngineTestPeer* m_peer = nullptr;
    PlanTest::Engine* m_engine = nullptr;
    PlanTableModel* m_table = nullptr;
    QStringList m_messages;
};

void TestPlanEditWait::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    QVERIFY(PlanTest::startChannel(m_peer));
}

void TestPlanEditWait::init()
{
    m_engine = new PlanTest::Engine(m_peer);
    m_table = new PlanTableModel();
    PlanTest::creator().model = m_table;
    m_messages.clear();
    m_peer->onCommand(QStringLiteral("PlanExecuteStart"), EngineTestPeer::Answer::reply({}));
    m_peer->onCommand(QStringLiteral("CommonPlanEdit"), EngineTestPeer::Answer::reply({}));
}

void TestPlanEditWait::cleanup()
{
    PlanTest::creator().model = nullptr;
    delete m_table;
    delete m_engine;
    QTRY_COMPARE(NVB::Common::Communication::ServiceLink::instance()->pendingCount(), 0);
}

bool TestPlanEditWait::runDialog(PlanEditWait& dialog, const QUuid& id, bool run, std::function<void()> onWaiting)
{
    bool guarded = false;
    QTimer guard;
    guard.setSingleShot(true);
    connect(&guard, &QTimer::timeout, &dialog, [&] {
        guarded = true;
        dialog.done(-1);
    });
    guard.start(10000);
    connect(&dialog, &PlanEditWait::setMessage, &dialog, [this, &dialog, onWaiting](const QString& text) {
        m_messages.append(text);
        // Later, from the dialog's own loop: the reply's socket doesn't read
        // again while its slot still runs.
        if (text == QLatin1String("Wait command result...") && onWaiting)
            QTimer::singleShot(0, &dialog, onWaiting);
    });
    dialog.setPlan(id, QStringLiteral("<plan/>"), run);
    return !guarded;
}

void TestPlanEditWait::shouldEndOnlyWhenTableShowsNewPlan()
{
    const QUuid id = QUuid::createUuid();
    const int starts = m_peer->requestCount(QStringLiteral("PlanExecuteStart"));
    PlanEditWait dialog(false);
    bool openAfterReply = false;
    const bool ended = runDialog(dialog, id, false, [&] {
        // The engine has answered the save; the dialog still waits for the
        // table, which learns of the plan by the notification only.
        openAfterReply = dialog.isVisible();
        m_engine->plans.append(PlanTest::summary(id, QStringLiteral("Saved"), 1));
        m_peer->notify(PlanTest::Format::Plan::Add::Type, {{QStringLiteral("id"), id.toString()}});
    });
    QVERIFY(ended);
    QVERIFY(openAfterReply);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(m_table->rowCount(), 1);
    QCOMPARE(PlanXmlList::instance()->lastCreatedPlan(), id);
    QCOMPARE(m_messages,
        (QStringList {QStringLiteral("Exec edit plan command..."), QStringLiteral("Wait command result...")}));
    QCOMPARE(m_peer->requestCount(QStringLiteral("PlanExecuteStart")), starts);
    bool saved = false;
    for (const QJsonObject& request : m_peer->requests()) {
        if (request.value(QStringLiteral("command")).toString() != QLatin1String("CommonPlanEdit"))
            continue;
        const QJsonObject args = request.value(QStringLiteral("params")).toObject();
        saved = QUuid(args.value(QStringLiteral("ID")).toString()) == id
            && args.value(QStringLiteral("planXML")).toString() == QLatin1String("<plan/>")
            && args.value(QStringLiteral("profile")).toString() == QString::fromLocal8Bit(qgetenv("USER"));
    }
    QVERIFY(saved);
}

void TestPlanEditWait::shouldStartPlanOnceWhenTableReportsTwice()
{
    const QUuid id = QUuid::createUuid();
    m_engine->plans = {PlanTest::summary(id, QStringLiteral("Edited"), 1)};
    QSignalSpy complite(m_table, &BaseModel::complite);
    m_table->init();
    QVERIFY(complite.wait());
    const int starts = m_peer->requestCount(QStringLiteral("PlanExecuteStart"));
    // The start is held back, so that both reports of the table reach the
    // dialog while it is still open.
    m_peer->onCommand(QStringLiteral("PlanExecuteStart"), EngineTestPeer::Answer::silence());
    PlanEditWait dialog(true);
    QSignalSpy changed(m_table, &QAbstractItemModel::dataChanged);
    const bool ended = runDialog(dialog, id, true, [&] {
        m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
        m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
        QTimer::singleShot(0, &dialog, [&] {
            QTRY_COMPARE(changed.count(), 2);
            // The table's refreshes of the summary may come before or after
            // the start; answer the start itself.
            QTRY_COMPARE(m_peer->requestCount(QStringLiteral("PlanExecuteStart")), starts + 1);
            m_peer->sendFrame(NVB::Common::Communication::Envelope::reply(
                m_peer->lastRequest(QStringLiteral("PlanExecuteStart")), {}));
        });
    });
    QVERIFY(ended);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(m_peer->requestCount(QStringLiteral("PlanExecuteStart")), starts + 1);
    QVERIFY(m_messages.contains(QStringLiteral("Running plan...")));
    const QJsonObject request = m_peer->lastRequest(QStringLiteral("PlanExecuteStart"));
    QVERIFY(request.contains(QStringLiteral("params")));
    QVERIFY(!request.value(QStringLiteral("params")).toObject().contains(QStringLiteral("force_full")));
}

void TestPlanEditWait::shouldKeepWaitingForOtherPlansChanges()
{
    const QUuid id = QUuid::createUuid();
    const QUuid other = QUuid::createUuid();
    m_engine->plans
        = {PlanTest::summary(other, QStringLiteral("Other"), 1), PlanTest::summary(id, QStringLiteral("Mine"), 1)};
    QSignalSpy complite(m_table, &BaseModel::complite);
    m_table->init();
    QVERIFY(complite.wait());
    PlanEditWait dialog(true);
    bool openAfterOther = false;
    const bool ended = runDialog(dialog, id, false, [&] {
        QSignalSpy changed(m_table, &QAbstractItemModel::dataChanged);
        m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), other.toString()}});
        QVERIFY(changed.wait());
        openAfterOther = dialog.isVisible() && dialog.result() == 0;
        m_peer->notify(PlanTest::Format::Plan::Update::Type, {{QStringLiteral("id"), id.toString()}});
    });
    QVERIFY(ended);
    QVERIFY(openAfterOther);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void TestPlanEditWait::shouldKeepWaitingAfterRefusedSave()
{
    m_peer->onCommand(QStringLiteral("CommonPlanEdit"), EngineTestPeer::Answer::error(QStringLiteral("Bad plan")));
    const int before = m_peer->requestCount(QStringLiteral("CommonPlanEdit"));
    PlanEditWait dialog(false);
    bool stillOpen = false;
    QTimer::singleShot(0, &dialog, [&] {
        QTRY_COMPARE(m_peer->requestCount(QStringLiteral("CommonPlanEdit")), before + 1);
        QTRY_COMPARE(NVB::Common::Communication::ServiceLink::instance()->pendingCount(), 0);
        QTest::qWait(50);
        stillOpen = dialog.isVisible();
        dialog.done(QDialog::Rejected);
    });
    QVERIFY(runDialog(dialog, QUuid::createUuid(), true));
    QVERIFY(stillOpen);
    QCOMPARE(m_messages, QStringList {QStringLiteral("Exec edit plan command...")});
}

void TestPlanEditWait::shouldSwallowEscape()
{
    PlanEditWait dialog(false);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QSignalSpy rejected(&dialog, &QDialog::rejected);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QCOMPARE(rejected.count(), 0);
    emit dialog.setMessage(QStringLiteral("text"));
    QCOMPARE(dialog.findChild<QLabel*>(QStringLiteral("message"))->text(), QStringLiteral("text"));
}

NVB_TEST_MAIN(TestPlanEditWait)
#include "tst_planeditwait.moc"
