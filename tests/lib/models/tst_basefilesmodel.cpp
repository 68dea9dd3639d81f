#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include "filetree.h"
#include "models/basefilesmodel.h"
#include "testmain.h"

using NVB::GUI::BaseFilesModel;

namespace {

// Lists real folders with QDir and answers on the next turn of the event loop,
// as a model that lists elsewhere does.
class FolderModel : public BaseFilesModel
{
public:
    explicit FolderModel(const QStringList& tops)
    {
        for (const QString& top : tops) {
            QObject* node = makeNode(QFileInfo(top));
            node->setProperty(Row, rootItem()->children().size());
            node->setParent(rootItem());
            node->setProperty(Checked, 0);
            node->setProperty(Load, 0);
            registerNode(node);
        }
    }

    static QObject* makeNode(const QFileInfo& info)
    {
        auto* node = new QObject();
        node->setProperty(Name, info.fileName());
        node->setProperty(Path, info.absoluteFilePath());
        node->setProperty(RealPath, info.absoluteFilePath());
        node->setProperty(IsChangeable, true);
        node->setProperty(IsExpandable, info.isDir());
        node->setProperty(Type, info.isDir() ? 1 : 0);
        node->setProperty(IsHidden, info.fileName().startsWith(QLatin1Char('.')));
        node->setProperty(IsSymlink, info.isSymLink());
        return node;
    }

    static QList<QObject*> listFolder(const QString& path)
    {
        QList<QObject*> objects;
        const auto entries = QDir(path).entryInfoList(
            QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::DirsFirst | QDir::Name);
        for (const QFileInfo& info : entries)
            objects << makeNode(info);
        return objects;
    }

    bool load(const QStringList& paths, int depth) override
    {
        lastDepth = depth;
        for (const QString& path : paths) {
            const QList<QObject*> objects = listFolder(path);
            QMetaObject::invokeMethod(
                this, [this, path, objects] { onResult(path, objects); }, Qt::QueuedConnection);
        }
        return true;
    }

    using BaseFilesModel::nodeByPath;
    int lastDepth = -1;
};

} // namespace

using NvbTest::checkState;
using NvbTest::expand;

class TestBaseFilesModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void shouldPassTesterWhileLoadingCheckingAndCollapsing();
    void shouldListFolderOnFetch();
    void shouldGiveArrivingChildrenTheFolderMark();
    void shouldForgetChildrenAndMarksOnCollapse();
    void shouldIgnoreResultForGonePath();
    void shouldAnnounceNothingForListingThatAddsNoRow();
    void shouldWalkMarks_data();
    void shouldWalkMarks();
    void shouldRefuseOtherRolesAndSameValue();
    void shouldMatchSiblingsWithOrWithoutHidden();

private:
    // The tester knows only the toolkit's three check states and looks at the
    // first top-level row; the model's fourth state is kept off that row by a
    // folder put before the one under test.
    QStringList testedTops() const { return {m_aside, m_top}; }

    QScopedPointer<NvbTest::FileTree> m_tree;
    QString m_top;
    QString m_aside;
};

void TestBaseFilesModel::init()
{
    m_tree.reset(new NvbTest::FileTree({"aside/", "top/a/x", "top/a/y", "top/b/deep/z", "top/.hidden", "top/file"}));
    m_top = m_tree->path(QStringLiteral("top"));
    m_aside = m_tree->path(QStringLiteral("aside"));
}

void TestBaseFilesModel::shouldPassTesterWhileLoadingCheckingAndCollapsing()
{
    FolderModel model(testedTops());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    // The tester fetches what it can; let every answer arrive.
    QTRY_VERIFY(model.nodeByPath(m_top + QStringLiteral("/b/deep/z")));
    QCOMPARE(model.rowCount(model.indexByPath(m_top)), 4);
    QVERIFY(model.setData(model.indexByPath(m_top), 2, Qt::CheckStateRole));
    QVERIFY(model.setData(model.indexByPath(m_top + QStringLiteral("/a/x")), 0, Qt::CheckStateRole));
    QVERIFY(model.setData(model.indexByPath(m_top + QStringLiteral("/b/deep/z")), 0, Qt::CheckStateRole));
    model.onCollapse(model.indexByPath(m_top + QStringLiteral("/a")));
    QCOMPARE(model.rowCount(model.indexByPath(m_top + QStringLiteral("/a"))), 0);
    model.onCollapse(model.indexByPath(m_top));
    QCOMPARE(model.rowCount(model.indexByPath(m_top)), 0);
    QCOMPARE(model.nodeCount(), 2);
}

