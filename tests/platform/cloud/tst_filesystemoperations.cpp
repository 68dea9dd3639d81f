#include <QtTest>

#include <QTemporaryDir>

#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/listingobject.h"
#include "cloud/operationerror.h"
#include "cloud/operationmanager.h"
#include "cloud/operations/listcontainers.h"
#include "cloud/operations/listing.h"
#include "cloud/providers/listingsnapshots.h"
#include "testmain.h"

using namespace NVL::Cloud;
using CloudConfig = QMap<QString, QVariant>;

class TestFileSystemOperations : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void shouldAcceptWritableFolder();
    void shouldAcceptFolderThatCanBeCreatedWithoutCreatingIt();
    void shouldRefuseUnusablePaths_data();
    void shouldRefuseUnusablePaths();
    void shouldListEverythingWithoutDelimiter();
    void shouldFilterByPrefixInsideFolder();
    void shouldPageWithMarker();
    void shouldServeLaterPagesFromOneRead();
    void shouldListSubFoldersAsContainers();
    void shouldCreateContainerOnce();
    void shouldNameProviderThatIsNotSupportedYet();
    void shouldMakeNoOperationForUnknownType();
    void shouldKeepOperationUntilRemoved();
    void shouldNotReportAfterRemoveWhileRunning();
    void shouldSurviveOwnerDroppingRemovedOperation();

private:
    CloudConfig config(const QString& path) const;
    QSharedPointer<IOperation> runToEnd(const QSharedPointer<IOperation>& operation);
    QStringList names(const QJsonArray& data) const;
    void makeTree();

    QScopedPointer<QTemporaryDir> m_dir;
};

void TestFileSystemOperations::init()
{
    m_dir.reset(new QTemporaryDir);
    QVERIFY(m_dir->isValid());
}

void TestFileSystemOperations::cleanup()
{
    OperationManager::instance().waitForDone();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(OperationManager::instance().count(), 0);
}

CloudConfig TestFileSystemOperations::config(const QString& path) const
{
    return {{Config::Id, QUuid::createUuid()}, {Config::Type, Name::FileSystem}, {Config::FileSystem::Path, path}};
}

QSharedPointer<IOperation> TestFileSystemOperations::runToEnd(const QSharedPointer<IOperation>& operation)
{
    if (!operation)
        return operation;
    QSignalSpy spy(operation.data(), &IOperation::finished);
    operation->run();
    if (!spy.wait(30000))
        qWarning("operation did not finish");
    operation->remove();
    return operation;
}

QStringList TestFileSystemOperations::names(const QJsonArray& data) const
{
    QStringList result;
    for (const QJsonValue& value : data)
        result.append(Api::ListingObject(value.toObject()).name()
            + (Api::ListingObject(value.toObject()).isFolder() ? QStringLiteral("/") : QString()));
    return result;
}

void TestFileSystemOperations::makeTree()
{
    QDir root(m_dir->path());
    QVERIFY(root.mkpath(QStringLiteral("NVB_alpha/sub")));
    QVERIFY(root.mkpath(QStringLiteral("NVB_beta")));
    QVERIFY(root.mkpath(QStringLiteral("other")));
    QFile file(root.filePath(QStringLiteral("NVB_alpha/sub/data.bin")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("12345");
    file.close();
    QFile top(root.filePath(QStringLiteral("readme.txt")));
    QVERIFY(top.open(QIODevice::WriteOnly));
    top.close();
}

void TestFileSystemOperations::shouldAcceptWritableFolder()
{
    const auto operation = runToEnd(OperationManager::instance().checkConfig(config(m_dir->path() + "/")));
    QVERIFY(operation);
    QVERIFY2(!operation->isError(), qPrintable(operation->errorMessage()));
    QCOMPARE(operation->state(), int(IOperation::Finished));
    QVERIFY(operation->isComplite());
    // The check leaves no probe behind and gives the path back cleaned.
    QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).size(), 0);
    QCOMPARE(operation->cloudConfig().value(Config::FileSystem::Path).toString(), m_dir->path());
}

