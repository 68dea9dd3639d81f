#include <QImage>
#include <QtTest>

#include "cloud/cloudtype.h"
#include "storage/storageconnectionsmodel.h"
#include "testmain.h"

using NVB::GUI::StorageConnectionsModel;

class TestStorageIcon : public QObject
{
    Q_OBJECT

private slots:
    void shouldDrawEveryProviderItsOwnIcon();
    void shouldDrawUnknownTypesWithTheGenericIcon_data();
    void shouldDrawUnknownTypesWithTheGenericIcon();
    void shouldGiveRequestedSize();
};

namespace {

QImage render(int type)
{
    return StorageConnectionsModel::storageIcon(type).pixmap(32, 32).toImage();
}

} // namespace

void TestStorageIcon::shouldDrawEveryProviderItsOwnIcon()
{
    QList<QImage> seen;
    for (auto it = NVL::Cloud::TypeName.cbegin(); it != NVL::Cloud::TypeName.cend(); ++it) {
        const QImage image = render(int(it.key()));
        QVERIFY2(!image.isNull(), qPrintable(it.value()));
        // Something is drawn, not a transparent square.
        QVERIFY2(image.pixelColor(16, 16).alpha() > 0, qPrintable(it.value()));
        QVERIFY2(!seen.contains(image), qPrintable(QStringLiteral("%1 looks like another type").arg(it.value())));
        seen.append(image);
    }
}

void TestStorageIcon::shouldDrawUnknownTypesWithTheGenericIcon_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("32, never used") << 32;
    QTest::newRow("99") << 99;
    QTest::newRow("negative") << -1;
}

void TestStorageIcon::shouldDrawUnknownTypesWithTheGenericIcon()
{
    QFETCH(int, type);
    const QImage image = render(type);
    QVERIFY(!image.isNull());
    QCOMPARE(image, render(0));
    QVERIFY(image != render(int(NVL::Cloud::Type::FileSystem)));
}

void TestStorageIcon::shouldGiveRequestedSize()
{
    const QIcon icon = StorageConnectionsModel::storageIcon(int(NVL::Cloud::Type::Sftp), 24);
    QCOMPARE(icon.availableSizes().value(0), QSize(24, 24));
}

NVB_TEST_MAIN(TestStorageIcon)
#include "tst_storageicon.moc"
