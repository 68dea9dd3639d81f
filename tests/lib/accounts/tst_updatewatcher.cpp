#include <QKeyEvent>
#include <QStandardItemModel>
#include <QTimer>
#include <QtTest>

#include "accounts/storagesupdatewatcher.h"
#include "models/basemodel.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "testmain.h"

using namespace NVB::GUI;
using namespace NVB::GUI::Settings;
namespace Info = Models::Table::NvbStorageConnectionModelInfo;

namespace {

// The shared storage table as the watcher sees it: rows with an id column,
// and the model's error signal.
class Table : public BaseModel
{
public:
    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() || row < 0 || row >= m_ids.size() || column < 0 || column >= Info::Column::Count
            ? QModelIndex()
            : createIndex(row, column);
    }
    QModelIndex parent(const QModelIndex&) const override { return {}; }
    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : m_ids.size();
    }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : Info::Column::Count;
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid() || role != Qt::DisplayRole)
            return {};
        if (index.column() == Info::Column::ID)
            return m_ids.at(index.row()).toString();
        if (index.column() == Info::Column::DisplayName)
            return m_names.at(index.row());
        return {};
    }
    bool init() override { return true; }

    void add(const QUuid& id, const QString& name)
    {
        beginInsertRows({}, m_ids.size(), m_ids.size());
        m_ids.append(id);
        m_names.append(name);
        endInsertRows();
    }
    void rename(int row, const QString& name)
    {
        m_names[row] = name;
        emit dataChanged(index(row, 0), index(row, Info::Column::Count - 1));
    }
    void remove(int row)
    {
        beginRemoveRows({}, row, row);
        m_ids.removeAt(row);
        m_names.removeAt(row);
        endRemoveRows();
    }
    void fail(const QString& text) { emit error(text); }

private:
    QList<QUuid> m_ids;
    QStringList m_names;
};

class Creator : public ModelCreator
{
public:
    QAbstractItemModel* create() override { return &table; }
    QString type() const override { return Info::Type; }
    Table table;
};

// Changes the model once the watcher runs, as the engine's notification would.
template<class Change> int watch(Storages::UpdateWatcher& watcher, Change change)
{
    QTimer::singleShot(0, [change] { change(); });
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, &watcher, [&watcher] { watcher.done(-1); });
    guard.start(5000);
    return watcher.exec();
}

} // namespace

class TestUpdateWatcher : public QObject
{
    Q_OBJECT

private slots:
    void shouldWaitForNothingWithoutModel();
    void shouldFinishWhenAddedRowArrives();
    void shouldFinishUpdateOnChangeOrFreshRow_data();
    void shouldFinishUpdateOnChangeOrFreshRow();
    void shouldFinishRemoveOnlyWhenIdIsGone();
    void shouldSwallowEscape();
    void shouldEndWithModelsError();

private:
    Creator m_creator;
};

void TestUpdateWatcher::shouldWaitForNothingWithoutModel()
{
    Storages::UpdateWatcher watcher(QUuid::createUuid(), Storages::UpdateWatcher::Add);
    QVERIFY(!watcher.isWatching());
    QVERIFY(ModelManager::instance()->registrateCreator(m_creator));
}

void TestUpdateWatcher::shouldFinishWhenAddedRowArrives()
{
    const QUuid id = QUuid::createUuid();
    Storages::UpdateWatcher watcher(id, Storages::UpdateWatcher::Add);
    QVERIFY(watcher.isWatching());
    Table& table = m_creator.table;
    const int result = watch(watcher, [&table, id] {
        table.add(QUuid::createUuid(), QStringLiteral("someone else"));
        QTimer::singleShot(50, [&table, id] { table.add(id, QStringLiteral("mine")); });
    });
    QCOMPARE(result, int(QDialog::Accepted));
    QCOMPARE(table.rowCount(), 2);
}

void TestUpdateWatcher::shouldFinishUpdateOnChangeOrFreshRow_data()
{
    QTest::addColumn<bool>("fresh");
    QTest::newRow("changed row") << false;
    QTest::newRow("fresh row") << true;
}

void TestUpdateWatcher::shouldFinishUpdateOnChangeOrFreshRow()
{
    QFETCH(bool, fresh);
    Table& table = m_creator.table;
    const QUuid id = QUuid::createUuid();
    if (!fresh)
        table.add(id, QStringLiteral("before"));
    Storages::UpdateWatcher watcher(id, Storages::UpdateWatcher::Update);
    const int result = watch(watcher, [&table, id, fresh] {
        table.rename(0, QStringLiteral("not this one"));
        if (fresh)
            table.add(id, QStringLiteral("after"));
        else
            table.rename(table.rowCount() - 1, QStringLiteral("after"));
    });
    QCOMPARE(result, int(QDialog::Accepted));
}

void TestUpdateWatcher::shouldFinishRemoveOnlyWhenIdIsGone()
{
    Table& table = m_creator.table;
    const QUuid id = QUuid::createUuid();
    table.add(QUuid::createUuid(), QStringLiteral("other"));
    table.add(id, QStringLiteral("going"));
    Storages::UpdateWatcher watcher(id, Storages::UpdateWatcher::Remove);
    bool early = false;
    const int result = watch(watcher, [&table, &watcher, &early] {
        table.remove(table.rowCount() - 2);
        early = watcher.result() == QDialog::Accepted || !watcher.isVisible();
        table.remove(table.rowCount() - 1);
    });
    QVERIFY(!early);
    QCOMPARE(result, int(QDialog::Accepted));
}

void TestUpdateWatcher::shouldSwallowEscape()
{
    Storages::UpdateWatcher watcher(QUuid::createUuid(), Storages::UpdateWatcher::Add);
    const int result = watch(watcher, [&watcher] {
        QTest::keyClick(&watcher, Qt::Key_Escape);
        QVERIFY(watcher.isVisible());
        watcher.done(7);
    });
    QCOMPARE(result, 7);
}

void TestUpdateWatcher::shouldEndWithModelsError()
{
    Storages::UpdateWatcher watcher(QUuid::createUuid(), Storages::UpdateWatcher::Remove);
    Table& table = m_creator.table;
    const int result
        = watch(watcher, [&table] { table.fail(QStringLiteral("The storage account is used by 2 plans")); });
    QCOMPARE(result, int(QDialog::Rejected));
    QCOMPARE(watcher.failure(), QStringLiteral("The storage account is used by 2 plans"));
}

NVB_TEST_MAIN(TestUpdateWatcher)
#include "tst_updatewatcher.moc"
