#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QtTest>

#include "models/models.h"
#include "storage/storageconnectionscloudmodel.h"
#include "storage/storageconnectionsfiltermodel.h"
#include "storage/storageconnectionslocalmodel.h"
#include "storage/storageconnectionssortmodel.h"
#include "testmain.h"

using namespace NVB::GUI;
namespace Column = Models::Table::NvbStorageConnectionModelInfo::Column;

// The proxies read only the name and type columns, so a plain table with the
// storage model's columns stands in for it.
class TestStorageConnectionsProxies : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void shouldSortLocalFirstThenByNameIgnoringCase();
    void shouldResortWhenNameChanges();
    void shouldHideOpenStackOnlyWhenAsked_data();
    void shouldHideOpenStackOnlyWhenAsked();
    void shouldFilterByType_data();
    void shouldFilterByType();

private:
    void append(const QString& name, int type);
    static QStringList names(const QAbstractItemModel& model);

    QStandardItemModel m_source;
};

void TestStorageConnectionsProxies::init()
{
    m_source.clear();
    m_source.setColumnCount(Column::Count);
    append(QStringLiteral("zeta"), 2);
    append(QStringLiteral("Alpha"), 6);
    append(QStringLiteral("usb disk"), 1);
    append(QStringLiteral("beta"), 33);
    append(QStringLiteral("Archive"), 1);
    append(QStringLiteral("rack"), 5);
}

void TestStorageConnectionsProxies::append(const QString& name, int type)
{
    QList<QStandardItem*> row;
    for (int column = 0; column < Column::Count; ++column)
        row.append(new QStandardItem);
    row[Column::DisplayName]->setData(name, Qt::DisplayRole);
    row[Column::ID]->setData(QUuid::createUuid().toString(), Qt::DisplayRole);
    row[Column::Type]->setData(type, Qt::DisplayRole);
    m_source.appendRow(row);
}

QStringList TestStorageConnectionsProxies::names(const QAbstractItemModel& model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, Column::DisplayName).data().toString());
    return result;
}

void TestStorageConnectionsProxies::shouldSortLocalFirstThenByNameIgnoringCase()
{
    StorageConnectionsSortModel sorted;
    QAbstractItemModelTester tester(&sorted, QAbstractItemModelTester::FailureReportingMode::QtTest);
    sorted.setSourceModel(&m_source);
    sorted.sort(Column::DisplayName);
    QCOMPARE(names(sorted), QStringList({"Archive", "usb disk", "Alpha", "beta", "rack", "zeta"}));
}

void TestStorageConnectionsProxies::shouldResortWhenNameChanges()
{
    StorageConnectionsSortModel sorted;
    QAbstractItemModelTester tester(&sorted, QAbstractItemModelTester::FailureReportingMode::QtTest);
    sorted.setSourceModel(&m_source);
    sorted.sort(Column::DisplayName);
    m_source.item(0, Column::DisplayName)->setData(QStringLiteral("aardvark"), Qt::DisplayRole);
    QCOMPARE(names(sorted), QStringList({"Archive", "usb disk", "aardvark", "Alpha", "beta", "rack"}));
}

void TestStorageConnectionsProxies::shouldHideOpenStackOnlyWhenAsked_data()
{
    QTest::addColumn<bool>("skip");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("all") << false << QStringList({"Archive", "usb disk", "Alpha", "beta", "rack", "zeta"});
    QTest::newRow("no OpenStack") << true << QStringList({"Archive", "usb disk", "beta", "zeta"});
}

void TestStorageConnectionsProxies::shouldHideOpenStackOnlyWhenAsked()
{
    QFETCH(bool, skip);
    QFETCH(QStringList, expected);
    StorageConnectionsSortModel sorted;
    QAbstractItemModelTester tester(&sorted, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(!sorted.skipOpenStack());
    sorted.setSourceModel(&m_source);
    sorted.sort(Column::DisplayName);
    sorted.setSkipOpenStack(skip);
    QCOMPARE(names(sorted), expected);
}

void TestStorageConnectionsProxies::shouldFilterByType_data()
{
    QTest::addColumn<int>("proxy");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("SFTP only") << 0 << QStringList({"beta"});
    QTest::newRow("local") << 1 << QStringList({"usb disk", "Archive"});
    QTest::newRow("cloud") << 2 << QStringList({"zeta", "Alpha", "beta", "rack"});
}

void TestStorageConnectionsProxies::shouldFilterByType()
{
    QFETCH(int, proxy);
    QFETCH(QStringList, expected);
    QScopedPointer<QSortFilterProxyModel> model;
    if (proxy == 0)
        model.reset(new StorageConnectionsFilterModel(33));
    else if (proxy == 1)
        model.reset(new StorageConnectionsLocalModel);
    else
        model.reset(new StorageConnectionsCloudModel);
    QAbstractItemModelTester tester(model.data(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    model->setSourceModel(&m_source);
    QCOMPARE(model->filterKeyColumn(), Column::Type);
    QCOMPARE(names(*model), expected);
    // A row that changes its type moves in or out.
    m_source.item(1, Column::Type)->setData(proxy == 2 ? 1 : (proxy == 0 ? 33 : 1), Qt::DisplayRole);
    QCOMPARE(names(*model).contains(QStringLiteral("Alpha")), proxy != 2);
}

NVB_TEST_MAIN(TestStorageConnectionsProxies)
#include "tst_storageconnectionsproxies.moc"
