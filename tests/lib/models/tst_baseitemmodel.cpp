#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

#include "models/baseitemmodel.h"
#include "models/basemodelitem.h"
#include "testmain.h"

using NVB::GUI::BaseItemModel;
using NVB::GUI::BaseModelItem;

namespace {

// An item whose children are given by a plan of names: "a/b" under "a".
class PlannedItem : public BaseModelItem
{
public:
    PlannedItem(BaseModelItem* parent, const QString& name, const QHash<QString, QStringList>& plan, ItemStatus status)
        : BaseModelItem(parent, status)
        , m_name(name)
        , m_plan(plan)
    {
        setExpandable(plan.contains(name));
        setSelectIndex("ITEM_" + name.toUtf8());
    }

    bool load() override
    {
        if (loadStatus() != NotLoaded)
            return false;
        ++loads;
        if (failNext) {
            onError(QStringLiteral("cannot list ") + m_name);
            return false;
        }
        changeStatus(Loading);
        for (const QString& child : m_plan.value(m_name)) {
            auto* item = new PlannedItem(this, child, m_plan, m_plan.contains(child) ? NotLoaded : Loaded);
            appendChild(item);
        }
        changeStatus(Loaded);
        return true;
    }

    QVariant data(int column, int role) const override
    {
        if (column == 4 && role == Qt::DisplayRole)
            return m_name.size();
        if (role == Qt::ToolTipRole)
            return m_name;
        return QVariant();
    }
    QString displayName() const override { return m_name; }

    using BaseModelItem::setExpandable;
    int loads = 0;
    bool failNext = false;

private:
    QString m_name;
    QHash<QString, QStringList> m_plan;
};

class PlannedModel : public BaseItemModel
{
public:
    explicit PlannedModel(const QHash<QString, QStringList>& plan)
        : m_plan(plan)
    { }
    bool init() override { return setRootItem(new PlannedItem(nullptr, QString(), m_plan, BaseModelItem::NotLoaded)); }
    PlannedItem* root() const { return static_cast<PlannedItem*>(rootItem()); }

private:
    QHash<QString, QStringList> m_plan;
};

QHash<QString, QStringList> samplePlan()
{
    return {{QString(), {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("file")}},
        {QStringLiteral("a"), {QStringLiteral("a1"), QStringLiteral("a2")}}, {QStringLiteral("b"), {}}};
}

} // namespace

class TestBaseItemModel : public QObject
{
    Q_OBJECT

private slots:
    void shouldGiveNothingWithoutRoot();
    void shouldLoadRootAtInit();
    void shouldFetchOnlyNotLoadedExpandableItems();
    void shouldPassTesterWhileLoading();
    void shouldAnnounceRowsAfterAppending();
    void shouldRemoveOnlyThroughModel();
    void shouldReportUpdatesAsDataChanged();
    void shouldPassErrorsToRoot();
};

void TestBaseItemModel::shouldGiveNothingWithoutRoot()
{
    PlannedModel model(samplePlan());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.flags(QModelIndex()), Qt::NoItemFlags);
    QVERIFY(!model.index(0, 0).isValid());
    QVERIFY(!model.canFetchMore(QModelIndex()));
}

void TestBaseItemModel::shouldLoadRootAtInit()
{
    PlannedModel model(samplePlan());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(model.init());
    QCOMPARE(model.root()->loadStatus(), BaseModelItem::Loaded);
    QCOMPARE(model.rowCount(), 3);
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("a"));
    QCOMPARE(model.index(2, 0).data().toString(), QStringLiteral("file"));
    QVERIFY(!model.parent(model.index(1, 0)).isValid());
}

