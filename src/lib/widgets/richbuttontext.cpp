#include "widgets/richbuttontext.h"

#include <QAbstractButton>
#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QtMath>

namespace NVB::GUI {

RichButtonText::RichButtonText()
    : m_document(new QTextDocument())
{
    m_document->setDocumentMargin(0);
}

RichButtonText::~RichButtonText() = default;

void RichButtonText::setHtml(const QString& html)
{
    m_html = html;
    m_document->setHtml(html);
}

QString RichButtonText::plainText() const
{
    return m_document->toPlainText().simplified();
}

void RichButtonText::setFont(const QFont& font)
{
    m_document->setDefaultFont(font);
    // setDefaultFont doesn't reach text that is already laid out.
    m_document->setHtml(m_html);
}

int RichButtonText::preferredWidth() const
{
    m_document->setTextWidth(-1);
    return qMin(qCeil(m_document->idealWidth()), PreferredWidth);
}

int RichButtonText::heightForWidth(int width) const
{
    m_document->setTextWidth(qMax(1, width));
    return qCeil(m_document->size().height());
}

int RichButtonText::firstLineHeight() const
{
    const QTextBlock block = m_document->begin();
    if (block.isValid() && block.layout() && block.layout()->lineCount() > 0)
        return qCeil(block.layout()->lineAt(0).height());
    return QFontMetrics(m_document->defaultFont()).height();
}

void RichButtonText::paint(QPainter* painter, const QRect& rect, const QAbstractButton* button) const
{
    m_document->setTextWidth(rect.width());
    QAbstractTextDocumentLayout::PaintContext context;
    const QPalette::ColorGroup group = button->isEnabled() ? QPalette::Active : QPalette::Disabled;
    context.palette = button->palette();
    context.palette.setColor(QPalette::Text, button->palette().color(group, QPalette::WindowText));
    context.clip = QRectF(0, 0, rect.width(), rect.height());
    painter->save();
    painter->translate(rect.topLeft());
    painter->setClipRect(context.clip);
    m_document->documentLayout()->draw(painter, context);
    painter->restore();
}

namespace {

QSize indicatorSize(const QAbstractButton* button, const RichButtonText::Indicator& indicator)
{
    return {button->style()->pixelMetric(indicator.width, nullptr, button),
            button->style()->pixelMetric(indicator.height, nullptr, button)};
}

int textOffset(const QAbstractButton* button, const RichButtonText::Indicator& indicator)
{
    return indicatorSize(button, indicator).width() + button->style()->pixelMetric(indicator.spacing, nullptr, button);
}

} // namespace

QSize RichButtonText::buttonSize(const QAbstractButton* button, const Indicator& indicator, int textWidth) const
{
    return {textOffset(button, indicator) + textWidth,
            qMax(indicatorSize(button, indicator).height(), heightForWidth(textWidth))};
}

int RichButtonText::buttonHeightForWidth(const QAbstractButton* button, const Indicator& indicator, int width) const
{
    return qMax(indicatorSize(button, indicator).height(), heightForWidth(width - textOffset(button, indicator)));
}

void RichButtonText::paintButton(QAbstractButton* button, QStyleOptionButton option, const Indicator& indicator) const
{
    QStylePainter painter(button);
    const QSize size = indicatorSize(button, indicator);
    // Level with the heading, not centred on a text of several lines.
    const int top = qMax(0, (firstLineHeight() - size.height()) / 2);
    option.rect = QRect(QPoint(0, top), size);
    painter.drawPrimitive(indicator.element, option);

    const int offset = textOffset(button, indicator);
    const QRect textRect(offset, 0, button->width() - offset, button->height());
    paint(&painter, textRect, button);
    if (button->hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(button);
        focus.rect = textRect.adjusted(-1, 0, 0, 0);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

} // namespace NVB::GUI
