#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include "core/apppath.h"
#include "core/defines.h"
#include "core/filesoperations.h"
#include "core/licenserestrictions.h"
#include "core/logconfiguration.h"
#include "core/mns.h"
#include "core/nvldebug.h"
#include "core/providerdefines.h"
#include "core/timeduraton.h"
#include "core/transform.h"
#include "testenvironment.h"
#include "testmain.h"

using NVB::Defines::AppPath;

class TestPlatformCore : public QObject
{
    Q_OBJECT

private:
    static void writeFile(const QString& path, const QByteArray& contents)
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

private slots:
    void shouldMoveDirectoriesByEnvironment()
    {
        const QString home = NvbTest::TestEnvironment::current()->home();
        QCOMPARE(AppPath::to().config(), home + QStringLiteral("/config"));
        QCOMPARE(AppPath::to().data(), home + QStringLiteral("/data"));
        QCOMPARE(AppPath::defaultLogs(), home + QStringLiteral("/logs"));
        QCOMPARE(AppPath::logs(), home + QStringLiteral("/logs"));

        qputenv("NVB_DATA_DIR", "/tmp/elsewhere/");
        QCOMPARE(AppPath::to().data(), QStringLiteral("/tmp/elsewhere"));
        qunsetenv("NVB_DATA_DIR");

        qputenv("NVB_BIN_DIR", "/opt/nvb/bin");
        QCOMPARE(SHARED::defines::Path::bin_path(), QStringLiteral("/opt/nvb/bin/"));
        qunsetenv("NVB_BIN_DIR");
        QVERIFY(SHARED::defines::Path::bin_path().endsWith(QLatin1Char('/')));
    }

    void shouldReadEditionAndAttributesFromConfigFile()
    {
        QVERIFY(SHARED::defines::common::is_standalone());
        QVERIFY(!SHARED::defines::common::is_mns());

        const QString conf = AppPath::to().config() + QStringLiteral("/nvbBackup.conf");
        writeFile(conf, R"(<nvbBackup edition="managed" supportEmail="help@reseller.test"/>)");
        QCOMPARE(SHARED::defines::Path::ETC::CONFIG::nvbBackup_conf(), conf);
        QVERIFY(SHARED::defines::common::is_mns());
        QVERIFY(!SHARED::defines::common::is_standalone());
        QCOMPARE(SHARED::functions::files_operations::get_attrib_from_file(conf, QStringLiteral("supportEmail")),
            QStringLiteral("help@reseller.test"));

        qputenv("NVB_EDITION", "standalone");
        QVERIFY(SHARED::defines::common::is_standalone());
        qunsetenv("NVB_EDITION");

        writeFile(conf, "<nvbBackup edition=");
        QCOMPARE(SHARED::functions::files_operations::get_attrib_from_file(conf, QStringLiteral("edition")), QString());
        QVERIFY(SHARED::defines::common::is_standalone());
        QFile::remove(conf);
        QCOMPARE(SHARED::functions::files_operations::get_attrib_from_file(conf, QStringLiteral("edition")), QString());
    }

    void shouldReadLicenceAndServicePrefixFromConfigFile()
    {
        using NVB::License::LicenseRestrictions;
        const QString conf = AppPath::to().config() + QStringLiteral("/nvbBackup.conf");
        QFile::remove(conf);
        // An installation without a word about its licence loses nothing.
        QVERIFY(!LicenseRestrictions::isFreeEdition());
        QVERIFY(LicenseRestrictions::isCompressionAvailable() && LicenseRestrictions::isPrePostActionsAvailable());
        QVERIFY(!LicenseRestrictions::isNetworkSharesLimited());
        QCOMPARE(NVB::Defines::MNS::prefix(), QString());

        writeFile(conf, R"(<nvbBackup license="FREE" mnsPrefix="  office-7 "/>)");
        QVERIFY(LicenseRestrictions::isFreeEdition());
        QVERIFY(!LicenseRestrictions::isCompressionAvailable());
        QVERIFY(!LicenseRestrictions::isEncryptionAvailable());
        QVERIFY(!LicenseRestrictions::isPrePostActionsAvailable());
        QVERIFY(LicenseRestrictions::isNotificationsAvailable());
        QCOMPARE(LicenseRestrictions::networkShareLimit(), 1);
        QCOMPARE(NVB::Defines::MNS::prefix(), QStringLiteral("office-7"));

        writeFile(conf, R"(<nvbBackup license="full" networkShareLimit="3"/>)");
        QVERIFY(!LicenseRestrictions::isFreeEdition());
        QCOMPARE(LicenseRestrictions::networkShareLimit(), 3);
        writeFile(conf, R"(<nvbBackup license="free" networkShareLimit="-5"/>)");
        QVERIFY(!LicenseRestrictions::isNetworkSharesLimited());
        // A broken file reads as no file: the full licence.
        writeFile(conf, "<nvbBackup license=");
        QVERIFY(!LicenseRestrictions::isFreeEdition());
        QFile::remove(conf);
    }