void TestFileSystemOperations::shouldAcceptFolderThatCanBeCreatedWithoutCreatingIt()
{
    const QString path = m_dir->path() + QStringLiteral("/not/yet/there");
    const auto operation = runToEnd(OperationManager::instance().checkConfig(config(path)));
    QVERIFY2(!operation->isError(), qPrintable(operation->errorMessage()));
    QVERIFY(!QFileInfo::exists(m_dir->path() + QStringLiteral("/not")));
}

void TestFileSystemOperations::shouldRefuseUnusablePaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("code");

    QTest::newRow("empty") << "" << int(OperationError::InvalidConfig);
    QTest::newRow("relative") << "backups/here" << int(OperationError::InvalidConfig);
    QTest::newRow("a file") << "FILE" << int(OperationError::InvalidConfig);
    QTest::newRow("below a file") << "FILE/sub" << int(OperationError::AccessDenied);
}

void TestFileSystemOperations::shouldRefuseUnusablePaths()
{
    QFETCH(QString, path);
    QFETCH(int, code);

    QFile file(m_dir->filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    path.replace(QStringLiteral("FILE"), file.fileName());

    const auto operation = runToEnd(OperationManager::instance().checkConfig(config(path)));
    QVERIFY(operation->isError());
    QCOMPARE(operation->errorCode(), code);
    QCOMPARE(operation->state(), int(IOperation::Failed));
    QVERIFY(!operation->errorMessage().isEmpty());
}

void TestFileSystemOperations::shouldListEverythingWithoutDelimiter()
{
    makeTree();
    const auto operation
        = runToEnd(OperationManager::instance().listing(config(m_dir->path()), "NVB_alpha", QString(), QString(), 0));
    const auto* listing = qobject_cast<Operation::Listing*>(operation.data());
    QCOMPARE(names(listing->data()), QStringList({"NVB_alpha/", "NVB_alpha/sub/", "NVB_alpha/sub/data.bin"}));
    const Api::ListingObject file(listing->data().last().toObject());
    QCOMPARE(file.size(), qint64(5));
    QVERIFY(file.lastModified().isValid());
}

void TestFileSystemOperations::shouldFilterByPrefixInsideFolder()
{
    makeTree();
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("NVB_alpha/sub/NVB_inner")));
    const auto operation = runToEnd(
        OperationManager::instance().listing(config(m_dir->path()), "NVB_alpha/sub/NVB_", "/", QString(), 0));
    const auto* listing = qobject_cast<Operation::Listing*>(operation.data());
    QCOMPARE(names(listing->data()), QStringList({"NVB_alpha/sub/NVB_inner/"}));
    QCOMPARE(listing->prefix(), QStringLiteral("NVB_alpha/sub/NVB_"));
    const auto rooted = runToEnd(
        OperationManager::instance().listing(config(m_dir->path()), m_dir->path() + "/NVB_", "/", QString(), 0));
    QCOMPARE(names(qobject_cast<Operation::Listing*>(rooted.data())->data()), QStringList({"NVB_alpha/", "NVB_beta/"}));

    // A sibling of the root is out of reach, however the prefix gets there.
    QDir(m_dir->path()).mkpath(QStringLiteral("inner"));
    for (const char* escape : {"../", "inner/../../", "./NVB_"}) {
        const auto refused = runToEnd(OperationManager::instance().listing(
            config(m_dir->path() + QStringLiteral("/inner")), QString::fromLatin1(escape), "/", QString(), 0));
        QCOMPARE(refused->errorCode(), int(OperationError::InvalidName));
    }

    const auto missing
        = runToEnd(OperationManager::instance().listing(config(m_dir->path()), "nothing/here/", "/", QString(), 0));
    QVERIFY2(!missing->isError(), "a prefix below no folder lists nothing, like an object store");
    QCOMPARE(qobject_cast<Operation::Listing*>(missing.data())->data().size(), 0);
}

