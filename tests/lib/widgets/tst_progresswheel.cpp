#include <QTest>

#include "testmain.h"
#include "widgets/progresswheel.h"

using NVB::GUI::ProgressWheel;

namespace {
bool isBlank(const QImage& image)
{
    const QRgb first = image.pixel(0, 0);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != first)
                return false;
    return true;
}
} // namespace

class TestProgressWheel : public QObject
{
    Q_OBJECT

private slots:
    void shouldDrawOnlyWhileTurning();
    void shouldTurnWithTime();
};

void TestProgressWheel::shouldDrawOnlyWhileTurning()
{
    ProgressWheel wheel;
    wheel.resize(wheel.sizeHint());
    QVERIFY(isBlank(wheel.grab().toImage()));
    wheel.startAnimate();
    QVERIFY(!isBlank(wheel.grab().toImage()));
    wheel.animate(false);
    QVERIFY(isBlank(wheel.grab().toImage()));
    wheel.animate(true);
    QVERIFY(wheel.isAnimated());
    wheel.stopAnimate();
    QVERIFY(!wheel.isAnimated());
}

void TestProgressWheel::shouldTurnWithTime()
{
    ProgressWheel wheel;
    wheel.resize(wheel.sizeHint());
    wheel.startAnimate();
    const QImage before = wheel.grab().toImage();
    QVERIFY(QTest::qWaitFor([&] { return wheel.grab().toImage() != before; }));
}

NVB_TEST_MAIN(TestProgressWheel)
#include "tst_progresswheel.moc"
