#include <QtTest>

#include <QTemporaryDir>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/getprefixoperation.h"
#include "cloud/operationerror.h"
#include "cloud/operationmanager.h"
#include "cloud/providers/providerclient.h"
#include "testmain.h"

using NVB::Operation::GetPrefixOperation;
using Config = QMap<QString, QVariant>;

class TestGetPrefixOperation : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void shouldListBackupPrefixesAtRoot();
    void shouldPageThroughManyPrefixes();
    void shouldReportErrorWithItsId();
    void shouldStaySilentWhenDestroyedWhileRunning();
    void shouldStopWhenMarkerDoesNotAdvance();

private:
    static Config config(const QString& path);
};

void TestGetPrefixOperation::cleanup()
{
    NVL::Cloud::OperationManager::instance().waitForDone();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(NVL::Cloud::OperationManager::instance().count(), 0);
}

Config TestGetPrefixOperation::config(const QString& path)
{
    return {{NVL::Cloud::Config::Type, NVL::Cloud::Name::FileSystem}, {NVL::Cloud::Config::FileSystem::Path, path}};
}

void TestGetPrefixOperation::shouldListBackupPrefixesAtRoot()
{
    QTemporaryDir dir;
    QDir root(dir.path());
    for (const char* folder : {"NVB_office-pc", "NVB_Laptop", "NVB_", "other", "sub/NVB_nested"})
        QVERIFY(root.mkpath(QString::fromUtf8(folder)));
    QFile file(root.filePath("NVB_file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();

    GetPrefixOperation operation(config(dir.path()), QStringLiteral("NVB_"));
    QSignalSpy finished(&operation, &GetPrefixOperation::finished);
    QSignalSpy error(&operation, &GetPrefixOperation::error);
    operation.exec();
    QVERIFY(finished.wait(30000));
    QCOMPARE(error.count(), 0);
    QCOMPARE(finished.first().at(0).toUuid(), operation.id());
    QCOMPARE(finished.first().at(1).toStringList(), QStringList({"Laptop", "office-pc"}));
    QVERIFY(!operation.isRunning());
}

void TestGetPrefixOperation::shouldPageThroughManyPrefixes()
{
    QTemporaryDir dir;
    QDir root(dir.path());
    QStringList expected;
    for (int i = 0; i < 1234; ++i) {
        const QString name = QStringLiteral("pc%1").arg(i, 4, 10, QLatin1Char('0'));
        QVERIFY(root.mkdir(QStringLiteral("NVB_") + name));
        expected.append(name);
    }
    GetPrefixOperation operation(config(dir.path()), QStringLiteral("NVB_"));
    QSignalSpy finished(&operation, &GetPrefixOperation::finished);
    operation.exec();
    QVERIFY(finished.wait(60000));
    QCOMPARE(finished.first().at(1).toStringList(), expected);
}

void TestGetPrefixOperation::shouldReportErrorWithItsId()
{
    QTemporaryDir dir;
    GetPrefixOperation operation(config(dir.path() + "/missing"), QStringLiteral("NVB_"));
    QSignalSpy finished(&operation, &GetPrefixOperation::finished);
    QSignalSpy error(&operation, &GetPrefixOperation::error);
    operation.exec();
    QVERIFY(error.wait(30000));
    QCOMPARE(finished.count(), 0);
    QCOMPARE(error.first().at(0).toUuid(), operation.id());
    QCOMPARE(error.first().at(1).toInt(), int(NVL::Cloud::OperationError::NotFound));
    QVERIFY(error.first().at(2).toString().contains(QStringLiteral("missing")));

    GetPrefixOperation unknown(Config {{NVL::Cloud::Config::Type, "Dropbox"}}, QStringLiteral("NVB_"));
    QSignalSpy unknownError(&unknown, &GetPrefixOperation::error);
    unknown.exec();
    QCOMPARE(unknownError.count(), 1);
}

void TestGetPrefixOperation::shouldStaySilentWhenDestroyedWhileRunning()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("NVB_x"));
    int signals_ = 0;
    {
        GetPrefixOperation operation(config(dir.path()), QStringLiteral("NVB_"));
        connect(&operation, &GetPrefixOperation::finished, this, [&signals_]() { ++signals_; });
        connect(&operation, &GetPrefixOperation::error, this, [&signals_]() { ++signals_; });
        operation.exec();
        QVERIFY(operation.isRunning());
    }
    QVERIFY(NVL::Cloud::OperationManager::instance().waitForDone(30000));
    QCoreApplication::processEvents();
    QCOMPARE(signals_, 0);
}

namespace {

// A provider whose every page says "more after NVB_a": it never moves on.
class StuckClient : public NVL::Cloud::ProviderClient
{
public:
    explicit StuckClient(std::atomic_int* pages)
        : m_pages(pages)
    { }
    NVL::Cloud::OperationResult checkConfig(const Config&, const NVL::Cloud::CancelToken&) override { return {}; }
    NVL::Cloud::OperationResult listContainers(const Config&, const NVL::Cloud::CancelToken&) override { return {}; }
    NVL::Cloud::OperationResult createContainer(
        const Config&, const QJsonObject&, const NVL::Cloud::CancelToken&) override
    {
        return {};
    }
    NVL::Cloud::OperationResult listing(
        const Config&, const NVL::Cloud::ListingRequest&, const NVL::Cloud::CancelToken&) override
    {
        ++*m_pages;
        NVL::Cloud::OperationResult result;
        result.data.append(QJsonObject {{"Name", "NVB_a"}, {"IsFolder", true}});
        result.marker = QStringLiteral("NVB_a");
        return result;
    }

private:
    std::atomic_int* m_pages;
};

} // namespace

void TestGetPrefixOperation::shouldStopWhenMarkerDoesNotAdvance()
{
    std::atomic_int pages {0};
    NVL::Cloud::ProviderClient::setFactory([&pages](const Config&) { return std::make_unique<StuckClient>(&pages); });
    const auto restore = qScopeGuard([]() { NVL::Cloud::ProviderClient::setFactory({}); });

    GetPrefixOperation operation(config(QStringLiteral("/nowhere")), QStringLiteral("NVB_"));
    QSignalSpy finished(&operation, &GetPrefixOperation::finished);
    QSignalSpy error(&operation, &GetPrefixOperation::error);
    operation.exec();
    QVERIFY(error.wait(10000));
    QCOMPARE(finished.count(), 0);
    QVERIFY2(error.first().at(2).toString().contains(QStringLiteral("did not move past")),
        qPrintable(error.first().at(2).toString()));
    QCOMPARE(pages.load(), 2);
}

NVB_TEST_GUILESS_MAIN(TestGetPrefixOperation)
#include "tst_getprefixoperation.moc"
