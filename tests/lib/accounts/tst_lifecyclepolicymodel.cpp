#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

#include <QCheckBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardItemModel>

#include "accounts/lifecycle/amazonlifecyclepolicymodel.h"
#include "accounts/s3/amazons3add.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/storageaccountconfigformat.h"
#include "crypt/cryptns.h"
#include "modaldialog.h"
#include "models/models.h"

using NVB::Cloud::AmazonLifecyclePolicy;
using NVB::GUI::AmazonLifecyclePolicyModel;
using NVB::GUI::BaseFilesModel;

// The lifecycle editor's model over a bucket of our S3 lifecycle fake
// (tests/support/servers/s3_lifecycle_fake.py, started here and stopped by
// its pid): folders listed lazily, rules shown, changed, saved, and the last
// one removed with a DELETE.
class TestLifecyclePolicyModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void shouldShowChangeSaveAndDeleteRules();
    void shouldDropGlacierRuleBeforeSavingAmazonAccount();

private:
    QMap<QString, QVariant> config() const;
    QStringList requests() const;
    // A model that has loaded the rules and listed the bucket's top level.
    void open(AmazonLifecyclePolicyModel& model);

    QTemporaryDir m_dir;
    QProcess m_fake;
    int m_port = 0;
};

void TestLifecyclePolicyModel::initTestCase()
{
    m_fake.start(QStringLiteral("python3"), {QStringLiteral(NVB_S3_LIFECYCLE_FAKE), m_dir.path()});
    QVERIFY(m_fake.waitForStarted(10000));
    const QString portFile = m_dir.filePath(QStringLiteral("port"));
    QVERIFY(QTest::qWaitFor([&] { return QFile::exists(portFile); }, 10000));
    QFile port(portFile);
    QVERIFY(port.open(QIODevice::ReadOnly));
    m_port = port.readAll().toInt();
}

void TestLifecyclePolicyModel::cleanupTestCase()
{
    m_fake.kill();
    m_fake.waitForFinished(5000);
}

QMap<QString, QVariant> TestLifecyclePolicyModel::config() const
{
    namespace S3 = NVL::Cloud::Config::AmazonS3Like;
    return {{NVL::Cloud::Config::Type, NVL::Cloud::Name::AmazonS3Like}, {S3::AccessKey, QStringLiteral("key")},
        {S3::SecretKey, QStringLiteral("secret")},
        {NVL::Cloud::Api::Config::Http::Endpoint, QStringLiteral("127.0.0.1:%1").arg(m_port)},
        {NVL::Cloud::Api::Config::Http::UseSsl, false},
        {NVL::Cloud::OperationConfig::ContainerName, QStringLiteral("nvb-rules")}};
}

QStringList TestLifecyclePolicyModel::requests() const
{
    QFile file(m_dir.filePath(QStringLiteral("requests")));
    return file.open(QIODevice::ReadOnly)
        ? QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)
        : QStringList();
}

void TestLifecyclePolicyModel::open(AmazonLifecyclePolicyModel& model)
{
    QSignalSpy ended(&model, &AmazonLifecyclePolicyModel::endLoad);
    model.setCloudConfigAndLoad(config());
    QVERIFY(ended.wait(20000));
    // The bucket's top folders are the top rows; the object "top" is no folder.
    QTRY_COMPARE_WITH_TIMEOUT(model.rowCount(), 2, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(!model.isLoading(), 20000);
}

void TestLifecyclePolicyModel::shouldShowChangeSaveAndDeleteRules()
{
    AmazonLifecyclePolicyModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy errors(&model, &AmazonLifecyclePolicyModel::onError);
    open(model);
    QVERIFY(errors.isEmpty());
    const QModelIndex a = model.indexByPath(QStringLiteral("NVB_a/"));
    QVERIFY(a.isValid());
    QCOMPARE(a.data().toString(), QStringLiteral("NVB_a"));

    // NVB_b's sub-folder comes when NVB_b is opened.
    const QModelIndex b = model.indexByPath(QStringLiteral("NVB_b/"));
    if (model.canFetchMore(b))
        model.fetchMore(b);
    QTRY_COMPARE_WITH_TIMEOUT(model.rowCount(b), 1, 20000);
    QCOMPARE(model.index(0, 0, b).data().toString(), QStringLiteral("inner"));

    QVERIFY(model.setData(a, QVariant::fromValue(AmazonLifecyclePolicy(30, -1, 90, -1, -1, -1)), Qt::UserRole));
    QVERIFY(model.setData(a, BaseFilesModel::StateChecked, Qt::CheckStateRole));
    QSignalSpy submitted(&model, &AmazonLifecyclePolicyModel::onSubmit);
    model.save();
    QVERIFY(submitted.wait(20000));
    QVERIFY(requests().last().startsWith(QStringLiteral("PUT /nvb-rules?lifecycle")));

    // A fresh model reads the rule back, shows it and marks the folder.
    {
        AmazonLifecyclePolicyModel again;
        QAbstractItemModelTester againTester(&again, QAbstractItemModelTester::FailureReportingMode::QtTest);
        open(again);
        const QModelIndex shown = again.indexByPath(QStringLiteral("NVB_a/"));
        QCOMPARE(shown.data().toString(),
            QStringLiteral("NVB_a (transition to Standard-IA in 30 days, Glacier Flexible Retrieval in 90 days)"));
        QCOMPARE(shown.data(Qt::CheckStateRole).toInt(), BaseFilesModel::StateChecked);
        QCOMPARE(again.indexByPath(QStringLiteral("NVB_b/")).data().toString(), QStringLiteral("NVB_b"));

        // The last rule unchecked and saved: the configuration is deleted.
        QVERIFY(again.setData(shown, BaseFilesModel::StateUnchecked, Qt::CheckStateRole));
        QCOMPARE(shown.data().toString(), QStringLiteral("NVB_a"));
        QSignalSpy deleted(&again, &AmazonLifecyclePolicyModel::onSubmit);
        again.save();
        QVERIFY(deleted.wait(20000));
    }
    QVERIFY(requests().last().startsWith(QStringLiteral("DELETE /nvb-rules?lifecycle")));
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("lifecycle.xml"))));

    // A bucket that is not there: the listing's error reaches the model's user.
    QMap<QString, QVariant> missing = config();
    missing.insert(NVL::Cloud::OperationConfig::ContainerName, QStringLiteral("nvb-gone"));
    AmazonLifecyclePolicyModel gone;
    QSignalSpy goneErrors(&gone, &AmazonLifecyclePolicyModel::onError);
    gone.setCloudConfigAndLoad(missing);
    QVERIFY(goneErrors.wait(20000));
    QVERIFY(goneErrors.first().first().toString().contains(QStringLiteral("nvb-gone")));
}

