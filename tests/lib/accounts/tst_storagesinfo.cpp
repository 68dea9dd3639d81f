#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QtTest>

#include "accounts/local/local.h"
#include "accounts/s3/amazons3compatible.h"
#include "accounts/sftp/sftp.h"
#include "accounts/storagesaddcontainer.h"
#include "accounts/storagesinfo.h"
#include "crypt/cryptns.h"
#include "models/models.h"
#include "testmain.h"

using namespace NVB::GUI::Settings;
using namespace NVB::GUI::Settings::Account;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

class TestStoragesInfo : public QObject
{
    Q_OBJECT

private slots:
    void shouldShowTheFieldsOfTheRecord();
    void shouldHideFieldsTheRecordLacks();
    void shouldShowEndpointOnlyWhenAsked();
    void shouldIgnoreInvalidIndex();
    void shouldFormatBooleans_data();
    void shouldFormatBooleans();
    void shouldDecipherSecrets();
    void shouldEnableContainerOkForNonBlankName_data();
    void shouldEnableContainerOkForNonBlankName();

private:
    QModelIndex row(const QString& name, const QJsonObject& record, const QString& prefix = QStringLiteral("office"));

    QStandardItemModel m_model {0, Column::Count};
};

QModelIndex TestStoragesInfo::row(const QString& name, const QJsonObject& record, const QString& prefix)
{
    QList<QStandardItem*> items;
    for (int column = 0; column < Column::Count; ++column)
        items.append(new QStandardItem);
    items[Column::DisplayName]->setData(name, Qt::DisplayRole);
    items[Column::ID]->setData(QUuid::createUuid().toString(), Qt::DisplayRole);
    items[Column::Prefix]->setData(prefix, Qt::DisplayRole);
    items[Column::DetailParams]->setData(record, Qt::DisplayRole);
    m_model.appendRow(items);
    return m_model.index(m_model.rowCount() - 1, 0);
}

void TestStoragesInfo::shouldShowTheFieldsOfTheRecord()
{
    // The prefix shown is the record's, not the list's column.
    Sftp view;
    view.show();
    view.setItem(row(QStringLiteral("Office NAS"),
        {{QStringLiteral("Port"), 2222}, {QStringLiteral("KeepAlive"), true},
            {QStringLiteral("BackupPrefix"), QStringLiteral("office")}},
        QStringLiteral("not-this-column")));
    QCOMPARE(view.title(), QStringLiteral("Office NAS"));
    QCOMPARE(view.fieldText(QStringLiteral("Port")), QStringLiteral("2222"));
    QCOMPARE(view.fieldText(QStringLiteral("KeepAlive")), QStringLiteral("yes"));
    QCOMPARE(view.fieldText(QStringLiteral("BackupPrefix")), QStringLiteral("office"));
}

void TestStoragesInfo::shouldHideFieldsTheRecordLacks()
{
    Sftp view;
    view.show();
    view.setItem(row(QStringLiteral("Full"),
        {{QStringLiteral("User"), QStringLiteral("ann")}, {QStringLiteral("KeepAlive"), false}}));
    QVERIFY(view.isFieldVisible(QStringLiteral("KeepAlive")));
    QCOMPARE(view.fieldText(QStringLiteral("KeepAlive")), QStringLiteral("no"));
    view.setItem(row(QStringLiteral("Sparse"), {{QStringLiteral("User"), QStringLiteral("bob")}}));
    QCOMPARE(view.title(), QStringLiteral("Sparse"));
    QCOMPARE(view.fieldText(QStringLiteral("User")), QStringLiteral("bob"));
    QVERIFY(!view.isFieldVisible(QStringLiteral("KeepAlive")));
    QVERIFY(!view.isFieldVisible(QStringLiteral("Address")));
}

void TestStoragesInfo::shouldShowEndpointOnlyWhenAsked()
{
    const QJsonObject record {{QStringLiteral("AccessKey"), QStringLiteral("AK")},
        {QStringLiteral("Endpoint"), QStringLiteral("https://s3.example")},
        {QStringLiteral("ContainerName"), QStringLiteral("bucket")}, {QStringLiteral("UseSsl"), true}};
    AmazonS3Compatible with(NVL::Cloud::Type::Minio, true);
    with.show();
    with.setItem(row(QStringLiteral("Minio"), record));
    QCOMPARE(with.fieldText(QStringLiteral("Endpoint")), QStringLiteral("https://s3.example"));
    QCOMPARE(with.fieldText(QStringLiteral("UseSsl")), QStringLiteral("yes"));
    AmazonS3Compatible without(NVL::Cloud::Type::Cloudian, false);
    without.show();
    without.setItem(row(QStringLiteral("Cloudian"), record));
    QVERIFY(!without.isFieldVisible(QStringLiteral("Endpoint")));
    QCOMPARE(without.fieldText(QStringLiteral("ContainerName")), QStringLiteral("bucket"));
}

void TestStoragesInfo::shouldIgnoreInvalidIndex()
{
    Local view;
    view.show();
    view.setItem(row(QStringLiteral("Disk"), {{QStringLiteral("Path"), QStringLiteral("/media/disk/")}}));
    view.setItem(QModelIndex());
    QCOMPARE(view.title(), QStringLiteral("Disk"));
    QCOMPARE(view.fieldText(QStringLiteral("Path")), QStringLiteral("/media/disk/"));
}

void TestStoragesInfo::shouldFormatBooleans_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << QVariant(0) << "no";
    QTest::newRow("2") << QVariant(2) << "N/A";
    QTest::newRow("true") << QVariant(true) << "yes";
    QTest::newRow("text") << QVariant(QStringLiteral("maybe")) << "N/A";
    QTest::newRow("null") << QVariant() << "N/A";
}

void TestStoragesInfo::shouldFormatBooleans()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    QCOMPARE(Storages::Info::trueFalseDelegate(value), text);
}

void TestStoragesInfo::shouldDecipherSecrets()
{
    const QString stored = SHARED::cryptNS::encrypt_local_password(QStringLiteral("s3cret"));
    QVERIFY(stored != QStringLiteral("s3cret"));
    QCOMPARE(Storages::Info::decryptDelegate(stored), QStringLiteral("s3cret"));
    QCOMPARE(Storages::Info::decryptDelegate(QStringLiteral("not enciphered")), QString());
}

void TestStoragesInfo::shouldEnableContainerOkForNonBlankName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("name") << "backups" << true;
    QTest::newRow("spaces") << "   " << false;
}

void TestStoragesInfo::shouldEnableContainerOkForNonBlankName()
{
    QFETCH(QString, name);
    QFETCH(bool, enabled);
    Storages::AddContainer dialog;
    dialog.show();
    QPushButton* ok = dialog.buttonBox()->button(QDialogButtonBox::Ok);
    QVERIFY(!ok->isEnabled());
    QTest::keyClicks(dialog.nameEdit(), name);
    QCOMPARE(ok->isEnabled(), enabled);
    QCOMPARE(dialog.name(), name);
}

NVB_TEST_MAIN(TestStoragesInfo)
#include "tst_storagesinfo.moc"
