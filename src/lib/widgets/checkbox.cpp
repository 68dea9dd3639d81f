#include "widgets/checkbox.h"

#include <QEvent>
#include <QStyleOptionButton>

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

namespace {
const RichButtonText::Indicator Metrics = {QStyle::PM_IndicatorWidth, QStyle::PM_IndicatorHeight, QStyle::PM_CheckBoxLabelSpacing, QStyle::PE_IndicatorCheckBox};
}

QSize CheckBox::sizeHint() const
{
    return m_text.buttonSize(this, Metrics, m_text.preferredWidth());
}

QSize CheckBox::minimumSizeHint() const
{
    return m_text.buttonSize(this, Metrics, qMin(m_text.preferredWidth(), 120));
}

bool CheckBox::hasHeightForWidth() const
{
    return true;
}

int CheckBox::heightForWidth(int width) const
{
    return m_text.buttonHeightForWidth(this, Metrics, width);
}

void CheckBox::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    m_text.paintButton(this, option, Metrics);
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
