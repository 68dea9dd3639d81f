#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "testmain.h"
#include "wizards/backup/trynewbackupformatdialog.h"

using NVB::GUI::TryNewBackupFormatDialog;

class TestTryNewBackupFormatDialog : public QObject
{
    Q_OBJECT

private slots:
    void shouldAnnounceNewFormat();
    void shouldAnswerByButton_data();
    void shouldAnswerByButton();
};

void TestTryNewBackupFormatDialog::shouldAnnounceNewFormat()
{
    TryNewBackupFormatDialog dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Create Backup Plan Wizard"));
    QCOMPARE(dialog.tryNewButton()->text(), QStringLiteral("Try New Backup Format (BETA)"));
    QCOMPARE(dialog.useCurrentButton()->text(), QStringLiteral("Use Current Backup Format"));
    QString all;
    for (QLabel* label : dialog.findChildren<QLabel*>())
        all += label->text();
    QVERIFY(all.contains(QStringLiteral("NEW BACKUP FORMAT (<font color=\"red\">BETA</font>)")));
    for (const char* text : {"We are pleased to announce the new format for backup.", "Client-side deduplication",
             "Significant improvement of incremental backup speed", "GFS backup rotation scheme", "Hybrid backup",
             "Synthetic Full backup for a number of cloud storage providers",
             "in the future, this will be the only supported backup format.",
             "Would you like to back up with the new beta format or the current one?"})
        QVERIFY2(all.contains(QLatin1String(text)), text);
    QVERIFY(all.contains(QStringLiteral("While it's in beta, you can choose how to store your backups.")));
}

void TestTryNewBackupFormatDialog::shouldAnswerByButton_data()
{
    QTest::addColumn<bool>("tryNew");
    QTest::addColumn<int>("answer");
    QTest::newRow("new") << true << int(TryNewBackupFormatDialog::NewFormat);
    QTest::newRow("current") << false << int(TryNewBackupFormatDialog::CurrentFormat);
}

void TestTryNewBackupFormatDialog::shouldAnswerByButton()
{
    QFETCH(bool, tryNew);
    QFETCH(int, answer);
    TryNewBackupFormatDialog dialog;
    QTimer::singleShot(0, &dialog, [&] { (tryNew ? dialog.tryNewButton() : dialog.useCurrentButton())->click(); });
    QCOMPARE(dialog.exec(), answer);
    // Closing without a choice is neither.
    TryNewBackupFormatDialog closed;
    QTimer::singleShot(0, &closed, [&] { closed.reject(); });
    QCOMPARE(closed.exec(), int(QDialog::Rejected));
}

NVB_TEST_MAIN(TestTryNewBackupFormatDialog)
#include "tst_trynewbackupformatdialog.moc"