    void shouldFormatSizes_data()
    {
        QTest::addColumn<double>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0.0 << QStringLiteral("0 bytes");
        QTest::newRow("below a KB") << 1023.0 << QStringLiteral("1023 bytes");
        QTest::newRow("one KB") << 1024.0 << QStringLiteral("1.00 KB");
        QTest::newRow("one and a half MB") << 1572864.0 << QStringLiteral("1.50 MB");
        QTest::newRow("negative") << -2048.0 << QStringLiteral("-2.00 KB");
    }

    void shouldFormatSizes()
    {
        QFETCH(double, bytes);
        QFETCH(QString, text);
        QCOMPARE(SHARED::functions::help::transform::from_byte_to_norm(bytes), text);
    }

    void shouldFormatDurations_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0 << QStringLiteral("00:00:00");
        QTest::newRow("below a day") << 86399 << QStringLiteral("23:59:59");
        QTest::newRow("days") << 2 * 86400 + 3 * 3600 + 4 * 60 + 5 << QStringLiteral("2d 03:04:05");
        QTest::newRow("negative") << -90 << QStringLiteral("-00:01:30");
    }

    void shouldFormatDurations()
    {
        QFETCH(int, seconds);
        QFETCH(QString, text);
        QCOMPARE(NVL::Utitlity::TimeDuraton::toString(seconds), text);
    }

    void shouldLogToFileAboveLevel()
    {
        const QString file = AppPath::defaultLogs() + QStringLiteral("/level-test.log");
        NVL::NvlDebug::setLogFile(file);
        NVL::NvlDebug::setLevel(NVL::LogLevel::Warning);
        NVL::NvlDebug(QStringLiteral("NVB")).info() << "hidden" << 1;
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("shown") << 42;
        NVL::NvlDebug::setLevel(NVL::LogLevel::DebugOnly);
        NVL::NvlDebug(QStringLiteral("NVB")).debugOnly() << "verbose";

        QFile log(file);
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(log.readAll());
        QVERIFY(!text.contains(QStringLiteral("hidden")));
        QVERIFY(text.contains(QStringLiteral("[NVB] WARNING: shown 42\n")));
        QVERIFY(text.contains(QStringLiteral("[NVB] DEBUGONLY: verbose\n")));
        QCOMPARE(NVL::NvlDebug::levelFromName(QStringLiteral(" Error "), NVL::LogLevel::Info), NVL::LogLevel::Error);
        QCOMPARE(NVL::NvlDebug::levelFromName(QStringLiteral("loud"), NVL::LogLevel::Info), NVL::LogLevel::Info);
        NVL::NvlDebug::setLevel(NVL::LogLevel::Info);
        NVL::NvlDebug::setLogFile(QString());
    }

    void shouldRotateYesterdaysLogAndDropOldOnes()
    {
        QTemporaryDir dir;
        const QDateTime now = QDateTime::currentDateTime();
        const QString current = dir.filePath(QStringLiteral("nvbgui.log"));
        writeFile(current, "old day\n");
        writeFile(current + QStringLiteral(".20200101-000000"), "ancient\n");
        writeFile(dir.filePath(QStringLiteral("nvbengine.log.20200101-000000")), "another program\n");
        for (const QString& name : QDir(dir.path()).entryList(QDir::Files)) {
            QFile file(dir.filePath(name));
            QVERIFY(file.open(QIODevice::ReadWrite));
            const QDateTime when = name == QStringLiteral("nvbgui.log") ? now.addDays(-2) : now.addDays(-40);
            QVERIFY(file.setFileTime(when, QFileDevice::FileModificationTime));
        }
        QCOMPARE(NVB::Defines::Log::Configuration::rotate(dir.path(), QStringLiteral("nvbgui"), 30, now), 1);
        const QStringList left = QDir(dir.path()).entryList(QDir::Files, QDir::Name);
        QCOMPARE(left.size(), 2);
        QVERIFY(left.contains(QStringLiteral("nvbengine.log.20200101-000000")));
        QVERIFY(!QFile::exists(current));
        QVERIFY(left.at(1).startsWith(QStringLiteral("nvbgui.log.")));
    }

    void shouldReportBuildVersion()
    {
        QVERIFY(QRegularExpression(QStringLiteral("^\\d+\\.\\d+\\.\\d+$"))
                    .match(NVB::defines::ProviderDefines::BuildVersion())
                    .hasMatch());
        QVERIFY(!NVB::defines::ProviderDefines::DisplayName().isEmpty());
    }
};

NVB_TEST_GUILESS_MAIN(TestPlatformCore)
#include "tst_platformcore.moc"
