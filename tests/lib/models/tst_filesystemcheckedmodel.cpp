#include <mutex>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include "filetree.h"
#include "listing/filesystemlisting.h"
#include "models/filesystemcheckedmodel.h"
#include "testmain.h"

using NVB::FileSystemListing;
using NVB::GUI::BaseFilesModel;
using NVB::GUI::FileSystemCheckedModel;

using NvbTest::checkState;
using NvbTest::expand;

namespace {

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class TestFileSystemCheckedModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shouldShowVolumesAndSharesAtTop();
    void shouldListOnWorkerAndParentOnGuiThread();
    void shouldPassTesterWhileLoadingChangingAndCollapsing();
    void shouldGiveFolderInIncludeAndChildInExclude();
    void shouldRestoreMarksWithInitChecked();
    void shouldLoadTopLevelForEmptyInclude();
    void shouldChangeNothingForResultOfGonePath();
    void shouldListSiblingsOfFolderThatFails();
    void shouldReplaceOnlyWholePathSteps_data();
    void shouldReplaceOnlyWholePathSteps();
    void shouldLeaveTreeEmptyWithoutMountTable();

private:
    QString vol(const QString& relative = QString()) const
    {
        return relative.isEmpty() ? m_vol : m_vol + QLatin1Char('/') + relative;
    }

    QScopedPointer<NvbTest::FileTree> m_tree;
    QString m_aside;
    QString m_vol;
    QString m_share;
};

void TestFileSystemCheckedModel::init()
{
    m_tree.reset(new NvbTest::FileTree({"aside/", "vol/other/", "vol/folder/a", "vol/folder/b", "vol/folder/c",
        "vol/folder/sub/deep/d", "vol/folder/.h", "vol/top.txt", "share/docs/letter"}));
    // The first volume stays unmarked: the model tester checks that the first
    // top-level row shows one of the toolkit's three check states, and the
    // model's fourth one must not land there.
    m_tree->mount(QStringLiteral("aside"), "ext4", "/dev/vda");
    m_tree->mount(QStringLiteral("vol"));
    m_tree->mount(QStringLiteral("share"), "cifs", "//srv/docs");
    m_aside = m_tree->path(QStringLiteral("aside"));
    m_vol = m_tree->path(QStringLiteral("vol"));
    m_share = m_tree->path(QStringLiteral("share"));
}

void TestFileSystemCheckedModel::cleanup()
{
    m_tree.reset();
}

void TestFileSystemCheckedModel::shouldShowVolumesAndSharesAtTop()
{
    FileSystemCheckedModel model;
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.index(1, 0).data().toString(), m_vol);
    QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("/NVB_VOLUMES") + m_vol);
    QCOMPARE(model.index(1, 2).data().toString(), m_vol);
    QCOMPARE(model.index(2, 0).data().toString(), QStringLiteral("//srv/docs"));
    QCOMPARE(model.index(2, 1).data().toString(), QStringLiteral("/NVB_SHARES/srv/docs"));
    QCOMPARE(model.index(1, 0).data(Qt::CheckStateRole).toInt(), 0);
    QVERIFY(model.canFetchMore(model.index(1, 0)));
}

void TestFileSystemCheckedModel::shouldListOnWorkerAndParentOnGuiThread()
{
    FileSystemCheckedModel model;
    QThread* gui = QThread::currentThread();
    std::mutex lock;
    QList<QThread*> emittingThreads;
    QList<QThread*> nodeThreads;
    // Direct, so the lambda runs where the signal is emitted.
    connect(
        &model, &FileSystemCheckedModel::listed, &model,
        [&](const QString&, const QList<QObject*>& objects) {
            std::lock_guard<std::mutex> locker(lock);
            emittingThreads << QThread::currentThread();
            for (QObject* object : objects)
                nodeThreads << object->thread();
        },
        Qt::DirectConnection);
    QList<QThread*> insertingThreads;
    connect(&model, &QAbstractItemModel::rowsInserted, &model, [&] { insertingThreads << QThread::currentThread(); });
    QVERIFY(expand(model, m_vol));
    model.waitForListings();
    std::lock_guard<std::mutex> locker(lock);
    QCOMPARE(emittingThreads.size(), 1);
    QVERIFY(emittingThreads.first() != gui);
    QCOMPARE(nodeThreads.size(), 3);
    for (QThread* thread : nodeThreads)
        QCOMPARE(thread, gui);
    QCOMPARE(insertingThreads, QList<QThread*> {gui});
    const QModelIndex folder = model.indexByPath(vol(QStringLiteral("folder")));
    QCOMPARE(static_cast<QObject*>(folder.internalPointer())->parent(),
        static_cast<QObject*>(model.indexByPath(m_vol).internalPointer()));
}

