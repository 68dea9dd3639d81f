#include "progressbarwidget.h"

#include <QPainter>

namespace NVB::GUI {

ProgressBarWidget::ProgressBarWidget(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setToolTip(text());
}

void ProgressBarWidget::setRange(int minimum, int maximum)
{
    m_minimum = minimum;
    m_maximum = qMax(minimum, maximum);
    m_first = qBound(m_minimum, m_first, m_maximum);
    m_second = qBound(m_minimum, m_second, m_maximum);
    setToolTip(text());
    update();
}

void ProgressBarWidget::setValueFirst(int value)
{
    m_first = qBound(m_minimum, value, m_maximum);
    setToolTip(text());
    update();
}

void ProgressBarWidget::setValueSecond(int value)
{
    m_second = qBound(m_minimum, value, m_maximum);
    setToolTip(text());
    update();
}

int ProgressBarWidget::percentOf(int value) const
{
    const int span = m_maximum - m_minimum;
    return span > 0 ? int(qint64(value - m_minimum) * 100 / span) : 0;
}

QString ProgressBarWidget::text() const
{
    return tr("Read: %1% Sent: %2%").arg(percentOf(m_first)).arg(percentOf(m_second));
}

QSize ProgressBarWidget::sizeHint() const
{
    return {160, fontMetrics().height() + 6};
}

void ProgressBarWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect frame = rect().adjusted(0, 0, -1, -1);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRect(frame);
    const QRect inner = frame.adjusted(1, 1, 0, 0);
    const auto fill = [&](int value, const QColor& colour) {
        const int width = inner.width() * percentOf(value) / 100;
        if (width > 0)
            painter.fillRect(QRect(inner.topLeft(), QSize(width, inner.height())), colour);
    };
    QColor read = palette().color(QPalette::Highlight);
    read.setAlpha(90);
    fill(m_first, read);
    fill(m_second, palette().color(QPalette::Highlight));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(inner, Qt::AlignCenter, text());
}

} // namespace NVB::GUI
