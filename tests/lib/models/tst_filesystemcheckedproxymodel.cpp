#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QTest>

#include "filetree.h"
#include "models/filesystemcheckedmodel.h"
#include "models/filesystemcheckedproxymodel.h"
#include "testmain.h"

using NVB::GUI::FileSystemCheckedModel;
using NVB::GUI::FileSystemCheckedProxyModel;

namespace {

QStringList names(const QAbstractItemModel& model, const QModelIndex& parent)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(parent); ++row)
        result << model.index(row, 0, parent).data().toString();
    return result;
}

} // namespace

class TestFileSystemCheckedProxyModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shouldHideHiddenBelowTopLevelOnly();
    void shouldKeepMarksOfHiddenWhenHidden();
    void shouldStillFilterForOtherSource();

private:
    QScopedPointer<NvbTest::FileTree> m_tree;
    QString m_vol;
};

void TestFileSystemCheckedProxyModel::init()
{
    // A hidden volume name: the top level is never filtered.
    m_tree.reset(new NvbTest::FileTree({"aside/", ".vol/.cache/", ".vol/.bashrc", ".vol/visible"}));
    m_tree->mount(QStringLiteral("aside"), "ext4", "/dev/vda");
    m_tree->mount(QStringLiteral(".vol"));
    m_vol = m_tree->path(QStringLiteral(".vol"));
}

void TestFileSystemCheckedProxyModel::cleanup()
{
    m_tree.reset();
}

void TestFileSystemCheckedProxyModel::shouldHideHiddenBelowTopLevelOnly()
{
    FileSystemCheckedModel source;
    FileSystemCheckedProxyModel proxy;
    proxy.setSourceModel(&source);
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QTRY_COMPARE(source.rowCount(source.indexByPath(m_vol)), 3);
    const QModelIndex vol = proxy.mapFromSource(source.indexByPath(m_vol));
    QVERIFY(vol.isValid());
    QCOMPARE(proxy.rowCount(), 2);
    QCOMPARE(names(proxy, vol), QStringList {QStringLiteral("visible")});
    // The flag lives in the source, which leaves hidden files out of a plan.
    QVERIFY(source.uncheckedAllHiddenFiles());
    proxy.setIsShowHidden(true);
    QVERIFY(!source.uncheckedAllHiddenFiles());
    QCOMPARE(names(proxy, vol), (QStringList {".cache", ".bashrc", "visible"}));
    proxy.setIsShowHidden(false);
    QVERIFY(source.uncheckedAllHiddenFiles());
    QCOMPARE(proxy.rowCount(vol), 1);
    source.waitForListings();
}

void TestFileSystemCheckedProxyModel::shouldKeepMarksOfHiddenWhenHidden()
{
    FileSystemCheckedModel source;
    FileSystemCheckedProxyModel proxy;
    proxy.setSourceModel(&source);
    proxy.setIsShowHidden(true);
    source.fetchMore(source.indexByPath(m_vol));
    QTRY_COMPARE(source.rowCount(source.indexByPath(m_vol)), 3);
    const QModelIndex bashrc = proxy.mapFromSource(source.indexByPath(m_vol + QStringLiteral("/.bashrc")));
    QVERIFY(proxy.setData(bashrc, 2, Qt::CheckStateRole));
    proxy.setIsShowHidden(false);
    QVERIFY(!proxy.mapFromSource(source.indexByPath(m_vol + QStringLiteral("/.bashrc"))).isValid());
    QCOMPARE(source.indexByPath(m_vol + QStringLiteral("/.bashrc")).data(Qt::CheckStateRole).toInt(), 2);
    QCOMPARE(source.includePath(false), QStringList {m_vol + QStringLiteral("/.bashrc")});
}

void TestFileSystemCheckedProxyModel::shouldStillFilterForOtherSource()
{
    QStandardItemModel other;
    auto* top = new QStandardItem(QStringLiteral("top"));
    top->appendRow({new QStandardItem(QStringLiteral("shown")), nullptr, nullptr, nullptr, nullptr, nullptr,
        new QStandardItem(QStringLiteral("false"))});
    top->appendRow({new QStandardItem(QStringLiteral("hidden")), nullptr, nullptr, nullptr, nullptr, nullptr,
        new QStandardItem(QStringLiteral("true"))});
    other.appendRow(top);
    FileSystemCheckedProxyModel proxy;
    proxy.setSourceModel(&other);
    QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(names(proxy, proxy.index(0, 0)), QStringList {QStringLiteral("shown")});
    proxy.setIsShowHidden(true);
    QCOMPARE(names(proxy, proxy.index(0, 0)), (QStringList {"shown", "hidden"}));
    // A change of the hidden column filters again.
    other.item(0)->child(1, 6)->setText(QStringLiteral("false"));
    proxy.setIsShowHidden(false);
    other.item(0)->child(0, 6)->setText(QStringLiteral("true"));
    QCOMPARE(names(proxy, proxy.index(0, 0)), QStringList {QStringLiteral("hidden")});
}

NVB_TEST_MAIN(TestFileSystemCheckedProxyModel)
#include "tst_filesystemcheckedproxymodel.moc"
