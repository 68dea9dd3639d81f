#include <QtTest>

#include "cloud/cloudtype.h"
#include "testmain.h"

using NVL::Cloud::Type;

// The type tables themselves are data; what is tested is what holds across
// them, so that a row added to one table and forgotten in another fails.
class TestCloudType : public QObject
{
    Q_OBJECT

private slots:
    void shouldKnowOnlyNamedTypes();
    void shouldPutEachTypeInOneSetAtMost();
    void shouldOfferExactlyTheTypesWithDisplayName();
    void shouldReadTypeBackFromItsName();
};

void TestCloudType::shouldKnowOnlyNamedTypes()
{
    for (int value = -1; value < 64; ++value)
        QCOMPARE(NVL::Cloud::isKnownType(value), NVL::Cloud::TypeName.contains(static_cast<Type>(value)));
    // The numbering skips 32; stored records depend on it staying a hole.
    QVERIFY(!NVL::Cloud::isKnownType(32));
    QVERIFY(NVL::Cloud::isKnownType(33));
}

void TestCloudType::shouldPutEachTypeInOneSetAtMost()
{
    for (auto it = NVL::Cloud::TypeName.cbegin(); it != NVL::Cloud::TypeName.cend(); ++it) {
        const Type type = it.key();
        const int sets = int(NVL::Cloud::S3Compatible.contains(type)) + int(NVL::Cloud::AmazonS3.contains(type))
            + int(NVL::Cloud::OpenStack.contains(type)) + int(NVL::Cloud::NetworkConnection.contains(type));
        QVERIFY2(sets <= 1, qPrintable(it.value()));
    }
    QVERIFY(NVL::Cloud::NetworkConnection.contains(Type::Sftp));
    QVERIFY(!NVL::Cloud::S3Compatible.contains(Type::FileSystem));
}

void TestCloudType::shouldOfferExactlyTheTypesWithDisplayName()
{
    for (auto it = NVL::Cloud::TypeName.cbegin(); it != NVL::Cloud::TypeName.cend(); ++it) {
        const bool offered = NVL::Cloud::SelectorOrder.contains(it.key());
        QVERIFY2(!NVL::Cloud::displayName(it.key()).isEmpty() == offered, qPrintable(it.value()));
        QVERIFY2(NVL::Cloud::SelectorOrder.count(it.key()) <= 1, qPrintable(it.value()));
    }
}

void TestCloudType::shouldReadTypeBackFromItsName()
{
    for (auto it = NVL::Cloud::TypeName.cbegin(); it != NVL::Cloud::TypeName.cend(); ++it) {
        bool ok = false;
        QCOMPARE(NVL::Cloud::typeFromName(it.value(), &ok), it.key());
        QVERIFY(ok);
    }
    bool ok = true;
    NVL::Cloud::typeFromName(QStringLiteral("Dropbox"), &ok);
    QVERIFY(!ok);
    NVL::Cloud::typeFromName(QStringLiteral("filesystem"), &ok);
    QVERIFY2(!ok, "names are case-sensitive");
}

NVB_TEST_GUILESS_MAIN(TestCloudType)
#include "tst_cloudtype.moc"
