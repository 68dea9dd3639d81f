#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

#include "enginetestpeer.h"
#include "filetree.h"
#include "models/filesystemcheckedsharecontrolmodel.h"
#include "service/commands/plan.h"
#include "service/connectionmanager.h"
#include "service/servicelink.h"
#include "testmain.h"

using NVB::GUI::FileSystemCheckedShareControlModel;
using NvbTest::EngineTestPeer;
namespace Communication = NVB::Common::Communication;
namespace UsedShare = Communication::Commands::Format::Plan::GetUsedShare;

class TestFileSystemCheckedShareControlModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void shouldAskEngineForUsedShares();
    void shouldTellPathsOnShares();
    void shouldRefuseShareBeyondLimit();
    void shouldNotCountSharesOfEditedPlan();
    void shouldRestoreSavedShareMarks();
    void shouldOnlyLogFailedRequest();

private:
    QJsonObject usedBy(const QUuid& plan, const QString& share) const
    {
        return {{QStringLiteral("plan"), plan.toString()}, {QStringLiteral("share"), share}};
    }
    bool waitForAnswer(const FileSystemCheckedShareControlModel& model, int entries)
    {
        return QTest::qWaitFor([&] { return model.usedShares().size() == entries; });
    }

    EngineTestPeer* m_peer = nullptr;
    QScopedPointer<NvbTest::FileTree> m_tree;
    QString m_aside;
    QString m_docs;
    QString m_media;
    QUuid m_otherPlan = QUuid::createUuid();
};

void TestFileSystemCheckedShareControlModel::initTestCase()
{
    m_peer = new EngineTestPeer(this);
    m_peer->exportSocketPath();
    QVERIFY(Communication::ServiceLink::instance());
    QTRY_VERIFY(Communication::ConnectionManager::instance()->isLocalManagmentConnected());
}

void TestFileSystemCheckedShareControlModel::init()
{
    m_tree.reset(new NvbTest::FileTree({"aside/", "docs/letters/", "media/films/"}));
    m_tree->mount(QStringLiteral("aside"), "ext4", "/dev/vda");
    m_tree->mount(QStringLiteral("docs"), "cifs", "//srv/docs");
    m_tree->mount(QStringLiteral("media"), "nfs4", "nas:/media");
    m_aside = m_tree->path(QStringLiteral("aside"));
    m_docs = m_tree->path(QStringLiteral("docs"));
    m_media = m_tree->path(QStringLiteral("media"));
    m_peer->onCommand(QLatin1String(UsedShare::Name),
        EngineTestPeer::Answer::reply({{QLatin1String(UsedShare::Reply::List),
            QJsonArray {usedBy(m_otherPlan, QStringLiteral("/NVB_SHARES/srv/docs"))}}}));
}

void TestFileSystemCheckedShareControlModel::cleanup()
{
    m_tree.reset();
}

void TestFileSystemCheckedShareControlModel::shouldAskEngineForUsedShares()
{
    const int before = m_peer->requestCount(QStringLiteral("GetUsedShare"));
    FileSystemCheckedShareControlModel model;
    QCOMPARE(model.shares(), (QStringList {m_docs, m_media}));
    QTRY_COMPARE(m_peer->requestCount(QStringLiteral("GetUsedShare")), before + 1);
    QVERIFY(waitForAnswer(model, 1));
    QCOMPARE(model.usedShares().value(m_docs), m_otherPlan);
}

void TestFileSystemCheckedShareControlModel::shouldTellPathsOnShares()
{
    FileSystemCheckedShareControlModel model;
    QVERIFY(model.isShare(m_docs));
    QVERIFY(model.isShare(m_docs + QStringLiteral("/letters")));
    QVERIFY(!model.isShare(m_docs + QStringLiteral("2/letters")));
    QVERIFY(!model.isShare(m_aside));
}

void TestFileSystemCheckedShareControlModel::shouldRefuseShareBeyondLimit()
{
    FileSystemCheckedShareControlModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(waitForAnswer(model, 1));
    QSignalSpy attention(&model, &FileSystemCheckedShareControlModel::shareControlAttention);
    // The share another plan uses already counts; a second one is one too many.
    QVERIFY(model.setData(model.indexByPath(m_docs), 2, Qt::CheckStateRole));
    QVERIFY(!model.setData(model.indexByPath(m_media), 2, Qt::CheckStateRole));
    QCOMPARE(attention.count(), 1);
    QCOMPARE(model.indexByPath(m_media).data(Qt::CheckStateRole).toInt(), 0);
    // Local folders and unmarking are never limited.
    QVERIFY(model.setData(model.indexByPath(m_aside), 2, Qt::CheckStateRole));
    QVERIFY(model.setData(model.indexByPath(m_docs), 0, Qt::CheckStateRole));
    QCOMPARE(attention.count(), 1);
    model.setShareLimit(2);
    QVERIFY(model.setData(model.indexByPath(m_media), 2, Qt::CheckStateRole));
    model.waitForListings();
}

void TestFileSystemCheckedShareControlModel::shouldNotCountSharesOfEditedPlan()
{
    FileSystemCheckedShareControlModel model;
    QVERIFY(waitForAnswer(model, 1));
    QSignalSpy attention(&model, &FileSystemCheckedShareControlModel::shareControlAttention);
    model.initChecked(m_otherPlan, {}, {});
    QVERIFY(model.setData(model.indexByPath(m_media), 2, Qt::CheckStateRole));
    QCOMPARE(attention.count(), 0);
    model.waitForListings();
}

void TestFileSystemCheckedShareControlModel::shouldRestoreSavedShareMarks()
{
    FileSystemCheckedShareControlModel model;
    QVERIFY(waitForAnswer(model, 1));
    model.initChecked(QUuid::createUuid(), {QStringLiteral("/NVB_SHARES/nas/media/films")}, {});
    QTRY_COMPARE(model.indexByPath(m_media + QStringLiteral("/films")).data(Qt::CheckStateRole).toInt(), 2);
    QCOMPARE(model.includePath(true), QStringList {QStringLiteral("/NVB_SHARES/nas/media/films")});
    model.waitForListings();
}

void TestFileSystemCheckedShareControlModel::shouldOnlyLogFailedRequest()
{
    m_peer->onCommand(QLatin1String(UsedShare::Name), EngineTestPeer::Answer::error(QStringLiteral("busy")));
    const int before = m_peer->requests().size();
    FileSystemCheckedShareControlModel model;
    QVERIFY(m_peer->waitForRequests(before + 1));
    QTest::qWait(100);
    QVERIFY(model.usedShares().isEmpty());
    QVERIFY(model.setData(model.indexByPath(m_media), 2, Qt::CheckStateRole));
}

NVB_TEST_MAIN(TestFileSystemCheckedShareControlModel)
#include "tst_filesystemcheckedsharecontrolmodel.moc"