void TestBaseItemModel::shouldFetchOnlyNotLoadedExpandableItems()
{
    PlannedModel model(samplePlan());
    model.init();
    const QModelIndex a = model.index(0, 0);
    auto* itemA = static_cast<PlannedItem*>(a.internalPointer());
    QVERIFY(!model.canFetchMore(model.index(2, 0)));
    QVERIFY(model.canFetchMore(a));
    model.fetchMore(a);
    QCOMPARE(itemA->loads, 1);
    QCOMPARE(model.rowCount(a), 2);
    QCOMPARE(model.index(1, 0, a).data().toString(), QStringLiteral("a2"));
    QCOMPARE(model.parent(model.index(1, 0, a)), a);
    QVERIFY(!model.canFetchMore(a));
    model.fetchMore(a);
    QCOMPARE(itemA->loads, 1);

    // An item in flight can't be fetched a second time, nor a loaded empty one.
    auto* itemB = static_cast<PlannedItem*>(model.index(1, 0).internalPointer());
    itemB->changeStatus(BaseModelItem::Loading);
    QVERIFY(!model.canFetchMore(model.index(1, 0)));
    itemB->changeStatus(BaseModelItem::Loaded);
    QVERIFY(!model.canFetchMore(model.index(1, 0)));
    QCOMPARE(model.rowCount(model.index(1, 0)), 0);
}

void TestBaseItemModel::shouldPassTesterWhileLoading()
{
    PlannedModel model(samplePlan());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.init();
    // The tester walks the tree and fetches every expandable item.
    auto* itemA = static_cast<PlannedItem*>(model.index(0, 0).internalPointer());
    QCOMPARE(itemA->loadStatus(), BaseModelItem::Loaded);
    QCOMPARE(model.rowCount(model.index(0, 0)), 2);
    model.rootItem()->child(0)->removeAllChild();
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
}

void TestBaseItemModel::shouldAnnounceRowsAfterAppending()
{
    PlannedModel model(samplePlan());
    model.init();
    const QModelIndex a = model.index(0, 0);
    QList<int> countsBefore;
    QList<int> listSizes;
    connect(&model, &QAbstractItemModel::rowsAboutToBeInserted, this, [&](const QModelIndex& parent, int, int) {
        countsBefore << model.rowCount(parent);
        listSizes << static_cast<BaseModelItem*>(parent.isValid() ? parent.internalPointer() : model.rootItem())
                         ->childCount();
    });
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    model.fetchMore(a);
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(inserted.at(1).at(0).value<QModelIndex>(), a);
    QCOMPARE(inserted.at(1).at(1).toInt(), 1);
    // The item is in its parent's list when the announcement starts, while
    // the model still shows the count that views knew.
    QCOMPARE(listSizes, (QList<int> {1, 2}));
    QCOMPARE(countsBefore, (QList<int> {0, 1}));
}

void TestBaseItemModel::shouldRemoveOnlyThroughModel()
{
    auto plan = samplePlan();
    auto* lone = new PlannedItem(nullptr, QString(), plan, BaseModelItem::NotLoaded);
    lone->load();
    QCOMPARE(lone->childCount(), 3);
    lone->removeAllChild();
    QCOMPARE(lone->childCount(), 3);
    delete lone;

    PlannedModel model(plan);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.init();
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    model.rootItem()->removeAllChild();
    QCOMPARE(removed.count(), 3);
    for (const QList<QVariant>& call : removed)
        QCOMPARE(call.at(1).toInt(), 0);
    QCOMPARE(model.rowCount(), 0);
}

void TestBaseItemModel::shouldReportUpdatesAsDataChanged()
{
    PlannedModel model(samplePlan());
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.init();
    auto* itemB = static_cast<PlannedItem*>(model.index(1, 0).internalPointer());
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    // The same status or flag again is no change.
    itemB->changeStatus(itemB->loadStatus());
    itemB->changeUpdateCurrentItem(false);
    QCOMPARE(changed.count(), 0);
    itemB->changeUpdateCurrentItem(true);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).value<QModelIndex>(), model.index(1, 0));
    QCOMPARE(changed.at(0).at(1).value<QModelIndex>(), model.index(1, 3));
    QCOMPARE(model.index(1, 3).data().toBool(), true);
}

void TestBaseItemModel::shouldPassErrorsToRoot()
{
    PlannedModel model(samplePlan());
    model.init();
    QSignalSpy errors(model.rootItem(), &BaseModelItem::error);
    auto* itemA = static_cast<PlannedItem*>(model.index(0, 0).internalPointer());
    itemA->failNext = true;
    model.fetchMore(model.index(0, 0));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("cannot list a"));
    QCOMPARE(itemA->loadStatus(), BaseModelItem::NotLoaded);
    QVERIFY(model.canFetchMore(model.index(0, 0)));
}

NVB_TEST_MAIN(TestBaseItemModel)
#include "tst_baseitemmodel.moc"
