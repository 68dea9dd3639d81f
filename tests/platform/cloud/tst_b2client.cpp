#include <QtTest>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/listingobject.h"
#include "cloud/operationerror.h"
#include "cloud/providers/b2client.h"

using namespace NVL::Cloud;

// The B2 client against our fake of B2's documented API
// (tests/support/servers/b2_fake.py, started here and stopped by its pid),
// which checks the key on login and the session token on every call.
class TestB2Client : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldListCreateAndPageBuckets();
    void shouldRefuseWrongKeysAndBadNames();

private:
    QMap<QString, QVariant> config() const;

    QTemporaryDir m_dir;
    QProcess m_fake;
    int m_port = 0;
    CancelToken m_cancel;
};

void TestB2Client::initTestCase()
{
    const QString portFile = m_dir.filePath(QStringLiteral("port"));
    m_fake.start(QStringLiteral("python3"), {QStringLiteral(NVB_B2_FAKE), portFile});
    QVERIFY(m_fake.waitForStarted(10000));
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(portFile); }, 10000));
    QFile port(portFile);
    QVERIFY(port.open(QIODevice::ReadOnly));
    m_port = port.readAll().toInt();
}

void TestB2Client::cleanupTestCase()
{
    m_fake.kill();
    m_fake.waitForFinished(5000);
}

QMap<QString, QVariant> TestB2Client::config() const
{
    return {{Config::Type, Name::BackBlaze}, {Config::BackBlaze::AccountId, QStringLiteral("nvbkey")},
        {Config::BackBlaze::ApplicationKey, QStringLiteral("nvbsecret")},
        {Api::Config::Http::Endpoint, QStringLiteral("127.0.0.1:%1").arg(m_port)}, {Api::Config::Http::UseSsl, false}};
}

void TestB2Client::shouldListCreateAndPageBuckets()
{
    B2Client client;
    QVERIFY(!client.checkConfig(config(), m_cancel).isError());
    OperationResult result
        = client.createContainer(config(), {{QStringLiteral("Name"), QStringLiteral("nvb-new-bucket")}}, m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    const QString id = result.data.at(0).toObject().value(QStringLiteral("Id")).toString();
    QVERIFY(!id.isEmpty());
    result = client.createContainer(config(), {{QStringLiteral("Name"), QStringLiteral("nvb-new-bucket")}}, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AlreadyExists));
    result = client.listContainers(config(), m_cancel);
    QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
    QStringList names;
    for (const QJsonValue& value : qAsConst(result.data))
        names << value.toObject().value(QStringLiteral("Name")).toString() + QLatin1Char('|')
                + value.toObject().value(QStringLiteral("Id")).toString();
    QVERIFY(names.contains(QStringLiteral("nvb-new-bucket|") + id));

    // By name alone the id is looked up; "id|name" as the record keeps it.
    for (const QString& bucket : {QStringLiteral("nvb-seeded"), QStringLiteral("b-seeded|nvb-seeded")}) {
        QMap<QString, QVariant> settings = config();
        settings.insert(OperationConfig::ContainerName, bucket);
        QStringList level;
        QString marker;
        int pages = 0;
        do {
            result = client.listing(settings, {QString(), QStringLiteral("/"), marker, 2}, m_cancel);
            QVERIFY2(!result.isError(), qPrintable(result.errorMessage));
            for (const QJsonValue& value : qAsConst(result.data)) {
                const Api::ListingObject object(value.toObject());
                level << object.name() + (object.isFolder() ? QStringLiteral("/") : QString());
            }
            marker = result.marker;
            QVERIFY(++pages < 10);
        } while (!marker.isEmpty());
        QCOMPARE(level, QStringList({"NVB_a/", "NVB_b/", "top"}));
    }
}

void TestB2Client::shouldRefuseWrongKeysAndBadNames()
{
    QMap<QString, QVariant> wrong = config();
    wrong.insert(Config::BackBlaze::ApplicationKey, QStringLiteral("nope"));
    const OperationResult result = B2Client().listContainers(wrong, m_cancel);
    QCOMPARE(result.errorCode, int(OperationError::AuthenticationFailed));
    QVERIFY(result.errorMessage.contains(QLatin1String("application key")));
    for (const char* name : {"short", "b2-reserved", "under_score"})
        QCOMPARE(
            B2Client().createContainer(config(), {{QStringLiteral("Name"), QLatin1String(name)}}, m_cancel).errorCode,
            int(OperationError::InvalidName));
    QMap<QString, QVariant> missing = config();
    missing.insert(OperationConfig::ContainerName, QStringLiteral("nvb-never-made"));
    QCOMPARE(B2Client().listing(missing, {}, m_cancel).errorCode, int(OperationError::NotFound));
}

QTEST_GUILESS_MAIN(TestB2Client)
#include "tst_b2client.moc"
