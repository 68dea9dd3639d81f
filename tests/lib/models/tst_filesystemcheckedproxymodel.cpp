#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>

#include "listing/filesystemlisting.h"
#include "models/filesystemcheckedmodel.h"
#include "models/filesystemcheckedproxymodel.h"
#include "testmain.h"

using NVB::FileSystemListing;
using NVB::GUI::FileSystemCheckedModel;
using NVB::GUI::FileSystemCheckedProxyModel;

namespace {

void touch(const QString& path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

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
    void shouldStoreFlagInSource();
    void shouldStillFilterForOtherSource();

private:
    QScopedPointer<QTemporaryDir> m_dir;
    QString m_vol;
};

void TestFileSystemCheckedProxyModel::init()
{
    m_dir.reset(new QTemporaryDir());
    QVERIFY(m_dir->isValid());
    const QString aside = m_dir->path() + QStringLiteral("/aside");
    // A hidden volume name: the top level is never filtered.
    m_vol = m_dir->path() + QStringLiteral("/.vol");
    QVERIFY(QDir().mkpath(aside));
    QVERIFY(QDir().mkpath(m_vol + QStringLiteral("/.cache")));
    touch(m_vol + QStringLiteral("/.bashrc"));
    touch(m_vol + QStringLiteral("/visible"));
    QFile table(m_dir->path() + QStringLiteral("/mountinfo"));
    QVERIFY(table.open(QIODevice::WriteOnly));
    table.write("27 1 254:0 / " + QFile::encodeName(aside) + " rw - ext4 /dev/vda rw\n");
    table.write("28 27 254:1 / " + QFile::encodeName(m_vol) + " rw - ext4 /dev/vdb rw\n");
    table.close();
    FileSystemListing::setMountTable(table.fileName());
}

void TestFileSystemCheckedProxyModel::cleanup()
{
    FileSystemListing::setMountTable(QString());
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
    proxy.setIsShowHidden(true);
    QVERIFY(proxy.isShowHidden());
    QCOMPARE(names(proxy, vol), (QStringList {".cache", ".bashrc", "visible"}));
    proxy.setIsShowHidden(false);
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

void TestFileSystemCheckedProxyModel::shouldStoreFlagInSource()
{
    FileSystemCheckedModel source;
    FileSystemCheckedProxyModel proxy;
    proxy.setSourceModel(&source);
    QVERIFY(source.uncheckedAllHiddenFiles());
    proxy.setIsShowHidden(true);
    QVERIFY(!source.uncheckedAllHiddenFiles());
    proxy.setIsShowHidden(false);
    QVERIFY(source.uncheckedAllHiddenFiles());
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
