#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSysInfo>
#include <QTcpServer>
#include <QtTest>

#include "enginesession.h"
#include "records/plan/backupfile.h"
#include "records/plan/planresult.h"
#include "testmain.h"

using NVB::Info::Plan::PlanResult;
using NvbTest::EngineSession;

// Pre and post actions and notification mail, carried out by the real
// engine, the mail delivered to a real SMTP server (aiosmtpd) on 127.0.0.1.
class TestPlanRunHooks : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;
    QTemporaryDir m_source;
    QTemporaryDir m_mail;
    EngineSession m_session {m_home.path()};
    QProcess m_smtp;

    QStringList mails() const { return QDir(m_mail.filePath(QStringLiteral("box/new"))).entryList(QDir::Files); }

    static quint16 freePort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        return probe.serverPort();
    }

    QUuid savePlan(const QString& name, const std::function<void(NVB::Info::Plan::BackupFile&)>& tweak)
    {
        NVB::Info::Plan::BackupFile plan;
        plan.setId(QUuid::createUuid());
        plan.setName(name);
        plan.setStorage(m_session.account());
        plan.setItems({m_source.path()});
        // The object checks look at the legacy format's copies.
        plan.setIsArchive(false);
        plan.setUseCompression(false);
        plan.notification().setType(NVB::Info::Plan::Notification::Never);
        tweak(plan);
        return m_session.savePlan(plan.id(), plan.toXml()) ? plan.id() : QUuid();
    }

    // Runs the plan to its end; its summary then.
    QJsonObject run(const QUuid& plan) { return m_session.run(plan) ? m_session.info(plan) : QJsonObject(); }

