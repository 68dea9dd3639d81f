#include <QtTest>

#include <sys/stat.h>

#include <QTemporaryDir>

#include "store/datafolderguard.h"
#include "store/enginestore.h"
#include "testmain.h"

using NVB::Engine::DataFolderGuard;

class TestDataFolderGuard : public QObject
{
    Q_OBJECT

private slots:
    void shouldRestrictFolderAndFilesToOwner();

private:
    static mode_t modeOf(const QString& path);
};

mode_t TestDataFolderGuard::modeOf(const QString& path)
{
    struct stat info
    {
    };
    ::lstat(QFile::encodeName(path).constData(), &info);
    return info.st_mode & 07777;
}

void TestDataFolderGuard::shouldRestrictFolderAndFilesToOwner()
{
    QTemporaryDir root;
    const QString data = root.filePath(QStringLiteral("data"));
    QVERIFY(QDir().mkpath(data + QStringLiteral("/logs")));
    ::chmod(QFile::encodeName(data).constData(), 0755);
    QFile old(data + QStringLiteral("/logs/old.log"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.close();
    ::chmod(QFile::encodeName(old.fileName()).constData(), 0644);

    const QStringList repairs = DataFolderGuard::secure(data);
    QCOMPARE(repairs.size(), 3);
    QVERIFY2(repairs.first().contains(QStringLiteral("mode 755")), qPrintable(repairs.first()));
    QCOMPARE(modeOf(data), mode_t(0700));
    QCOMPARE(modeOf(data + QStringLiteral("/logs")), mode_t(0700));
    QCOMPARE(modeOf(old.fileName()), mode_t(0600));
    QVERIFY(DataFolderGuard::secure(data).isEmpty());

    // The store made afterwards starts private, journal included.
    NVB::Engine::EngineStore store;
    QVERIFY2(store.open(data + QStringLiteral("/engine.db")), qPrintable(store.lastError()));
    const QStringList files = QDir(data).entryList(QDir::Files);
    QVERIFY(files.contains(QStringLiteral("engine.db")));
    for (const QString& file : files)
        QCOMPARE(modeOf(data + QLatin1Char('/') + file), mode_t(0600));
}

NVB_TEST_GUILESS_MAIN(TestDataFolderGuard)
#include "tst_datafolderguard.moc"
