#include <QElapsedTimer>
#include <QtTest>

#include "actions/actionrunner.h"
#include "testmain.h"

using NVB::Engine::ActionRunner;

class TestActionRunner : public QObject
{
    Q_OBJECT

private slots:
    void shouldPassWordsStraightWithoutShell()
    {
        const std::atomic_bool stop {false};
        // Quotes group, nothing else is special: no variables, no chaining.
        const auto result = ActionRunner::run(QStringLiteral("\"/bin/echo\" \"two words\" $HOME \";\" ls"), 10, stop);
        QVERIFY(result.succeeded());
        QCOMPARE(result.outputTail.trimmed(), QStringLiteral("two words $HOME ; ls"));
    }

    void shouldReportExitCodeAndKeepOnlyTheTail()
    {
        const std::atomic_bool stop {false};
        const auto result
            = ActionRunner::run(QStringLiteral("\"/bin/sh\" -c \"yes x | head -c 10000; echo END; exit 4\""), 10, stop);
        QVERIFY(result.started);
        QCOMPARE(result.exitCode, 4);
        QCOMPARE(result.outputTail.size(), ActionRunner::OutputTailChars);
        QVERIFY(result.outputTail.endsWith(QStringLiteral("x\nEND\n")));
        QVERIFY(result.describe(QStringLiteral("Post-backup action"))
                    .startsWith(QStringLiteral("Post-backup action \"/bin/sh\" exited with code 4")));
    }

    void shouldKillACommandPastItsLimit()
    {
        const std::atomic_bool stop {false};
        QElapsedTimer clock;
        clock.start();
        const auto result = ActionRunner::run(QStringLiteral("\"/bin/sleep\" 30"), 1, stop);
        QVERIFY(result.timedOut);
        QVERIFY(!result.succeeded());
        QVERIFY(clock.elapsed() < 10000);
    }

    void shouldRefuseWhatCannotRun_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("error");
        QTest::newRow("empty") << QStringLiteral("  ") << QStringLiteral("empty");
        QTest::newRow("relative") << QStringLiteral("\"true\"") << QStringLiteral("full path");
        QTest::newRow("missing") << QStringLiteral("\"/no/such/program\" a") << QStringLiteral("does not exist");
        QTest::newRow("a folder") << QStringLiteral("\"/tmp\"") << QStringLiteral("not an executable");
    }

    void shouldRefuseWhatCannotRun()
    {
        QFETCH(QString, line);
        QFETCH(QString, error);
        const std::atomic_bool stop {false};
        const auto result = ActionRunner::run(line, 10, stop);
        QVERIFY(!result.started);
        QVERIFY2(result.error.contains(error), qPrintable(result.error));
    }
};

NVB_TEST_GUILESS_MAIN(TestActionRunner)
#include "tst_actionrunner.moc"
