#include <QListView>
#include <QStandardItemModel>
#include <QToolButton>
#include <QtTest>

#include "accounts/storageseditlist.h"
#include "models/models.h"
#include "testmain.h"

using NVB::GUI::Settings::Storages;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

class TestStoragesEditList : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void shouldFollowTheSelectedAccountWhenRowsMove();
    void shouldForgetAnAccountThatVanished();
    void shouldLetManagedEditionRemoveOnlyLocalAccounts_data();
    void shouldLetManagedEditionRemoveOnlyLocalAccounts();
    void shouldOfferNoEditInReadOnlyList();

private:
    QUuid append(const QString& name, int type, int at = -1);
    QModelIndex indexOf(const QUuid& id) const;

    QStandardItemModel* m_model = nullptr;
};

void TestStoragesEditList::init()
{
    m_model = new QStandardItemModel(0, Column::Count, this);
}

void TestStoragesEditList::cleanup()
{
    delete m_model;
    qunsetenv("NVB_EDITION");
}

QUuid TestStoragesEditList::append(const QString& name, int type, int at)
{
    const QUuid id = QUuid::createUuid();
    QList<QStandardItem*> items;
    for (int column = 0; column < Column::Count; ++column)
        items.append(new QStandardItem);
    items[Column::DisplayName]->setText(name);
    items[Column::ID]->setText(id.toString());
    items[Column::Type]->setData(type, Qt::DisplayRole);
    m_model->insertRow(at < 0 ? m_model->rowCount() : at, items);
    return id;
}

QModelIndex TestStoragesEditList::indexOf(const QUuid& id) const
{
    const QModelIndexList found
        = m_model->match(m_model->index(0, Column::ID), Qt::DisplayRole, id.toString(), 1, Qt::MatchExactly);
    return found.isEmpty() ? QModelIndex() : m_model->index(found.first().row(), Column::DisplayName);
}

void TestStoragesEditList::shouldFollowTheSelectedAccountWhenRowsMove()
{
    append(QStringLiteral("Alpha"), 1);
    const QUuid nas = append(QStringLiteral("Office NAS"), 33);
    Storages::EditList list(false);
    list.setModel(m_model);
    QCOMPARE(list.view()->modelColumn(), Column::DisplayName);
    list.setCurrentIndex(indexOf(nas));
    QVERIFY(list.editButton()->isEnabled());
    QVERIFY(list.removeButton()->isEnabled());

    QSignalSpy current(&list, &Storages::EditList::currentItem);
    // The engine reports a new account that sorts first: the selection stays
    // on the account, not on the row number.
    append(QStringLiteral("Aardvark"), 1, 0);
    QTRY_VERIFY(!current.isEmpty());
    QCOMPARE(list.currentIndex().row(), 2);
    QCOMPARE(list.currentIndex().data().toString(), QStringLiteral("Office NAS"));
}

void TestStoragesEditList::shouldForgetAnAccountThatVanished()
{
    const QUuid alpha = append(QStringLiteral("Alpha"), 1);
    const QUuid gone = append(QStringLiteral("Gone soon"), 1);
    Storages::EditList list(false);
    list.setModel(m_model);
    list.setCurrentIndex(indexOf(gone));
    QSignalSpy current(&list, &Storages::EditList::currentItem);

    // The neighbour takes the place of a removed account, and the page hears of it.
    m_model->removeRow(indexOf(gone).row());
    QTRY_VERIFY(!current.isEmpty());
    QCOMPARE(current.last().first().toModelIndex(), indexOf(alpha));
    QCOMPARE(list.currentIndex(), indexOf(alpha));
    QVERIFY(list.removeButton()->isEnabled());

    // With the last account gone nothing is current and nothing can be edited.
    current.clear();
    m_model->removeRow(0);
    QTRY_VERIFY(!current.isEmpty());
    QVERIFY(!current.last().first().toModelIndex().isValid());
    QVERIFY(!list.currentIndex().isValid());
    QVERIFY(!list.editButton()->isEnabled());
    QVERIFY(!list.removeButton()->isEnabled());
}

void TestStoragesEditList::shouldLetManagedEditionRemoveOnlyLocalAccounts_data()
{
    QTest::addColumn<QByteArray>("edition");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("removable");
    QTest::newRow("standalone, cloud") << QByteArray("standalone") << 33 << true;
    QTest::newRow("managed, file system") << QByteArray("managed") << 1 << true;
    QTest::newRow("managed, cloud") << QByteArray("managed") << 33 << false;
}

void TestStoragesEditList::shouldLetManagedEditionRemoveOnlyLocalAccounts()
{
    QFETCH(QByteArray, edition);
    QFETCH(int, type);
    QFETCH(bool, removable);
    qputenv("NVB_EDITION", edition);
    append(QStringLiteral("Other"), 1);
    const QUuid id = append(QStringLiteral("Account"), type);
    Storages::EditList list(false);
    list.setModel(m_model);
    list.setCurrentIndex(indexOf(id));
    QCOMPARE(list.removeButton()->isEnabled(), removable);
    QVERIFY(list.editButton()->isEnabled());
    // A change of the row keeps the rule, however the buttons are refreshed.
    m_model->setData(m_model->index(indexOf(id).row(), Column::DisplayName), QStringLiteral("Renamed"));
    QTest::qWait(0);
    QCOMPARE(list.removeButton()->isEnabled(), removable);
}

void TestStoragesEditList::shouldOfferNoEditInReadOnlyList()
{
    const QUuid id = append(QStringLiteral("Account"), 1);
    Storages::EditList list(true);
    list.setModel(m_model);
    QSignalSpy edit(&list, &Storages::EditList::editItem);
    list.setCurrentIndex(indexOf(id));
    QVERIFY(list.editButton()->isHidden());
    QVERIFY(!list.editButton()->isEnabled());
    QVERIFY(!list.removeButton()->isEnabled());
    list.resize(240, 200);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    const QRect rect = list.view()->visualRect(indexOf(id));
    QTest::mouseDClick(list.view()->viewport(), Qt::LeftButton, {}, rect.center());
    QCOMPARE(edit.count(), 0);
}

NVB_TEST_MAIN(TestStoragesEditList)
#include "tst_storageseditlist.moc"
