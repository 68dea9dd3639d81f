#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QtTest>

#include "core/apppath.h"
#include "crypt/cryptns.h"
#include "crypt/localcipher.h"
#include "testmain.h"

using SHARED::cryptNS::LocalCipher;

class TestLocalCipher : public QObject
{
    Q_OBJECT

private:
    static QByteArray key(char fill) { return QByteArray(LocalCipher::KeySize, fill); }

    static QString decryptError(const LocalCipher& cipher, const QString& text)
    {
        try {
            cipher.decrypt(text);
        } catch (const QString& error) {
            return error;
        }
        return {};
    }

private slots:
    void shouldRoundTrip_data()
    {
        QTest::addColumn<QString>("secret");
        QTest::newRow("empty") << QString();
        QTest::newRow("ascii") << QStringLiteral("s3cr3t password");
        QTest::newRow("unicode") << QStringLiteral("пароль ✓ 密码");
        QTest::newRow("long") << QString(10000, QLatin1Char('x'));
    }

    void shouldRoundTrip()
    {
        QFETCH(QString, secret);
        const LocalCipher cipher(key('k'));
        const QString sealed = cipher.encrypt(secret);
        QVERIFY(!sealed.contains(secret) || secret.isEmpty());
        QCOMPARE(cipher.decrypt(sealed), secret);
    }

    void shouldBeDeterministicAndDistinguishTexts()
    {
        const LocalCipher cipher(key('k'));
        QCOMPARE(cipher.encrypt(QStringLiteral("same")), cipher.encrypt(QStringLiteral("same")));
        QVERIFY(cipher.encrypt(QStringLiteral("same")) != cipher.encrypt(QStringLiteral("Same")));
        QVERIFY(LocalCipher(key('a')).encrypt(QStringLiteral("same")) != cipher.encrypt(QStringLiteral("same")));
    }

    void shouldRejectTamperedText()
    {
        const LocalCipher cipher(key('k'));
        const QString sealed = cipher.encrypt(QStringLiteral("a secret that is long enough"));
        QByteArray raw = QByteArray::fromBase64(sealed.mid(5).toLatin1());
        for (int position : {0, 15, 16, raw.size() - 1}) {
            QByteArray changed = raw;
            changed[position] = char(changed[position] ^ 0x01);
            const QString tampered = QStringLiteral("nvb1:") + QString::fromLatin1(changed.toBase64());
            QVERIFY2(!decryptError(cipher, tampered).isEmpty(), qPrintable(QString::number(position)));
        }
        QVERIFY(!decryptError(cipher, QStringLiteral("nvb1:%%%")).isEmpty());
        QVERIFY(!decryptError(cipher, QStringLiteral("plain text")).isEmpty());
        QVERIFY(!decryptError(cipher, QStringLiteral("nvb1:") + QString::fromLatin1(raw.left(8).toBase64())).isEmpty());
    }

    void shouldRejectTextOfAnotherKey()
    {
        const QString sealed = LocalCipher(key('a')).encrypt(QStringLiteral("secret"));
        QVERIFY(!decryptError(LocalCipher(key('b')), sealed).isEmpty());
    }

    void shouldKeepOneInstallationKeyInPrivateFile()
    {
        const QString sealed = SHARED::cryptNS::encrypt_local_password(QStringLiteral("secret"));
        const QString keyPath = NVB::Defines::AppPath::to().config() + QStringLiteral("/local.key");
        QVERIFY(QFileInfo::exists(keyPath));
        struct stat info{};
        QCOMPARE(::stat(QFile::encodeName(keyPath).constData(), &info), 0);
        QCOMPARE(int(info.st_mode & 0777), 0600);

        // The key file is reused, so earlier secrets stay readable.
        QCOMPARE(SHARED::cryptNS::encrypt_local_password(QStringLiteral("secret")), sealed);
        QCOMPARE(SHARED::cryptNS::decrypt_local_password(sealed), QStringLiteral("secret"));
    }

    void shouldRefuseDamagedKeyFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("local.key"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("short");
        file.close();
        bool thrown = false;
        try {
            LocalCipher::forKeyFile(path);
        } catch (const QString&) {
            thrown = true;
        }
        QVERIFY(thrown);
        // A damaged key must never be silently replaced: that would lose every secret.
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("short"));
    }
};

NVB_TEST_GUILESS_MAIN(TestLocalCipher)
#include "tst_localcipher.moc"
