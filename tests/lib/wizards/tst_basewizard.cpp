#include <QLabel>
#include <QTest>
#include <QWizardPage>

#include "testmain.h"
#include "wizards/common/basewizard.h"

using NVB::GUI::BaseWizard;

namespace {
// A screen of twice the density, set before the application exists.
const bool g_scaled = qputenv("QT_SCALE_FACTOR", "2");

QLabel* labelShowing(const QWidget& wizard, const QPixmap& pixmap)
{
    for (QLabel* label : wizard.findChildren<QLabel*>())
        if (label->pixmap(Qt::ReturnByValue).cacheKey() == pixmap.cacheKey())
            return label;
    return nullptr;
}
} // namespace

class TestBaseWizard : public QObject
{
    Q_OBJECT

private slots:
    void shouldShowSidePixmapAtItsPixelSizeOnDenseScreen();
    void shouldLeaveWizardWithoutPixmapAlone();
};

void TestBaseWizard::shouldShowSidePixmapAtItsPixelSizeOnDenseScreen()
{
    QVERIFY(g_scaled);
    BaseWizard wizard;
    wizard.setWizardStyle(QWizard::ClassicStyle);
    QPixmap side(120, 300);
    side.fill(Qt::darkBlue);
    wizard.setPixmap(QWizard::WatermarkPixmap, side);
    wizard.addPage(new QWizardPage());
    wizard.show();
    QVERIFY(QTest::qWaitForWindowExposed(&wizard));
    QCOMPARE(wizard.devicePixelRatioF(), 2.0);
    QLabel* label = labelShowing(wizard, wizard.pixmap(QWizard::WatermarkPixmap));
    QVERIFY(label);
    QCOMPARE(label->size(), QSize(60, 150));
    QCOMPARE(label->minimumSize(), label->maximumSize());
}

void TestBaseWizard::shouldLeaveWizardWithoutPixmapAlone()
{
    BaseWizard wizard;
    wizard.setWizardStyle(QWizard::ClassicStyle);
    wizard.addPage(new QWizardPage());
    wizard.show();
    QVERIFY(QTest::qWaitForWindowExposed(&wizard));
    for (QLabel* label : wizard.findChildren<QLabel*>())
        QVERIFY(label->minimumSize() != label->maximumSize() || label->maximumSize().isEmpty());
}

NVB_TEST_MAIN(TestBaseWizard)
#include "tst_basewizard.moc"
