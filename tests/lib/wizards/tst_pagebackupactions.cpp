#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include "records/plan/backupfile.h"
#include "testmain.h"
#include "wizards/backup/pagebackupactions.h"
#include "wizards/backup/postactionwidget.h"
#include "wizards/backup/preactionwidget.h"

using NVB::GUI::BackupPlanEditWizard;
using namespace NVB::Info::Plan;

class TestPageBackupActions : public QObject
{
    Q_OBJECT

private slots:
    void shouldWarnAboutCommandLine_data();
    void shouldWarnAboutCommandLine();
    void shouldKeepNextDisabledForEnabledEmptyCommand();
    void shouldWriteWholeLineAndReadItBack();

private:
    QTemporaryDir m_dir;
};

void TestPageBackupActions::shouldWarnAboutCommandLine_data()
{
    QFile script(m_dir.filePath(QStringLiteral("run me.sh")));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\nexit 0\n");
    script.close();
    QFile plain(m_dir.filePath(QStringLiteral("plain.txt")));
    QVERIFY(plain.open(QIODevice::WriteOnly));
    plain.close();
    script.setPermissions(script.permissions() | QFile::ExeUser);
    plain.setPermissions(QFile::ReadUser | QFile::WriteUser);

    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("warning");
    QTest::newRow("good, blank in path") << QStringLiteral("\"%1\" -x 1").arg(script.fileName()) << QString();
    QTest::newRow("unquoted") << script.fileName() << QStringLiteral("The path must be enclosed in \"quotes\"");
    QTest::newRow("missing") << QStringLiteral("\"%1\"").arg(m_dir.filePath(QStringLiteral("gone")))
                             << QStringLiteral("The file does not exist");
    QTest::newRow("not executable") << QStringLiteral("\"%1\" a").arg(plain.fileName())
                                    << QStringLiteral("The file does not have execute permission");
}

void TestPageBackupActions::shouldWarnAboutCommandLine()
{
    QFETCH(QString, command);
    QFETCH(QString, warning);
    BackupPlanEditWizard::PageBackupActions page;
    auto* pre = page.preAction();
    pre->programEdit()->setText(command);
    // Warnings inform, they never block: the text isn't empty.
    pre->setActionEnabled(true);
    QCOMPARE(pre->warningMessage(), warning);
    QVERIFY(page.isComplete());
    // Off and on again checks the text that is there once more.
    pre->setWarningMessage(QString());
    pre->setActionEnabled(false);
    pre->setActionEnabled(true);
    QCOMPARE(pre->warningMessage(), warning);
}

void TestPageBackupActions::shouldKeepNextDisabledForEnabledEmptyCommand()
{
    BackupPlanEditWizard::PageBackupActions page;
    QVERIFY(page.isComplete());
    page.postAction()->setActionEnabled(true);
    QVERIFY(!page.isComplete());
    QVERIFY(page.postAction()->warningMessage().isEmpty());
    page.postAction()->programEdit()->setText(QStringLiteral("\"/bin/true\""));
    QVERIFY(page.isComplete());
    QVERIFY(page.postAction()->programEdit()->isEnabled());
    page.postAction()->setActionEnabled(false);
    QVERIFY(!page.postAction()->programEdit()->isEnabled());
}

void TestPageBackupActions::shouldWriteWholeLineAndReadItBack()
{
    BackupPlanEditWizard::PageBackupActions page;
    page.preAction()->setActionEnabled(true);
    page.preAction()->setProgram(QStringLiteral("\"/bin/echo\" one \"two three\""));
    page.preAction()->setTerminateOnFailure(false);
    page.postAction()->setActionEnabled(true);
    page.postAction()->setProgram(QStringLiteral("\"/bin/true\""));
    page.postAction()->setRunOnBackupFailure(true);
    BackupFile plan;
    plan.actions().pre().setArguments(QStringLiteral("stale"));
    QVERIFY(page.initPlan(&plan));
    QVERIFY(plan.actions().pre().isEnabled());
    QCOMPARE(plan.actions().pre().program(), QStringLiteral("\"/bin/echo\" one \"two three\""));
    QVERIFY(plan.actions().pre().arguments().isEmpty());
    QVERIFY(!plan.actions().pre().terminateOnFailure());
    QVERIFY(plan.actions().post().runOnBackupFailure());
    const QString html = page.summary();
    QVERIFY(html.contains(QStringLiteral("Continue backup if plan action failed")));
    QVERIFY(html.contains(QStringLiteral("Execute action in any case")));

    BackupPlanEditWizard::PageBackupActions loaded;
    QVERIFY(loaded.fromPlan(&plan));
    QCOMPARE(loaded.preAction()->program(), plan.actions().pre().program());
    QVERIFY(!loaded.preAction()->terminateOnFailure());
    QVERIFY(loaded.postAction()->runOnBackupFailure());
    QVERIFY(!loaded.initPlan(nullptr));
}

NVB_TEST_MAIN(TestPageBackupActions)
#include "tst_pagebackupactions.moc"
