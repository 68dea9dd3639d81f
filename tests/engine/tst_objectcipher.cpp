#include <QtTest>

#include "encryption/objectkey.h"
#include "encryption/objectopener.h"
#include "encryption/objectsealer.h"
#include "repository/ciphertransform.h"
#include "testmain.h"

using NVB::Engine::ObjectKey;
using NVB::Engine::ObjectOpener;
using NVB::Engine::ObjectSealer;

namespace {

QByteArray seal(const std::shared_ptr<const ObjectKey>& key, const QByteArray& plain)
{
    ObjectSealer sealer(key);
    QByteArray out;
    // Fed in odd pieces, as a file is read.
    for (int at = 0; at < plain.size(); at += 10007)
        sealer.add(plain.constData() + at, size_t(qMin(10007, plain.size() - at)), &out);
    sealer.finish(&out);
    return out;
}

// The plain bytes, or the opener's error text prefixed by "!".
QByteArray open(const QString& password, const QByteArray& stored)
{
    ObjectOpener opener(password);
    QByteArray plain;
    for (int at = 0; at < stored.size(); at += 4099) {
        if (!opener.feed(stored.constData() + at, size_t(qMin(4099, stored.size() - at)), &plain))
            return "!" + opener.error().toUtf8();
    }
    if (!opener.finish())
        return "!" + opener.error().toUtf8();
    return plain;
}

} // namespace

// The chunked AES-GCM format of enciphered objects.
class TestObjectCipher : public QObject
{
    Q_OBJECT
private slots:
    void shouldRoundTripEveryKeyLength_data();
    void shouldRoundTripEveryKeyLength();
    void shouldRefuseWrongPasswordAndDamage_data();
    void shouldRefuseWrongPasswordAndDamage();
    void shouldTransformChunksBackOnlyWithPassword();
};

void TestObjectCipher::shouldRoundTripEveryKeyLength_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("size");
    QTest::newRow("AES 128, empty") << 16 << 0;
    QTest::newRow("AES 192, one chunk exactly") << 24 << ObjectSealer::ChunkSize;
    QTest::newRow("AES 256, several chunks") << 32 << 3 * ObjectSealer::ChunkSize + 17;
}

void TestObjectCipher::shouldRoundTripEveryKeyLength()
{
    QFETCH(int, bytes);
    QFETCH(int, size);
    const auto key = ObjectKey::create(QStringLiteral("correct horse"), bytes);
    QVERIFY(key);
    QByteArray plain;
    while (plain.size() < size)
        plain += "The quick brown fox jumps over the lazy dog. ";
    plain.truncate(size);
    const QByteArray stored = seal(key, plain);
    QCOMPARE(open(QStringLiteral("correct horse"), stored), plain);
    if (size > 0)
        QVERIFY(!stored.contains("quick brown fox"));
    // The same data twice gives different objects: nonces never repeat.
    QVERIFY(seal(key, plain) != stored);
}

void TestObjectCipher::shouldRefuseWrongPasswordAndDamage_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("message");
    QTest::newRow("wrong password") << "password"
                                    << "wrong password";
    QTest::newRow("flipped byte") << "flip"
                                  << "damaged";
    QTest::newRow("truncated") << "truncate"
                               << "ends too early";
    QTest::newRow("swapped chunks") << "swap"
                                    << "damaged or out of order";
    QTest::newRow("header altered") << "header"
                                    << "wrong password";
}

void TestObjectCipher::shouldRefuseWrongPasswordAndDamage()
{
    QFETCH(QString, damage);
    QFETCH(QString, message);
    const auto key = ObjectKey::create(QStringLiteral("pw"), 32);
    const QByteArray plain(2 * ObjectSealer::ChunkSize + 5, 'x');
    QByteArray stored = seal(key, plain);
    const int header = ObjectSealer::HeaderSize;
    const int chunk = 4 + ObjectSealer::ChunkSize + ObjectSealer::TagSize;
    QString password = QStringLiteral("pw");
    if (damage == QLatin1String("password"))
        password = QStringLiteral("pW");
    else if (damage == QLatin1String("flip"))
        stored[header + chunk + 100] = char(stored.at(header + chunk + 100) ^ 1);
    else if (damage == QLatin1String("truncate"))
        stored.truncate(header + 2 * chunk);
    else if (damage == QLatin1String("swap"))
        stored = stored.left(header) + stored.mid(header + chunk, chunk) + stored.mid(header, chunk)
            + stored.mid(header + 2 * chunk);
    else if (damage == QLatin1String("header"))
        stored[14] = char(stored.at(14) ^ 1); // a byte of the salt
    const QByteArray result = open(password, stored);
    QVERIFY2(result.startsWith('!'), "damaged data must not open");
    QVERIFY2(result.contains(message.toUtf8()), result.constData());
}

void TestObjectCipher::shouldTransformChunksBackOnlyWithPassword()
{
    const NVB::Engine::CipherTransform transform(QStringLiteral("pw"), 24);
    QVERIFY(transform.isValid());
    QCOMPARE(transform.name(), QStringLiteral("aes-192-gcm"));
    const QByteArray chunk = QByteArray("chunk of a pack ").repeated(9000);
    const auto encoded = transform.encode(chunk);
    QVERIFY(encoded.ok());
    QVERIFY(!encoded.data.contains("chunk of a pack"));
    // Another transform of the same password reads it: the salt travels.
    const auto decoded = NVB::Engine::CipherTransform(QStringLiteral("pw"), 24).decode(encoded.data);
    QVERIFY2(decoded.ok(), qPrintable(decoded.error));
    QCOMPARE(decoded.data, chunk);
    const auto refused = NVB::Engine::CipherTransform(QStringLiteral("other"), 24).decode(encoded.data);
    QVERIFY(!refused.ok());
    QVERIFY(refused.error.contains(QStringLiteral("wrong password")));
    QVERIFY(refused.data.isEmpty());
    QVERIFY(!transform.decode(encoded.data.left(encoded.data.size() - 1)).ok());
    QVERIFY(!NVB::Engine::CipherTransform(QStringLiteral("pw"), 20).isValid());
}

NVB_TEST_GUILESS_MAIN(TestObjectCipher)
#include "tst_objectcipher.moc"
