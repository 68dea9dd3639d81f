#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include "stores/defaultsettings.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"
#include "testmain.h"

using NVB::DefaultSettings;

class TestDefaultSettings : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString path(const char* name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    static QJsonObject readJson(const QString& filePath)
    {
        QFile file(filePath);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QJsonDocument::fromJson(file.readAll()).object();
    }

private slots:
    void shouldHoldEveryDefaultKeyAndWriteSettersUnderTheirKeys()
    {
        DefaultSettings settings(path("keys.json"), DefaultSettings::defaultValues());
        QCOMPARE(settings.items().keys(), DefaultSettings::defaultValues().keys());

        settings.setWebAccessUseHttp(QStringLiteral("true"));
        settings.setChunkSize(QStringLiteral("1048576"));
        const QJsonObject stored = readJson(settings.filePath());
        QCOMPARE(stored.value(QStringLiteral("WebAccessEnabled")).toString(), QStringLiteral("true"));
        QCOMPARE(stored.value(QStringLiteral("DefaultChunkSize")).toString(), QStringLiteral("1048576"));
    }

    void shouldIgnoreKeysItDoesNotHold()
    {
        QMap<QString, QString> defaults = DefaultSettings::defaultValues();
        defaults.remove(QStringLiteral("Logs Rotate TimeOut"));
        DefaultSettings settings(path("without.json"), defaults);
        QVERIFY(settings.setIgnoreSSL(QStringLiteral("true")));

        QCOMPARE(settings.getLogsRotateTimeout(), QString());
        QVERIFY(!settings.setLogsRotateTimeout(QStringLiteral("5")));
        QCOMPARE(settings.getLogsRotateTimeout(), QString());
        QVERIFY(!settings.items().contains(QStringLiteral("Logs Rotate TimeOut")));
        QVERIFY(!readJson(settings.filePath()).contains(QStringLiteral("Logs Rotate TimeOut")));
    }

    void shouldPersistAcrossInstances()
    {
        {
            DefaultSettings settings(path("persist.json"), DefaultSettings::defaultValues());
            QVERIFY(settings.setMasterPassword(QStringLiteral("nvb1:abc")));
            QVERIFY(settings.setNotifUserName(QStringLiteral("Jane Doe")));
        }
        DefaultSettings again(path("persist.json"), DefaultSettings::defaultValues());
        QCOMPARE(again.getMasterPassword(), QStringLiteral("nvb1:abc"));
        QCOMPARE(again.getNotifUserName(), QStringLiteral("Jane Doe"));
        QCOMPARE(again.getThreadCount(), DefaultSettings::defaultValues().value(QStringLiteral("MultiThread threads count")));
    }

    void shouldLeaveOldFileWholeWhenWriterDies()
    {
        const QString file = path("crash.json");
        {
            DefaultSettings settings(file, DefaultSettings::defaultValues());
            QVERIFY(settings.setThreadCount(QStringLiteral("2")));
        }
        QFile original(file);
        QVERIFY(original.open(QIODevice::ReadOnly));
        const QByteArray before = original.readAll();
        original.close();

        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            DefaultSettings settings(file, DefaultSettings::defaultValues());
            DefaultSettings::setBeforeCommitHookForTest([] { ::_exit(3); });
            settings.setThreadCount(QStringLiteral("16"));
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 3);

        QVERIFY(original.open(QIODevice::ReadOnly));
        QCOMPARE(original.readAll(), before);
        DefaultSettings settings(file, DefaultSettings::defaultValues());
        QCOMPARE(settings.getThreadCount(), QStringLiteral("2"));
    }

    void shouldKeepDamagedFileAsideAndUseDefaults()
    {
        const QString file = path("damaged.json");
        QFile damaged(file);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("{ \"RetryAttempts\": \"9\", ");
        damaged.close();

        DefaultSettings settings(file, DefaultSettings::defaultValues());
        QCOMPARE(settings.getConnectionRetryAttempts(), DefaultSettings::defaultValues().value(QStringLiteral("RetryAttempts")));
        QVERIFY(QFile::exists(file + QStringLiteral(".damaged")));
    }

    void shouldUseDefaultForValueOfWrongType()
    {
        const QString file = path("typed.json");
        QFile typed(file);
        QVERIFY(typed.open(QIODevice::WriteOnly));
        typed.write(R"({"RetryAttempts": 9, "RetryInterval": "250"})");
        typed.close();
        DefaultSettings settings(file, DefaultSettings::defaultValues());
        QCOMPARE(settings.getConnectionRetryAttempts(), DefaultSettings::defaultValues().value(QStringLiteral("RetryAttempts")));
        QCOMPARE(settings.getConnectionRetryInterval(), QStringLiteral("250"));
    }

    void shouldReadRebrandingFromReplaceableFile()
    {
        namespace Keys = NVB::Defines::RebrandingKeys;
        QFile file(path("rebranding.json"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"ProductName": "Reseller Backup", "AllowEncryption": false})");
        file.close();

        const NVB::Defines::Rebranding own(file.fileName());
        QCOMPARE(own.value(Keys::General::ProductName).toString(), QStringLiteral("Reseller Backup"));
        QCOMPARE(own.value(Keys::Encryption::Visible).toBool(), false);
        // Keys the reseller left out keep the built-in values.
        QVERIFY(own.value(Keys::General::CompanyName).isValid());
        QVERIFY(own.value(Keys::AmazonS3::S3Accelerate::Visible).isValid());
        QVERIFY(!own.value("NoSuchKey").isValid());

        const NVB::Defines::Rebranding missing(path("absent.json"));
        QCOMPARE(missing.value(Keys::General::ProductName).toString(),
                 NVB::Defines::Rebranding::instance()->value(Keys::General::ProductName).toString());
    }
};

NVB_TEST_GUILESS_MAIN(TestDefaultSettings)
#include "tst_defaultsettings.moc"
