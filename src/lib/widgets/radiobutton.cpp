#include "widgets/radiobutton.h"

#include <QEvent>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace NVB::GUI {

RadioButton::RadioButton(QWidget* parent)
    : RadioButton(QString(), parent)
{ }

RadioButton::RadioButton(const QString& html, QWidget* parent)
    : QRadioButton(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    m_text.setFont(font());
    setHtml(html);
}

void RadioButton::setHtml(const QString& html)
{
    m_text.setHtml(html);
    // Screen readers and tests find the button by its words, not its markup.
    setAccessibleName(m_text.plainText());
    updateGeometry();
    update();
}

QSize RadioButton::indicatorSize() const
{
    return {style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, this),
        style()->pixelMetric(QStyle::PM_ExclusiveIndicatorHeight, nullptr, this)};
}

int RadioButton::textOffset() const
{
    return indicatorSize().width() + style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, this);
}

QSize RadioButton::sizeHint() const
{
    const int width = m_text.preferredWidth();
    return {textOffset() + width, qMax(indicatorSize().height(), m_text.heightForWidth(width))};
}

QSize RadioButton::minimumSizeHint() const
{
    const int width = qMin(m_text.preferredWidth(), 120);
    return {textOffset() + width, qMax(indicatorSize().height(), m_text.heightForWidth(width))};
}

bool RadioButton::hasHeightForWidth() const
{
    return true;
}

int RadioButton::heightForWidth(int width) const
{
    return qMax(indicatorSize().height(), m_text.heightForWidth(width - textOffset()));
}

void RadioButton::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const QSize indicator = indicatorSize();
    // Level with the heading, not centred on a text of several lines.
    const int top = qMax(0, (m_text.firstLineHeight() - indicator.height()) / 2);
    option.rect = QRect(QPoint(0, top), indicator);
    painter.drawPrimitive(QStyle::PE_IndicatorRadioButton, option);

    const QRect textRect(textOffset(), 0, width() - textOffset(), height());
    m_text.paint(&painter, textRect, this);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = textRect.adjusted(-1, 0, 0, 0);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

bool RadioButton::hitButton(const QPoint& pos) const
{
    // The whole text is the button, as with a plain one.
    return rect().contains(pos);
}

void RadioButton::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange) {
        m_text.setFont(font());
        updateGeometry();
    }
    QRadioButton::changeEvent(event);
}

} // namespace NVB::GUI
