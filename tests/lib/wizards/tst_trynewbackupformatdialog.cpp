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
    void shouldAnswerByButton_data();
    void shouldAnswerByButton();
};

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
