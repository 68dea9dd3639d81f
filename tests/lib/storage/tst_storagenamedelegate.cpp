#include <QJsonArray>
#include <QSignalSpy>
#include <QtTest>

#include "app/delegates/storagenamedelegate.h"
#include "enginetestpeer.h"
#include "models/modelmanager.h"
#include "service/commands/storage.h"
#include "service/connectionmanager.h"
#include "service/servicelink.h"
#include "storage/storageconnectionsmodel.h"
#include "storage/storageconnectionsmodelcreator.h"
#include "testmain.h"

using namespace NVB::GUI;
using NvbTest::EngineTestPeer;

class TestStorageNameDelegate : public QObject
{
    Q_OBJECT

private slots:
    void shouldAnswerUnknownWithoutTheSharedModel();
    void shouldNameAccountsOfTheSharedModel_data();
    void shouldNameAccountsOfTheSharedModel();

private:
    EngineTestPeer* m_peer = nullptr;
    StorageConnectionsModelCreator m_creator;
    const QUuid m_office = QUuid::createUuid();
    const QUuid m_disk = QUuid::createUuid();
};

void TestStorageNameDelegate::shouldAnswerUnknownWithoutTheSharedModel()
{
    QCOMPARE(StorageNameDelegate::toText(m_office.toString()), QStringLiteral("Unknown"));
}

void TestStorageNameDelegate::shouldNameAccountsOfTheSharedModel_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("office") << QVariant(m_office.toString()) << QStringLiteral("Office NAS");
    QTest::newRow("disk") << QVariant(m_disk.toString()) << QStringLiteral("USB disk");
    QTest::newRow("unknown id") << QVariant(QUuid::createUuid().toString()) << QStringLiteral("Unknown");
    // The id column is matched exactly: no braces, no match.
    QTest::newRow("id without braces") << QVariant(m_office.toString(QUuid::WithoutBraces))
                                       << QStringLiteral("Unknown");
    QTest::newRow("null") << QVariant() << QStringLiteral("Unknown");
}

void TestStorageNameDelegate::shouldNameAccountsOfTheSharedModel()
{
    QFETCH(QVariant, value);
    QFETCH(QString, expected);
    if (!m_peer) {
        m_peer = new EngineTestPeer(this);
        m_peer->exportSocketPath();
        NVB::Common::Communication::ServiceLink::instance()->client()->setReconnectDelays(10, 50);
        QTRY_VERIFY(NVB::Common::Communication::ConnectionManager::instance()->isLocalManagmentConnected());
        auto row = [](const QUuid& id, const QString& name, int type) {
            return QJsonObject {{QStringLiteral("ID"), id.toString()}, {QStringLiteral("DisplayName"), name},
                {QStringLiteral("Type"), type}};
        };
        m_peer->onCommand(QLatin1String(NVB::Common::Communication::Commands::Format::Storage::GetConnection::Name),
            EngineTestPeer::Answer::reply({{QStringLiteral("storageConnection"),
                QJsonArray {
                    row(m_office, QStringLiteral("Office NAS"), 33), row(m_disk, QStringLiteral("USB disk"), 1)}}}));
        QVERIFY(ModelManager::instance()->registrateCreator(m_creator));
        QTRY_COMPARE(ModelManager::instance()->create(m_creator.type())->rowCount(), 2);
    }
    QCOMPARE(StorageNameDelegate::toText(value), expected);
}

NVB_TEST_MAIN(TestStorageNameDelegate)
#include "tst_storagenamedelegate.moc"
