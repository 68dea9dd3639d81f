#include <QStandardItemModel>
#include <QTest>

#include "models/basemodel.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "testmain.h"

using NVB::GUI::ModelCreator;
using NVB::GUI::ModelManager;
namespace Models = NVB::GUI::Models;

namespace {

class SharedCreator : public ModelCreator
{
public:
    explicit SharedCreator(const QString& type)
        : m_type(type)
    { }
    QAbstractItemModel* create() override
    {
        ++calls;
        return &model;
    }
    QString type() const override { return m_type; }

    QStandardItemModel model;
    int calls = 0;

private:
    QString m_type;
};

} // namespace

class TestModelManager : public QObject
{
    Q_OBJECT

private slots:
    void shouldHandOutRegisteredModel();
    void shouldKeepFirstCreatorOfAName();
    void shouldGiveNullForUnknownName();
    void shouldBeGoneAfterQuit();
};

void TestModelManager::shouldHandOutRegisteredModel()
{
    static SharedCreator plans(Models::Table::NvbPlanModelInfo::Type);
    QPointer<ModelManager> manager = ModelManager::instance();
    QVERIFY(!manager.isNull());
    QCOMPARE(ModelManager::instance().data(), manager.data());
    QVERIFY(manager->registrateCreator(plans));
    QCOMPARE(manager->create(QStringLiteral("NvbPlanTableModel")), &plans.model);
    QCOMPARE(manager->create(QStringLiteral("NvbPlanTableModel")), &plans.model);
    QCOMPARE(plans.calls, 2);
}

void TestModelManager::shouldKeepFirstCreatorOfAName()
{
    static SharedCreator first(Models::Table::NvbStorageConnectionModelInfo::Type);
    static SharedCreator second(Models::Table::NvbStorageConnectionModelInfo::Type);
    QPointer<ModelManager> manager = ModelManager::instance();
    QVERIFY(manager->registrateCreator(first));
    QVERIFY(!manager->registrateCreator(second));
    QCOMPARE(manager->create(QStringLiteral("NvbStorageConnectionModel")), &first.model);
    QCOMPARE(second.calls, 0);
}

void TestModelManager::shouldGiveNullForUnknownName()
{
    QCOMPARE(ModelManager::instance()->create(QStringLiteral("NoSuchModel")), nullptr);
}

void TestModelManager::shouldBeGoneAfterQuit()
{
    QPointer<ModelManager> manager = ModelManager::instance();
    QVERIFY(!manager.isNull());
    QMetaObject::invokeMethod(qApp, "aboutToQuit");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(manager.isNull());
    QVERIFY(ModelManager::instance().isNull());
}

NVB_TEST_MAIN(TestModelManager)
#include "tst_modelmanager.moc"
