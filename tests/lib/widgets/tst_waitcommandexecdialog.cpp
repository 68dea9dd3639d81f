#include <QPointer>
#include <QTest>
#include <QTimer>

#include "service/v2/command.h"
#include "testmain.h"
#include "widgets/progresswheel.h"
#include "widgets/waitcommandexecdialog.h"

using NVB::Common::Communication::V2::Command;
using NVB::GUI::WaitCommandExecDialog;

namespace {

// The smallest real subclass: ends on the command's result, as the deep sync
// dialog does.
class ResultDialog : public WaitCommandExecDialog
{
public:
    using WaitCommandExecDialog::WaitCommandExecDialog;

    int results = 0;
    int lastStatus = -1;

private:
    void onCommandResult() override
    {
        ++results;
        auto* command = qobject_cast<Command*>(sender());
        lastStatus = command ? command->status() : -2;
        if (command)
            command->deleteLater();
        reject();
    }
};

} // namespace

class TestWaitCommandExecDialog : public QObject
{
    Q_OBJECT

private slots:
    void shouldOfferNoCloseButtonAndShowMessage();
    void shouldIgnoreEscape();
    void shouldSendNothingForNullCommand();
    void shouldEndOnResultOfDeadEngine();
    void shouldTurnWheelWhileExecuting();
};

void TestWaitCommandExecDialog::shouldOfferNoCloseButtonAndShowMessage()
{
    ResultDialog dialog(QStringLiteral("Deep sync"));
    const Qt::WindowFlags flags = dialog.windowFlags();
    QVERIFY(flags.testFlag(Qt::CustomizeWindowHint));
    QVERIFY(flags.testFlag(Qt::WindowTitleHint));
    QVERIFY(!flags.testFlag(Qt::WindowCloseButtonHint));
    emit dialog.setMessage(QStringLiteral("Synchronizing..."));
    QCOMPARE(dialog.message(), QStringLiteral("Synchronizing..."));
    emit dialog.startWait();
    QVERIFY(dialog.progressWheel()->isAnimated());
    emit dialog.stopWait();
    QVERIFY(!dialog.progressWheel()->isAnimated());
}

void TestWaitCommandExecDialog::shouldIgnoreEscape()
{
    ResultDialog dialog(QStringLiteral("Wait"));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.result(), 0);
}

void TestWaitCommandExecDialog::shouldSendNothingForNullCommand()
{
    ResultDialog dialog(QStringLiteral("Wait"));
    dialog.show();
    dialog.execCommand(nullptr);
    QTest::qWait(50);
    QCOMPARE(dialog.results, 0);
    QVERIFY(dialog.isVisible());
}

void TestWaitCommandExecDialog::shouldEndOnResultOfDeadEngine()
{
    // No engine listens in this test's own home: the command fails and the
    // subclass's slot ends the dialog.
    ResultDialog dialog(QStringLiteral("Wait"));
    QPointer<Command> command = new Command(QUuid::createUuid(), QUuid::createUuid());
    QTimer::singleShot(0, &dialog, [&] { dialog.execCommand(command); });
    QTimer::singleShot(20000, &dialog, [&] { dialog.accept(); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(dialog.results, 1);
    QCOMPARE(dialog.lastStatus, int(Command::ChannelError));
}

void TestWaitCommandExecDialog::shouldTurnWheelWhileExecuting()
{
    ResultDialog dialog(QStringLiteral("Wait"));
    bool turning = false;
    QTimer::singleShot(0, &dialog, [&] {
        turning = dialog.progressWheel()->isAnimated();
        dialog.reject();
    });
    dialog.exec();
    QVERIFY(turning);
}

NVB_TEST_MAIN(TestWaitCommandExecDialog)
#include "tst_waitcommandexecdialog.moc"
