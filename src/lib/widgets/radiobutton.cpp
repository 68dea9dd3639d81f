#include "widgets/radiobutton.h"

#include <QEvent>
#include <QStyleOptionButton>

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

namespace {
const RichButtonText::Indicator Metrics = {QStyle::PM_ExclusiveIndicatorWidth, QStyle::PM_ExclusiveIndicatorHeight, QStyle::PM_RadioButtonLabelSpacing, QStyle::PE_IndicatorRadioButton};
}

QSize RadioButton::sizeHint() const
{
    return m_text.buttonSize(this, Metrics, m_text.preferredWidth());
}

QSize RadioButton::minimumSizeHint() const
{
    return m_text.buttonSize(this, Metrics, qMin(m_text.preferredWidth(), 120));
}

bool RadioButton::hasHeightForWidth() const
{
    return true;
}

int RadioButton::heightForWidth(int width) const
{
    return m_text.buttonHeightForWidth(this, Metrics, width);
}

void RadioButton::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    m_text.paintButton(this, option, Metrics);
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
