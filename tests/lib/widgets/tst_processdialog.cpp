#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

#include "testmain.h"
#include "widgets/processdialog.h"
#include "widgets/progresswheel.h"

using NVB::GUI::ProcessDialog;

class TestProcessDialog : public QObject
{
    Q_OBJECT

private slots:
    void shouldPutCentralLayoutAboveButtons();
    void shouldPlaceButtonsRightOfWheel();
    void shouldLockAndTurnWhileWaiting();
    void shouldShowArrowAfterWaitWhateverBefore();
    void shouldTurnWheelWithoutLocking();
};

void TestProcessDialog::shouldPutCentralLayoutAboveButtons()
{
    ProcessDialog dialog;
    QVERIFY(!dialog.centralLayout());
    auto* central = new QVBoxLayout();
    auto* label = new QLabel(QStringLiteral("Content"));
    central->addWidget(label);
    dialog.setCentralLayout(central);
    QCOMPARE(dialog.centralLayout(), central);
    QCOMPARE(central->contentsMargins(), QMargins(15, 15, 15, 15));
    QCOMPARE(central->spacing(), 9);
    auto* outer = qobject_cast<QVBoxLayout*>(dialog.layout());
    QVERIFY(outer);
    QCOMPARE(outer->itemAt(0)->layout(), central);
    QCOMPARE(outer->contentsMargins(), QMargins(0, 0, 0, 0));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(label->geometry().bottom() <= dialog.progressWheel()->geometry().top());
}

void TestProcessDialog::shouldPlaceButtonsRightOfWheel()
{
    ProcessDialog dialog;
    dialog.setCentralLayout(new QVBoxLayout());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    dialog.addDialogButtons(buttons);
    dialog.addDialogButtons(nullptr);
    dialog.resize(500, 200);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(buttons->parentWidget(), &dialog);
    QVERIFY(buttons->geometry().left() > dialog.progressWheel()->geometry().right() + 100);
    QVERIFY(buttons->geometry().right() <= dialog.width() - 15);
}

void TestProcessDialog::shouldLockAndTurnWhileWaiting()
{
    ProcessDialog dialog;
    dialog.showWaitProcess(true);
    QVERIFY(!dialog.isEnabled());
    QVERIFY(dialog.progressWheel()->isAnimated());
    QCOMPARE(dialog.cursor().shape(), Qt::WaitCursor);
    dialog.showWaitProcess(false);
    QVERIFY(dialog.isEnabled());
    QVERIFY(!dialog.progressWheel()->isAnimated());
}

void TestProcessDialog::shouldShowArrowAfterWaitWhateverBefore()
{
    ProcessDialog dialog;
    dialog.setCursor(Qt::CrossCursor);
    dialog.showWaitProcess(false);
    QCOMPARE(dialog.cursor().shape(), Qt::ArrowCursor);
}

void TestProcessDialog::shouldTurnWheelWithoutLocking()
{
    ProcessDialog dialog;
    dialog.startWaitProcess(true);
    QVERIFY(dialog.isEnabled());
    QVERIFY(dialog.progressWheel()->isAnimated());
    dialog.startWaitProcess(false);
    QVERIFY(!dialog.progressWheel()->isAnimated());
}

NVB_TEST_MAIN(TestProcessDialog)
#include "tst_processdialog.moc"