void TestBaseFilesModel::shouldListFolderOnFetch()
{
    FolderModel model({m_top});
    const QModelIndex top = model.indexByPath(m_top);
    QVERIFY(model.hasChildren(top));
    QVERIFY(model.canFetchMore(top));
    model.fetchMore(top);
    QCOMPARE(model.lastDepth, 0);
    // In flight: a second fetch would list the folder twice.
    QVERIFY(!model.canFetchMore(top));
    QTRY_COMPARE(model.rowCount(top), 4);
    QCOMPARE(model.index(0, 0, top).data().toString(), QStringLiteral("a"));
    QCOMPARE(model.parent(model.index(0, 0, top)), top);
    QCOMPARE(model.indexByPath(m_top + QStringLiteral("/file")).row(), 3);
    QVERIFY(!model.canFetchMore(model.indexByPath(m_top + QStringLiteral("/file"))));
    QVERIFY(!model.hasChildren(model.indexByPath(m_top + QStringLiteral("/file"))));
}

void TestBaseFilesModel::shouldGiveArrivingChildrenTheFolderMark()
{
    FolderModel model({m_top});
    QVERIFY(expand(model, m_top));
    const QString a = m_top + QStringLiteral("/a");
    QVERIFY(model.setData(model.indexByPath(a), 2, Qt::CheckStateRole));
    // Only the folder is marked until its children come.
    QCOMPARE(model.nodeCount(), 5);
    QCOMPARE(checkState(model, m_top), 1001);
    QVERIFY(expand(model, a));
    QCOMPARE(checkState(model, a + QStringLiteral("/x")), 2);
    QCOMPARE(checkState(model, a + QStringLiteral("/y")), 2);
    QCOMPARE(checkState(model, m_top + QStringLiteral("/b")), 0);
    QVERIFY(expand(model, m_top + QStringLiteral("/b")));
    QCOMPARE(checkState(model, m_top + QStringLiteral("/b/deep")), 0);
}

void TestBaseFilesModel::shouldForgetChildrenAndMarksOnCollapse()
{
    FolderModel model(testedTops());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTRY_VERIFY(model.nodeByPath(m_top + QStringLiteral("/a/x")));
    const QString a = m_top + QStringLiteral("/a");
    QVERIFY(model.setData(model.indexByPath(a + QStringLiteral("/x")), 2, Qt::CheckStateRole));
    QCOMPARE(checkState(model, a), 1001);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    model.onCollapse(model.indexByPath(a));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(removed.at(0).at(1).toInt(), 0);
    QCOMPARE(removed.at(0).at(2).toInt(), 1);
    QVERIFY(!model.nodeByPath(a + QStringLiteral("/x")));
    QCOMPARE(model.rowCount(model.indexByPath(a)), 0);
    // The tester opens the folder again at once; back again the children take
    // the folder's own state, which was incomplete.
    QTRY_VERIFY(model.nodeByPath(a + QStringLiteral("/y")));
    QCOMPARE(checkState(model, a + QStringLiteral("/x")), 0);
    QCOMPARE(checkState(model, a + QStringLiteral("/y")), 0);
}

void TestBaseFilesModel::shouldIgnoreResultForGonePath()
{
    FolderModel model({m_top});
    QVERIFY(expand(model, m_top));
    const int nodes = model.nodeCount();
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    const QList<QObject*> objects = FolderModel::listFolder(m_top + QStringLiteral("/a"));
    QVERIFY(QDir(m_top + QStringLiteral("/a")).removeRecursively());
    model.onResult(m_top + QStringLiteral("/gone"), objects);
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(model.nodeCount(), nodes);
    // The objects stay the caller's.
    for (QObject* object : objects)
        QVERIFY(!object->parent());
    qDeleteAll(objects);
}