void TestFileSystemOperations::shouldPageWithMarker()
{
    makeTree();
    QStringList all;
    QString marker;
    int pages = 0;
    do {
        const auto operation
            = runToEnd(OperationManager::instance().listing(config(m_dir->path()), QString(), "/", marker, 3));
        const auto* listing = qobject_cast<Operation::Listing*>(operation.data());
        QVERIFY(listing->data().size() <= 3);
        all += names(listing->data());
        marker = listing->marker();
        ++pages;
    } while (!marker.isEmpty() && pages < 10);
    // One level, folders marked, in order, over two pages.
    QCOMPARE(pages, 2);
    QCOMPARE(all, QStringList({"NVB_alpha/", "NVB_beta/", "other/", "readme.txt"}));
}

void TestFileSystemOperations::shouldServeLaterPagesFromOneRead()
{
    QDir root(m_dir->path());
    QVERIFY(root.mkdir(QStringLiteral("many")));
    for (int i = 0; i < 2500; ++i) {
        QFile file(root.filePath(QStringLiteral("many/f%1").arg(i, 5, 10, QLatin1Char('0'))));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const auto first
        = runToEnd(OperationManager::instance().listing(config(m_dir->path()), "many/", "/", QString(), 1000));
    QString marker = qobject_cast<Operation::Listing*>(first.data())->marker();
    QCOMPARE(marker, QStringLiteral("many/f00999"));
    QCOMPARE(ListingSnapshots::instance().count(), 1);

    // The folder goes; the listing under way still ends as it began, since
    // later pages come from the one read of the first.
    QVERIFY(QDir(root.filePath(QStringLiteral("many"))).removeRecursively());
    QStringList rest;
    while (!marker.isEmpty()) {
        const auto page
            = runToEnd(OperationManager::instance().listing(config(m_dir->path()), "many/", "/", marker, 1000));
        QVERIFY2(!page->isError(), qPrintable(page->errorMessage()));
        const auto* listing = qobject_cast<Operation::Listing*>(page.data());
        rest += names(listing->data());
        marker = listing->marker();
    }
    QCOMPARE(rest.size(), 1500);
    QCOMPARE(rest.first(), QStringLiteral("many/f01000"));
    QCOMPARE(rest.last(), QStringLiteral("many/f02499"));
    QCOMPARE(ListingSnapshots::instance().count(), 0);

    // A new listing reads again.
    const auto fresh
        = runToEnd(OperationManager::instance().listing(config(m_dir->path()), "many/", "/", QString(), 1000));
    QVERIFY(qobject_cast<Operation::Listing*>(fresh.data())->data().isEmpty());
}

void TestFileSystemOperations::shouldListSubFoldersAsContainers()
{
    makeTree();
    const auto operation = runToEnd(OperationManager::instance().listContainers(config(m_dir->path())));
    QVERIFY2(!operation->isError(), qPrintable(operation->errorMessage()));
    const auto* list = qobject_cast<Operation::ListContainers*>(operation.data());
    QVERIFY(list);
    QStringList containers;
    for (const QJsonValue& value : list->data())
        containers.append(value.toObject().value("Name").toString());
    QCOMPARE(containers, QStringList({"NVB_alpha", "NVB_beta", "other"}));

    const auto missing = runToEnd(OperationManager::instance().listContainers(config(m_dir->path() + "/gone")));
    QCOMPARE(missing->errorCode(), int(OperationError::NotFound));
}

void TestFileSystemOperations::shouldCreateContainerOnce()
{
    const QJsonObject params {{"Name", "new-container"}};
    const auto operation = runToEnd(OperationManager::instance().createContainer(config(m_dir->path()), params));
    QVERIFY(QFileInfo(m_dir->filePath("new-container")).isDir());

    const auto again = runToEnd(OperationManager::instance().createContainer(config(m_dir->path()), params));
    QCOMPARE(again->errorCode(), int(OperationError::AlreadyExists));

    for (const char* name : {"", "a/b", ".."}) {
        const auto refused = runToEnd(OperationManager::instance().createContainer(
            config(m_dir->path()), QJsonObject {{"Name", QString::fromLatin1(name)}}));
        QCOMPARE(refused->errorCode(), int(OperationError::InvalidName));
    }
    QVERIFY(!QFileInfo::exists(m_dir->filePath("a")));
}

void TestFileSystemOperations::shouldNameProviderThatIsNotSupportedYet()
{
    const CloudConfig managed {{Config::Type, Name::MNS_CLOUD}};
    const auto operation = runToEnd(OperationManager::instance().listContainers(managed));
    QVERIFY(operation);
    QCOMPARE(operation->errorCode(), int(OperationError::NotSupported));
    QVERIFY2(operation->errorMessage().endsWith(QStringLiteral(" accounts are not supported yet")),
        qPrintable(operation->errorMessage()));
}

void TestFileSystemOperations::shouldMakeNoOperationForUnknownType()
{
    QVERIFY(!OperationManager::instance().listContainers(CloudConfig {{Config::Type, "Dropbox"}}));
    QVERIFY(!OperationManager::instance().checkConfig(CloudConfig()));
    QVERIFY(!OperationManager::instance().listing(
        CloudConfig {{Config::Type, "filesystem"}}, QString(), "/", QString(), 0));
    QCOMPARE(OperationManager::instance().count(), 0);
}

void TestFileSystemOperations::shouldKeepOperationUntilRemoved()
{
    const QSharedPointer<IOperation> operation = OperationManager::instance().checkConfig(config(m_dir->path()));
    QVERIFY(!operation->id().isNull());
    QCOMPARE(OperationManager::instance().operation(operation->id()), operation);
    QCOMPARE(operation->state(), int(IOperation::Created));

    QThread* reportedOn = nullptr;
    connect(
        operation.data(), &IOperation::finished, this, [&reportedOn]() { reportedOn = QThread::currentThread(); },
        Qt::DirectConnection);
    QSignalSpy spy(operation.data(), &IOperation::finished);
    operation->run();
    QVERIFY(spy.wait(30000));
    QCOMPARE(reportedOn, QCoreApplication::instance()->thread());
    QCOMPARE(OperationManager::instance().count(), 1);
    QVERIFY2(OperationManager::instance().operation(operation->id()), "finished operations stay until removed");
    operation->remove();
    QVERIFY(operation->isRemoved());
    QVERIFY(!OperationManager::instance().operation(operation->id()));
    QCOMPARE(OperationManager::instance().count(), 0);

    // A second remove, or a run after it, changes nothing.
    operation->remove();
    QVERIFY(!operation->isError());
    QCOMPARE(OperationManager::instance().count(), 0);
    operation->run();
    QCOMPARE(operation->state(), int(IOperation::Finished));
}

void TestFileSystemOperations::shouldNotReportAfterRemoveWhileRunning()
{
    makeTree();
    const auto operation
        = OperationManager::instance().listing(config(m_dir->path()), QString(), QString(), QString(), 0);
    QSignalSpy spy(operation.data(), &IOperation::finished);
    operation->run();
    QCOMPARE(operation->state(), int(IOperation::Running));
    operation->remove();
    QCOMPARE(operation->state(), int(IOperation::Cancelled));
    QCOMPARE(OperationManager::instance().count(), 0);

    QVERIFY(OperationManager::instance().waitForDone(30000));
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(spy.count(), 0);
    QCOMPARE(qobject_cast<Operation::Listing*>(operation.data())->data().size(), 0);
    QVERIFY(!operation->isComplite());
}

void TestFileSystemOperations::shouldSurviveOwnerDroppingRemovedOperation()
{
    makeTree();
    QPointer<IOperation> watch;
    {
        QSharedPointer<IOperation> operation
            = OperationManager::instance().listing(config(m_dir->path()), QString(), QString(), QString(), 0);
        watch = operation.data();
        operation->run();
        operation->remove();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY2(watch.isNull(), "the last owner gone, the operation is deleted");
    // The worker may still be running; its answer has nobody to go to.
    QVERIFY(OperationManager::instance().waitForDone(30000));
    QCoreApplication::processEvents();
}

NVB_TEST_GUILESS_MAIN(TestFileSystemOperations)
#include "tst_filesystemoperations.moc"