void TestFileSystemCheckedModel::shouldPassTesterWhileLoadingChangingAndCollapsing()
{
    FileSystemCheckedModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTRY_VERIFY(model.indexByPath(vol(QStringLiteral("folder/sub/deep/d"))).isValid());
    QTRY_VERIFY(model.indexByPath(m_share + QStringLiteral("/docs/letter")).isValid());
    QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder"))), 2, Qt::CheckStateRole));
    QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder/sub/deep/d"))), 0, Qt::CheckStateRole));
    QVERIFY(model.setData(model.indexByPath(m_share), 2, Qt::CheckStateRole));
    model.onCollapse(model.indexByPath(vol(QStringLiteral("folder"))));
    model.onCollapse(model.indexByPath(m_vol));
    // The tester opens what is closed again; let it finish.
    QTRY_VERIFY(model.indexByPath(vol(QStringLiteral("folder/sub/deep/d"))).isValid());
    model.waitForListings();
    QCoreApplication::processEvents();
}

void TestFileSystemCheckedModel::shouldGiveFolderInIncludeAndChildInExclude()
{
    FileSystemCheckedModel model;
    QVERIFY(expand(model, m_vol));
    QVERIFY(expand(model, vol(QStringLiteral("folder"))));
    QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder"))), 2, Qt::CheckStateRole));
    QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder/b"))), 0, Qt::CheckStateRole));
    QCOMPARE(model.includePath(false), QStringList {vol(QStringLiteral("folder"))});
    QCOMPARE(model.excludePath(false), QStringList {vol(QStringLiteral("folder/b"))});
    // Saved in a plan below the shown path of the volume.
    QCOMPARE(model.includePath(true), QStringList {QStringLiteral("/NVB_VOLUMES") + vol(QStringLiteral("folder"))});
    QCOMPARE(model.excludePath(true), QStringList {QStringLiteral("/NVB_VOLUMES") + vol(QStringLiteral("folder/b"))});
    QCOMPARE(checkState(model, vol(QStringLiteral("folder"))), 2);
    QCOMPARE(checkState(model, m_vol), 1001);
}

void TestFileSystemCheckedModel::shouldRestoreMarksWithInitChecked()
{
    QStringList include;
    QStringList exclude;
    QHash<QString, int> marks;
    const QStringList watched {vol(QStringLiteral("folder")), vol(QStringLiteral("folder/a")),
        vol(QStringLiteral("folder/b")), vol(QStringLiteral("folder/sub")), vol(QStringLiteral("folder/sub/deep")),
        vol(QStringLiteral("folder/sub/deep/d")), vol(QStringLiteral("other")), m_vol};
    {
        FileSystemCheckedModel model;
        QVERIFY(expand(model, m_vol));
        QVERIFY(expand(model, vol(QStringLiteral("folder"))));
        QVERIFY(expand(model, vol(QStringLiteral("folder/sub"))));
        QVERIFY(expand(model, vol(QStringLiteral("folder/sub/deep"))));
        QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder"))), 2, Qt::CheckStateRole));
        QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder/b"))), 0, Qt::CheckStateRole));
        QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder/sub"))), 0, Qt::CheckStateRole));
        QVERIFY(model.setData(model.indexByPath(vol(QStringLiteral("folder/sub/deep/d"))), 2, Qt::CheckStateRole));
        include = model.includePath(true);
        exclude = model.excludePath(true);
        for (const QString& path : watched)
            marks.insert(path, checkState(model, path));
    }
    QCOMPARE(sorted(include),
        sorted({QStringLiteral("/NVB_VOLUMES") + vol(QStringLiteral("folder")),
            QStringLiteral("/NVB_VOLUMES") + vol(QStringLiteral("folder/sub/deep/d"))}));

    FileSystemCheckedModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.initChecked(include, exclude);
    QTRY_VERIFY(model.indexByPath(vol(QStringLiteral("folder/sub/deep/d"))).isValid());
    model.waitForListings();
    QCoreApplication::processEvents();
    for (const QString& path : watched)
        QCOMPARE(QStringLiteral("%1=%2").arg(path).arg(checkState(model, path)),
            QStringLiteral("%1=%2").arg(path).arg(marks.value(path)));
    QCOMPARE(sorted(model.includePath(true)), sorted(include));
    QCOMPARE(sorted(model.excludePath(true)), sorted(exclude));
}

