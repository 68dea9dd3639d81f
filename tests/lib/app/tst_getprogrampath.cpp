#include "app/getprogrampath.h"
#include "testmain.h"

class TestGetProgramPath : public QObject
{
    Q_OBJECT
private slots:
    void shouldCutProgramFromCommandLine_data();
    void shouldCutProgramFromCommandLine();
};

void TestGetProgramPath::shouldCutProgramFromCommandLine_data()
{
    QTest::addColumn<QString>("commandLine");
    QTest::addColumn<QString>("program");
    QTest::newRow("quoted path with blanks")
        << QStringLiteral("\"/opt/my tools/run job.sh\" --fast \"a b\"") << QStringLiteral("/opt/my tools/run job.sh");
    QTest::newRow("quoted path, text glued behind")
        << QStringLiteral("\"/opt/my tools/run\"x -v") << QStringLiteral("/opt/my tools/run\"x");
    QTest::newRow("unquoted") << QStringLiteral("/usr/bin/rsync -a /src /dst") << QStringLiteral("/usr/bin/rsync");
    QTest::newRow("unquoted, no arguments") << QStringLiteral("/usr/bin/true") << QStringLiteral("/usr/bin/true");
    QTest::newRow("opening quote without closing")
        << QStringLiteral("\"/opt/my tools/run -v") << QStringLiteral("/opt/my");
    QTest::newRow("leading blank") << QStringLiteral(" /usr/bin/true") << QString();
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("quoted without blanks") << QStringLiteral("\"/bin/ls\" -l") << QStringLiteral("/bin/ls");
    QTest::newRow("only quotes") << QStringLiteral("\"\"") << QString();
}

void TestGetProgramPath::shouldCutProgramFromCommandLine()
{
    QFETCH(QString, commandLine);
    QFETCH(QString, program);
    QCOMPARE(NVB::GUI::getProgramPath(commandLine), program);
}

NVB_TEST_GUILESS_MAIN(TestGetProgramPath)
#include "tst_getprogrampath.moc"