void TestBaseFilesModel::shouldAnnounceNothingForListingThatAddsNoRow()
{
    FolderModel model({m_top});
    QVERIFY(expand(model, m_top));
    const QModelIndex top = model.indexByPath(m_top);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QList<QPointer<QObject>> guards;
    const QList<QObject*> again = FolderModel::listFolder(m_top);
    for (QObject* object : again)
        guards << object;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.onResult(m_top, again);
    QCOMPARE(model.rowCount(top), 4);
    QCOMPARE(inserted.count(), 0);
    model.onResult(m_top + QStringLiteral("/a"), {});
    QCOMPARE(inserted.count(), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (const QPointer<QObject>& guard : guards)
        QVERIFY(guard.isNull());
}

void TestBaseFilesModel::shouldWalkMarks_data()
{
    // Marks are set in order on paths below top; the expected states follow.
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("check folder checks loaded children")
        << QStringList {"a=2"} << QStringList {"a=2", "a/x=2", "a/y=2", "=1001", "b=0"};
    QTest::newRow("check one child makes parents incomplete")
        << QStringList {"a/x=2"} << QStringList {"a/x=2", "a/y=0", "a=1001", "=1001"};
    QTest::newRow("all children checked keep incomplete parent")
        << QStringList {"a/x=2", "a/y=2"} << QStringList {"a=1001", "=1001"};
    QTest::newRow("uncheck child of checked folder leaves it checked")
        << QStringList {"=2", "a/x=0"} << QStringList {"a/x=0", "a/y=2", "a=2", "=2", "b=2", "b/deep/z=2"};
    QTest::newRow("checking the last child back turns partial to checked")
        << QStringList {"a=2", "a/x=0", "a/x=2"} << QStringList {"a=2", "a/x=2"};
    QTest::newRow("uncheck all checked children clears incomplete parents")
        << QStringList {"b/deep/z=2", "b/deep/z=0"} << QStringList {"b/deep=0", "b=0", "=0"};
    QTest::newRow("uncheck folder unchecks loaded subtree")
        << QStringList {"=2", "b=0"} << QStringList {"b=0", "b/deep=0", "b/deep/z=0", "=2", "a=2"};
    QTest::newRow("partial state goes up through checked parents")
        << QStringList {"=2", "b/deep=1"} << QStringList {"b/deep=1", "b=1", "=1", "b/deep/z=2"};
    QTest::newRow("incomplete state goes up through unchecked parents")
        << QStringList {"b/deep=1001"} << QStringList {"b/deep=1001", "b=1001", "=1001", "a=0"};
    QTest::newRow("check top over incomplete folders")
        << QStringList {"b/deep/z=2", "=2"} << QStringList {"=2", "b=2", "b/deep=2", "b/deep/z=2", "a/x=2"};
}

void TestBaseFilesModel::shouldWalkMarks()
{
    QFETCH(QStringList, steps);
    QFETCH(QStringList, expected);
    FolderModel model(testedTops());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTRY_VERIFY(model.nodeByPath(m_top + QStringLiteral("/b/deep/z")));
    QTRY_VERIFY(model.nodeByPath(m_top + QStringLiteral("/a/y")));
    auto full
        = [this](const QString& relative) { return relative.isEmpty() ? m_top : m_top + QLatin1Char('/') + relative; };
    for (const QString& step : steps) {
        const QStringList parts = step.split(QLatin1Char('='));
        QVERIFY2(model.setData(model.indexByPath(full(parts.at(0))), parts.at(1).toInt(), Qt::CheckStateRole),
            qPrintable(step));
    }
    for (const QString& expectation : expected) {
        const QStringList parts = expectation.split(QLatin1Char('='));
        QCOMPARE(QStringLiteral("%1=%2").arg(parts.at(0)).arg(checkState(model, full(parts.at(0)))), expectation);
    }
}

void TestBaseFilesModel::shouldRefuseOtherRolesAndSameValue()
{
    FolderModel model({m_top});
    const QModelIndex top = model.indexByPath(m_top);
    QVERIFY(!model.setData(top, 0, Qt::CheckStateRole));
    QVERIFY(!model.setData(top, 2, Qt::DisplayRole));
    QVERIFY(!model.setData(top.sibling(0, 1), 2, Qt::CheckStateRole));
    QVERIFY(!model.setData(QModelIndex(), 2, Qt::CheckStateRole));
    QCOMPARE(checkState(model, m_top), 0);
}

void TestBaseFilesModel::shouldMatchSiblingsWithOrWithoutHidden()
{
    FolderModel model({m_top});
    QVERIFY(expand(model, m_top));
    const QModelIndex hidden = model.indexByPath(m_top + QStringLiteral("/.hidden"));
    QVERIFY(model.setData(hidden, 2, Qt::CheckStateRole));
    const QModelIndex first = model.index(0, 0, model.indexByPath(m_top));
    QVERIFY(model.hasMatchFirst(first, Qt::CheckStateRole, 2, true));
    QVERIFY(!model.hasMatchFirst(first, Qt::CheckStateRole, 2, false));
    // The search starts at the row of start.
    const QModelIndex last = model.indexByPath(m_top + QStringLiteral("/file"));
    QVERIFY(last.row() > hidden.row());
    QVERIFY(!model.hasMatchFirst(last, Qt::CheckStateRole, 2, true));
}

NVB_TEST_MAIN(TestBaseFilesModel)
#include "tst_basefilesmodel.moc"
