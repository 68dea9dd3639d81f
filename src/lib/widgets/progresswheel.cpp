#include "widgets/progresswheel.h"

#include <QPainter>
#include <QTimerEvent>

namespace NVB::GUI {

namespace {
constexpr int Spokes = 12;
constexpr int StepMs = 80;
} // namespace

ProgressWheel::ProgressWheel(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::NoFocus);
}

QSize ProgressWheel::sizeHint() const
{
    return {24, 24};
}

void ProgressWheel::startAnimate()
{
    if (!m_timer.isActive())
        m_timer.start(StepMs, this);
    update();
}

void ProgressWheel::stopAnimate()
{
    m_timer.stop();
    update();
}

void ProgressWheel::animate(bool on)
{
    if (on)
        startAnimate();
    else
        stopAnimate();
}

void ProgressWheel::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    m_angle = (m_angle + 360 / Spokes) % 360;
    update();
}

void ProgressWheel::paintEvent(QPaintEvent*)
{
    if (!m_timer.isActive())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int side = qMin(width(), height());
    painter.translate(width() / 2.0, height() / 2.0);
    painter.rotate(m_angle);
    const qreal outer = side / 2.0 - 1;
    const qreal inner = outer / 2.0;
    const qreal thickness = qMax<qreal>(1.5, side / 10.0);
    // The text colour of the palette keeps the wheel visible on dark themes.
    QColor colour = palette().color(QPalette::WindowText);
    for (int i = 0; i < Spokes; ++i) {
        colour.setAlphaF(qreal(i + 1) / Spokes);
        painter.setPen(QPen(colour, thickness, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -inner), QPointF(0, -outer));
        painter.rotate(360.0 / Spokes);
    }
}

} // namespace NVB::GUI
