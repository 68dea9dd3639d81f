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
    void shouldLockOnlyForWaitProcess();
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

void TestProcessDialog::shouldLockOnlyForWaitProcess()
{
    ProcessDialog dialog;
    dialog.setCursor(Qt::CrossCursor);
    dialog.showWaitProcess(true);
    QVERIFY(!dialog.isEnabled());
    QVERIFY(dialog.progressWheel()->isAnimated());
    QCOMPARE(dialog.cursor().shape(), Qt::WaitCursor);
    // Back to the arrow, whatever the cursor was before.
    dialog.showWaitProcess(false);
    QVERIFY(dialog.isEnabled());
    QVERIFY(!dialog.progressWheel()->isAnimated());
    QCOMPARE(dialog.cursor().shape(), Qt::ArrowCursor);
    dialog.startWaitProcess(true);
    QVERIFY(dialog.isEnabled());
    QVERIFY(dialog.progressWheel()->isAnimated());
    dialog.startWaitProcess(false);
    QVERIFY(!dialog.progressWheel()->isAnimated());
}

NVB_TEST_MAIN(TestProcessDialog)
#include "tst_processdialog.moc"