void TestFileSystemCheckedModel::shouldLoadTopLevelForEmptyInclude()
{
    FileSystemCheckedModel model;
    model.initChecked({}, {vol(QStringLiteral("other"))});
    QTRY_VERIFY(model.indexByPath(vol(QStringLiteral("folder"))).isValid());
    QTRY_VERIFY(model.indexByPath(m_share + QStringLiteral("/docs")).isValid());
    QVERIFY(!model.indexByPath(vol(QStringLiteral("folder/a"))).isValid());
    QVERIFY(model.includePath(false).isEmpty());
}

void TestFileSystemCheckedModel::shouldChangeNothingForResultOfGonePath()
{
    FileSystemCheckedModel model;
    QVERIFY(expand(model, m_vol));
    const QModelIndex folder = model.indexByPath(vol(QStringLiteral("folder")));
    model.fetchMore(folder);
    // The folder goes away before its listing arrives.
    model.onCollapse(model.indexByPath(m_vol));
    const int nodes = model.nodeCount();
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.waitForListings();
    QCoreApplication::processEvents();
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(model.nodeCount(), nodes);
    QVERIFY(!model.indexByPath(vol(QStringLiteral("folder/a"))).isValid());
}

void TestFileSystemCheckedModel::shouldListSiblingsOfFolderThatFails()
{
    FileSystemCheckedModel model;
    QVERIFY(expand(model, m_vol));
    QVERIFY(QDir(vol(QStringLiteral("folder"))).removeRecursively());
    const QModelIndex folder = model.indexByPath(vol(QStringLiteral("folder")));
    QVERIFY(model.canFetchMore(folder));
    model.fetchMore(folder);
    QVERIFY(model.canFetchMore(model.indexByPath(m_share)));
    model.load({vol(QStringLiteral("folder")), m_share}, 0);
    model.waitForListings();
    QTRY_VERIFY(model.indexByPath(m_share + QStringLiteral("/docs")).isValid());
    // The failed folder may be opened again later.
    QTRY_VERIFY(model.canFetchMore(model.indexByPath(vol(QStringLiteral("folder")))));
    QCOMPARE(model.rowCount(model.indexByPath(vol(QStringLiteral("folder")))), 0);
}

void TestFileSystemCheckedModel::shouldReplaceOnlyWholePathSteps_data()
{
    QTest::addColumn<QString>("real");
    QTest::addColumn<QString>("shown");
    QTest::newRow("volume itself") << QString() << QStringLiteral("/NVB_VOLUMES");
    QTest::newRow("below volume") << QStringLiteral("/x/y") << QStringLiteral("/NVB_VOLUMES");
    QTest::newRow("prefix only") << QStringLiteral("2/x") << QString();
    QTest::newRow("share") << QStringLiteral("#/docs") << QStringLiteral("/NVB_SHARES/srv/docs");
}

void TestFileSystemCheckedModel::shouldReplaceOnlyWholePathSteps()
{
    QFETCH(QString, real);
    QFETCH(QString, shown);
    FileSystemCheckedModel model;
    QString realPath = m_vol + real;
    QString expected = shown.isEmpty() ? realPath : shown + realPath;
    if (real.startsWith(QLatin1Char('#'))) {
        realPath = m_share + real.mid(1);
        expected = shown + real.mid(1);
    }
    QCOMPARE(model.replacePath(realPath), expected);
    QCOMPARE(model.unReplacePath({expected}), QStringList {realPath});
    // Not a path at all: left as it is.
    QCOMPARE(model.unReplacePath({QStringLiteral("NVB_ROOT")}), QStringList {QStringLiteral("NVB_ROOT")});
}

void TestFileSystemCheckedModel::shouldLeaveTreeEmptyWithoutMountTable()
{
    FileSystemListing::setMountTable(m_tree->path(QStringLiteral("missing")));
    FileSystemCheckedModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(model.includePath(false).isEmpty());
    QVERIFY(model.excludePath(true).isEmpty());
}

NVB_TEST_MAIN(TestFileSystemCheckedModel)
#include "tst_filesystemcheckedmodel.moc"
