#include "widgets/elidedlabel.h"

#include <QPainter>
#include <QResizeEvent>

namespace NVB::GUI {

ElidedLabel::ElidedLabel(QWidget* parent)
    : ElidedLabel(QString(), parent)
{ }

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent)
    : QFrame(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setText(text);
}

void ElidedLabel::setText(const QString& text)
{
    if (text == m_text)
        return;
    m_text = text;
    updateGeometry();
    updateToolTip();
    update();
    emit textChanged(m_text);
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode)
{
    m_mode = mode;
    updateToolTip();
    update();
}

QString ElidedLabel::elidedText() const
{
    return fontMetrics().elidedText(m_text, m_mode, contentsRect().width());
}

bool ElidedLabel::isElided() const
{
    return elidedText() != m_text;
}

QSize ElidedLabel::sizeHint() const
{
    const QMargins margins = contentsMargins();
    return {fontMetrics().horizontalAdvance(m_text) + margins.left() + margins.right(),
        fontMetrics().height() + margins.top() + margins.bottom()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    const QMargins margins = contentsMargins();
    const int ellipsis = fontMetrics().horizontalAdvance(QStringLiteral("\u2026"));
    return {qMin(sizeHint().width(), ellipsis * 3 + margins.left() + margins.right()), sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, elidedText());
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    updateToolTip();
}

void ElidedLabel::updateToolTip()
{
    setToolTip(isElided() ? m_text : QString());
}

} // namespace NVB::GUI
