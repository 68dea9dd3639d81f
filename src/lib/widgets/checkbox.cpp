#include "widgets/checkbox.h"

#include <QEvent>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace NVB::GUI {

CheckBox::CheckBox(QWidget* parent)
    : CheckBox(QString(), parent)
{ }

CheckBox::CheckBox(const QString& html, QWidget* parent)
    : QCheckBox(parent)
{
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    m_text.setFont(font());
    setHtml(html);
}

void CheckBox::setHtml(const QString& html)
{
    m_text.setHtml(html);
    // Screen readers and tests find the button by its words, not its markup.
    setAccessibleName(m_text.plainText());
    updateGeometry();
    update();
}

QSize CheckBox::indicatorSize() const
{
    return {style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this),
        style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this)};
}

int CheckBox::textOffset() const
{
    return indicatorSize().width() + style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, this);
}

QSize CheckBox::sizeHint() const
{
    const int width = m_text.preferredWidth();
    return {textOffset() + width, qMax(indicatorSize().height(), m_text.heightForWidth(width))};
}

QSize CheckBox::minimumSizeHint() const
{
    const int width = qMin(m_text.preferredWidth(), 120);
    return {textOffset() + width, qMax(indicatorSize().height(), m_text.heightForWidth(width))};
}

bool CheckBox::hasHeightForWidth() const
{
    return true;
}

int CheckBox::heightForWidth(int width) const
{
    return qMax(indicatorSize().height(), m_text.heightForWidth(width - textOffset()));
}

void CheckBox::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const QSize indicator = indicatorSize();
    // Level with the heading, not centred on a text of several lines.
    const int top = qMax(0, (m_text.firstLineHeight() - indicator.height()) / 2);
    option.rect = QRect(QPoint(0, top), indicator);
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, option);

    const QRect textRect(textOffset(), 0, width() - textOffset(), height());
    m_text.paint(&painter, textRect, this);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = textRect.adjusted(-1, 0, 0, 0);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

bool CheckBox::hitButton(const QPoint& pos) const
{
    // The whole text is the button, as with a plain one.
    return rect().contains(pos);
}

void CheckBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange) {
        m_text.setFont(font());
        updateGeometry();
    }
    QCheckBox::changeEvent(event);
}

} // namespace NVB::GUI