namespace {

// Amazon's dialog, pointed at the fake instead of Amazon.
class AmazonProbe : public NVB::GUI::Settings::Account::AmazonS3::Add
{
public:
    QMap<QString, QVariant> fake;
    QMap<QString, QVariant> cloudConfig() const override
    {
        QMap<QString, QVariant> config = NVB::GUI::Settings::Account::AmazonS3::Add::cloudConfig();
        for (auto it = fake.cbegin(); it != fake.cend(); ++it)
            config.insert(it.key(), it.value());
        return config;
    }
};

} // namespace

void TestLifecyclePolicyModel::shouldDropGlacierRuleBeforeSavingAmazonAccount()
{
    // The account archives "NVB_pc/" to Glacier; the user turns it off.
    NVB::Cloud::AmazonLifecyclePolicyEdit edit;
    edit.save({{QStringLiteral("NVB_pc/"), AmazonLifecyclePolicy(-1, -1, 0, -1, -1, -1)}});
    QFile rules(m_dir.filePath(QStringLiteral("lifecycle.xml")));
    QVERIFY(rules.open(QIODevice::WriteOnly));
    rules.write(edit.lifecyclePolice().toByteArray());
    rules.close();

    namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;
    namespace Record = NVB::Info::StorageAccountConfigFormat;
    QStandardItemModel storages(1, Column::Count);
    storages.setData(storages.index(0, Column::DisplayName), QStringLiteral("Amazon"));
    storages.setData(storages.index(0, Column::ID), QUuid::createUuid().toString());
    storages.setData(storages.index(0, Column::Prefix), QStringLiteral("pc"));
    storages.setData(storages.index(0, Column::Type), 2);
    storages.setData(storages.index(0, Column::DetailParams),
        QJsonObject {{Record::Cloud::AmazonS3Like::AccessKey, QStringLiteral("key")},
            {Record::Cloud::AmazonS3Like::SecretKey, SHARED::cryptNS::encrypt_local_password(QStringLiteral("secret"))},
            {Record::Cloud::ContainerName, QStringLiteral("nvb-rules")}, {Record::Cloud::UseSsl, false},
            {Record::Cloud::AmazonS3::Archive2Glacier, true}});
    AmazonProbe dialog;
    dialog.fake = config();
    dialog.fake.remove(NVL::Cloud::OperationConfig::ContainerName);
    dialog.show();
    dialog.setItem(storages.index(0, 0));
    QTRY_VERIFY_WITH_TIMEOUT(dialog.okButton()->isEnabled(), 20000);
    QVERIFY(dialog.glacierBox()->isVisible());
    QVERIFY(dialog.glacierBox()->isChecked());
    dialog.glacierBox()->setChecked(false);
    // The rule is gone (the last one: a DELETE) before the account is sent,
    // which fails here for want of an engine; the dialog stays open.
    QString refused;
    NvbTest::whenModal<QMessageBox>([&refused](QMessageBox* box) {
        refused = box->windowTitle();
        box->accept();
    });
    dialog.okButton()->click();
    QTRY_COMPARE_WITH_TIMEOUT(refused, QStringLiteral("Error on save/update operation!"), 20000);
    QVERIFY(requests().last().startsWith(QStringLiteral("DELETE /nvb-rules?lifecycle")));
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("lifecycle.xml"))));
    QVERIFY(dialog.isVisible());
}

QTEST_MAIN(TestLifecyclePolicyModel)
#include "tst_lifecyclepolicymodel.moc"