private slots:
    void initTestCase()
    {
        QVERIFY(EngineSession::write(m_source.filePath(QStringLiteral("a.txt")), "alpha"));

        // aiosmtpd from the distribution (not whatever python3 comes first
        // on the path), each message kept as a file of a maildir.
        const quint16 port = freePort();
        m_smtp.setProcessChannelMode(QProcess::ForwardedChannels);
        m_smtp.start(QStringLiteral("/usr/bin/python3"),
            {QStringLiteral("-m"), QStringLiteral("aiosmtpd"), QStringLiteral("-n"), QStringLiteral("-l"),
                QStringLiteral("127.0.0.1:%1").arg(port), QStringLiteral("-c"),
                QStringLiteral("aiosmtpd.handlers.Mailbox"), m_mail.filePath(QStringLiteral("box"))});
        QVERIFY(m_smtp.waitForStarted());
        QVERIFY(QTest::qWaitFor(
            [port] {
                QTcpSocket socket;
                socket.connectToHost(QHostAddress::LocalHost, port);
                return socket.waitForConnected(200);
            },
            10000));

        // The engine's settings: the mail server and the address to notify.
        QDir().mkpath(m_home.filePath(QStringLiteral("config")));
        QFile settings(m_home.filePath(QStringLiteral("config/defaultsettings.json")));
        QVERIFY(settings.open(QIODevice::WriteOnly));
        settings.write(QJsonDocument(
            QJsonObject {{QStringLiteral("SMTP host"), QStringLiteral("127.0.0.1")},
                {QStringLiteral("SMTP port"), QString::number(port)},
                {QStringLiteral("SMTP sender"), QStringLiteral("engine@example.org")},
                {QStringLiteral("Notification email"), QStringLiteral("ann@example.org; bob@example.org")}})
                           .toJson());
        settings.close();

        QVERIFY2(m_session.start(), qPrintable(m_session.error()));
    }

    void cleanupTestCase()
    {
        QVERIFY(m_session.stop());
        // Stopped by its process id.
        if (m_smtp.state() == QProcess::Running) {
            m_smtp.terminate();
            if (!m_smtp.waitForFinished(5000))
                m_smtp.kill();
        }
    }

    void shouldStopOnFailedPreActionAndRunPostOnlyAfterSuccess()
    {
        const QString mark = m_home.filePath(QStringLiteral("post ran"));
        const auto withActions = [&mark](const QString& preLine) {
            return [preLine, mark](NVB::Info::Plan::BackupFile& plan) {
                plan.actions().pre().setEnabled(true);
                plan.actions().pre().setProgram(preLine);
                plan.actions().pre().setTerminateOnFailure(true);
                plan.actions().post().setEnabled(true);
                plan.actions().post().setProgram(QStringLiteral("\"/usr/bin/touch\" \"%1\"").arg(mark));
                plan.actions().post().setRunOnBackupFailure(false);
            };
        };
        const QUuid failing = savePlan(
            QStringLiteral("Pre fails"), withActions(QStringLiteral("\"/bin/sh\" -c \"echo not ready; exit 3\"")));
        QVERIFY(!failing.isNull());
        const QJsonObject failed = run(failing);
        QCOMPARE(failed.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        const QString message = failed.value(QStringLiteral("LastRunMessage")).toString();
        QVERIFY2(message.contains(QStringLiteral("\"/bin/sh\" exited with code 3")), qPrintable(message));
        QVERIFY2(message.contains(QStringLiteral("not ready")), qPrintable(message));
        QVERIFY(!QFile::exists(mark));
        QVERIFY(QDir(m_session.planFolder(failing)).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());

        // A missing program fails the same way, by name.
        const QUuid missing
            = savePlan(QStringLiteral("Pre missing"), withActions(QStringLiteral("\"/no/such/tool\" x")));
        const QJsonObject gone = run(missing);
        QCOMPARE(gone.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY(gone.value(QStringLiteral("LastRunMessage")).toString().contains(QStringLiteral("/no/such/tool")));

        const QUuid passing = savePlan(QStringLiteral("Pre passes"), withActions(QStringLiteral("\"/bin/true\"")));
        const QJsonObject passed = run(passing);
        QCOMPARE(passed.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        QVERIFY(QFile::exists(mark));
        QVERIFY(mails().isEmpty());
    }

    void shouldWarnNamingObjectsMissingFromEarlierPoints_data()
    {
        QTest::addColumn<bool>("full");
        QTest::newRow("full consistency check") << true;
        QTest::newRow("new point only") << false;
    }

    void shouldWarnNamingObjectsMissingFromEarlierPoints()
    {
        QFETCH(bool, full);
        const QUuid plan = savePlan(QStringLiteral("Checked"),
            [full](NVB::Info::Plan::BackupFile& backup) { backup.setUseConsistencyCheck(full); });
        QCOMPARE(run(plan).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        // The first point's copy of a.txt disappears from the storage; the
        // next run copies the file again, the first point still names it.
        QDirIterator objects(m_session.planFolder(plan), QDir::Files, QDirIterator::Subdirectories);
        QString removed;
        while (objects.hasNext()) {
            const QString path = objects.next();
            if (path.endsWith(QLatin1String("/a.txt")))
                removed = path;
        }
        QVERIFY(QFile::remove(removed));
        const QJsonObject second = run(plan);
        const QString message = second.value(QStringLiteral("LastRunMessage")).toString();
        const QString object = removed.mid(m_session.storagePath().size() + QStringLiteral("/NVB_tester/").size());
        if (full) {
            QCOMPARE(second.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Warning));
            QVERIFY2(message.contains(QStringLiteral("Consistency check: 1 object")), qPrintable(message));
            QVERIFY2(message.contains(object + QStringLiteral(" (missing)")), qPrintable(message + object));
            // Once a later point holds the file's new copy, only the first
            // point names the lost one, and it is still found.
            const QString third = run(plan).value(QStringLiteral("LastRunMessage")).toString();
            QVERIFY2(third.contains(object + QStringLiteral(" (missing)")), qPrintable(third + object));
        } else {
            QCOMPARE(second.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        }
    }

    void shouldMailOnceWhenPlanFailsAndNeverWhenItSucceeds()
    {
        const auto notifying = [](bool fail) {
            return [fail](NVB::Info::Plan::BackupFile& plan) {
                plan.notification().setType(NVB::Info::Plan::Notification::OnFailure);
                plan.notification().setSubject(QStringLiteral("%PLAN_NAME% on %COMPUTER_NAME%: %RESULT%"));
                plan.notification().setGenerateDetailedReport(true);
                plan.actions().pre().setEnabled(fail);
                plan.actions().pre().setProgram(QStringLiteral("\"/bin/false\""));
            };
        };
        const QUuid good = savePlan(QStringLiteral("Quiet plan"), notifying(false));
        QCOMPARE(run(good).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Success));
        const QUuid bad = savePlan(QStringLiteral("Loud plan"), notifying(true));
        QCOMPARE(run(bad).value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY(QTest::qWaitFor([this] { return !mails().isEmpty(); }, 10000));
        QTest::qWait(300);
        const QStringList delivered = mails();
        QCOMPARE(delivered.size(), 1);
        QFile file(m_mail.filePath(QStringLiteral("box/new/") + delivered.first()));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        const int subjectAt = text.indexOf("Subject: =?UTF-8?B?");
        QVERIFY(subjectAt >= 0);
        const int start = subjectAt + int(strlen("Subject: =?UTF-8?B?"));
        const QString subject
            = QString::fromUtf8(QByteArray::fromBase64(text.mid(start, text.indexOf("?=", start) - start)));
        QCOMPARE(subject, QStringLiteral("Loud plan on %1: Failed").arg(QSysInfo::machineHostName()));
        QVERIFY(text.contains("To: <ann@example.org>, <bob@example.org>"));
        QVERIFY(text.contains("filename=\"report.txt\""));

        // The engine reads the mail settings afresh: with the server gone
        // the mail fails, the history says so and the result stays.
        QFile settings(m_home.filePath(QStringLiteral("config/defaultsettings.json")));
        QVERIFY(settings.open(QIODevice::ReadOnly));
        QJsonObject values = QJsonDocument::fromJson(settings.readAll()).object();
        settings.close();
        values.insert(QStringLiteral("SMTP port"), QString::number(freePort()));
        QVERIFY(settings.open(QIODevice::WriteOnly | QIODevice::Truncate));
        settings.write(QJsonDocument(values).toJson());
        settings.close();
        const QJsonObject unsent = run(bad);
        QCOMPARE(unsent.value(QStringLiteral("LastRunStatus")).toInt(), int(PlanResult::Failed));
        QVERIFY2(unsent.value(QStringLiteral("LastRunMessage"))
                     .toString()
                     .contains(QStringLiteral("The notification mail could not be sent")),
            qPrintable(unsent.value(QStringLiteral("LastRunMessage")).toString()));
        QCOMPARE(mails().size(), 1);
    }
};

NVB_TEST_MAIN(TestPlanRunHooks)
#include "tst_planrunhooks.moc"
